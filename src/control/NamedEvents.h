// The sixteen events as one function, for the hosts of this tree that hand every event on: to
// another language, over a pipe, into a log.
#pragma once

#include <initializer_list>
#include <string_view>
#include <variant>

#include "marlune/GpsControlEvents.h"

namespace marlune {

class NamedEvents : public GpsControlEvents {
public:
    // A parameter under its declared name; a text holds until the handler returns.
    struct Parameter {
        std::string_view name;
        std::variant<std::int16_t, std::string_view> value;
    };

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
    // An event with its parameters in declared order.
    virtual void raise(std::string_view name, std::initializer_list<Parameter> parameters) = 0;
};

}  // namespace marlune
