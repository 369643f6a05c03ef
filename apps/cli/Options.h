// The command line, checked as far as it can be before anything is opened.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "cli/PortChoice.h"
#include "family/FamilyTraits.h"
#include "marlune/RecordFiles.h"
#include "words/Speech.h"

namespace marlune::cli {

enum class Action {
    host,
    ident,
    waypoints,
    tracks,
    routes,
    proximities,
    sendWaypoints,
    sendRoutes,
    sendTracks,
    time,
    position,
    pvt,
    nmea,
    ports,
    find
};

struct Options {
    Action action = Action::host;
    words::Language language = words::Language::english;
    std::string mark;  // as given; empty when it was not
    PortChoice port;
    std::vector<PortDevice> portDevices;
    std::optional<std::string> documents;
    std::vector<std::string> drives;
    std::optional<double> timeout;  // seconds of patience; 0 for none

    std::string file;  // where downloaded records go besides; "-" for standard output, empty for
                       // nowhere
    std::optional<FileFormat> format;     // of that file, in place of what its name says
    std::optional<double> dateReference;  // old dates move towards it, when given
    std::string link;                     // where pvt offers sentences; empty for nowhere
    std::string sendFile;                 // what to send
    std::string nmeaCode;
    std::vector<std::string> ports;  // to ask, as --port takes them; empty for all there are

    std::int16_t nmeaSeconds = 0;
    char decimalSeparator = '.';
    bool debug = false;
    bool sentences = false;  // pvt prints sentences in place of lines
    bool keepPartial = false;
    bool trustTable = false;
    bool details = false;
    bool all = false;  // also ports without a plugged adapter

    // The family without its rate, in capitals: "GRM" when none was given.
    [[nodiscard]] std::string family() const;
    // What is to be known of it.
    [[nodiscard]] const FamilyTraits& traits() const;
    // How long a member may wait for a byte. The listener has a time of its own for that.
    [[nodiscard]] double patience(bool listening) const;
};

// The program's exit statuses; a signal's is 128 and its number, so 130 for Ctrl-C.
enum ExitStatus { kDone = 0, kFailed = 1, kWrongUsage = 2, kIncomplete = 3, kSignalled = 128 };

// The options, or the status to exit with at once: the help was printed, or a message about what is
// wrong with the arguments.
std::variant<Options, ExitStatus> parseOptions(int argc, const char* const* argv);

}  // namespace marlune::cli
