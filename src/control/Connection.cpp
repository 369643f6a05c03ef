#include "control/Connection.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <limits>
#include <string_view>

#include "base/VersionText.h"
#include "control/Families.h"
#include "control/Messages.h"
#include "garmin/Identification.h"
#include "garmin/link/SerialGarminLink.h"
#include "garmin/values/NumberText.h"

namespace marlune {
namespace {

struct LineRow {
    std::string_view code;
    std::string_view rate;  // empty: the Magellan rate
    int stopBits;
    QueueSizes queues;
};

constexpr LineRow kLines[] = {
    {"GRM", "9600", 1, {2048, 1024}},
    {"MGN", "", 1, {1024, 512}},
    // Two stop bits are what these receivers want.
    {"MLR", "4800", 2, {2048, 512}},
};

std::string capitals(std::string_view text) {
    std::string out(text);
    std::transform(out.begin(), out.end(), out.begin(), [](char c) {
        return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
    });
    return out;
}

// Only standard rates pass: multiples of 1200. Any other number counts as none.
std::int32_t standardRate(double number) {
    constexpr std::int32_t kStep = 1200;
    const double whole = std::trunc(number);
    if (!(whole > 0 && whole <= std::numeric_limits<std::int32_t>::max())) {
        return 0;
    }
    const auto rate = static_cast<std::int32_t>(whole);
    return rate % kStep == 0 ? rate : 0;
}

void chooseLine(ControlState& control) {
    constexpr std::int32_t kDefaultRate = 4800;
    const auto* const row = std::find_if(
        std::begin(kLines), std::end(kLines),
        [&](const LineRow& each) { return each.code == control.connection.protocolCode; });
    if (row == std::end(kLines)) {
        return;  // an unknown code keeps the settings that were there
    }
    const std::int32_t rate = control.magellanRate == 0 ? kDefaultRate : control.magellanRate;
    const std::string rateText = row->rate.empty() ? std::to_string(rate) : std::string(row->rate);
    control.port.setLine(
        "baud=" + rateText + " parity=n data=8 stop=" + std::to_string(row->stopBits), row->queues);
}

std::string present(ControlState& control) {
    return control.host.dateText(control.host.now());
}

// The connection counts as opened whatever the outcome: the identification decides.
void openSerial(ControlState& control) {
    chooseLine(control);
    if (control.port.isOpen()) {
        control.port.settle();
        control.port.close();
    }
    if (control.port.open() != 0) {
        control.host.messageBox(controltext::kNoConnection, BoxIcon::critical);
    }
    control.trace.traceLine(present(control) + controltext::kPortOpened + control.port.name() +
                            controltext::kHandle + std::to_string(control.port.handle()));
}

// Opens the USB device, else looks for a unit that is a drive; what was found decides the code.
bool openUsb(ControlState& control) {
    std::string& code = control.connection.protocolCode;
    control.storage.close();
    const std::string path = control.usb.findDevicePath();
    if (!path.empty()) {
        const bool opened = control.usb.open();
        control.trace.traceLine(controltext::kUsbPath + path);
        control.trace.traceLine(opened ? controltext::kUsbOpened : controltext::kNoUsbFile);
        code = opened && code == "GRM_USB_GPX" ? "GRM_USB" : code;
        return opened;
    }
    control.usb.close();
    if (control.storage.find(control.services)) {
        control.trace.traceLine(controltext::kDriveFound);
        code = "GRM_USB_GPX";
        return true;
    }
    control.trace.traceLine(controltext::kNoUsbFile);
    control.trace.traceLine(controltext::kNoUsbUnit);
    return false;
}

// Opens what the protocol code names; false when there is nothing to identify.
bool openDevice(ControlState& control) {
    if (contains(control.connection.protocolCode, "GRM_USB")) {
        return openUsb(control);
    }
    openSerial(control);
    return true;
}

}  // namespace

void setGpsMark(ControlState& control, const std::string& value) {
    const std::size_t semicolon = value.find(';');
    control.connection.protocolCode = capitals(std::string_view(value).substr(0, semicolon));
    control.magellanRate =
        semicolon == std::string::npos
            ? 0
            : standardRate(readNumber(std::string_view(value).substr(semicolon + 1)));
}

bool connectReceiver(ControlState& control) {
    control.trace.openEmpty();
    control.trace.traceLine(present(control) + " Marlune " + versionText());
    if (!openDevice(control)) {
        return false;
    }
    const Service identify = familyOf(control.connection.protocolCode).identify;
    if (identify != nullptr && !identify(control)) {
        control.port.settle();
        control.port.close();
        control.usb.close();
        control.storage.close();
        return false;
    }
    return true;
}

void stopTransfert(ControlState& control) {
    if (control.connection.protocolCode != "GRM") {
        return;
    }
    PortLease lease(control.port);
    SerialGarminLink link(control.services, lease);
    stopTransfer(control.services, link, control.connection);
}

namespace {

void endWhatRuns(ControlState& control) {
    if (control.connection.connected && control.connection.transferRunning) {
        stopTransfert(control);
    }
    control.connection.realTimeRunning = false;
    control.connection.connected = false;
}

void closeHandles(ControlState& control) {
    const bool wasOpen = control.port.isOpen();
    control.port.close();
    if (wasOpen) {
        control.trace.traceLine(present(control) + controltext::kPortClosed + control.port.name());
    }
    control.usb.close();
    control.storage.close();
}

}  // namespace

// The listener goes on at once on the same line: nothing of its stream may be heard out and lost.
void closeDevice(ControlState& control) {
    endWhatRuns(control);
    closeHandles(control);
}

void disconnectReceiver(ControlState& control) {
    endWhatRuns(control);
    control.port.settle();
    closeHandles(control);
    control.trace.close();
}

}  // namespace marlune
