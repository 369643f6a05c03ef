// A program in C++ with the control on its form.
//
//   form_host                                  opens the form
//   form_host --port N --screenshot FILE.bmp   connects, downloads the waypoints, draws the form
//                                              into the file, and ends
#include <windows.h>
// After windows.h:
#include <shellapi.h>

#include <cwchar>
#include <string>

#include "Bitmap.h"
#include "Form.h"

namespace {

struct Options {
    int port = 0;
    std::wstring screenshot;
};

Options parse() {
    Options options;
    int count = 0;
    wchar_t** const words = CommandLineToArgvW(GetCommandLineW(), &count);
    for (int i = 1; i + 1 < count; i += 2) {
        if (std::wcscmp(words[i], L"--port") == 0) {
            options.port = static_cast<int>(std::wcstol(words[i + 1], nullptr, 10));
        } else if (std::wcscmp(words[i], L"--screenshot") == 0) {
            options.screenshot = words[i + 1];
        }
    }
    LocalFree(words);
    return options;
}

int takeScreenshot(Form& form, const std::wstring& path) {
    ShowWindow(form.window(), SW_SHOWNA);
    if (!form.connect()) {
        return 1;
    }
    form.downloadWaypoints();
    RECT client{};
    GetClientRect(form.window(), &client);
    Bitmap picture(client.right, client.bottom);
    picture.drawWindow(form.window());
    form.disconnect();
    return picture.save(path) ? 0 : 1;
}

int run(Form& form) {
    ShowWindow(form.window(), SW_SHOWDEFAULT);
    MSG message{};
    while (GetMessageW(&message, nullptr, 0, 0) > 0) {
        if (IsDialogMessageW(form.window(), &message) == FALSE) {
            TranslateMessage(&message);
            DispatchMessageW(&message);
        }
    }
    return static_cast<int>(message.wParam);
}

int runForm() {
    const Options options = parse();
    Form form;
    if (!form.create()) {
        MessageBoxW(nullptr, L"The control is not registered: regsvr32 marlune.ocx", L"GPS",
                    MB_OK | MB_ICONERROR);
        return 1;
    }
    if (options.port != 0) {
        form.setPort(options.port);
    }
    return options.screenshot.empty() ? run(form) : takeScreenshot(form, options.screenshot);
}

}  // namespace

int WINAPI WinMain(HINSTANCE /*instance*/, HINSTANCE /*before*/, LPSTR /*arguments*/,
                   int /*show*/) {
    OleInitialize(nullptr);
    const int result = runForm();  // every reference is let go before COM is
    OleUninitialize();
    return result;
}
