#include "garmin/RealTime.h"

#include <numbers>
#include <span>

#include "base/RunTimeError.h"
#include "garmin/Messages.h"
#include "garmin/link/Commands.h"
#include "garmin/records/Values.h"
#include "garmin/records/Waypoint.h"
#include "garmin/values/Nombre.h"
#include "garmin/values/jour.h"

namespace marlune {
namespace {

FixRecord fixOfRadians(double latitude, double longitude) {
    constexpr double kDegrees = 180 / std::numbers::pi;
    FixRecord fix;
    fix.latitude = latitude * kDegrees;
    fix.longitude = longitude * kDegrees;
    return fix;
}

}  // namespace

double GarminRealTime::GetTime() {
    TransferLog log(services_, TransferKind::time, TransferDirection::download);
    services_.trace.traceLine("Get Time");
    sendCommand(link_, command::kTransferTime);
    LinkPacket packet;
    if (receiveAnswer(packet) && packet.pid == pid::kDateTime) {
        try {
            const double date = jour::GarminDateToDate(packet.data);
            services_.host.messageBox(services_.host.dateText(date), BoxIcon::none);
            ++log->transferred;
            log.end(Ending::complete);
            return date;
        } catch (const RunTimeError&) {
            // A record that holds no date is told as the protocol error that it is.
        }
    }
    showProtocolError(services_.host, packet.pid);
    log.end(endingOf(packet.pid), packet.pid);
    return 0;
}

bool GarminRealTime::receiveAnswer(LinkPacket& packet) {
    packet = link_.receive();
    if (!link_.acknowledges()) {
        return true;
    }
    if (packet.pid != pid::kAck) {
        return false;
    }
    packet = link_.receive();
    return true;
}

std::string GarminRealTime::getPosition() {
    constexpr std::size_t kDouble = 8;
    TransferLog log(services_, TransferKind::position, TransferDirection::download);
    if (link_.acknowledges()) {
        services_.trace.traceLine("GetPosition");
    }
    services_.records.fix.reset();
    link_.discard();
    sendCommand(link_, command::kTransferPosition);
    LinkPacket packet;
    const bool answered = receiveAnswer(packet);
    // What follows the acknowledgement is the position, whatever its id.
    const std::span<const std::uint8_t> data = packet.data;
    if (!answered || data.size() < 2 * kDouble) {
        showNoPosition(packet.pid);
        log.end(endingOf(packet.pid), packet.pid);
        return {};
    }
    Waypoint position;
    position.SetIdent(services_.host.dateText(services_.host.now()) + text::kPositionName);
    position.SetPosition(Nombre::BytestoDbl(data.first(kDouble)),
                         Nombre::BytestoDbl(data.subspan(kDouble, kDouble)));
    services_.records.fix = fixOfRadians(position.latitude, position.longitude);
    ++log->transferred;
    log.end(Ending::complete);
    return position.getPosition(services_.host.decimalSeparator());
}

// Without acknowledgements there is no id to complain of: a unit that has no position is silent.
void GarminRealTime::showNoPosition(std::uint16_t pid) {
    if (link_.acknowledges()) {
        showProtocolError(services_.host, pid);
    } else {
        services_.host.messageBox(text::kNoPosition, BoxIcon::none);
    }
}

void GarminRealTime::endOutput() {
    sendCommand(link_, command::kStopPvt);
}

bool GarminRealTime::StartPvtData(bool& streams) {
    TransferLog log(services_, TransferKind::realTime, TransferDirection::download);
    services_.trace.traceLine("StartPvtData");
    services_.records.fix.reset();
    link_.discard();
    sendCommand(link_, command::kStartPvt);
    streams = true;
    skipAcknowledgement();
    state_.realTimeRunning = true;
    const Ending ending = follow(log);
    // However it ended, the unit is told to stop.
    endOutput();
    streams = false;
    skipAcknowledgement();
    services_.events.EndPvt();
    services_.host.messageBox(text::kRealTimeDone, BoxIcon::information);
    log.end(ending);
    return false;
}

// What acknowledges the start and the end of a run is not looked at.
void GarminRealTime::skipAcknowledgement() {
    if (link_.acknowledges()) {
        (void)link_.receive();
    }
}

Ending GarminRealTime::follow(TransferLog& log) {
    while (state_.realTimeRunning && mayGoOn()) {
        const LinkPacket packet = link_.receive();
        if (packet.pid == pid::kPvt) {
            takePvt(packet, log);
        } else if (packet.pid == 0) {
            if (mayGoOn()) {
                services_.host.messageBox(text::kNoPosition, BoxIcon::critical);
            }
            return endingOfSilence();
        }
    }
    return mayGoOn() ? Ending::complete : endingOfSilence();
}

void GarminRealTime::takePvt(const LinkPacket& packet, TransferLog& log) {
    constexpr int kTrue = -1;
    constexpr std::int16_t kUnread = -1;
    if (!started_) {
        started_ = true;
        services_.events.Startpvt(text::kRealTimeHeader +
                                  services_.host.dateText(services_.host.now()));
    }
    const char separator = services_.host.decimalSeparator();
    // The first line of a run starts a segment.
    pvt_.fix = kUnread;
    if (pvt_.GetAttributes(packet.data, pvt_.point ? 0 : kTrue, services_.trace, separator)) {
        services_.records.fix = recordOf(pvt_);
    } else if (pvt_.fix != 0) {
        ++log->undecodable;
    }
    if (pvt_.point) {
        // Without a fix this is the position before.
        ++log->transferred;
        services_.events.PvtData(pvt_.getIdent(separator));
    }
}

}  // namespace marlune
