// The control's drawing where it is not active in place: on paper, in design mode, in a bitmap.
#pragma once

#include "Part.h"
#include "Picture.h"
// After windows.h:
#include <ocidl.h>
#include <wrl/client.h>

namespace marlune::activex {

class View : public Part<IViewObject2> {
public:
    View(IUnknown& whole, const Picture& picture) : Part(whole), picture_(picture) {}

    HRESULT STDMETHODCALLTYPE Draw(DWORD aspect, LONG index, void* aspectInfo,
                                   DVTARGETDEVICE* target, HDC targetContext, HDC context,
                                   const RECTL* bounds, const RECTL* windowBounds,
                                   BOOL(STDMETHODCALLTYPE* goOn)(ULONG_PTR),
                                   ULONG_PTR goOnArgument) override;
    HRESULT STDMETHODCALLTYPE GetColorSet(DWORD aspect, LONG index, void* aspectInfo,
                                          DVTARGETDEVICE* target, HDC targetContext,
                                          LOGPALETTE** colors) override;
    HRESULT STDMETHODCALLTYPE Freeze(DWORD aspect, LONG index, void* aspectInfo,
                                     DWORD* key) override;
    HRESULT STDMETHODCALLTYPE Unfreeze(DWORD key) override;
    HRESULT STDMETHODCALLTYPE SetAdvise(DWORD aspects, DWORD flags, IAdviseSink* sink) override;
    HRESULT STDMETHODCALLTYPE GetAdvise(DWORD* aspects, DWORD* flags, IAdviseSink** sink) override;
    HRESULT STDMETHODCALLTYPE GetExtent(DWORD aspect, LONG index, DVTARGETDEVICE* target,
                                        SIZEL* size) override;

private:
    const Picture& picture_;
    // Who wants to hear of changes of the drawing. It never changes; the request is only kept.
    DWORD adviseAspects_ = 0;
    DWORD adviseFlags_ = 0;
    Microsoft::WRL::ComPtr<IAdviseSink> adviseSink_;
};

}  // namespace marlune::activex
