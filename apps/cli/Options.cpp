#include "cli/Options.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <filesystem>
#include <stdexcept>
#include <system_error>

namespace marlune::cli {
namespace {

std::string upper(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(), [](char c) {
        return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
    });
    return text;
}

// The empty text for a mark that the control knows, as CLI11's checks want it.
std::string checkMark(const std::string& text) {
    const std::string mark = upper(text);
    constexpr std::string_view kMagellan = "MGN;";
    const bool hasRate =
        mark.starts_with(kMagellan) && mark.size() > kMagellan.size() &&
        mark.find_first_not_of("0123456789", kMagellan.size()) == std::string::npos;
    const bool known =
        hasRate || mark == "GRM" || mark == "GRM_USB" || mark == "MGN" || mark == "MLR";
    return known ? "" : "\"" + text + "\" is none of GRM, GRM_USB, MGN, MGN;RATE and MLR";
}

std::string checkDecimal(const std::string& text) {
    return text == "." || text == "," ? "" : "\"" + text + "\" is neither . nor ,";
}

std::string checkFileName(const std::string& text) {
    return text.empty() ? "an empty name" : "";
}

std::string checkFolder(const std::string& text) {
    std::error_code error;
    const std::filesystem::directory_iterator readable(text, error);
    return error ? text + ": " + error.message() : "";
}

template <class Choice>
std::string checkParses(const std::string& text) {
    try {
        Choice::parse(text);
        return {};
    } catch (const std::invalid_argument& error) {
        return error.what();
    }
}

class Parser {
public:
    Parser() : app_("Exchanges waypoints, routes, tracks and positions with a GPS receiver.") {
        app_.name("marlune");
        app_.set_version_flag("--version", "marlune " MARLUNE_VERSION);
        app_.require_subcommand(0, 1);  // none is told below, by name
        addCommonOptions();
        addDownloads();
        addUploads();
        addOthers();
    }

    std::variant<Options, ExitStatus> parse(int argc, const char* const* argv) {
        try {
            app_.parse(argc, argv);
            if (app_.get_subcommands().empty()) {
                throw CLI::RequiredError("A command");
            }
            readChoices();
            checkPort();
        } catch (const CLI::ParseError& error) {
            return app_.exit(error) == 0 ? kDone : kWrongUsage;
        }
        return options_;
    }

private:
    void addCommonOptions() {
        app_.add_option("--port", port_,
                        "COM number, device path (/dev/ttyUSB0), or virtual[:UNIT] for a built-in "
                        "virtual receiver")
            ->check(checkParses<PortChoice>)
            ->type_name("PORT");
        app_.add_option("--mark", options_.mark,
                        "The receiver's family: GRM (Garmin, the default), GRM_USB, MGN[;RATE] "
                        "(Magellan) or MLR")
            ->check(checkMark)
            ->type_name("MARK");
        app_.add_option("--port-device", portDevices_, "What COM number N means; repeatable")
            ->check(checkParses<PortDevice>)
            ->allow_extra_args(false)
            ->type_name("N=PATH");
        app_.add_option("--documents", options_.documents,
                        "Documents folder; the trace is Palimor/OcxDebug.txt in it")
            ->type_name("DIR");
        app_.add_option(
                "--drive", options_.drives,
                "Treat this folder as a mounted drive of its name; repeatable, replaces the "
                "system's drives")
            ->check(checkFolder)
            ->allow_extra_args(false)
            ->type_name("DIR");
        app_.add_option("--decimal", decimal_, "Decimal separator of the text lines: . or ,")
            ->check(checkDecimal)
            ->type_name("CHARACTER");
        app_.add_flag("--debug", options_.debug, "Write the trace file");
    }

    CLI::App* add(const char* name, const char* description, Action action) {
        CLI::App* sub = app_.add_subcommand(name, description);
        sub->fallthrough();  // the common options may stand behind the command
        sub->footer("The options of \"marlune --help\" may stand here too.");
        sub->callback([this, action] { options_.action = action; });
        return sub;
    }

    void addDownload(const char* name, const char* description, Action action) {
        add(name, description, action)
            ->add_option("--gpx", options_.gpxFile, "Write the records to a GPX file as well")
            ->check(checkFileName)
            ->type_name("FILE");
    }

    void addUpload(const char* name, const char* description, Action action) {
        add(name, description, action)
            ->add_option("FILE", options_.sendFile, "A file of text lines, or a .gpx file")
            ->required()
            ->type_name("");
    }

    void addDownloads() {
        addDownload("waypoints", "Download the waypoints", Action::waypoints);
        addDownload("tracks", "Download the tracks", Action::tracks);
        addDownload("routes", "Download the routes", Action::routes);
        addDownload("proximities", "Download the proximity waypoints", Action::proximities);
        addDownload("pvt", "Follow the position until Ctrl-C or silence", Action::pvt);
    }

    void addUploads() {
        addUpload("send-waypoints", "Send waypoints", Action::sendWaypoints);
        addUpload("send-routes", "Send routes", Action::sendRoutes);
        addUpload("send-tracks", "Send tracks", Action::sendTracks);
    }

    void addOthers() {
        add("ident", "Identify the receiver", Action::ident);
        add("time", "Read the receiver's date and time", Action::time);
        add("position", "Read the receiver's position", Action::position);
        CLI::App* nmea = add("nmea", "Listen to NMEA sentences with a position", Action::nmea);
        nmea->add_option("CODE", options_.nmeaCode, "What the sentences contain: $GPGGA")
            ->required()
            ->type_name("");
        nmea->add_option("SECONDS", options_.nmeaSeconds, "End after so many seconds without one")
            ->required()
            ->check(CLI::Range(1, INT16_MAX).description(""))
            ->type_name("");
        add("host", "Serve calls of the control as JSON lines on standard input", Action::host);
    }

    void readChoices() {
        if (!port_.empty()) {
            options_.port = PortChoice::parse(port_);
        }
        for (const std::string& text : portDevices_) {
            options_.portDevices.push_back(PortDevice::parse(text));
        }
        if (!decimal_.empty()) {
            options_.decimalSeparator = decimal_.front();
        }
    }

    void checkPort() const {
        const bool usb = options_.family() == "GRM_USB";
        const auto kind = options_.port.kind;
        if (usb && kind == PortChoice::Kind::builtIn) {
            throw CLI::ValidationError("--port", "there is no virtual receiver for GRM_USB");
        }
        // The listener uses the port whatever the family.
        const bool needed =
            options_.action == Action::nmea || (options_.action != Action::host && !usb);
        if (needed && kind == PortChoice::Kind::none) {
            throw CLI::RequiredError("--port");
        }
    }

    CLI::App app_;
    Options options_;
    std::string port_;
    std::vector<std::string> portDevices_;
    std::string decimal_;
};

}  // namespace

std::string Options::family() const {
    const std::string family = upper(mark.substr(0, mark.find(';')));
    return family.empty() ? "GRM" : family;
}

std::variant<Options, ExitStatus> parseOptions(int argc, const char* const* argv) {
    return Parser().parse(argc, argv);
}

}  // namespace marlune::cli
