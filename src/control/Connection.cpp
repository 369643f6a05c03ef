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

// One run of what begins or ends a connection. Handlers may act on the control whenever a box is
// shown or the host's events are processed; when one of them ended the connection or began another,
// what is open is not this run's any more, and nothing is told.
class Attempt {
public:
    explicit Attempt(ControlState& control) : control_(control), number_(++control.connections) {}

    [[nodiscard]] bool holds() const { return control_.connections == number_; }

private:
    ControlState& control_;
    std::uint32_t number_;
};

// A unit that goes on streaming would talk into the next connection.
void endRealTime(ControlState& control) {
    for (const auto& family : control.families.all()) {
        family->endRealTime();
    }
    control.connection.realTimeRunning = false;
}

// The connection counts as opened whatever the outcome: the identification decides.
void openSerial(ControlState& control, Family& family, const Attempt& attempt) {
    // A family without a line of its own keeps the settings that were there.
    if (const std::optional<LineChoice> line = family.line()) {
        control.port.setLine(line->settings, line->queues);
    }
    if (control.port.isOpen()) {
        control.port.settle();
        control.port.close();
    }
    ConnectionReport& report = control.reports.connection;
    report.device = control.port.device();
    const std::int32_t error = control.port.open();
    if (!attempt.holds()) {
        return;
    }
    if (error != 0) {
        report.systemError = error;
        report.detail = systemErrorText(error);
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

// Opens what the protocol code names, and answers whose unit it is; nobody's when there is nothing
// to identify. A handler may choose another code already: that is for the next call.
Family* openDevice(ControlState& control, const Attempt& attempt) {
    Family& family = control.family();
    if (family.isOnUsb()) {
        return openUsb(control) ? &control.family() : nullptr;
    }
    openSerial(control, family, attempt);
    return &family;
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

// Wherever the connection went, it is not this run's to close. The report of another one that
// stands keeps what it tells of it.
bool abandon(ControlState& control) {
    control.reports.connection.outcome = ConnectionOutcome::abandoned;
    return false;
}

bool fail(ControlState& control) {
    ConnectionReport& report = control.reports.connection;
    report.capabilities = CapabilitySource::none;
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
    const Attempt attempt(control);
    ConnectionReport& report = control.reports.connection;
    report = {};
    control.trace.openEmpty();
    control.trace.traceLine(present(control) + " Marlune " + versionText());
    forgetReceiver(control);
    endRealTime(control);
    Family* const family = openDevice(control, attempt);
    if (!attempt.holds()) {
        return abandon(control);
    }
    report.protocolCode = control.connection.protocolCode;
    if (family == nullptr) {
        report.outcome = ConnectionOutcome::notOpened;
        return false;
    }
    const bool identified = family->identify();
    if (!attempt.holds()) {
        return abandon(control);
    }
    if (!identified) {
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
    endRealTime(control);
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
    const Attempt ending(control);
    endWhatRuns(control);
    if (ending.holds()) {
        closeHandles(control);
    }
}

void abandonDevice(ControlState& control) {
    ++control.connections;
    endRealTime(control);
    control.port.settle();
    closeAll(control);
}

void disconnectReceiver(ControlState& control) {
    const Attempt ending(control);
    endWhatRuns(control);
    if (!ending.holds()) {
        return;
    }
    control.port.settle();
    closeHandles(control);
    control.trace.close();
}

}  // namespace marlune
