#include "FormHost.h"

#include <windows.h>
// After windows.h:
#include <commdlg.h>

#include <array>

#include "InPlace.h"
#include "base/WideText_windows.h"

namespace marlune::activex {
namespace {

UINT iconStyle(BoxIcon icon) {
    switch (icon) {
        case BoxIcon::critical:
            return MB_ICONERROR;
        case BoxIcon::exclamation:
            return MB_ICONEXCLAMATION;
        case BoxIcon::information:
            return MB_ICONINFORMATION;
        case BoxIcon::none:
            break;
    }
    return 0;
}

double patience() {
    constexpr double kSeconds = 30;
    for (const HKEY root : {HKEY_CURRENT_USER, HKEY_LOCAL_MACHINE}) {
        DWORD seconds = 0;
        DWORD size = sizeof seconds;
        if (RegGetValueW(root, L"Software\\Marlune", L"Patience", RRF_RT_REG_DWORD, nullptr,
                         &seconds, &size) == ERROR_SUCCESS) {
            return seconds;
        }
    }
    return kSeconds;
}

// The container's other windows take no input while one lives.
class Modal {
public:
    explicit Modal(InPlace& inPlace) : inPlace_(inPlace) { inPlace_.enableContainer(false); }
    Modal(const Modal&) = delete;
    Modal& operator=(const Modal&) = delete;
    ~Modal() { inPlace_.enableContainer(true); }

private:
    InPlace& inPlace_;
};

}  // namespace

FormHost::FormHost(InPlace& inPlace) : inPlace_(inPlace) {
    setPatience(patience());
}

void FormHost::messageBox(const std::string& text, BoxIcon icon) {
    const Modal modal(inPlace_);
    MessageBoxW(GetActiveWindow(), toWide(text).c_str(), L"", MB_OK | iconStyle(icon));
}

std::string FormHost::chooseFile(const std::string& defaultExtension,
                                 const std::string& startFolder) {
    std::array<wchar_t, 32768> path{};  // the longest path there is
    const std::wstring extension = toWide(defaultExtension);
    const std::wstring folder = toWide(startFolder);
    const std::wstring all{L"*.*\0*.*\0", 8};
    OPENFILENAMEW dialog{};
    dialog.lStructSize = sizeof dialog;
    dialog.hwndOwner = GetActiveWindow();
    dialog.lpstrFilter = all.c_str();
    dialog.lpstrFile = path.data();
    dialog.nMaxFile = static_cast<DWORD>(path.size());
    dialog.lpstrInitialDir = folder.empty() ? nullptr : folder.c_str();
    dialog.lpstrDefExt = extension.empty() ? nullptr : extension.c_str();
    dialog.Flags = OFN_EXPLORER | OFN_FILEMUSTEXIST | OFN_HIDEREADONLY | OFN_NOCHANGEDIR;
    const Modal modal(inPlace_);
    return GetOpenFileNameW(&dialog) != FALSE ? fromWide(path.data()) : std::string();
}

void FormHost::setMousePointer(MousePointer pointer) {
    const auto* const shape = pointer == MousePointer::hourglass ? IDC_WAIT : IDC_ARROW;
    SetCursor(LoadCursorW(nullptr, reinterpret_cast<LPCWSTR>(shape)));
}

void FormHost::processEvents() {
    MSG message{};
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != FALSE) {
        if (message.message == WM_QUIT) {
            // It is for the program's own loop, which takes it when the running member has ended.
            PostQuitMessage(static_cast<int>(message.wParam));
            return;
        }
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
}

void FormHost::letWindowsLive() {
    if (betweenReads_ || HIWORD(GetQueueStatus(QS_PAINT | QS_TIMER)) == 0) {
        return;
    }
    betweenReads_ = true;
    for (const UINT kind : {UINT{WM_PAINT}, UINT{WM_TIMER}}) {
        MSG message{};
        // One of each at a time: a window that never says it is painted must not keep the line.
        if (PeekMessageW(&message, nullptr, kind, kind, PM_REMOVE) != FALSE) {
            DispatchMessageW(&message);
        }
    }
    betweenReads_ = false;
}

bool FormHost::stopRequested() {
    // Asked for every byte: a look at the messages costs more than the byte does.
    constexpr DWORD kLookEveryMilliseconds = 20;
    if (const DWORD now = GetTickCount(); now - lookedAt_ >= kLookEveryMilliseconds) {
        lookedAt_ = now;
        letWindowsLive();
        MSG message{};
        quits_ = PeekMessageW(&message, nullptr, WM_QUIT, WM_QUIT, PM_NOREMOVE) != FALSE;
    }
    return stopped_ || quits_ || SystemHost::stopRequested();
}

}  // namespace marlune::activex
