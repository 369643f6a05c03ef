#include "ControlSite.h"

using Microsoft::WRL::ComPtr;

ControlSite::~ControlSite() {
    if (control_ != nullptr) {
        control_->Close(OLECLOSE_NOSAVE);
        control_->SetClientSite(nullptr);
    }
}

HRESULT ControlSite::create(REFCLSID id) {
    HRESULT done = CoCreateInstance(id, nullptr, CLSCTX_INPROC_SERVER, IID_PPV_ARGS(&control_));
    if (SUCCEEDED(done)) {
        done = control_->SetClientSite(this);
    }
    ComPtr<IPersistStreamInit> state;
    if (SUCCEEDED(done) && SUCCEEDED(control_.As(&state))) {
        done = state->InitNew();
    }
    return SUCCEEDED(done)
               ? control_->DoVerb(OLEIVERB_INPLACEACTIVATE, nullptr, this, 0, form_, &place_)
               : done;
}

HRESULT ControlSite::setPlace(const RECT& place) {
    ComPtr<IOleInPlaceObject> object;
    const HRESULT active = control_.As(&object);
    place_ = place;
    return SUCCEEDED(active) ? object->SetObjectRects(&place, &place) : active;
}

HRESULT ControlSite::QueryInterface(REFIID iid, void** result) {
    *result = nullptr;
    if (iid == __uuidof(IUnknown) || iid == __uuidof(IOleClientSite)) {
        *result = static_cast<IOleClientSite*>(this);
    } else if (iid == __uuidof(IOleWindow) || iid == __uuidof(IOleInPlaceSite)) {
        *result = static_cast<IOleInPlaceSite*>(this);
    } else if (iid == __uuidof(IOleInPlaceUIWindow) || iid == __uuidof(IOleInPlaceFrame)) {
        *result = static_cast<IOleInPlaceFrame*>(this);
    }
    return *result != nullptr ? S_OK : E_NOINTERFACE;
}

HRESULT ControlSite::GetMoniker(DWORD /*assign*/, DWORD /*which*/, IMoniker** moniker) {
    *moniker = nullptr;
    return E_NOTIMPL;
}

HRESULT ControlSite::GetContainer(IOleContainer** container) {
    *container = nullptr;
    return E_NOINTERFACE;
}

HRESULT ControlSite::OnShowWindow(BOOL /*show*/) {
    return S_OK;
}

HRESULT ControlSite::GetWindow(HWND* window) {
    *window = form_;
    return S_OK;
}

HRESULT ControlSite::ContextSensitiveHelp(BOOL /*enter*/) {
    return S_OK;
}

HRESULT ControlSite::GetWindowContext(IOleInPlaceFrame** frame, IOleInPlaceUIWindow** document,
                                      RECT* position, RECT* clip, OLEINPLACEFRAMEINFO* keys) {
    *frame = this;
    *document = nullptr;
    *position = place_;
    GetClientRect(form_, clip);
    keys->fMDIApp = FALSE;
    keys->hwndFrame = form_;
    keys->haccel = nullptr;
    keys->cAccelEntries = 0;
    return S_OK;
}

HRESULT ControlSite::Scroll(SIZE /*extent*/) {
    return S_FALSE;
}

HRESULT ControlSite::OnUIDeactivate(BOOL /*undoable*/) {
    return S_OK;
}

HRESULT ControlSite::OnPosRectChange(const RECT* position) {
    return setPlace(*position);
}

HRESULT ControlSite::GetBorder(RECT* border) {
    *border = {};
    return INPLACE_E_NOTOOLSPACE;
}

HRESULT ControlSite::RequestBorderSpace(LPCBORDERWIDTHS /*widths*/) {
    return INPLACE_E_NOTOOLSPACE;
}

HRESULT ControlSite::SetBorderSpace(LPCBORDERWIDTHS widths) {
    return widths == nullptr ? S_OK : INPLACE_E_NOTOOLSPACE;
}

HRESULT ControlSite::SetActiveObject(IOleInPlaceActiveObject* object, LPCOLESTR /*name*/) {
    active_ = object;
    return S_OK;
}

HRESULT ControlSite::InsertMenus(HMENU /*menu*/, OLEMENUGROUPWIDTHS* /*widths*/) {
    return E_NOTIMPL;
}

HRESULT ControlSite::SetMenu(HMENU /*menu*/, HOLEMENU /*shared*/, HWND /*active*/) {
    return E_NOTIMPL;
}

HRESULT ControlSite::RemoveMenus(HMENU /*menu*/) {
    return E_NOTIMPL;
}

HRESULT ControlSite::SetStatusText(LPCOLESTR /*text*/) {
    return S_OK;
}

HRESULT ControlSite::EnableModeless(BOOL /*enable*/) {
    return S_OK;
}

HRESULT ControlSite::TranslateAccelerator(MSG* /*message*/, WORD /*id*/) {
    return S_FALSE;
}
