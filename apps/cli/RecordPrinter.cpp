#include "cli/RecordPrinter.h"

#include <unistd.h>

#include <algorithm>
#include <utility>

namespace marlune::cli {
namespace {

template <class T>
T first(std::span<const surface::EventValue> values) {
    return std::get<T>(*std::find_if(
        values.begin(), values.end(),
        [](const surface::EventValue& value) { return std::holds_alternative<T>(value); }));
}

}  // namespace

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

void RecordPrinter::begin(std::int16_t records, std::string_view header) {
    started_ = true;
    message(std::string(header));
    progress_.begin(records);
}

void RecordPrinter::record(std::string_view text) {
    if (muted_) {
        return;
    }
    // A sentence brings its line end along.
    const std::string line(text.substr(0, text.find_last_not_of("\r\n") + 1));
    print(line);
    progress_.advance(++records_);
    if (gpx_ != nullptr) {
        gpx_->addLine(line);
    }
}

void RecordPrinter::raise(const surface::Event& event,
                          std::span<const surface::EventValue> values) {
    switch (event.tells) {
        case surface::Tells::begin:
            begin(first<std::int16_t>(values), std::get<std::string_view>(values.back()));
            break;
        case surface::Tells::end:
            progress_.end();
            break;
        case surface::Tells::status:
            if (const auto text = first<std::string_view>(values); !text.empty()) {
                message(std::string(text));
            }
            break;
        case surface::Tells::record:
            record(first<std::string_view>(values));
            break;
    }
    onEvent_();
}

}  // namespace marlune::cli
