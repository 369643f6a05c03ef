#include "cli/RecordPrinter.h"

#include <unistd.h>

#include <utility>

namespace marlune::cli {

RecordPrinter::RecordPrinter(Output& records, Output& messages, GpxWriter* gpx,
                             std::function<void()> onEvent)
    : output_(records),
      messages_(messages),
      progress_(messages),
      gpx_(gpx),
      onEvent_(std::move(onEvent)) {}

void RecordPrinter::message(const std::string& text) {
    progress_.clear();
    messages_.write(text + "\n");
}

void RecordPrinter::print(const std::string& line) {
    if (isatty(output_.descriptor()) == 1) {
        progress_.clear();  // most likely the same terminal
    }
    output_.write(line + "\n");
}

void RecordPrinter::begin(std::int16_t records, const std::string& header) {
    started_ = true;
    message(header);
    progress_.begin(records);
    onEvent_();
}

void RecordPrinter::end() {
    progress_.end();
    onEvent_();
}

void RecordPrinter::record(const std::string& line) {
    if (!muted_) {
        print(line);
        progress_.advance(++records_);
        if (gpx_ != nullptr) {
            gpx_->addLine(line);
        }
    }
    onEvent_();
}

void RecordPrinter::StartDownload(const std::string& /*DataType*/, std::int16_t nbitem,
                                  const std::string& Entete) {
    begin(nbitem, Entete);
}

void RecordPrinter::StartUpload(const std::string& /*DataType*/, std::int16_t nbitem,
                                const std::string& Entete) {
    begin(nbitem, Entete);
}

void RecordPrinter::EndDownload(const std::string& /*DataType*/) {
    end();
}

void RecordPrinter::EndUpload(const std::string& /*DataType*/) {
    end();
}

void RecordPrinter::GpsInfo(const std::string& txtInfo) {
    if (!txtInfo.empty()) {
        message(txtInfo);
    }
    onEvent_();
}

void RecordPrinter::TrackData(std::int16_t /*numitem*/, const std::string& trackItem,
                              const std::string& /*sens*/) {
    record(trackItem);
}

void RecordPrinter::TrackHeader(std::int16_t /*numitem*/, const std::string& TrkHeader,
                                const std::string& /*sens*/) {
    record(TrkHeader);
}

void RecordPrinter::WayptData(std::int16_t /*numitem*/, const std::string& WayptItem,
                              const std::string& /*sens*/) {
    record(WayptItem);
}

void RecordPrinter::RouteHeader(std::int16_t /*numitem*/, const std::string& HeaderItem,
                                const std::string& /*sens*/) {
    record(HeaderItem);
}

void RecordPrinter::RouteData(std::int16_t /*numitem*/, const std::string& RouteItem,
                              const std::string& /*sens*/) {
    record(RouteItem);
}

void RecordPrinter::RouteLink(std::int16_t /*numitem*/, const std::string& RouteLinkItem,
                              const std::string& /*sens*/) {
    record(RouteLinkItem);
}

void RecordPrinter::ProxData(std::int16_t /*numitem*/, const std::string& ProxItem,
                             const std::string& /*sens*/) {
    record(ProxItem);
}

void RecordPrinter::Startpvt(const std::string& Entete) {
    record(Entete);
}

void RecordPrinter::PvtData(const std::string& PvtItem) {
    record(PvtItem);
}

void RecordPrinter::EndPvt() {
    end();
}

void RecordPrinter::PhraseNMEA(const std::string& Chaine) {
    // The sentence brings its line end along.
    record(Chaine.substr(0, Chaine.find_last_not_of("\r\n") + 1));
}

}  // namespace marlune::cli
