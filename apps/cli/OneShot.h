// One command against one receiver: connect, do it, disconnect, and tell how it went.
#pragma once

#include <memory>
#include <optional>

#include "cli/HostServices.h"
#include "cli/LiveFeed.h"
#include "cli/Options.h"
#include "cli/Output.h"
#include "cli/RecordFile.h"
#include "cli/RecordPrinter.h"
#include "cli/TransferStop.h"
#include "marlune/GpsControl.h"
#include "words/Speech.h"
#include "words/UploadFile.h"
#include "words/Verdict.h"

namespace marlune::cli {

class OneShot {
public:
    // Throws std::system_error when the file for the records could not be written.
    OneShot(const Options& options, HostServices& host, Output& records, Output& messages);
    OneShot(const OneShot&) = delete;
    OneShot& operator=(const OneShot&) = delete;

    [[nodiscard]] GpsControl& control() { return control_; }

    // Throws std::runtime_error, with a text for the user, when the file to send is no good; then
    // nothing was opened.
    ExitStatus run();

private:
    void prepareFile();
    bool connect();
    void explainFailure();
    bool maySend();
    void tellCapabilities();
    void perform();
    void getRoutes();
    void printTime();
    void printPosition();
    // Tells how the transfer went and keeps what came.
    ExitStatus finish();
    bool saveFile(bool whole);
    // What the command downloaded, and where from.
    [[nodiscard]] Records delivered() const;
    FileHead fileHead();
    // A position of real time. True when its sentences stand for its line.
    bool follow(const surface::Event& event);
    void say(const std::string& text);

    const Options& options_;
    HostServices& host_;
    Output& records_;
    Output& messages_;
    words::Speech speech_;
    std::optional<RecordFile> recordFile_;
    RecordPrinter printer_;
    GpsControl control_;
    TransferStop stop_;
    std::unique_ptr<words::UploadFile> uploadFile_;
    std::unique_ptr<LiveFeed> feed_;
    TrackRecord followed_;  // the positions of real time
};

}  // namespace marlune::cli
