// The control's events, each written with its parameters under their declared names.
#pragma once

#include "cli/host/JsonWriter.h"
#include "marlune/GpsControlEvents.h"

namespace marlune::cli {

// Whoever acts inside the handlers.
class EventListener {
public:
    EventListener() = default;
    EventListener(const EventListener&) = delete;
    EventListener& operator=(const EventListener&) = delete;
    virtual ~EventListener() = default;

    // Before the event is written.
    virtual void eventBegins() = 0;
    // After it; the handler ends with this.
    virtual void eventWritten(std::string_view name) = 0;
};

class EventWriter : public GpsControlEvents {
public:
    EventWriter(JsonWriter& writer, EventListener& listener)
        : writer_(writer), listener_(listener) {}

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
    void raise(std::string_view name, std::initializer_list<JsonWriter::Field> fields);

    JsonWriter& writer_;
    EventListener& listener_;
};

}  // namespace marlune::cli
