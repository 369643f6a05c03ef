// The control's events as automation raises them.
#pragma once

#include <windows.h>
// After windows.h:
#include <oaidl.h>

#include "marlune/GpsControlEvents.h"

namespace marlune::activex {

class ConnectionPoint;

class EventSource : public GpsControlEvents {
public:
    // sinks outlives the event source.
    explicit EventSource(ConnectionPoint& sinks) : sinks_(sinks) {}

    void StartDownload(const std::string& DataType, std::int16_t nbitem,
                       const std::string& Entete) override;
    void StartUpload(const std::string& DataType, std::int16_t nbitem,
                     const std::string& Entete) override;
    void EndDownload(const std::string& DataType) override;
    void EndUpload(const std::string& DataType) override;
    void GpsInfo(const std::string& txtInfo) override;
    void TrackData(std::int16_t numitem, const std::string& trackItem,
                   const std::string& sens) override;
    void TrackHeader(std::int16_t numitem, const std::string& TrkHeader,
                     const std::string& sens) override;
    void WayptData(std::int16_t numitem, const std::string& WayptItem,
                   const std::string& sens) override;
    void RouteHeader(std::int16_t numitem, const std::string& HeaderItem,
                     const std::string& sens) override;
    void RouteData(std::int16_t numitem, const std::string& RouteItem,
                   const std::string& sens) override;
    void RouteLink(std::int16_t numitem, const std::string& RouteLinkItem,
                   const std::string& sens) override;
    void ProxData(std::int16_t numitem, const std::string& ProxItem,
                  const std::string& sens) override;
    void Startpvt(const std::string& Entete) override;
    void PvtData(const std::string& PvtItem) override;
    void EndPvt() override;
    void PhraseNMEA(const std::string& Chaine) override;

private:
    template <class... Parameters>
    void raise(DISPID event, const Parameters&... parameters);

    ConnectionPoint& sinks_;
};

}  // namespace marlune::activex
