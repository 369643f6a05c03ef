// The control's events for a person or a pipe: the record lines on standard output as they come,
// everything else on standard error; the same lines into a GPX file if one is wanted.
#pragma once

#include <functional>
#include <string>

#include "cli/Output.h"
#include "cli/Progress.h"
#include "marlune/GpsControlEvents.h"
#include "marlune/Gpx.h"

namespace marlune::cli {

class RecordPrinter : public GpsControlEvents {
public:
    // onEvent is called at the end of every handler. gpx may be null.
    RecordPrinter(Output& records, Output& messages, GpxWriter* gpx, std::function<void()> onEvent);

    // A text on standard error, on lines of its own.
    void message(const std::string& text);
    // A line on standard output.
    void print(const std::string& line);
    // While muted, records are neither printed nor counted nor written to the GPX file.
    void mute(bool on) { muted_ = on; }

    // Whether a transfer began at all.
    [[nodiscard]] bool started() const { return started_; }
    // How many record lines came.
    [[nodiscard]] std::size_t records() const { return records_; }

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
    void begin(std::int16_t records, const std::string& header);
    void end();
    void record(const std::string& line);

    Output& output_;
    Output& messages_;
    Progress progress_;
    GpxWriter* gpx_;
    std::function<void()> onEvent_;
    bool muted_ = false;
    bool started_ = false;
    std::size_t records_ = 0;
};

}  // namespace marlune::cli
