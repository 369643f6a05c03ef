// How a transfer or a connection went, as values: what the control's results, boxes and texts do
// not tell apart.
//
// GpsControl::lastTransfer() and lastConnection() give them.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace marlune {

enum class TransferKind {
    none,  // nothing was transferred yet
    waypoints,
    tracks,
    routes,
    proximities,
    time,
    position,
    realTime,  // StartPvtData
    sentences  // StartNMEA
};

enum class TransferDirection { download, upload };

// Why a transfer ended. Complete means that its end was seen; whether everything came, too, the
// counts tell: see TransferReport::isWhole().
enum class Ending {
    complete,        // the receiver ended its list, or took the host's; the host ended real time
    nothingThere,    // the receiver holds no records of the kind, or the file none to send
    interrupted,     // the receiver fell silent
    endMissing,      // as many records as announced came, but not the end of the list
    cancelled,       // by the host: StopTransfert, or a stop that it requested
    disconnected,    // a handler closed or replaced the connection
    deviceGone,      // unplugged, or not open at all
    refused,         // the receiver declined
    protocolError,   // something else came than the protocol expects: see pid
    notOffered,      // the family or the unit has no such service
    fileError,       // the file to send is not there, or cannot be read or written: see detail
    unsendable,      // a record that the receiver's type cannot hold, or too many of them
    noSession,       // a unit on USB did not start a session
    needsWaypoints,  // a Magellan receiver's routes name waypoints, which were not downloaded yet
};

// Counts are of records as their events count them: route and track headers are records, too.
struct TransferReport {
    TransferKind kind = TransferKind::none;
    TransferDirection direction = TransferDirection::download;
    Ending ending = Ending::complete;
    std::uint16_t pid = 0;  // of the packet that was not expected; 0 is silence
    std::string detail;     // the system's words, where it refused something; UTF-8

    // What the receiver announced, or the host an upload; nothing where no count is announced.
    std::optional<int> announced;
    int transferred = 0;  // handed to the host, or sent

    // Downloads: records that came and were not handed to the host.
    int undecodable = 0;
    int wrongChecksum = 0;
    int unknown = 0;       // packets of an id, or points of a name, that nobody knows
    int positionless = 0;  // track points without a position, as units send between segments
    int duplicates = 0;    // came twice, where the protocol can tell
    int oversized = 0;     // pieces too long, or of a wrong length, for what carries them
    // Downloads: frames and MLR sentences whose checksum was wrong, or missing where others have
    // one, and which the protocol takes as they stand. Their records are among the transferred.
    int damaged = 0;

    // Uploads: records that the receiver acknowledged, and that it did not. Both stay 0 where
    // nobody acknowledges (USB, drives) or where the answers are not waited for (sentences).
    int acknowledged = 0;
    int unacknowledged = 0;
    // Uploads: lines of the file that begin as records and were not taken, and the number (from 1)
    // of the first of them, 0 for none.
    int leftOut = 0;
    int firstLeftOut = 0;

    // What was there and did not come or go.
    [[nodiscard]] int rejected() const {
        return undecodable + wrongChecksum + unknown + oversized + leftOut + unacknowledged;
    }
    // Everything that was announced was transferred and the end was seen, or there was nothing.
    [[nodiscard]] bool isWhole() const {
        const bool ended = ending == Ending::complete || ending == Ending::nothingThere;
        return ended && rejected() == 0 && (!announced || transferred + positionless >= *announced);
    }
};

enum class ConnectionOutcome {
    none,           // gpsConnect was not called yet
    identified,     // the receiver told who it is
    opened,         // the family identifies nobody
    notOpened,      // the system refused the device: see systemError; or there is none
    silent,         // nobody answered
    otherLanguage,  // somebody did, but speaks another protocol
    protocolError,  // see pid
    abandoned       // closed, replaced or stopped by the host while gpsConnect ran
};

// From where the control knows which protocols and record types a Garmin unit speaks.
enum class CapabilitySource {
    none,
    announced,  // the unit told
    table,      // the unit did not tell, but its product is known
    generic     // neither: a guess that may misread records, and misspell those that are sent
};

struct ConnectionReport {
    ConnectionOutcome outcome = ConnectionOutcome::none;
    std::string protocolCode;  // "GRM", ...; as it was at the end of gpsConnect
    std::string device;        // "/dev/ttyUSB0", "usb:1:5", the root of a drive; empty when unknown
    std::int32_t systemError = 0;  // 0 when the system refused nothing
    std::string detail;            // its words
    std::uint16_t pid = 0;         // of the packet that was not expected
    // Frames of the identification whose checksum was wrong, and which the protocol takes as they
    // stand: with one, what the unit is and speaks may be misread.
    int damaged = 0;
    CapabilitySource capabilities = CapabilitySource::none;

    [[nodiscard]] bool isConnected() const {
        return outcome == ConnectionOutcome::identified || outcome == ConnectionOutcome::opened;
    }
};

}  // namespace marlune
