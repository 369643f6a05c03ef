// The smallest container there can be: it places one control on a window.
#pragma once

#include <windows.h>
// After windows.h:
#include <ocidl.h>
#include <wrl/client.h>

class ControlSite : public IOleClientSite, public IOleInPlaceSite, public IOleInPlaceFrame {
public:
    // place: where the control is to stand on the form, and how large the form would have it.
    ControlSite(HWND form, RECT place) : form_(form), place_(place) {}
    ControlSite(const ControlSite&) = delete;
    ControlSite& operator=(const ControlSite&) = delete;
    // Lets the control go. The site must outlive every call of a member of the control.
    ~ControlSite();

    // Makes a control of that class and activates it on the form.
    HRESULT create(REFCLSID id);
    [[nodiscard]] IOleObject* control() const { return control_.Get(); }
    // Where the control stands: it may have insisted on a size of its own.
    [[nodiscard]] RECT place() const { return place_; }
    // Moves the control and gives it another size, as the user does when the form is designed.
    HRESULT setPlace(const RECT& place);

    // A site belongs to its form; nobody else holds it longer.
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** result) override;
    ULONG STDMETHODCALLTYPE AddRef() override { return 1; }
    ULONG STDMETHODCALLTYPE Release() override { return 1; }

    // IOleClientSite
    HRESULT STDMETHODCALLTYPE SaveObject() override { return S_OK; }
    HRESULT STDMETHODCALLTYPE GetMoniker(DWORD assign, DWORD which, IMoniker** moniker) override;
    HRESULT STDMETHODCALLTYPE GetContainer(IOleContainer** container) override;
    HRESULT STDMETHODCALLTYPE ShowObject() override { return S_OK; }
    HRESULT STDMETHODCALLTYPE OnShowWindow(BOOL show) override;
    HRESULT STDMETHODCALLTYPE RequestNewObjectLayout() override { return S_OK; }

    // IOleWindow, of the site and of the frame: both are the form.
    HRESULT STDMETHODCALLTYPE GetWindow(HWND* window) override;
    HRESULT STDMETHODCALLTYPE ContextSensitiveHelp(BOOL enter) override;

    // IOleInPlaceSite
    HRESULT STDMETHODCALLTYPE CanInPlaceActivate() override { return S_OK; }
    HRESULT STDMETHODCALLTYPE OnInPlaceActivate() override { return S_OK; }
    HRESULT STDMETHODCALLTYPE OnUIActivate() override { return S_OK; }
    HRESULT STDMETHODCALLTYPE GetWindowContext(IOleInPlaceFrame** frame,
                                               IOleInPlaceUIWindow** document, RECT* position,
                                               RECT* clip, OLEINPLACEFRAMEINFO* keys) override;
    HRESULT STDMETHODCALLTYPE Scroll(SIZE extent) override;
    HRESULT STDMETHODCALLTYPE OnUIDeactivate(BOOL undoable) override;
    HRESULT STDMETHODCALLTYPE OnInPlaceDeactivate() override { return S_OK; }
    HRESULT STDMETHODCALLTYPE DiscardUndoState() override { return S_OK; }
    HRESULT STDMETHODCALLTYPE DeactivateAndUndo() override { return S_OK; }
    HRESULT STDMETHODCALLTYPE OnPosRectChange(const RECT* position) override;

    // IOleInPlaceUIWindow and IOleInPlaceFrame: the form has no menus and tool bars to share.
    HRESULT STDMETHODCALLTYPE GetBorder(RECT* border) override;
    HRESULT STDMETHODCALLTYPE RequestBorderSpace(LPCBORDERWIDTHS widths) override;
    HRESULT STDMETHODCALLTYPE SetBorderSpace(LPCBORDERWIDTHS widths) override;
    HRESULT STDMETHODCALLTYPE SetActiveObject(IOleInPlaceActiveObject* object,
                                              LPCOLESTR name) override;
    HRESULT STDMETHODCALLTYPE InsertMenus(HMENU menu, OLEMENUGROUPWIDTHS* widths) override;
    HRESULT STDMETHODCALLTYPE SetMenu(HMENU menu, HOLEMENU shared, HWND active) override;
    HRESULT STDMETHODCALLTYPE RemoveMenus(HMENU menu) override;
    HRESULT STDMETHODCALLTYPE SetStatusText(LPCOLESTR text) override;
    HRESULT STDMETHODCALLTYPE EnableModeless(BOOL enable) override;
    HRESULT STDMETHODCALLTYPE TranslateAccelerator(MSG* message, WORD id) override;

private:
    HWND form_;
    RECT place_;
    Microsoft::WRL::ComPtr<IOleObject> control_;
    Microsoft::WRL::ComPtr<IOleInPlaceActiveObject> active_;
};
