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

    // The container's place for the control; null when there is none. What was active on another
    // one is not any more.
    void setClientSite(IOleClientSite* site);
    [[nodiscard]] IOleClientSite* clientSite() const { return clientSite_.Get(); }

    // What a verb asks for.
    HRESULT activate(bool withFocus);
    void hide();
    // Tells the container, which has given the control another size, that it keeps its own. A
    // container that insists as well has its way: the window stays as it is.
    void insistOnSize();
    // Around what the user must answer first, as a message box: the container disables its other
    // windows, and enables them again.
    void enableContainer(bool enabled);

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
    // Watches for the end of the window, which a form takes along without a word.
    static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM first, LPARAM second);
    HRESULT createWindow();
    void dropWindow();
    void moveWindow(const RECT& place, LPCRECT clip);
    void takeFocus();
    [[nodiscard]] RECT ownRect() const;

    const Picture& picture_;
    Microsoft::WRL::ComPtr<IOleClientSite> clientSite_;
    // The following stand only while the control is active.
    Microsoft::WRL::ComPtr<IOleInPlaceSite> site_;
    Microsoft::WRL::ComPtr<IOleInPlaceFrame> frame_;
    Microsoft::WRL::ComPtr<IOleInPlaceUIWindow> document_;
    HWND window_ = nullptr;
    WNDPROC pictureProcedure_ = nullptr;
    POINT corner_{};  // of the window in the form
    bool hasFocus_ = false;
    bool insists_ = false;
};

}  // namespace marlune::activex
