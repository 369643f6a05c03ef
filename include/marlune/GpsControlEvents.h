// The sixteen events of GpsControl. Derive, override what you want to hear, and hand the object to
// the control. It must outlive every call of the control's members.
//
// Every event is raised on the thread that called the member, while that member runs. A handler may
// call any member of the control, disconnect it, or destroy it. Texts are UTF-8; the text lines are
// described in docs/formats.md.
//
// Kind letters: "W" waypoints, "T" tracks, "R" routes, "P" proximity waypoints.
// sens: "D" for a record that was downloaded, "U" for one that is being uploaded.
// numitem: the record's position in the transfer, from 1 (Magellan waypoints and tracks carry 100).
#pragma once

#include <cstdint>
#include <string>

#include "marlune/Export.h"

namespace marlune {

class MARLUNE_EXPORT GpsControlEvents {
public:
    GpsControlEvents() = default;
    GpsControlEvents(const GpsControlEvents&) = delete;
    GpsControlEvents& operator=(const GpsControlEvents&) = delete;
    virtual ~GpsControlEvents() = default;

    // A transfer begins: its kind letter, the announced number of records (100 when the receiver
    // announces none), a header line.
    virtual void StartDownload(const std::string& /*DataType*/, std::int16_t /*nbitem*/,
                               const std::string& /*Entete*/) {}
    virtual void StartUpload(const std::string& /*DataType*/, std::int16_t /*nbitem*/,
                             const std::string& /*Entete*/) {}
    // A transfer has ended. StartNMEA ends with the data type "NMEA_END".
    virtual void EndDownload(const std::string& /*DataType*/) {}
    virtual void EndUpload(const std::string& /*DataType*/) {}
    // A short status text, in French.
    virtual void GpsInfo(const std::string& /*txtInfo*/) {}

    // One record each, as its text line.
    virtual void TrackData(std::int16_t /*numitem*/, const std::string& /*trackItem*/,
                           const std::string& /*sens*/) {}
    virtual void TrackHeader(std::int16_t /*numitem*/, const std::string& /*TrkHeader*/,
                             const std::string& /*sens*/) {}
    virtual void WayptData(std::int16_t /*numitem*/, const std::string& /*WayptItem*/,
                           const std::string& /*sens*/) {}
    virtual void RouteHeader(std::int16_t /*numitem*/, const std::string& /*HeaderItem*/,
                             const std::string& /*sens*/) {}
    virtual void RouteData(std::int16_t /*numitem*/, const std::string& /*RouteItem*/,
                           const std::string& /*sens*/) {}
    virtual void RouteLink(std::int16_t /*numitem*/, const std::string& /*RouteLinkItem*/,
                           const std::string& /*sens*/) {}
    virtual void ProxData(std::int16_t /*numitem*/, const std::string& /*ProxItem*/,
                          const std::string& /*sens*/) {}

    // A real-time run: its header line when the first position comes, a line per position, its end.
    virtual void Startpvt(const std::string& /*Entete*/) {}
    virtual void PvtData(const std::string& /*PvtItem*/) {}
    virtual void EndPvt() {}

    // One sentence heard by StartNMEA, line ending included.
    virtual void PhraseNMEA(const std::string& /*Chaine*/) {}
};

}  // namespace marlune
