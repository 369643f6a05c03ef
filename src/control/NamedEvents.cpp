#include "control/NamedEvents.h"

namespace marlune {

void NamedEvents::StartDownload(const std::string& DataType, std::int16_t nbitem,
                                const std::string& Entete) {
    raise("StartDownload", {{"DataType", DataType}, {"nbitem", nbitem}, {"Entete", Entete}});
}

void NamedEvents::StartUpload(const std::string& DataType, std::int16_t nbitem,
                              const std::string& Entete) {
    raise("StartUpload", {{"DataType", DataType}, {"nbitem", nbitem}, {"Entete", Entete}});
}

void NamedEvents::EndDownload(const std::string& DataType) {
    raise("EndDownload", {{"DataType", DataType}});
}

void NamedEvents::EndUpload(const std::string& DataType) {
    raise("EndUpload", {{"DataType", DataType}});
}

void NamedEvents::GpsInfo(const std::string& txtInfo) {
    raise("GpsInfo", {{"txtInfo", txtInfo}});
}

void NamedEvents::TrackData(std::int16_t numitem, const std::string& trackItem,
                            const std::string& sens) {
    raise("TrackData", {{"numitem", numitem}, {"trackItem", trackItem}, {"sens", sens}});
}

void NamedEvents::TrackHeader(std::int16_t numitem, const std::string& TrkHeader,
                              const std::string& sens) {
    raise("TrackHeader", {{"numitem", numitem}, {"TrkHeader", TrkHeader}, {"sens", sens}});
}

void NamedEvents::WayptData(std::int16_t numitem, const std::string& WayptItem,
                            const std::string& sens) {
    raise("WayptData", {{"numitem", numitem}, {"WayptItem", WayptItem}, {"sens", sens}});
}

void NamedEvents::RouteHeader(std::int16_t numitem, const std::string& HeaderItem,
                              const std::string& sens) {
    raise("RouteHeader", {{"numitem", numitem}, {"HeaderItem", HeaderItem}, {"sens", sens}});
}

void NamedEvents::RouteData(std::int16_t numitem, const std::string& RouteItem,
                            const std::string& sens) {
    raise("RouteData", {{"numitem", numitem}, {"RouteItem", RouteItem}, {"sens", sens}});
}

void NamedEvents::RouteLink(std::int16_t numitem, const std::string& RouteLinkItem,
                            const std::string& sens) {
    raise("RouteLink", {{"numitem", numitem}, {"RouteLinkItem", RouteLinkItem}, {"sens", sens}});
}

void NamedEvents::ProxData(std::int16_t numitem, const std::string& ProxItem,
                           const std::string& sens) {
    raise("ProxData", {{"numitem", numitem}, {"ProxItem", ProxItem}, {"sens", sens}});
}

void NamedEvents::Startpvt(const std::string& Entete) {
    raise("Startpvt", {{"Entete", Entete}});
}

void NamedEvents::PvtData(const std::string& PvtItem) {
    raise("PvtData", {{"PvtItem", PvtItem}});
}

void NamedEvents::EndPvt() {
    raise("EndPvt", {});
}

void NamedEvents::PhraseNMEA(const std::string& Chaine) {
    raise("PhraseNMEA", {{"Chaine", Chaine}});
}

}  // namespace marlune
