// What the control shows to hosts of any language: its members and its events, each once, with
// their names, ids and parameters. The hosts of this tree are driven by these tables; what has to
// be written by hand elsewhere (the type library, the public headers, the manual) is compared with
// them by tests/house/SurfaceTest.cpp.
#pragma once

#include "control/SurfaceRows.h"

namespace marlune {
namespace surface {

// The ids of members and events never change; what is new is added at the end.
inline constexpr std::array kMembers = {
    transfer<&GpsControl::GetTime>(1, "GetTime", {}, Type::number, TransferKind::time),
    propertyPut<&GpsControl::SetDebug>(2, "SetDebug", text("value")),
    propertyPut<&GpsControl::SetGpsMark>(3, "SetGpsMark", text("value")),
    transfer<&GpsControl::StartPvtData>(4, "StartPvtData", {}, Type::boolean,
                                        TransferKind::realTime),
    method<&GpsControl::gpsConnect>(5, "gpsConnect", {}, Type::boolean, Role::connects),
    method<&GpsControl::gpsDisconnect>(6, "gpsDisconnect", {}, Type::variant, Role::disconnects),
    transfer<&GpsControl::getTracks>(7, "getTracks", {}, Type::boolean, TransferKind::tracks),
    transfer<&GpsControl::getWaypts>(8, "getWaypts", {}, Type::boolean, TransferKind::waypoints),
    transfer<&GpsControl::GetRoutes>(9, "GetRoutes", {}, Type::boolean, TransferKind::routes),
    propertyGet<&GpsControl::getIdent>(10, "getIdent", Type::text),
    transfer<&GpsControl::getProximites>(11, "getProximites", {}, Type::boolean,
                                         TransferKind::proximities),
    transfer<&GpsControl::getPosition>(12, "getPosition", {}, Type::text, TransferKind::position),
    propertyPut<&GpsControl::setNumPort>(13, "setNumPort", port("value")),
    method<&GpsControl::StopPvtData>(14, "StopPvtData", {}, Type::variant, Role::stops),
    method<&GpsControl::StopTransfert>(15, "StopTransfert", {}, Type::variant, Role::stops),
    transfer<&GpsControl::SendWaypts>(16, "SendWaypts", {textReference("Fic")}, Type::variant,
                                      TransferKind::waypoints),
    propertyGet<&GpsControl::getProtocoles>(17, "getProtocoles", Type::text),
    transfer<&GpsControl::SendRoutes>(18, "SendRoutes", {textReference("Fic")}, Type::variant,
                                      TransferKind::routes),
    transfer<&GpsControl::SendTraces>(19, "SendTraces", {textReference("Fic")}, Type::boolean,
                                      TransferKind::tracks),
    transfer<&GpsControl::StartNMEA>(20, "StartNMEA", {text("NMEACode"), integer("Delai")},
                                     Type::boolean, TransferKind::sentences),
    method<&GpsControl::StopNMEA>(21, "StopNMEA", {}, Type::variant, Role::stops),
    method<&GpsControl::ResetComBuffers>(22, "ResetComBuffers", {}, Type::boolean)};
static_assert(isNumberedFromOne(kMembers));

inline constexpr std::array kEvents = {
    event<&GpsControlEvents::StartDownload>(
        1, "StartDownload", {text("DataType"), integer("nbitem"), text("Entete")}, Tells::begin),
    event<&GpsControlEvents::StartUpload>(
        2, "StartUpload", {text("DataType"), integer("nbitem"), text("Entete")}, Tells::begin),
    event<&GpsControlEvents::EndDownload>(3, "EndDownload", {text("DataType")}, Tells::end),
    event<&GpsControlEvents::EndUpload>(4, "EndUpload", {text("DataType")}, Tells::end),
    event<&GpsControlEvents::GpsInfo>(5, "GpsInfo", {text("txtInfo")}, Tells::status),
    event<&GpsControlEvents::TrackData>(
        6, "TrackData", {integer("numitem"), text("trackItem"), text("sens")}, Tells::trackPoint),
    event<&GpsControlEvents::TrackHeader>(
        7, "TrackHeader", {integer("numitem"), text("TrkHeader"), text("sens")}, Tells::track),
    event<&GpsControlEvents::WayptData>(
        8, "WayptData", {integer("numitem"), text("WayptItem"), text("sens")}, Tells::waypoint),
    event<&GpsControlEvents::RouteHeader>(
        9, "RouteHeader", {integer("numitem"), text("HeaderItem"), text("sens")}, Tells::route),
    event<&GpsControlEvents::RouteData>(
        10, "RouteData", {integer("numitem"), text("RouteItem"), text("sens")}, Tells::routePoint),
    event<&GpsControlEvents::RouteLink>(11, "RouteLink",
                                        {integer("numitem"), text("RouteLinkItem"), text("sens")},
                                        Tells::routeLink),
    event<&GpsControlEvents::ProxData>(
        12, "ProxData", {integer("numitem"), text("ProxItem"), text("sens")}, Tells::proximity),
    event<&GpsControlEvents::Startpvt>(13, "Startpvt", {text("Entete")}, Tells::runHeader),
    event<&GpsControlEvents::PvtData>(14, "PvtData", {text("PvtItem")}, Tells::fix),
    event<&GpsControlEvents::EndPvt>(15, "EndPvt", {}, Tells::end),
    event<&GpsControlEvents::PhraseNMEA>(16, "PhraseNMEA", {text("Chaine")}, Tells::sentence)};
static_assert(isNumberedFromOne(kEvents));

// The row of an event by its name, and with values of these types. Without such a row the caller
// does not compile.
template <class... Values>
struct RowOf {
    consteval RowOf(const char* name) : row(*findByName(kEvents, name)) {
        if (!detail::declares<Values...>(row.parameters)) {
            throw "the event's row has other parameters";
        }
    }
    const Event& row;
};

}  // namespace surface

// The events as one function, for the hosts of this tree that hand every event on: to another
// language, over a pipe, into a log.
class NamedEvents : public GpsControlEvents {
public:
    using Text = const std::string&;
    using Integer = std::int16_t;

    void StartDownload(Text DataType, Integer nbitem, Text Entete) override {
        tell(__func__, DataType, nbitem, Entete);
    }
    void StartUpload(Text DataType, Integer nbitem, Text Entete) override {
        tell(__func__, DataType, nbitem, Entete);
    }
    void EndDownload(Text DataType) override { tell(__func__, DataType); }
    void EndUpload(Text DataType) override { tell(__func__, DataType); }
    void GpsInfo(Text txtInfo) override { tell(__func__, txtInfo); }
    void TrackData(Integer numitem, Text trackItem, Text sens) override {
        tell(__func__, numitem, trackItem, sens);
    }
    void TrackHeader(Integer numitem, Text TrkHeader, Text sens) override {
        tell(__func__, numitem, TrkHeader, sens);
    }
    void WayptData(Integer numitem, Text WayptItem, Text sens) override {
        tell(__func__, numitem, WayptItem, sens);
    }
    void RouteHeader(Integer numitem, Text HeaderItem, Text sens) override {
        tell(__func__, numitem, HeaderItem, sens);
    }
    void RouteData(Integer numitem, Text RouteItem, Text sens) override {
        tell(__func__, numitem, RouteItem, sens);
    }
    void RouteLink(Integer numitem, Text RouteLinkItem, Text sens) override {
        tell(__func__, numitem, RouteLinkItem, sens);
    }
    void ProxData(Integer numitem, Text ProxItem, Text sens) override {
        tell(__func__, numitem, ProxItem, sens);
    }
    void Startpvt(Text Entete) override { tell(__func__, Entete); }
    void PvtData(Text PvtItem) override { tell(__func__, PvtItem); }
    void EndPvt() override { tell(__func__); }
    void PhraseNMEA(Text Chaine) override { tell(__func__, Chaine); }

private:
    // An event with the values of its parameters, in declared order.
    virtual void raise(const surface::Event& event,
                       std::span<const surface::EventValue> values) = 0;

    template <class... V>
    void tell(std::type_identity_t<surface::RowOf<V...>> event, const V&... values) {
        const std::array<surface::EventValue, sizeof...(V)> all = {values...};
        raise(event.row, all);
    }
};

}  // namespace marlune
