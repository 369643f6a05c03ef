// The command line, checked as far as it can be before anything is opened.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "cli/PortChoice.h"

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
    nmea
};

struct Options {
    Action action = Action::host;
    std::string mark;  // as given; empty when it was not
    PortChoice port;
    std::vector<PortDevice> portDevices;
    std::optional<std::string> documents;
    std::vector<std::string> drives;
    char decimalSeparator = 0;  // 0 when it was not given
    bool debug = false;

    std::string gpxFile;   // where downloaded records go besides; empty for nowhere
    std::string sendFile;  // what to send
    std::string nmeaCode;
    std::int16_t nmeaSeconds = 0;

    // The family without its rate, in capitals: "GRM" when none was given.
    [[nodiscard]] std::string family() const;
};

// The program's exit statuses; a signal's is 128 and its number, so 130 for Ctrl-C.
enum ExitStatus { kDone = 0, kFailed = 1, kWrongUsage = 2, kSignalled = 128 };

// The options, or the status to exit with at once: the help was printed, or a message about what is
// wrong with the arguments.
std::variant<Options, ExitStatus> parseOptions(int argc, const char* const* argv);

}  // namespace marlune::cli
