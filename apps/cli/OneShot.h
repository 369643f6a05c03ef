// One command against one receiver: connect, do it, disconnect.
#pragma once

#include <memory>

#include "cli/HostServices.h"
#include "cli/Options.h"
#include "cli/Output.h"
#include "cli/RecordPrinter.h"
#include "cli/TransferStop.h"
#include "cli/UploadFile.h"
#include "marlune/GpsControl.h"

namespace marlune::cli {

class OneShot {
public:
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
    void perform();
    void getRoutes();
    void send(bool (GpsControl::*member)(const std::string&));
    void printTime();
    void saveGpx();
    void showBox(const std::string& text, BoxIcon icon);
    void fail(const std::string& text);

    const Options& options_;
    HostServices& host_;
    Output& records_;
    GpxWriter gpx_;
    RecordPrinter printer_;
    GpsControl control_;
    TransferStop stop_;
    std::unique_ptr<UploadFile> file_;
    bool failed_ = false;
};

}  // namespace marlune::cli
