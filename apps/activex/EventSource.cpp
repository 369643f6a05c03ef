#include "EventSource.h"

#include <array>

#include "Bstr.h"
#include "ConnectionPoint.h"

namespace marlune::activex {
namespace {

VARIANT parameter(std::int16_t number) {
    VARIANT value{};
    value.vt = VT_I2;
    value.iVal = number;
    return value;
}

VARIANT parameter(const std::string& text) {
    VARIANT value{};
    value.vt = VT_BSTR;
    value.bstrVal = Bstr(text).release();
    return value;
}

}  // namespace

template <class... Parameters>
void EventSource::raise(DISPID event, const Parameters&... parameters) {
    std::array<VARIANT, sizeof...(Parameters)> reversed;
    [[maybe_unused]] auto at = reversed.end();
    ((*--at = parameter(parameters)), ...);
    sinks_.raise(event, reversed);
    for (VARIANT& value : reversed) {
        VariantClear(&value);
    }
}

// The numbers are the events' dispatch ids.
void EventSource::StartDownload(const std::string& DataType, std::int16_t nbitem,
                                const std::string& Entete) {
    raise(1, DataType, nbitem, Entete);
}

void EventSource::StartUpload(const std::string& DataType, std::int16_t nbitem,
                              const std::string& Entete) {
    raise(2, DataType, nbitem, Entete);
}

void EventSource::EndDownload(const std::string& DataType) {
    raise(3, DataType);
}

void EventSource::EndUpload(const std::string& DataType) {
    raise(4, DataType);
}

void EventSource::GpsInfo(const std::string& txtInfo) {
    raise(5, txtInfo);
}

void EventSource::TrackData(std::int16_t numitem, const std::string& trackItem,
                            const std::string& sens) {
    raise(6, numitem, trackItem, sens);
}

void EventSource::TrackHeader(std::int16_t numitem, const std::string& TrkHeader,
                              const std::string& sens) {
    raise(7, numitem, TrkHeader, sens);
}

void EventSource::WayptData(std::int16_t numitem, const std::string& WayptItem,
                            const std::string& sens) {
    raise(8, numitem, WayptItem, sens);
}

void EventSource::RouteHeader(std::int16_t numitem, const std::string& HeaderItem,
                              const std::string& sens) {
    raise(9, numitem, HeaderItem, sens);
}

void EventSource::RouteData(std::int16_t numitem, const std::string& RouteItem,
                            const std::string& sens) {
    raise(10, numitem, RouteItem, sens);
}

void EventSource::RouteLink(std::int16_t numitem, const std::string& RouteLinkItem,
                            const std::string& sens) {
    raise(11, numitem, RouteLinkItem, sens);
}

void EventSource::ProxData(std::int16_t numitem, const std::string& ProxItem,
                           const std::string& sens) {
    raise(12, numitem, ProxItem, sens);
}

void EventSource::Startpvt(const std::string& Entete) {
    raise(13, Entete);
}

void EventSource::PvtData(const std::string& PvtItem) {
    raise(14, PvtItem);
}

void EventSource::EndPvt() {
    raise(15);
}

void EventSource::PhraseNMEA(const std::string& Chaine) {
    raise(16, Chaine);
}

}  // namespace marlune::activex
