#include "cli/RecordPrinter.h"

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

RecordPrinter::RecordPrinter(Output& records, Output& messages, RecordFile* file,
                             std::function<void()> onEvent)
    : output_(records),
      messages_(messages),
      progress_(messages),
      file_(file),
      onEvent_(std::move(onEvent)) {}

void RecordPrinter::message(const std::string& text) {
    progress_.clear();
    messages_.writeForeign(text + "\n");
}

void RecordPrinter::print(const std::string& line) {
    if (output_.isTerminal()) {
        progress_.clear();  // most likely the same terminal
    }
    output_.writeForeign(line + "\n");
}

void RecordPrinter::begin(std::int16_t records, std::string_view header) {
    message(std::string(header));
    progress_.begin(records);
}

void RecordPrinter::record(std::string_view line, bool prints) {
    if (muted_) {
        return;
    }
    if (file_ != nullptr) {
        file_->add(line);
    }
    if (prints && (file_ == nullptr || !file_->takesStandardOutput())) {
        print(std::string(line));
    }
    progress_.advance(++records_);
}

// The text reaches to the next sentence: what a line is that carries other things, too, and what
// stands between its sentences, is the device's affair and not shown.
void RecordPrinter::sentence(std::string_view text) {
    const std::string_view line = text.substr(0, text.find_first_of("\r\n"));
    const bool printable =
        std::all_of(line.begin(), line.end(), [](char c) { return c >= ' ' && c <= '~'; });
    if (printable && line.starts_with('$')) {
        record(line, true);
    } else {
        ++notSentences_;
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
            if (const auto text = first<std::string_view>(values);
                !text.empty() && messages_.isTerminal()) {
                message(std::string(text));
            }
            break;
        case surface::Tells::sentence:
            sentence(first<std::string_view>(values));
            break;
        default:
            record(first<std::string_view>(values), !(onRecord && onRecord(event)));
            break;
    }
    onEvent_();
}

}  // namespace marlune::cli
