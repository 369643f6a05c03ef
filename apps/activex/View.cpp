#include "View.h"

namespace marlune::activex {

HRESULT View::Draw(DWORD aspect, LONG /*index*/, void* /*aspectInfo*/, DVTARGETDEVICE* /*target*/,
                   HDC /*targetContext*/, HDC context, const RECTL* bounds,
                   const RECTL* /*windowBounds*/, BOOL(STDMETHODCALLTYPE* /*goOn*/)(ULONG_PTR),
                   ULONG_PTR /*goOnArgument*/) {
    if (aspect != DVASPECT_CONTENT) {
        return DV_E_DVASPECT;
    }
    if (bounds == nullptr) {
        return E_INVALIDARG;
    }
    picture_.draw(context, *bounds);
    return S_OK;
}

HRESULT View::GetColorSet(DWORD /*aspect*/, LONG /*index*/, void* /*aspectInfo*/,
                          DVTARGETDEVICE* /*target*/, HDC /*targetContext*/, LOGPALETTE** colors) {
    if (colors == nullptr) {
        return E_POINTER;
    }
    *colors = nullptr;
    return S_FALSE;
}

HRESULT View::Freeze(DWORD /*aspect*/, LONG /*index*/, void* /*aspectInfo*/, DWORD* /*key*/) {
    return E_NOTIMPL;
}

HRESULT View::Unfreeze(DWORD /*key*/) {
    return E_NOTIMPL;
}

HRESULT View::SetAdvise(DWORD aspects, DWORD flags, IAdviseSink* sink) {
    adviseAspects_ = aspects;
    adviseFlags_ = flags;
    adviseSink_ = sink;
    if (sink != nullptr && (flags & ADVF_PRIMEFIRST) != 0) {
        sink->OnViewChange(DVASPECT_CONTENT, -1);
    }
    return S_OK;
}

HRESULT View::GetAdvise(DWORD* aspects, DWORD* flags, IAdviseSink** sink) {
    if (aspects != nullptr) {
        *aspects = adviseAspects_;
    }
    if (flags != nullptr) {
        *flags = adviseFlags_;
    }
    return sink == nullptr ? S_OK : adviseSink_.CopyTo(sink);
}

HRESULT View::GetExtent(DWORD aspect, LONG /*index*/, DVTARGETDEVICE* /*target*/, SIZEL* size) {
    if (aspect != DVASPECT_CONTENT) {
        return DV_E_DVASPECT;
    }
    if (size == nullptr) {
        return E_POINTER;
    }
    *size = picture_.himetric();
    return S_OK;
}

}  // namespace marlune::activex
