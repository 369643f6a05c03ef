#include "marlune/SystemHost.h"

#include <algorithm>
#include <cmath>
#include <iostream>
#include <thread>
#include <utility>

#include "base/DateText.h"
#include "host/FolderDrive.h"
#include "host/Platform.h"

namespace marlune {

using std::chrono::duration;
using std::chrono::steady_clock;

SystemHost::SystemHost() : clockStart_(steady_clock::now()) {
    constexpr double kSecondsPerDay = 86400.0;
    const double date = platform::localNow();
    clockStartSeconds_ = (date - std::floor(date)) * kSecondsPerDay;
}

void SystemHost::bindPort(int number, std::string device) {
    ports_[number] = std::move(device);
}

void SystemHost::setDocumentsFolder(std::string folder) {
    documentsFolder_ = std::move(folder);
}

void SystemHost::setDecimalSeparator(char separator) {
    decimalSeparator_ = separator;
}

void SystemHost::addDriveFolder(std::string folder) {
    driveFolders_.push_back(std::move(folder));
}

void SystemHost::messageBox(const std::string& text, BoxIcon /*icon*/) {
    std::cerr << text << std::endl;
}

std::string SystemHost::chooseFile(const std::string& /*defaultExtension*/,
                                   const std::string& /*startFolder*/) {
    return {};
}

void SystemHost::setMousePointer(MousePointer /*pointer*/) {}

void SystemHost::processEvents() {}

void SystemHost::setPatience(double seconds) {
    patience_ = seconds;
}

bool SystemHost::stopRequested() {
    return patienceEnded_;
}

void SystemHost::memberBegins() {
    if (members_++ == 0) {
        silence_ = 0;
    }
}

void SystemHost::memberEnds() {
    if (--members_ == 0) {
        patienceEnded_ = false;
    }
}

void SystemHost::waitedForBytes(double seconds) {
    silence_ += seconds;
    patienceEnded_ = patienceEnded_ || (members_ > 0 && patience_ > 0 && silence_ >= patience_);
}

void SystemHost::bytesCame() {
    silence_ = 0;
}

void SystemHost::pause(double seconds) {
    constexpr duration<double> kSlice(0.05);
    const auto start = steady_clock::now();
    duration<double> left(seconds);
    while (left.count() > 0 && !stopRequested()) {
        std::this_thread::sleep_for(std::min(left, kSlice));
        left = duration<double>(seconds) - (steady_clock::now() - start);
    }
}

double SystemHost::secondsClock() {
    return clockStartSeconds_ + duration<double>(steady_clock::now() - clockStart_).count();
}

double SystemHost::now() {
    return platform::localNow();
}

std::string SystemHost::dateText(double date) {
    return formatDate(date);
}

// The locale is asked once: numbers are written many times per record.
char SystemHost::decimalSeparator() {
    if (decimalSeparator_ == 0) {
        decimalSeparator_ = platform::decimalSeparator();
    }
    return decimalSeparator_;
}

std::string SystemHost::lineBreak() {
    return platform::lineBreak();
}

std::string SystemHost::documentsFolder() {
    return documentsFolder_.empty() ? platform::documentsFolder() : documentsFolder_;
}

std::string SystemHost::applicationFolder() {
    return platform::applicationFolder();
}

std::string SystemHost::portDevice(int number) {
    const auto bound = ports_.find(number);
    return bound != ports_.end() ? bound->second : platform::portDevice(number);
}

std::vector<Drive> SystemHost::drives() {
    if (driveFolders_.empty()) {
        return platform::mountedDrives();
    }
    std::vector<Drive> drives;
    drives.reserve(driveFolders_.size());
    std::transform(driveFolders_.begin(), driveFolders_.end(), std::back_inserter(drives),
                   folderDrive);
    return drives;
}

}  // namespace marlune
