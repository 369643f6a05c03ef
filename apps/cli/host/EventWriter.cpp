#include "cli/host/EventWriter.h"

namespace marlune::cli {

void EventWriter::raise(std::string_view name, std::initializer_list<JsonWriter::Field> fields) {
    listener_.eventBegins();
    writer_.event(name, fields);
    listener_.eventWritten(name);
}

void EventWriter::StartDownload(const std::string& DataType, std::int16_t nbitem,
                                const std::string& Entete) {
    raise("StartDownload", {{"DataType", DataType}, {"nbitem", nbitem}, {"Entete", Entete}});
}

void EventWriter::StartUpload(const std::string& DataType, std::int16_t nbitem,
                              const std::string& Entete) {
    raise("StartUpload", {{"DataType", DataType}, {"nbitem", nbitem}, {"Entete", Entete}});
}

void EventWriter::EndDownload(const std::string& DataType) {
    raise("EndDownload", {{"DataType", DataType}});
}

void EventWriter::EndUpload(const std::string& DataType) {
    raise("EndUpload", {{"DataType", DataType}});
}

void EventWriter::GpsInfo(const std::string& txtInfo) {
    raise("GpsInfo", {{"txtInfo", txtInfo}});
}

void EventWriter::TrackData(std::int16_t numitem, const std::string& trackItem,
                            const std::string& sens) {
    raise("TrackData", {{"numitem", numitem}, {"trackItem", trackItem}, {"sens", sens}});
}

void EventWriter::TrackHeader(std::int16_t numitem, const std::string& TrkHeader,
                              const std::string& sens) {
    raise("TrackHeader", {{"numitem", numitem}, {"TrkHeader", TrkHeader}, {"sens", sens}});
}

void EventWriter::WayptData(std::int16_t numitem, const std::string& WayptItem,
                            const std::string& sens) {
    raise("WayptData", {{"numitem", numitem}, {"WayptItem", WayptItem}, {"sens", sens}});
}

void EventWriter::RouteHeader(std::int16_t numitem, const std::string& HeaderItem,
                              const std::string& sens) {
    raise("RouteHeader", {{"numitem", numitem}, {"HeaderItem", HeaderItem}, {"sens", sens}});
}

void EventWriter::RouteData(std::int16_t numitem, const std::string& RouteItem,
                            const std::string& sens) {
    raise("RouteData", {{"numitem", numitem}, {"RouteItem", RouteItem}, {"sens", sens}});
}

void EventWriter::RouteLink(std::int16_t numitem, const std::string& RouteLinkItem,
                            const std::string& sens) {
    raise("RouteLink", {{"numitem", numitem}, {"RouteLinkItem", RouteLinkItem}, {"sens", sens}});
}

void EventWriter::ProxData(std::int16_t numitem, const std::string& ProxItem,
                           const std::string& sens) {
    raise("ProxData", {{"numitem", numitem}, {"ProxItem", ProxItem}, {"sens", sens}});
}

void EventWriter::Startpvt(const std::string& Entete) {
    raise("Startpvt", {{"Entete", Entete}});
}

void EventWriter::PvtData(const std::string& PvtItem) {
    raise("PvtData", {{"PvtItem", PvtItem}});
}

void EventWriter::EndPvt() {
    raise("EndPvt", {});
}

void EventWriter::PhraseNMEA(const std::string& Chaine) {
    raise("PhraseNMEA", {{"Chaine", Chaine}});
}

}  // namespace marlune::cli
