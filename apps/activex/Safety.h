// What the control promises to browsers, honestly. A page may create it with parameters, since it
// reads none. It must not be scripted by a page that nobody vouches for: its members open devices
// and write files.
#pragma once

#include "Part.h"
// After windows.h:
#include <objsafe.h>

namespace marlune::activex {

class Safety : public Part<IObjectSafety> {
public:
    using Part::Part;

    HRESULT STDMETHODCALLTYPE GetInterfaceSafetyOptions(REFIID iid, DWORD* supported,
                                                        DWORD* enabled) override;
    HRESULT STDMETHODCALLTYPE SetInterfaceSafetyOptions(REFIID iid, DWORD mask,
                                                        DWORD enabled) override;
};

}  // namespace marlune::activex
