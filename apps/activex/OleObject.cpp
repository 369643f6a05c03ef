#include "OleObject.h"

// After windows.h:
#include <olectl.h>

#include <cstring>
#include <string_view>

#include "ConnectionPoint.h"
#include "marlune_com.h"

namespace marlune::activex {

HRESULT OleObject::SetClientSite(IOleClientSite* site) {
    inPlace_.setClientSite(site);
    return S_OK;
}

HRESULT OleObject::GetClientSite(IOleClientSite** site) {
    if (site == nullptr) {
        return E_POINTER;
    }
    *site = inPlace_.clientSite();
    if (*site != nullptr) {
        (*site)->AddRef();
    }
    return S_OK;
}

HRESULT OleObject::SetHostNames(LPCOLESTR /*application*/, LPCOLESTR /*document*/) {
    return S_OK;
}

HRESULT OleObject::Close(DWORD /*saveOption*/) {
    inPlace_.InPlaceDeactivate();
    return advises_ != nullptr ? advises_->SendOnClose() : S_OK;
}

HRESULT OleObject::SetMoniker(DWORD /*which*/, IMoniker* /*moniker*/) {
    return E_NOTIMPL;
}

HRESULT OleObject::GetMoniker(DWORD /*assign*/, DWORD /*which*/, IMoniker** moniker) {
    if (moniker != nullptr) {
        *moniker = nullptr;
    }
    return E_NOTIMPL;
}

HRESULT OleObject::InitFromData(IDataObject* /*data*/, BOOL /*creation*/, DWORD /*reserved*/) {
    return E_NOTIMPL;
}

HRESULT OleObject::GetClipboardData(DWORD /*reserved*/, IDataObject** data) {
    if (data != nullptr) {
        *data = nullptr;
    }
    return E_NOTIMPL;
}

HRESULT OleObject::DoVerb(LONG verb, MSG* /*message*/, IOleClientSite* /*site*/, LONG /*index*/,
                          HWND /*parent*/, LPCRECT /*position*/) {
    switch (verb) {
        case OLEIVERB_PRIMARY:
        case OLEIVERB_SHOW:
        case OLEIVERB_INPLACEACTIVATE:
        case OLEIVERB_OPEN:  // there is no window of its own to open it in
            return inPlace_.activate(false);
        case OLEIVERB_UIACTIVATE:
            return inPlace_.activate(true);
        case OLEIVERB_HIDE:
            inPlace_.hide();
            return S_OK;
        case OLEIVERB_PROPERTIES:        // it has none that a page could show
        case OLEIVERB_DISCARDUNDOSTATE:  // nor anything to undo
            return S_OK;
        default:
            return verb > 0 ? OLEOBJ_S_INVALIDVERB : E_NOTIMPL;
    }
}

HRESULT OleObject::EnumVerbs(IEnumOLEVERB** verbs) {
    return verbs == nullptr ? E_POINTER : OleRegEnumVerbs(__uuidof(::GpsControl), verbs);
}

HRESULT OleObject::GetUserClassID(CLSID* id) {
    if (id == nullptr) {
        return E_POINTER;
    }
    *id = __uuidof(::GpsControl);
    return S_OK;
}

HRESULT OleObject::GetUserType(DWORD form, LPOLESTR* text) {
    if (text == nullptr) {
        return E_POINTER;
    }
    // Not asked from the registry, which knows nothing of a control that a manifest describes.
    constexpr std::wstring_view kFull = L"Marlune GPS transfer control";
    constexpr std::wstring_view kShort = L"Marlune GPS";
    const std::wstring_view type = form == USERCLASSTYPE_FULL ? kFull : kShort;
    const std::size_t bytes = (type.size() + 1) * sizeof(wchar_t);
    *text = static_cast<LPOLESTR>(CoTaskMemAlloc(bytes));
    if (*text == nullptr) {
        return E_OUTOFMEMORY;
    }
    std::memcpy(*text, type.data(), bytes);  // both end with a zero
    return S_OK;
}

// Whatever size the container gives, the control keeps the size of its picture.
HRESULT OleObject::SetExtent(DWORD aspect, SIZEL* size) {
    if (aspect != DVASPECT_CONTENT) {
        return DV_E_DVASPECT;
    }
    if (size == nullptr) {
        return E_POINTER;
    }
    const SIZE own = picture_.himetric();
    if (size->cx != own.cx || size->cy != own.cy) {
        inPlace_.insistOnSize();
    }
    return S_OK;
}

HRESULT OleObject::GetExtent(DWORD aspect, SIZEL* size) {
    if (aspect != DVASPECT_CONTENT) {
        return DV_E_DVASPECT;
    }
    if (size == nullptr) {
        return E_POINTER;
    }
    *size = picture_.himetric();
    return S_OK;
}

HRESULT OleObject::Advise(IAdviseSink* sink, DWORD* connection) {
    const HRESULT held = advises_ != nullptr ? S_OK : CreateOleAdviseHolder(&advises_);
    return FAILED(held) ? held : advises_->Advise(sink, connection);
}

HRESULT OleObject::Unadvise(DWORD connection) {
    return advises_ != nullptr ? advises_->Unadvise(connection) : OLE_E_NOCONNECTION;
}

HRESULT OleObject::EnumAdvise(IEnumSTATDATA** sinks) {
    if (sinks == nullptr) {
        return E_POINTER;
    }
    *sinks = nullptr;
    return advises_ != nullptr ? advises_->EnumAdvise(sinks) : S_OK;
}

HRESULT OleObject::GetMiscStatus(DWORD aspect, DWORD* status) {
    if (status == nullptr) {
        return E_POINTER;
    }
    *status = aspect == DVASPECT_CONTENT ? kMiscStatus : 0;
    return S_OK;
}

HRESULT OleObject::SetColorScheme(LOGPALETTE* /*colors*/) {
    return E_NOTIMPL;
}

HRESULT OleObject::GetControlInfo(CONTROLINFO* info) {
    if (info == nullptr) {
        return E_POINTER;
    }
    *info = {sizeof *info, nullptr, 0, 0};
    return S_OK;
}

HRESULT OleObject::OnMnemonic(MSG* /*message*/) {
    return S_OK;
}

HRESULT OleObject::OnAmbientPropertyChange(DISPID /*property*/) {
    return S_OK;
}

HRESULT OleObject::FreezeEvents(BOOL freeze) {
    events_.freeze(freeze != FALSE);
    return S_OK;
}

}  // namespace marlune::activex
