#include <langinfo.h>
#include <pwd.h>
#include <unistd.h>

#include <array>
#include <clocale>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string_view>
#include <system_error>

#include "host/MountedDrives_linux.h"
#include "host/MtpDrives_linux.h"
#include "host/Platform.h"
#include "host/UserFolders_posix.h"

namespace marlune::platform {
namespace {

std::string environment(const char* name) {
    const char* const value = std::getenv(name);
    return value == nullptr ? std::string() : value;
}

std::string homeFolder() {
    std::string home = environment("HOME");
    if (!home.empty()) {
        return home;
    }
    passwd user{};
    passwd* found = nullptr;
    std::array<char, 16384> strings{};
    if (::getpwuid_r(::getuid(), &user, strings.data(), strings.size(), &found) == 0 &&
        found != nullptr) {
        home = found->pw_dir;
    }
    return home;
}

}  // namespace

double localNow() {
    constexpr double kSecondsPerDay = 86400.0;
    constexpr double kUnixEpoch = 25569.0;  // 01/01/1970 in days since 30/12/1899
    timespec time{};
    ::clock_gettime(CLOCK_REALTIME, &time);
    tm local{};
    ::localtime_r(&time.tv_sec, &local);
    const double seconds = static_cast<double>(time.tv_sec + local.tm_gmtoff) +
                           static_cast<double>(time.tv_nsec) / 1e9;
    return kUnixEpoch + seconds / kSecondsPerDay;
}

// Asks a locale object of its own: the program's global locale stays what the program set.
char decimalSeparator() {
    const locale_t locale = ::newlocale(LC_NUMERIC_MASK, "", nullptr);
    if (locale == nullptr) {
        return '.';
    }
    const bool comma = std::string_view(::nl_langinfo_l(RADIXCHAR, locale)) == ",";
    ::freelocale(locale);
    return comma ? ',' : '.';
}

std::string lineBreak() {
    return "\n";
}

std::string documentsFolder() {
    const std::string home = homeFolder();
    std::string configuration = environment("XDG_CONFIG_HOME");
    if (!configuration.starts_with('/')) {
        configuration = home + "/.config";
    }
    std::ifstream file(configuration + "/user-dirs.dirs", std::ios::binary);
    const std::string userDirs{std::istreambuf_iterator<char>(file), {}};
    std::string folder = xdgDocumentsFolder(userDirs, home);
    return folder.empty() ? home + "/Documents" : folder;
}

std::string applicationFolder() {
    std::error_code error;
    return std::filesystem::read_symlink("/proc/self/exe", error).parent_path().string();
}

std::string portDevice(int number) {
    constexpr int kLastBuiltIn = 32;
    constexpr int kLast = 40;
    if (number < 1 || number > kLast) {
        return {};
    }
    return number <= kLastBuiltIn ? "/dev/ttyS" + std::to_string(number - 1)
                                  : "/dev/ttyUSB" + std::to_string(number - kLastBuiltIn - 1);
}

std::vector<Drive> mountedDrives() {
    std::vector<Drive> drives = drivesOfMounts("/proc/self/mounts", "/dev/disk");
    std::string runtimeFolder = environment("XDG_RUNTIME_DIR");
    if (runtimeFolder.empty()) {
        runtimeFolder = "/run/user/" + std::to_string(::getuid());
    }
    for (Drive& storage : drivesOfMtp(runtimeFolder)) {
        drives.push_back(std::move(storage));
    }
    return drives;
}

}  // namespace marlune::platform
