// A family of receivers: how it is reached, how it identifies a receiver, and what serves each
// member of the control. A new family is a class derived from this one, in a folder of its own, and
// a line in the list of families (control/Families.cpp).
//
// What a family does not override it does not offer: that shows "Protocole non disponible pour ce
// GPS". It says what it is in a constant kTraits. Members run to their end on the caller's thread,
// raise events meanwhile, and tell in the report of the transfer how it went.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "family/ConnectionState.h"
#include "family/FamilyTraits.h"
#include "family/Upload.h"
#include "family/UploadFormat.h"
#include "garmin/records/Route.h"
#include "garmin/records/TrackItem.h"
#include "garmin/records/Waypoint.h"
#include "host/Services.h"
#include "serial/ComPort.h"
#include "usb/UsbPort.h"

namespace marlune {

// What every family is given to work with; it outlives them all.
struct ControlServices : Services {
    ComPort& port;
    UsbPort& usb;
    ConnectionState& connection;
};

// The members that a receiver may not offer although its family does.
enum class Member { getWaypts, getTracks, GetRoutes, SendWaypts, SendRoutes, SendTraces };

// The serial line of a family.
struct LineChoice {
    std::string settings;  // "baud=9600 parity=n data=8 stop=1"
    QueueSizes queues;
};

class Family {
public:
    explicit Family(ControlServices& services) : services_(services) {}
    Family(const Family&) = delete;
    Family& operator=(const Family&) = delete;
    virtual ~Family() = default;

    // Whether receivers of this protocol code are the family's.
    [[nodiscard]] virtual bool serves(std::string_view protocolCode) const = 0;

    // Whether gpsConnect asks the family to open its device, after those in front of it in the list
    // had none, instead of opening the serial port.
    [[nodiscard]] virtual bool isOnUsb() const { return false; }
    enum class Opening { absent, opened, failed };
    // Looks for a unit and opens it. The protocol code becomes the family's own.
    virtual Opening open() { return Opening::absent; }
    // Closes what open() opened and is the family's own.
    virtual void close() {}
    // None for a family without a line of its own, which takes the one chosen last.
    [[nodiscard]] virtual std::optional<LineChoice> line() const { return std::nullopt; }

    // Identifies the receiver on the opened connection; false after telling why.
    virtual bool identify() { return true; }
    // Asks again what getIdent tells, where that takes a request.
    virtual void refreshIdent() {}
    [[nodiscard]] virtual std::string getProtocoles() const { return {}; }
    // Forgets what the receiver announced.
    virtual void forget() {}
    // Ends real-time output that is under way, before the connection is closed.
    virtual void endRealTime() {}

    // Whether the connected receiver has the service, as far as the family asks.
    [[nodiscard]] virtual bool offers(Member /*member*/) const { return true; }
    // How upload files are read for the connected receiver.
    [[nodiscard]] virtual UploadFormat uploadFormat() const;

    virtual bool getWaypts() { return notOffered(TransferKind::waypoints); }
    virtual bool getTracks() { return notOffered(TransferKind::tracks); }
    virtual bool GetRoutes() { return notOffered(TransferKind::routes); }
    // Has a text and an icon of its own when it is not offered.
    virtual bool getProximites();
    // Run-time errors leave to the control, which shows them.
    virtual bool SendWaypts(const Upload<Waypoint>& upload);
    virtual bool SendRoutes(const Upload<Route>& upload);
    virtual bool SendTraces(const Upload<TrackItem>& upload);
    virtual bool StartPvtData() { return notOffered(TransferKind::realTime); }
    virtual double GetTime();
    virtual std::string getPosition();
    // Aborts a running transfer; nothing where the family has no such command.
    virtual void StopTransfert() {}

    // Shows that there is no such service; always false.
    [[nodiscard]] bool notOffered(TransferKind kind,
                                  TransferDirection direction = TransferDirection::download) const;

protected:
    [[nodiscard]] ControlServices& services() const { return services_; }
    [[nodiscard]] ConnectionState& connection() const { return services_.connection; }

private:
    ControlServices& services_;
};

}  // namespace marlune
