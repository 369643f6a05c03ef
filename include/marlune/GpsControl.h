// The GPS transfer control: one object that connects to a hand-held receiver, identifies it, and
// exchanges waypoints, routes, tracks and positions with it.
//
// Life: construct, SetGpsMark, setNumPort, gpsConnect, transfers, gpsDisconnect, destroy. Members
// run to their end on the caller's thread and raise events on it meanwhile. A control belongs to
// one thread and takes no lock; several controls may live on several threads. Members never throw
// errors of their own: what goes wrong is told to the user in a message box (Host::messageBox), in
// French, and the member returns false or an empty value.
//
// Records are text lines, UTF-8, described in docs/formats.md.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "marlune/Export.h"
#include "marlune/GpsControlEvents.h"
#include "marlune/Host.h"
#include "marlune/Records.h"
#include "marlune/Report.h"

namespace marlune {

// The COM ports a host may choose: Comm1 = 1 to Comm40 = 40.
enum class numPort : std::int32_t {
    Comm1 = 1,
    Comm2,
    Comm3,
    Comm4,
    Comm5,
    Comm6,
    Comm7,
    Comm8,
    Comm9,
    Comm10,
    Comm11,
    Comm12,
    Comm13,
    Comm14,
    Comm15,
    Comm16,
    Comm17,
    Comm18,
    Comm19,
    Comm20,
    Comm21,
    Comm22,
    Comm23,
    Comm24,
    Comm25,
    Comm26,
    Comm27,
    Comm28,
    Comm29,
    Comm30,
    Comm31,
    Comm32,
    Comm33,
    Comm34,
    Comm35,
    Comm36,
    Comm37,
    Comm38,
    Comm39,
    Comm40
};

class MARLUNE_EXPORT GpsControl {
public:
    // host and events stay the caller's and must outlive the control, and every call of a member
    // that is still running when a handler destroys it.
    GpsControl(Host& host, GpsControlEvents& events);
    GpsControl(const GpsControl&) = delete;
    GpsControl& operator=(const GpsControl&) = delete;
    // Closes the serial port, once the receiver has finished what it was saying (0.5 s at most),
    // and the USB device. Allowed inside a handler of a running member.
    ~GpsControl();

    // The receiver's date and time (days since 30/12/1899), also shown in a box. 0 when it fails.
    double GetTime();
    // "ON" in any case switches the trace file on, any other value off. The file is
    // Palimor/OcxDebug.txt in the documents folder; the folder is never created.
    void SetDebug(const std::string& value);
    // The receiver's family: "GRM" (at first), "GRM_USB", "MGN", "MGN;9600" (with a line rate, a
    // multiple of 1200) or "MLR"; any case.
    void SetGpsMark(const std::string& value);
    // Follows the receiver's position: Startpvt, PvtData per position, EndPvt. Runs until
    // StopPvtData is called in a handler or the receiver falls silent; a Magellan receiver may be
    // silent for as long as it likes.
    bool StartPvtData();
    // Opens the port or the USB device and identifies the receiver. True when that succeeded.
    bool gpsConnect();
    // Ends the connection: stops what runs in the receiver, and closes the port or the USB device
    // and the trace file. Without a connection it does nothing. A member that is running, when this
    // is called in a handler, returns soon and touches the receiver no more.
    void gpsDisconnect();
    // Downloads the tracks: StartDownload, per track a TrackHeader and TrackData per point,
    // EndDownload. Over a Garmin serial line the result of every transfer stays false even when all
    // went well; the events tell.
    bool getTracks();
    // Downloads the waypoints: StartDownload, WayptData per waypoint, EndDownload.
    bool getWaypts();
    // Downloads the routes: StartDownload, then per route a RouteHeader, RouteData per point and,
    // from receivers that have them, RouteLink between points; EndDownload.
    bool GetRoutes();
    // "Marlune Version 1.0.0 -  GPSId: ... Version: ... - ...": this version and the receiver's.
    std::string getIdent();
    // Downloads the waypoints that a Garmin receiver on a serial line warns of when it comes near:
    // StartDownload, ProxData per waypoint, EndDownload. A box says so where there are none to get.
    bool getProximites();
    // A line with the receiver's present position, empty when it fails.
    std::string getPosition();
    // Chooses the port that gpsConnect opens.
    void setNumPort(numPort value);
    // Ends StartPvtData, which returns when it has the position it waits for, or the next silence.
    void StopPvtData();
    // Aborts a running transfer of a Garmin receiver on a serial line: the loop ends after the
    // record in hand. Elsewhere it does nothing.
    void StopTransfert();
    // Uploads the waypoints of a text file of lines (docs/formats.md): StartUpload, WayptData per
    // waypoint, EndUpload. Fic is the file's path, UTF-8.
    bool SendWaypts(const std::string& Fic);
    // What the receiver can do, as its list of protocol tags or a sentence.
    std::string getProtocoles();
    // The same for routes: RouteHeader, RouteData and RouteLink per line of the file.
    bool SendRoutes(const std::string& Fic);
    // The same for tracks: TrackHeader and TrackData per line of the file.
    bool SendTraces(const std::string& Fic);
    // Listens to a stream of NMEA sentences that contain NMEACode ("$GPGGA") and carry a position,
    // one PhraseNMEA each, until none came for Delai seconds or StopNMEA is called. It closes the
    // connection and uses the chosen port at 4800 baud. True when positions came to the end: a line
    // that falls silent for a second counts as one without position, so a stream that simply stops
    // ends in false.
    bool StartNMEA(const std::string& NMEACode, std::int16_t Delai);
    // Ends StartNMEA after the sentence in hand.
    void StopNMEA();
    // Discards what waits in the port's queues. Always returns false.
    bool ResetComBuffers();

    // Values beside the texts. The references hold as long as the control does, and change while
    // its members run.

    // The records of the last transfer of each kind. They live until the next transfer of the kind
    // begins; while the event of a record runs, it is the last one there.
    [[nodiscard]] const Records& records() const;
    // Receivers of a certain age report dates 1024 weeks in the past, or twice that. With a
    // reference (seconds since 1970-01-01 00:00:00 UTC) the times in records() that lie more than
    // 1024 weeks before it are moved forward by whole 1024-week steps, not past the reference plus
    // one year; without one, as at first, they stay. The text lines stay as they are. It holds for
    // what is transferred from then on. RecordFiles.h has buildDate(), a reference without a clock.
    void setDateReference(std::optional<double> reference);
    // How many times of the transfer that began last were moved.
    [[nodiscard]] int movedDates() const;

    // How the transfer that ended last went, whether it began at all or not. Transfers are what
    // getWaypts, getTracks, GetRoutes, getProximites, the Send members, StartPvtData, GetTime,
    // getPosition and StartNMEA do.
    [[nodiscard]] const TransferReport& lastTransfer() const;
    // How the last gpsConnect went; gpsDisconnect leaves it.
    [[nodiscard]] const ConnectionReport& lastConnection() const;

private:
    friend struct ControlFactory;  // of controls over other devices than the platform's
    struct Impl;
    class Running;
    explicit GpsControl(std::shared_ptr<Impl> impl);

    // Shared with the member calls in progress, so a handler may destroy the control.
    std::shared_ptr<Impl> impl_;
};

}  // namespace marlune
