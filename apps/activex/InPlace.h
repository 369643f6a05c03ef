// The control alive on a container's form: a child window of the form that shows the picture, and
// the two grades of activity, active and with the user's focus.
#pragma once

#include "Part.h"
#include "Picture.h"
// After windows.h:
#include <ocidl.h>
#include <wrl/client.h>

namespace marlune::activex {

class InPlace : public Part<IOleInPlaceObject, IOleInPlaceActiveObject> {
public:
    InPlace(IUnknown& whole, const Picture& picture) : Part(whole), picture_(picture) {}
    ~InPlace();

    // The container's place for the control; null when there is none.
    void setClientSite(IOleClientSite* site) { clientSite_ = site; }
    [[nodiscard]] IOleClientSite* clientSite() const { return clientSite_.Get(); }

    // What a verb asks for.
    HRESULT activate(bool withFocus);
    void hide();
    // Tells the container, which has given the control another size, that it keeps its own.
    void insistOnSize();

    // IOleWindow
    HRESULT STDMETHODCALLTYPE GetWindow(HWND* window) override;
    HRESULT STDMETHODCALLTYPE ContextSensitiveHelp(BOOL enter) override;

    // IOleInPlaceObject
    HRESULT STDMETHODCALLTYPE InPlaceDeactivate() override;
    HRESULT STDMETHODCALLTYPE UIDeactivate() override;
    HRESULT STDMETHODCALLTYPE SetObjectRects(LPCRECT position, LPCRECT clip) override;
    HRESULT STDMETHODCALLTYPE ReactivateAndUndo() override;

    // IOleInPlaceActiveObject. The control takes no keys.
    HRESULT STDMETHODCALLTYPE TranslateAccelerator(MSG* message) override;
    HRESULT STDMETHODCALLTYPE OnFrameWindowActivate(BOOL activate) override;
    HRESULT STDMETHODCALLTYPE OnDocWindowActivate(BOOL activate) override;
    HRESULT STDMETHODCALLTYPE ResizeBorder(LPCRECT border, IOleInPlaceUIWindow* window,
                                           BOOL frame) override;
    HRESULT STDMETHODCALLTYPE EnableModeless(BOOL enable) override;

private:
    HRESULT createWindow();
    void takeFocus();
    [[nodiscard]] RECT ownRect() const;

    const Picture& picture_;
    Microsoft::WRL::ComPtr<IOleClientSite> clientSite_;
    // The following stand only while the control is active.
    Microsoft::WRL::ComPtr<IOleInPlaceSite> site_;
    Microsoft::WRL::ComPtr<IOleInPlaceFrame> frame_;
    Microsoft::WRL::ComPtr<IOleInPlaceUIWindow> document_;
    HWND window_ = nullptr;
    POINT corner_{};  // of the window in the form
    bool hasFocus_ = false;
};

}  // namespace marlune::activex
