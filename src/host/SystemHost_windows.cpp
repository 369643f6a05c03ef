#include <windows.h>
// After windows.h:
#include <winnetwk.h>

#include <array>
#include <filesystem>

#include "base/FilePath.h"
#include "base/WideText_windows.h"
#include "host/Platform.h"

namespace marlune::platform {
namespace {

// The texts that the system fills in here are names and paths of this length at most.
using WideBuffer = std::array<wchar_t, MAX_PATH + 1>;

// The drive's remote name, for a drive that stands for a network folder.
std::string shareName(const wchar_t* device) {
    WideBuffer name{};
    auto length = static_cast<DWORD>(name.size() - 1);
    return WNetGetConnectionW(device, name.data(), &length) == NO_ERROR ? fromWide(name.data())
                                                                        : std::string();
}

void askVolume(const wchar_t* root, Drive& drive) {
    WideBuffer label{};
    WideBuffer fileSystem{};
    DWORD serial = 0;
    drive.isReady = GetVolumeInformationW(root, label.data(), MAX_PATH, &serial, nullptr, nullptr,
                                          fileSystem.data(), MAX_PATH) != FALSE;
    if (!drive.isReady) {
        return;
    }
    drive.volumeName = fromWide(label.data());
    drive.fileSystem = fromWide(fileSystem.data());
    drive.serialNumber = std::to_string(static_cast<std::int32_t>(serial));
    ULARGE_INTEGER available{};
    ULARGE_INTEGER total{};
    ULARGE_INTEGER free{};
    if (GetDiskFreeSpaceExW(root, &available, &total, &free) != FALSE) {
        drive.availableSpace = available.QuadPart;
        drive.totalSize = total.QuadPart;
        drive.freeSpace = free.QuadPart;
    }
}

Drive driveOf(wchar_t letter) {
    const std::wstring device{letter, L':'};
    const std::wstring root = device + L'\\';
    const UINT kind = GetDriveTypeW(root.c_str());
    Drive drive;
    drive.driveLetter = static_cast<char>(letter);
    drive.path = fromWide(device);
    drive.rootFolder = fromWide(root);
    // The numbers that scripts know: 1 removable, 2 fixed, 3 network, 4 CD-ROM, 5 RAM disk.
    drive.driveType = std::to_string(kind == DRIVE_UNKNOWN ? 0 : kind - 1);
    if (kind == DRIVE_REMOTE) {
        drive.shareName = shareName(device.c_str());
    }
    askVolume(root.c_str(), drive);
    return drive;
}

}  // namespace

double localNow() {
    constexpr double kTicksPerDay = 864e9;        // of 100 ns
    constexpr double kFileTimeEpoch = -109205.0;  // 01/01/1601 in days since 30/12/1899
    SYSTEMTIME local{};
    GetLocalTime(&local);
    FILETIME time{};
    SystemTimeToFileTime(&local, &time);
    const ULARGE_INTEGER ticks{{time.dwLowDateTime, time.dwHighDateTime}};
    return kFileTimeEpoch + static_cast<double>(ticks.QuadPart) / kTicksPerDay;
}

char decimalSeparator() {
    std::array<wchar_t, 5> separator{};
    GetLocaleInfoW(LOCALE_USER_DEFAULT, LOCALE_SDECIMAL, separator.data(),
                   static_cast<int>(separator.size()));
    return separator[0] == L',' ? ',' : '.';
}

std::string lineBreak() {
    return "\r\n";
}

std::string documentsFolder() {
    HKEY key = nullptr;
    if (RegOpenKeyExA(HKEY_CURRENT_USER,
                      "Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\Shell Folders", 0,
                      KEY_READ, &key) != ERROR_SUCCESS) {
        return {};
    }
    std::array<char, 3 * MAX_PATH + 1> folder{};  // up to three bytes a character, and a zero
    auto size = static_cast<DWORD>(folder.size() - 1);
    const LSTATUS found = RegQueryValueExA(key, "Personal", nullptr, nullptr,
                                           reinterpret_cast<BYTE*>(folder.data()), &size);
    RegCloseKey(key);
    return found == ERROR_SUCCESS ? fromUserCodePage(folder.data()) : std::string();
}

std::string applicationFolder() {
    std::array<wchar_t, 32768> program{};  // the longest path there is
    GetModuleFileNameW(nullptr, program.data(), static_cast<DWORD>(program.size()));
    return pathText(std::filesystem::path(program.data()).parent_path());
}

std::string portDevice(int number) {
    return "\\\\.\\COM" + std::to_string(number);
}

std::vector<Drive> mountedDrives() {
    // A drive without a medium answers with an error instead of asking the user for one.
    DWORD before = 0;
    SetThreadErrorMode(SEM_FAILCRITICALERRORS, &before);
    std::vector<Drive> drives;
    const DWORD present = GetLogicalDrives();
    for (int i = 0; i < 26; ++i) {
        if ((present >> i & 1U) != 0) {
            drives.push_back(driveOf(static_cast<wchar_t>(L'A' + i)));
        }
    }
    SetThreadErrorMode(before, nullptr);
    return drives;
}

}  // namespace marlune::platform
