// The control's events for a person or a pipe: the record lines on standard output as they come,
// everything else on standard error; the same lines into a GPX file if one is wanted.
#pragma once

#include <functional>
#include <string>

#include "cli/Output.h"
#include "cli/Progress.h"
#include "control/Surface.h"
#include "marlune/Gpx.h"

namespace marlune::cli {

class RecordPrinter : public NamedEvents {
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

private:
    void raise(const surface::Event& event, std::span<const surface::EventValue> values) override;
    void begin(std::int16_t records, std::string_view header);
    void record(std::string_view text);

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
