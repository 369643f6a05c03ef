#include "InPlace.h"

#include "Library.h"

namespace marlune::activex {
namespace {

bool hasSize(const RECT& rect, SIZE size) {
    return rect.right - rect.left == size.cx && rect.bottom - rect.top == size.cy;
}

}  // namespace

InPlace::~InPlace() {
    if (window_ != nullptr) {
        DestroyWindow(window_);
    }
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
    SendMessageW(window_, STM_SETIMAGE, IMAGE_BITMAP, reinterpret_cast<LPARAM>(picture_.bitmap()));
    SetObjectRects(&position, &clip);
    clientSite_->ShowObject();
    return S_OK;
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
    if (site_ != nullptr) {
        const RECT own = ownRect();
        site_->OnPosRectChange(&own);
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
    const HWND window = window_;
    window_ = nullptr;
    if (window != nullptr) {
        DestroyWindow(window);
    }
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
    RECT visible = own;
    if (clip != nullptr) {
        IntersectRect(&visible, &own, clip);
    }
    OffsetRect(&visible, -own.left, -own.top);
    SetWindowRgn(window_, CreateRectRgnIndirect(&visible), TRUE);  // the window owns the region
    SetWindowPos(window_, nullptr, own.left, own.top, own.right - own.left, own.bottom - own.top,
                 SWP_NOZORDER | SWP_NOACTIVATE);
    if (!hasSize(*position, picture_.pixels())) {
        insistOnSize();
    }
    return S_OK;
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
