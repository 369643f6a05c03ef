#include "finder/Ports.h"

#include <libserialport.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <system_error>

#include "base/NoCase.h"
#include "host/DebugTrace.h"
#include "receivers/Families.h"
#include "usb/UsbDevice.h"

namespace marlune::finder {
namespace {

namespace fs = std::filesystem;

constexpr int kLastNumber = 40;

std::string nameOf(const fs::path& process) {
    std::ifstream file(process / "comm");
    std::string name;
    std::getline(file, name);
    return name + " (" + process.filename().string() + ")";
}

bool isProcess(const fs::path& entry) {
    const std::string name = entry.filename().string();
    return std::all_of(name.begin(), name.end(),
                       [](unsigned char c) { return std::isdigit(c) != 0; });
}

// The lock files of programs that agree on them hold the number of the process.
std::string lockOf(const fs::path& device) {
    for (const char* folder : {"/run/lock", "/var/lock"}) {
        std::ifstream file(fs::path(folder) / ("LCK.." + device.filename().string()));
        int process = 0;
        if (file >> process) {
            std::error_code ignored;
            const fs::path its = "/proc/" + std::to_string(process);
            return fs::exists(its, ignored) ? nameOf(its) : std::string();
        }
    }
    return {};
}

// Who has which files open, as far as this user may see it, at one moment.
class Holders {
public:
    Holders() {
        std::error_code error;
        fs::directory_iterator entry("/proc", error);
        for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
            if (isProcess(entry->path())) {
                add(entry->path());
            }
        }
    }

    [[nodiscard]] std::string of(const std::string& path) const {
        std::error_code error;
        const fs::path device = fs::canonical(path, error);
        if (error) {
            return {};
        }
        const auto found = holders_.find(device.string());
        return found == holders_.end() ? lockOf(device) : found->second;
    }

private:
    // Who has the other end of a pseudo terminal is the device, not its user.
    void add(const fs::path& process) {
        std::set<std::string> files;
        bool isOtherEnd = false;
        std::error_code error;
        fs::directory_iterator file(process / "fd", error);
        for (; !error && file != fs::directory_iterator(); file.increment(error)) {
            std::error_code ignored;
            const fs::path target = fs::read_symlink(file->path(), ignored);
            isOtherEnd = isOtherEnd || target.filename() == "ptmx";
            if (target.is_absolute()) {
                files.insert(target.string());
            }
        }
        for (const std::string& each : files) {
            if (!isOtherEnd || !each.starts_with("/dev/pts/")) {
                std::string& list = holders_[each];
                list += (list.empty() ? "" : ", ") + nameOf(process);
            }
        }
    }

    std::map<std::string, std::string> holders_;
};

std::string text(const char* value) {
    return value == nullptr ? std::string() : std::string(value);
}

bool isSameDevice(const fs::path& left, const fs::path& right) {
    std::error_code error;
    return left == right || (fs::equivalent(left, right, error) && !error);
}

// The lowest COM number that means the device; 0 for none.
int numberOf(Host& host, const std::string& path) {
    for (int number = 1; number <= kLastNumber; ++number) {
        const std::string device = host.portDevice(number);
        if (!device.empty() && isSameDevice(device, path)) {
            return number;
        }
    }
    return 0;
}

PortEntry serialEntry(Host& host, const std::string& path, const Holders& holders) {
    PortEntry entry;
    entry.path = path;
    entry.number = numberOf(host, path);
    entry.mayOpen = ::access(path.c_str(), R_OK | W_OK) == 0;
    entry.holder = holders.of(path);
    return entry;
}

void addSystemPorts(Host& host, const Holders& holders, std::vector<PortEntry>& entries) {
    sp_port** list = nullptr;
    if (sp_list_ports(&list) != SP_OK) {
        return;
    }
    const std::unique_ptr<sp_port*, void (*)(sp_port**)> ports(list, &sp_free_port_list);
    for (sp_port** each = list; *each != nullptr; ++each) {
        PortEntry entry = serialEntry(host, text(sp_get_port_name(*each)), holders);
        entry.vendor = text(sp_get_port_usb_manufacturer(*each));
        entry.product = text(sp_get_port_usb_product(*each));
        if (entry.product.empty()) {
            entry.product = text(sp_get_port_description(*each));
        }
        entry.pluggedIn = sp_get_port_transport(*each) != SP_TRANSPORT_NATIVE;
        entries.push_back(std::move(entry));
    }
    std::sort(entries.begin(), entries.end(),
              [](const PortEntry& left, const PortEntry& right) { return left.path < right.path; });
}

// Numbers may mean devices that the system does not list.
void addNumberedPorts(Host& host, const Holders& holders, std::vector<PortEntry>& entries) {
    for (int number = 1; number <= kLastNumber; ++number) {
        const std::string path = host.portDevice(number);
        std::error_code ignored;
        if (path.empty() || path.starts_with("/dev/ttyS") || !fs::exists(path, ignored) ||
            std::any_of(entries.begin(), entries.end(),
                        [&](const PortEntry& entry) { return isSameDevice(entry.path, path); })) {
            continue;
        }
        entries.push_back(serialEntry(host, path, holders));
    }
}

void addUsbUnit(const Holders& holders, std::vector<PortEntry>& entries) {
    DebugTrace noTrace{std::string()};
    const auto device = makeSystemUsbDevice(noTrace);
    PortEntry entry;
    entry.kind = PortKind::usb;
    entry.mark = "GRM_USB";
    entry.vendor = "Garmin";
    entry.path = device->findDevicePath();
    if (entry.path.empty()) {
        return;
    }
    int bus = 0;
    int address = 0;
    if (std::sscanf(entry.path.c_str(), "usb:%d:%d", &bus, &address) == 2) {
        std::array<char, 64> node{};
        std::snprintf(node.data(), node.size(), "/dev/bus/usb/%03d/%03d", bus, address);
        entry.mayOpen = ::access(node.data(), R_OK | W_OK) == 0;
        entry.holder = holders.of(node.data());
    }
    entries.push_back(std::move(entry));
}

bool isUnit(const Drive& drive) {
    constexpr std::string_view kVolume = "GARMIN";
    return drive.isReady &&
           (equalsNoCase(drive.volumeName, kVolume) || equalsNoCase(drive.driveLetter, kVolume));
}

void addDrives(Host& host, std::vector<PortEntry>& entries) {
    for (const Drive& drive : host.drives()) {
        if (!isUnit(drive)) {
            continue;
        }
        PortEntry entry;
        entry.kind = drive.fileSystem == "mtp" ? PortKind::mtp : PortKind::drive;
        entry.mark = "GRM_USB";
        entry.path = drive.rootFolder;
        entry.vendor = drive.volumeName;
        entry.product = drive.driveLetter;
        entry.mayOpen = ::access(drive.rootFolder.c_str(), R_OK | X_OK) == 0;
        entries.push_back(std::move(entry));
    }
}

}  // namespace

std::vector<PortEntry> listPorts(Host& host) {
    std::vector<PortEntry> entries;
    const Holders holders;
    addSystemPorts(host, holders, entries);
    addNumberedPorts(host, holders, entries);
    addUsbUnit(holders, entries);
    addDrives(host, entries);
    return entries;
}

std::vector<PortEntry> virtualPorts() {
    std::vector<PortEntry> entries;
    for (const receivers::Family& family : receivers::receiverFamilies()) {
        if (family.code.empty()) {
            continue;
        }
        for (const receivers::Unit& unit : family.units()) {
            PortEntry entry;
            entry.kind = PortKind::builtIn;
            entry.path = "virtual:" + unit.name;
            entry.mark = family.code;
            entry.vendor = "virtual receiver";
            entry.product = unit.description;
            entries.push_back(std::move(entry));
        }
    }
    return entries;
}

std::string holderOf(const std::string& path) {
    return Holders().of(path);
}

}  // namespace marlune::finder
