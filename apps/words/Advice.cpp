#include "words/Advice.h"

#include <grp.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <filesystem>
#include <fstream>
#include <optional>
#include <system_error>

#include "control/Families.h"
#include "words/Phrases.h"

namespace marlune::words {
namespace {

namespace fs = std::filesystem;

using Buffer = std::array<char, 16384>;

std::string firstLine(const fs::path& file) {
    std::ifstream in(file);
    std::string line;
    std::getline(in, line);
    return line;
}

std::string groupName(gid_t id) {
    group entry{};
    group* found = nullptr;
    Buffer strings{};
    return getgrgid_r(id, &entry, strings.data(), strings.size(), &found) == 0 && found != nullptr
               ? found->gr_name
               : std::to_string(id);
}

std::string userName(uid_t id) {
    passwd entry{};
    passwd* found = nullptr;
    Buffer strings{};
    return getpwuid_r(id, &entry, strings.data(), strings.size(), &found) == 0 && found != nullptr
               ? found->pw_name
               : std::to_string(id);
}

std::string denial(const std::string& device, const Speech& say) {
    constexpr mode_t kGroupMay = S_IRGRP | S_IWGRP;
    struct stat status = {};
    if (stat(device.c_str(), &status) != 0) {
        return {};
    }
    const std::string group = groupName(status.st_gid);
    return (status.st_mode & kGroupMay) == kGroupMay
               ? say(phrase::kJoinGroup, {device, group})
               : say(phrase::kRootOnly, {device, userName(status.st_uid), group});
}

// Whether one of the process's descriptors is the device, as far as the system lets us look.
bool holds(const fs::path& process, const fs::path& device) {
    std::error_code error;
    for (fs::directory_iterator each(process / "fd", error), end; !error && each != end;
         each.increment(error)) {
        std::error_code ignored;
        if (fs::read_symlink(each->path(), ignored) == device) {
            return true;
        }
    }
    return false;
}

bool isNumber(const std::string& text) {
    return std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

std::string holder(const std::string& device, const Speech& say) {
    std::error_code error;
    const fs::path real = fs::canonical(device, error);
    const std::string self = std::to_string(getpid());
    for (fs::directory_iterator each("/proc", error), end; !error && each != end;
         each.increment(error)) {
        const std::string number = each->path().filename().string();
        if (isNumber(number) && number != self && holds(each->path(), real)) {
            return say(phrase::kHeldBy, {device, firstLine(each->path() / "comm"), number});
        }
    }
    return say(phrase::kHeldBySomebody, {device});
}

// The file of a Garmin unit on the bus, "/dev/bus/usb/001/005"; nothing when there is none.
std::optional<std::string> usbUnit() {
    std::error_code error;
    for (fs::directory_iterator each("/sys/bus/usb/devices", error), end; !error && each != end;
         each.increment(error)) {
        const auto value = [&](const char* name) { return firstLine(each->path() / name); };
        if (value("idVendor") == "091e" && value("idProduct") == "0003") {
            const auto padded = [](const std::string& number) {
                return std::string(3 - std::min<std::size_t>(number.size(), 3), '0') + number;
            };
            return "/dev/bus/usb/" + padded(value("busnum")) + "/" + padded(value("devnum"));
        }
    }
    return std::nullopt;
}

std::vector<std::string> usbAdvice(const Speech& say) {
    const auto unit = usbUnit();
    if (!unit) {
        return {say(phrase::kNoUsbUnit)};
    }
    const bool denied = access(unit->c_str(), R_OK | W_OK) != 0 && errno == EACCES;
    std::vector<std::string> advice = {
        say(denied ? phrase::kUsbDenied : phrase::kUsbBusy, {*unit})};
    if (std::error_code ignored; fs::exists("/sys/module/garmin_gps", ignored)) {
        advice.push_back(say(phrase::kKernelDriver));
    }
    return advice;
}

std::vector<std::string> notOpened(const ConnectionReport& report, const Speech& say) {
    if (report.protocolCode.find("USB") != std::string::npos) {
        return usbAdvice(say);
    }
    if (report.device.empty()) {
        return {say(phrase::kNoDeviceOfNumber)};
    }
    std::vector<std::string> advice = {say(phrase::kNotOpened, {report.device, report.detail})};
    const auto causes = causesOf(report.systemError, report.device, say);
    advice.insert(advice.end(), causes.begin(), causes.end());
    return advice;
}

}  // namespace

std::vector<std::string> causesOf(int error, const std::string& device, const Speech& say) {
    switch (error) {
        case EACCES:
        case EPERM:
            return {denial(device, say)};
        case EBUSY:
            return {holder(device, say)};
        case ENOENT:
            return {say(phrase::kNoSuchDevice, {device})};
        case ENOTTY:
        case EISDIR:
            return {say(phrase::kNoTerminal, {device})};
        case EIO:
        case ENXIO:
        case ENODEV:
            return {say(phrase::kDeadPort, {device})};
        default:
            return {};
    }
}

namespace {

bool isDrive(std::string_view protocolCode) {
    const auto families = familyTraits();
    return std::any_of(families.begin(), families.end(), [&](const FamilyTraits& family) {
        return family.isDrive && family.code == protocolCode;
    });
}

}  // namespace

std::vector<std::string> adviceOn(const ConnectionReport& report, const std::string& mark,
                                  const Speech& say) {
    const bool mute = report.outcome == ConnectionOutcome::silent ||
                      report.outcome == ConnectionOutcome::otherLanguage;
    if (mute && isDrive(report.protocolCode)) {
        return {say(phrase::kNoDescription, {report.device})};
    }
    std::vector<std::string> advice;
    switch (report.outcome) {
        case ConnectionOutcome::notOpened:
            advice = notOpened(report, say);
            break;
        case ConnectionOutcome::silent:
            advice = {say(phrase::kSilent, {report.device})};
            break;
        case ConnectionOutcome::otherLanguage:
            advice = {say(phrase::kOtherLanguage, {report.device, mark})};
            break;
        case ConnectionOutcome::protocolError:
            advice = {say(phrase::kUnexpectedAnswer, {report.device, std::to_string(report.pid)})};
            break;
        case ConnectionOutcome::none:
        case ConnectionOutcome::identified:
        case ConnectionOutcome::opened:
        case ConnectionOutcome::abandoned:
            advice = {say(phrase::kNotConnected)};
            break;
    }
    return advice;
}

}  // namespace marlune::words
