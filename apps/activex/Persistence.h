// Saving and loading with a form. The control keeps nothing between two runs: a host sets what it
// needs through the members. What is written is a mark, so that a stream of something else is told
// apart; forms that were saved with nothing at all load as well.
#pragma once

#include "Part.h"
// After windows.h:
#include <ocidl.h>

namespace marlune::activex {

class Persistence : public Part<IPersistStreamInit, IPersistPropertyBag, IPersistStorage> {
public:
    using Part::Part;

    HRESULT STDMETHODCALLTYPE GetClassID(CLSID* id) override;
    HRESULT STDMETHODCALLTYPE IsDirty() override { return S_FALSE; }
    HRESULT STDMETHODCALLTYPE InitNew() override { return S_OK; }

    HRESULT STDMETHODCALLTYPE Load(IStream* stream) override;
    HRESULT STDMETHODCALLTYPE Save(IStream* stream, BOOL clear) override;
    HRESULT STDMETHODCALLTYPE GetSizeMax(ULARGE_INTEGER* size) override;

    HRESULT STDMETHODCALLTYPE Load(IPropertyBag* bag, IErrorLog* log) override;
    HRESULT STDMETHODCALLTYPE Save(IPropertyBag* bag, BOOL clear, BOOL all) override;

    HRESULT STDMETHODCALLTYPE InitNew(IStorage* storage) override;
    HRESULT STDMETHODCALLTYPE Load(IStorage* storage) override;
    HRESULT STDMETHODCALLTYPE Save(IStorage* storage, BOOL same) override;
    HRESULT STDMETHODCALLTYPE SaveCompleted(IStorage* /*storage*/) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE HandsOffStorage() override { return S_OK; }
};

}  // namespace marlune::activex
