// The form: the control at the upper left, buttons that call its members, and a list of the events
// that it raises.
#pragma once

#include <windows.h>
// After windows.h:
#include <wrl/client.h>

#include <memory>
#include <string>

#include "ControlSite.h"
#include "EventSink.h"
#include "marlune_com.h"

class Form {
public:
    Form();
    Form(const Form&) = delete;
    Form& operator=(const Form&) = delete;
    ~Form();

    // Makes the window with the control on it. False when the control is not registered.
    bool create();
    [[nodiscard]] HWND window() const { return window_; }
    void setPort(int number) { SetDlgItemInt(window_, kPort, static_cast<UINT>(number), FALSE); }

    // What the buttons do.
    bool connect();
    void downloadWaypoints();
    void disconnect();

private:
    enum Item { kPort = 100, kConnect, kWaypoints, kStop, kDisconnect, kList, kStatus };

    static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM first, LPARAM second);
    void createItems();
    HWND addItem(const wchar_t* kind, const wchar_t* text, DWORD style, RECT place, int id);
    void onCommand(int id);
    void onEvent(const std::wstring& name, DISPPARAMS& parameters);
    void showIdentity();
    // While a member runs, another transfer must not be started from the form.
    void setBusy(bool busy);

    HWND window_ = nullptr;
    std::unique_ptr<ControlSite> site_;
    std::unique_ptr<EventSink> sink_;
    Microsoft::WRL::ComPtr<_GpsControl> gps_;
};
