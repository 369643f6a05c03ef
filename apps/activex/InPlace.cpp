#include "InPlace.h"

#include "Library.h"

namespace marlune::activex {
namespace {

bool hasSize(const RECT& rect, SIZE size) {
    return rect.right - rect.left == size.cx && rect.bottom - rect.top == size.cy;
}

}  // namespace

InPlace::~InPlace() {
    dropWindow();
}

void InPlace::setClientSite(IOleClientSite* site) {
    if (clientSite_.Get() != site) {
        InPlaceDeactivate();
    }
    clientSite_ = site;
}

HRESULT InPlace::activate(bool withFocus) {
    if (window_ == nullptr) {
        const HRESULT created = createWindow();
        if (FAILED(created)) {
            InPlaceDeactivate();
            return created;
        }
    }
    ShowWindow(window_, SW_SHOWNA);
    if (withFocus && !hasFocus_) {
        takeFocus();
    }
    return S_OK;
}

HRESULT InPlace::createWindow() {
    if (clientSite_ == nullptr || FAILED(clientSite_.As(&site_)) ||
        site_->CanInPlaceActivate() != S_OK) {
        site_.Reset();
        return E_FAIL;
    }
    site_->OnInPlaceActivate();
    HWND form = nullptr;
    RECT position{};
    RECT clip{};
    OLEINPLACEFRAMEINFO keys{};
    keys.cb = sizeof keys;
    site_->GetWindow(&form);
    site_->GetWindowContext(&frame_, &document_, &position, &clip, &keys);
    // The system's own window for pictures needs no class and no drawing here.
    window_ = CreateWindowExW(0, L"STATIC", L"", WS_CHILD | WS_CLIPSIBLINGS | SS_BITMAP, 0, 0,
                              picture_.pixels().cx, picture_.pixels().cy, form, nullptr,
                              libraryInstance(), nullptr);
    if (window_ == nullptr) {
        return HRESULT_FROM_WIN32(GetLastError());
    }
    SetWindowLongPtrW(window_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
    pictureProcedure_ = reinterpret_cast<WNDPROC>(
        SetWindowLongPtrW(window_, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&procedure)));
    SendMessageW(window_, STM_SETIMAGE, IMAGE_BITMAP, reinterpret_cast<LPARAM>(picture_.bitmap()));
    SetObjectRects(&position, &clip);
    clientSite_->ShowObject();
    return S_OK;
}

LRESULT CALLBACK InPlace::procedure(HWND window, UINT message, WPARAM first, LPARAM second) {
    auto& self = *reinterpret_cast<InPlace*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    if (message == WM_NCDESTROY && self.window_ == window) {
        self.window_ = nullptr;
    }
    return CallWindowProcW(self.pictureProcedure_, window, message, first, second);
}

void InPlace::dropWindow() {
    if (window_ != nullptr) {
        DestroyWindow(window_);
    }
}

void InPlace::takeFocus() {
    hasFocus_ = true;
    site_->OnUIActivate();
    SetFocus(window_);
    // Null is the name that an object without menus of its own gives.
    if (frame_ != nullptr) {
        frame_->SetActiveObject(this, nullptr);
        frame_->SetBorderSpace(nullptr);
    }
    if (document_ != nullptr) {
        document_->SetActiveObject(this, nullptr);
        document_->SetBorderSpace(nullptr);
    }
}

void InPlace::hide() {
    UIDeactivate();
    if (window_ != nullptr) {
        ShowWindow(window_, SW_HIDE);
    }
    if (clientSite_ != nullptr) {
        clientSite_->OnShowWindow(FALSE);
    }
}

RECT InPlace::ownRect() const {
    const SIZE size = picture_.pixels();
    return {corner_.x, corner_.y, corner_.x + size.cx, corner_.y + size.cy};
}

void InPlace::insistOnSize() {
    if (site_ != nullptr && !insists_) {
        insists_ = true;
        const RECT own = ownRect();
        site_->OnPosRectChange(&own);
        insists_ = false;
    }
}

void InPlace::enableContainer(bool enabled) {
    if (frame_ != nullptr) {
        const Microsoft::WRL::ComPtr<IOleInPlaceFrame> frame = frame_;
        frame->EnableModeless(enabled ? TRUE : FALSE);
    }
}

HRESULT InPlace::GetWindow(HWND* window) {
    if (window == nullptr) {
        return E_POINTER;
    }
    *window = window_;
    return window_ != nullptr ? S_OK : E_FAIL;
}

HRESULT InPlace::ContextSensitiveHelp(BOOL /*enter*/) {
    return S_OK;
}

HRESULT InPlace::InPlaceDeactivate() {
    UIDeactivate();
    dropWindow();
    frame_.Reset();
    document_.Reset();
    const Microsoft::WRL::ComPtr<IOleInPlaceSite> site = std::move(site_);
    if (site != nullptr) {
        site->OnInPlaceDeactivate();
    }
    return S_OK;
}

HRESULT InPlace::UIDeactivate() {
    if (!hasFocus_) {
        return S_OK;
    }
    hasFocus_ = false;
    if (frame_ != nullptr) {
        frame_->SetActiveObject(nullptr, nullptr);
    }
    if (document_ != nullptr) {
        document_->SetActiveObject(nullptr, nullptr);
    }
    site_->OnUIDeactivate(FALSE);
    return S_OK;
}

HRESULT InPlace::SetObjectRects(LPCRECT position, LPCRECT clip) {
    if (position == nullptr) {
        return E_POINTER;
    }
    corner_ = {position->left, position->top};
    const RECT own = ownRect();
    if (window_ != nullptr) {
        moveWindow(own, clip);
    }
    if (!hasSize(*position, picture_.pixels())) {
        insistOnSize();
    }
    return S_OK;
}

void InPlace::moveWindow(const RECT& place, LPCRECT clip) {
    RECT visible = place;
    if (clip != nullptr) {
        IntersectRect(&visible, &place, clip);
    }
    OffsetRect(&visible, -place.left, -place.top);
    SetWindowRgn(window_, CreateRectRgnIndirect(&visible), TRUE);  // the window owns the region
    SetWindowPos(window_, nullptr, place.left, place.top, place.right - place.left,
                 place.bottom - place.top, SWP_NOZORDER | SWP_NOACTIVATE);
}

HRESULT InPlace::ReactivateAndUndo() {
    return E_NOTIMPL;
}

HRESULT InPlace::TranslateAccelerator(MSG* /*message*/) {
    return S_FALSE;
}

HRESULT InPlace::OnFrameWindowActivate(BOOL /*activate*/) {
    return S_OK;
}

HRESULT InPlace::OnDocWindowActivate(BOOL /*activate*/) {
    return S_OK;
}

HRESULT InPlace::ResizeBorder(LPCRECT /*border*/, IOleInPlaceUIWindow* /*window*/, BOOL /*frame*/) {
    return S_OK;
}

HRESULT InPlace::EnableModeless(BOOL /*enable*/) {
    return S_OK;
}

}  // namespace marlune::activex
