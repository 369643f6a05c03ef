#include "control/Connection.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <string_view>

#include "base/SystemError.h"
#include "base/VersionText.h"
#include "control/Messages.h"
#include "garmin/values/NumberText.h"

namespace marlune {
namespace {

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

std::string present(ControlState& control) {
    return control.host.dateText(control.host.now());
}

// The connection counts as opened whatever the outcome: the identification decides.
void openSerial(ControlState& control) {
    // A family without a line of its own keeps the settings that were there.
    if (const std::optional<LineChoice> line = control.family().line()) {
        control.port.setLine(line->settings, line->queues);
    }
    if (control.port.isOpen()) {
        control.port.settle();
        control.port.close();
    }
    ConnectionReport& report = control.reports.connection;
    report.device = control.port.device();
    report.systemError = control.port.open();
    if (report.systemError != 0) {
        report.detail = systemErrorText(report.systemError);
        control.host.messageBox(controltext::kNoConnection, BoxIcon::critical);
    }
    control.trace.traceLine(present(control) + controltext::kPortOpened + control.port.name() +
                            controltext::kHandle + std::to_string(control.port.handle()));
}

// The first family on USB that finds a unit; its code becomes the control's.
bool openUsb(ControlState& control) {
    for (const auto& family : control.families.all()) {
        family->close();
    }
    for (const auto& family : control.families.all()) {
        const auto opening = family->isOnUsb() ? family->open() : Family::Opening::absent;
        if (opening != Family::Opening::absent) {
            return opening == Family::Opening::opened;
        }
    }
    control.trace.traceLine(controltext::kNoUsbFile);
    control.trace.traceLine(controltext::kNoUsbUnit);
    return false;
}

// Opens what the protocol code names; false when there is nothing to identify.
bool openDevice(ControlState& control) {
    if (control.family().isOnUsb()) {
        return openUsb(control);
    }
    openSerial(control);
    return true;
}

// An earlier receiver's words must not be taken for those of the next.
void forgetReceiver(ControlState& control) {
    forgetReceiver(control.connection);
    for (const auto& family : control.families.all()) {
        family->forget();
    }
}

void closeAll(ControlState& control) {
    control.port.close();
    control.usb.close();
    for (const auto& family : control.families.all()) {
        family->close();
    }
}

bool fail(ControlState& control) {
    ConnectionReport& report = control.reports.connection;
    if (report.systemError != 0) {
        report.outcome = ConnectionOutcome::notOpened;
    } else if (report.outcome == ConnectionOutcome::none) {
        report.outcome = control.host.stopRequested() && !control.host.patienceEnded()
                             ? ConnectionOutcome::abandoned
                             : ConnectionOutcome::silent;
    }
    control.port.settle();
    closeAll(control);
    forgetReceiver(control);
    return false;
}

}  // namespace

void setGpsMark(ControlState& control, const std::string& value) {
    const std::size_t semicolon = value.find(';');
    control.connection.protocolCode = capitals(std::string_view(value).substr(0, semicolon));
    control.connection.magellanRate =
        semicolon == std::string::npos
            ? 0
            : standardRate(readNumber(std::string_view(value).substr(semicolon + 1)));
}

bool connectReceiver(ControlState& control) {
    ConnectionReport& report = control.reports.connection;
    report = {};
    control.trace.openEmpty();
    control.trace.traceLine(present(control) + " Marlune " + versionText());
    forgetReceiver(control);
    if (!openDevice(control)) {
        report.outcome = ConnectionOutcome::notOpened;
        report.protocolCode = control.connection.protocolCode;
        return false;
    }
    report.protocolCode = control.connection.protocolCode;
    if (!control.family().identify()) {
        return fail(control);
    }
    report.outcome =
        control.connection.connected ? ConnectionOutcome::identified : ConnectionOutcome::opened;
    return true;
}

namespace {

void endWhatRuns(ControlState& control) {
    if (control.connection.connected && control.connection.transferRunning) {
        control.family().StopTransfert();
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
    closeAll(control);
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
