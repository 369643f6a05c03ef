#include "Form.h"

#include <array>

namespace {

constexpr wchar_t kClass[] = L"MarluneForm";
constexpr RECT kWindow = {0, 0, 560, 330};
constexpr RECT kControl = {16, 14, 16 + 32, 14 + 32};

// The control reads the line without a look at the thread's messages. A handler that gives them
// their turn keeps the form painted, and lets the user press Stop.
void processMessages(HWND form) {
    MSG message{};
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != FALSE) {
        if (message.message == WM_QUIT) {
            PostQuitMessage(static_cast<int>(message.wParam));  // it is for the program's own loop
            return;
        }
        if (IsDialogMessageW(form, &message) == FALSE) {
            TranslateMessage(&message);
            DispatchMessageW(&message);
        }
    }
}

}  // namespace

Form::Form() {
    WNDCLASSW kind{};
    kind.lpfnWndProc = procedure;
    kind.hInstance = GetModuleHandleW(nullptr);
    kind.hCursor = LoadCursorW(nullptr, reinterpret_cast<LPCWSTR>(IDC_ARROW));
    kind.hbrBackground = GetSysColorBrush(COLOR_BTNFACE);
    kind.lpszClassName = kClass;
    RegisterClassW(&kind);
}

Form::~Form() {
    // The control goes before the window that it stands on.
    sink_.reset();
    gps_.Reset();
    site_.reset();
    if (window_ != nullptr) {
        SetWindowLongPtrW(window_, GWLP_USERDATA, 0);
        DestroyWindow(window_);
    }
}

bool Form::create() {
    RECT frame = kWindow;
    constexpr DWORD kStyle = WS_OVERLAPPEDWINDOW;
    AdjustWindowRect(&frame, kStyle, FALSE);
    window_ = CreateWindowW(kClass, L"GPS", kStyle, CW_USEDEFAULT, CW_USEDEFAULT,
                            frame.right - frame.left, frame.bottom - frame.top, nullptr, nullptr,
                            GetModuleHandleW(nullptr), nullptr);
    SetWindowLongPtrW(window_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
    createItems();
    site_ = std::make_unique<ControlSite>(window_, kControl);
    sink_ = std::make_unique<EventSink>(
        [this](const std::wstring& name, DISPPARAMS& parameters) { onEvent(name, parameters); });
    return SUCCEEDED(site_->create(__uuidof(GpsControl))) &&
           SUCCEEDED(site_->control()->QueryInterface(IID_PPV_ARGS(&gps_))) &&
           SUCCEEDED(sink_->connect(gps_.Get()));
}

void Form::createItems() {
    addItem(L"STATIC", L"COM", 0, {70, 22, 100, 40}, -1);
    addItem(L"EDIT", L"3", WS_BORDER | ES_NUMBER, {104, 19, 136, 41}, kPort);
    addItem(L"BUTTON", L"Connect", 0, {150, 17, 240, 43}, kConnect);
    addItem(L"BUTTON", L"Waypoints", 0, {248, 17, 338, 43}, kWaypoints);
    addItem(L"BUTTON", L"Stop", 0, {346, 17, 436, 43}, kStop);
    addItem(L"BUTTON", L"Disconnect", 0, {444, 17, 544, 43}, kDisconnect);
    addItem(L"LISTBOX", L"", WS_BORDER | WS_VSCROLL | LBS_NOINTEGRALHEIGHT, {16, 60, 544, 290},
            kList);
    addItem(L"STATIC", L"", 0, {16, 300, 544, 320}, kStatus);
}

HWND Form::addItem(const wchar_t* kind, const wchar_t* text, DWORD style, RECT place, int id) {
    const HWND item = CreateWindowW(kind, text, WS_CHILD | WS_VISIBLE | style, place.left,
                                    place.top, place.right - place.left, place.bottom - place.top,
                                    window_, reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)),
                                    GetModuleHandleW(nullptr), nullptr);
    SendMessageW(item, WM_SETFONT, reinterpret_cast<WPARAM>(GetStockObject(DEFAULT_GUI_FONT)), 0);
    return item;
}

bool Form::connect() {
    VARIANT_BOOL connected = VARIANT_FALSE;
    const BSTR family = SysAllocString(L"GRM");
    gps_->put_SetGpsMark(family);
    SysFreeString(family);
    gps_->put_setNumPort(static_cast<numPort>(GetDlgItemInt(window_, kPort, nullptr, FALSE)));
    setBusy(true);
    gps_->gpsConnect(&connected);
    setBusy(false);
    if (connected != VARIANT_FALSE) {
        showIdentity();
    }
    return connected != VARIANT_FALSE;
}

void Form::showIdentity() {
    BSTR identity = nullptr;
    if (SUCCEEDED(gps_->get_getIdent(&identity))) {
        SetDlgItemTextW(window_, kStatus, identity);
        SysFreeString(identity);
    }
}

void Form::downloadWaypoints() {
    // The result says nothing over a serial line; the events tell.
    VARIANT_BOOL ignored = VARIANT_FALSE;
    setBusy(true);
    gps_->getWaypts(&ignored);
    setBusy(false);
}

void Form::setBusy(bool busy) {
    for (const int item : {kConnect, kWaypoints, kDisconnect}) {
        EnableWindow(GetDlgItem(window_, item), busy ? FALSE : TRUE);
    }
}

void Form::disconnect() {
    VARIANT empty{};
    gps_->gpsDisconnect(&empty);
    SetDlgItemTextW(window_, kStatus, L"");
}

void Form::onEvent(const std::wstring& name, DISPPARAMS& parameters) {
    std::wstring line = name;
    for (const std::wstring& value : parameterTexts(parameters)) {
        line += L"   " + value;
    }
    const auto at = SendDlgItemMessageW(window_, kList, LB_ADDSTRING, 0,
                                        reinterpret_cast<LPARAM>(line.c_str()));
    SendDlgItemMessageW(window_, kList, LB_SETTOPINDEX, static_cast<WPARAM>(at), 0);
    processMessages(window_);
}

void Form::onCommand(int id) {
    switch (id) {
        case kConnect:
            connect();
            break;
        case kWaypoints:
            downloadWaypoints();
            break;
        case kStop: {
            // Comes while the download runs, from inside the handler of an event.
            VARIANT empty{};
            gps_->StopTransfert(&empty);
            break;
        }
        case kDisconnect:
            disconnect();
            break;
        default:
            break;
    }
}

LRESULT CALLBACK Form::procedure(HWND window, UINT message, WPARAM first, LPARAM second) {
    auto* const form = reinterpret_cast<Form*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    switch (message) {
        case WM_COMMAND:
            if (form != nullptr && HIWORD(first) == BN_CLICKED) {
                form->onCommand(LOWORD(first));
            }
            return 0;
        case WM_CLOSE:
            // Ends the program's message loop. A member that is running now returns soon.
            PostQuitMessage(0);
            return 0;
        default:
            return DefWindowProcW(window, message, first, second);
    }
}
