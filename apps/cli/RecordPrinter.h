// The control's events for a person or a pipe: the record lines on standard output as they come,
// everything else on standard error; the same records into a file if one is wanted.
#pragma once

#include <functional>
#include <string>

#include "cli/Output.h"
#include "cli/Progress.h"
#include "cli/RecordFile.h"
#include "control/Surface.h"

namespace marlune::cli {

class RecordPrinter : public NamedEvents {
public:
    // onEvent is called at the end of every handler. file may be null.
    RecordPrinter(Output& records, Output& messages, RecordFile* file,
                  std::function<void()> onEvent);

    // A text on standard error, on lines of its own.
    void message(const std::string& text);
    // A line on standard output.
    void print(const std::string& line);
    // While muted, records are neither printed nor written to the file.
    void mute(bool on) { muted_ = on; }

    // Asked before a record of real time is printed; true when it was taken in another way.
    std::function<bool(const surface::Event& event)> onRecord;

    // How many lines of the listener were no sentences, and were dropped.
    [[nodiscard]] int notSentences() const { return notSentences_; }

private:
    void raise(const surface::Event& event, std::span<const surface::EventValue> values) override;
    void begin(std::int16_t records, std::string_view header);
    void record(std::string_view line, bool prints);
    void sentence(std::string_view text);

    Output& output_;
    Output& messages_;
    Progress progress_;
    RecordFile* file_;
    std::function<void()> onEvent_;
    bool muted_ = false;
    std::size_t records_ = 0;
    int notSentences_ = 0;
};

}  // namespace marlune::cli
