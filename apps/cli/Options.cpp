#include "cli/Options.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <filesystem>
#include <iostream>
#include <stdexcept>
#include <system_error>

#include "cli/Suggestion.h"
#include "control/Families.h"
#include "storage/formats/GpxValues.h"

namespace marlune::cli {
namespace {

std::string upper(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(), [](char c) {
        return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
    });
    return text;
}

bool isRate(std::string_view text) {
    return !text.empty() && text.find_first_not_of("0123456789") == std::string_view::npos;
}

// "MGN" or "MGN;9600" for the Magellan family.
bool names(std::string_view mark, const FamilyTraits& family) {
    if (!family.isChosen || !mark.starts_with(family.code)) {
        return false;
    }
    const std::string_view rest = mark.substr(family.code.size());
    return rest.empty() || (family.takesRate && rest.front() == ';' && isRate(rest.substr(1)));
}

std::string allMarks() {
    std::vector<std::string> marks;
    for (const FamilyTraits& family : familyTraits()) {
        if (family.isChosen) {
            marks.emplace_back(family.code);
        }
        if (family.takesRate) {
            marks.push_back(std::string(family.code) + ";RATE");
        }
    }
    std::string text = marks.front();
    for (std::size_t i = 1; i < marks.size(); ++i) {
        text += (i + 1 < marks.size() ? ", " : " and ") + marks[i];
    }
    return text;
}

// The empty text for a mark that the control knows, as CLI11's checks want it.
std::string checkMark(const std::string& text) {
    const auto families = familyTraits();
    const bool known = std::any_of(families.begin(), families.end(),
                                   [&](const auto& family) { return names(upper(text), family); });
    return known ? "" : "\"" + text + "\" is none of " + allMarks();
}

std::string checkDecimal(const std::string& text) {
    return text == "." || text == "," ? "" : "\"" + text + "\" is neither . nor ,";
}

std::string checkLanguage(const std::string& text) {
    return text == "en" || text == "fr" ? "" : "\"" + text + "\" is neither en nor fr";
}

std::string checkFormat(const std::string& text) {
    return text == "nmea" || fileFormatNamed(text)
               ? ""
               : "\"" + text + "\" is none of gpx, kml, geojson, csv and lines (nor nmea for pvt)";
}

// A day or a moment, UTC.
std::optional<double> momentOf(const std::string& text) {
    const auto moment = isoSeconds(text);
    return moment ? moment : isoSeconds(text + "T00:00:00Z");
}

std::string checkDate(const std::string& text) {
    return momentOf(text) ? "" : "\"" + text + "\" is no date such as 2026-11-21";
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

constexpr const char* kExamples =
    "Examples:\n"
    "  marlune find\n"
    "  marlune ident --port /dev/ttyUSB0\n"
    "  marlune tracks --port /dev/ttyUSB0 -o tracks.gpx\n"
    "  marlune send-waypoints places.gpx --port 1 --mark MGN\n"
    "\"--port virtual\" plays a receiver for trying things out.";

bool isDownload(Action action) {
    return action == Action::waypoints || action == Action::tracks || action == Action::routes ||
           action == Action::proximities || action == Action::pvt;
}

bool isUpload(Action action) {
    return action == Action::sendWaypoints || action == Action::sendRoutes ||
           action == Action::sendTracks;
}

class Parser {
public:
    Parser() : app_("Exchanges waypoints, routes, tracks and positions with a GPS receiver.") {
        app_.name("marlune");
        app_.set_version_flag("--version", "marlune " MARLUNE_VERSION);
        app_.require_subcommand(0, 1);  // none is told below, by name
        app_.footer(kExamples);
        addCommonOptions();
        addSpecialOptions();
        addDownloads();
        addUploads();
        addOthers();
    }

    std::variant<Options, ExitStatus> parse(int argc, const char* const* argv) {
        try {
            app_.parse(argc, argv);
            if (app_.get_subcommands().empty()) {
                std::cerr << app_.help() << '\n';
                throw CLI::RequiredError("A command");
            }
            readChoices();
            checkPort();
            checkSpecialOptions();
        } catch (const CLI::Success& success) {
            app_.exit(success);
            return kDone;
        } catch (const CLI::ParseError& error) {
            std::cerr << "marlune: " << error.what() << '\n'
                      << suggestion() << "Run with --help for more information.\n";
            return kWrongUsage;
        }
        return options_;
    }

private:
    void addCommonOptions() {
        app_.add_option("--port", port_,
                        "COM number, device path (/dev/ttyUSB0), virtual[:UNIT] for a built-in "
                        "virtual receiver, or auto for the only receiver that answers")
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
        app_.add_option("--decimal", decimal_,
                        "Decimal separator of the text lines: . (the default) or ,")
            ->check(checkDecimal)
            ->type_name("CHARACTER");
        app_.add_flag("--debug", options_.debug, "Write the trace file");
        app_.add_option("--timeout", options_.timeout,
                        "Give up after so many seconds without a byte; 30 without this option, 0 "
                        "for never")
            ->check(CLI::NonNegativeNumber.description(""))
            ->type_name("SECONDS");
        app_.add_option("--lang", language_,
                        "Language of the messages: en or fr; the locale's without this option")
            ->check(checkLanguage)
            ->type_name("LANGUAGE");
    }

    // Those of certain commands. They are here all the same, so that they may stand in front.
    void addSpecialOptions() {
        file_ = app_.add_option("-o,--output,--gpx", options_.file,
                                "With downloads and pvt: write the records to a file as well, by "
                                "its suffix GPX, KML, GeoJSON, CSV or lines; - for standard "
                                "output, without the lines then")
                    ->check(checkFileName)
                    ->type_name("FILE");
        format_ = app_.add_option("--format", formatName_,
                                  "The file's format whatever its name: gpx, kml, geojson, csv or "
                                  "lines; without a file, of standard output. nmea with pvt: "
                                  "prints sentences (GGA, RMC)")
                      ->check(checkFormat)
                      ->type_name("FORMAT");
        link_ = app_.add_option("--link", options_.link,
                                "With pvt: offer sentences on a pseudo terminal of that name")
                    ->check(checkFileName)
                    ->type_name("PATH");
        fixDates_ = app_.add_flag("--fix-dates", fixesDates_,
                                  "In files: move dates forward that an old receiver reports 1024 "
                                  "weeks or more in the past");
        reference_ = app_.add_option("--reference", referenceDate_,
                                     "With that: the day to which dates may move; without this "
                                     "option, the day this program was built")
                         ->check(checkDate)
                         ->type_name("DATE");
        keepPartial_ = app_.add_flag("--keep-partial", options_.keepPartial,
                                     "With that: keep what an incomplete transfer brought, in a "
                                     "file of its own beside FILE");
        trustTable_ = app_.add_flag("--trust-table", options_.trustTable,
                                    "With send-...: send although the receiver's record types are "
                                    "a guess");
        details_ = app_.add_flag("--details", options_.details,
                                 "With host: tell reports and records as values, too");
    }

    CLI::App* add(const char* name, const char* description, Action action) {
        CLI::App* sub = app_.add_subcommand(name, description);
        sub->fallthrough();  // the common options may stand behind the command
        sub->footer("The options of \"marlune --help\" may stand here too.");
        sub->callback([this, action] { options_.action = action; });
        return sub;
    }

    void addUpload(const char* name, const char* description, Action action) {
        add(name, description, action)
            ->add_option("FILE", options_.sendFile, "A file of text lines, or a .gpx or .csv file")
            ->required()
            ->type_name("");
    }

    void addDownloads() {
        add("waypoints", "Download the waypoints", Action::waypoints);
        add("tracks", "Download the tracks", Action::tracks);
        add("routes", "Download the routes", Action::routes);
        add("proximities", "Download the proximity waypoints", Action::proximities);
        add("pvt", "Follow the position until Ctrl-C or silence", Action::pvt);
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
        add("ports", "List the ports, and what is there", Action::ports);
        CLI::App* find = add("find", "Ask the ports who is there", Action::find);
        find->add_option("PORT", options_.ports, "Ports to ask; all without this")->type_name("");
        find->add_flag("--all", options_.all, "Ask ports that nothing is plugged into, too");
        add("host", "Serve calls of the control as JSON lines on standard input", Action::host);
    }

    void readChoices() {
        if (!port_.empty()) {
            options_.port = PortChoice::parse(port_);
        }
        for (const std::string& text : portDevices_) {
            options_.portDevices.push_back(PortDevice::parse(text));
        }
        if (formatName_ == "nmea") {
            options_.sentences = true;
        } else if (!formatName_.empty()) {
            options_.format = fileFormatNamed(formatName_);
            const bool isWhatIsPrinted = options_.format == FileFormat::lines;
            if (options_.file.empty() && !isWhatIsPrinted) {
                options_.file = "-";
            }
        }
        if (fixesDates_ || !referenceDate_.empty()) {
            options_.dateReference =
                referenceDate_.empty() ? buildDate() : momentOf(referenceDate_);
        }
        if (!decimal_.empty()) {
            options_.decimalSeparator = decimal_.front();
        }
        const bool french = language_.empty() ? words::userLanguage() == words::Language::french
                                              : language_ == "fr";
        options_.language = french ? words::Language::french : words::Language::english;
    }

    void checkPort() const {
        const bool usb = options_.traits().isOnUsb;
        const auto kind = options_.port.kind;
        if (usb && kind == PortChoice::Kind::builtIn) {
            throw CLI::ValidationError("--port", "there is no virtual receiver for GRM_USB");
        }
        // The listener uses the port whatever the family.
        const Action action = options_.action;
        const bool portless =
            action == Action::host || action == Action::ports || action == Action::find;
        const bool needed = action == Action::nmea || (!portless && !usb);
        if (needed && kind == PortChoice::Kind::none) {
            throw CLI::RequiredError("--port");
        }
    }

    void checkSpecialOptions() const {
        const Action action = options_.action;
        const auto allow = [](const CLI::Option* option, bool allowed, const char* where) {
            if (option->count() > 0 && !allowed) {
                throw CLI::ValidationError(option->get_name(false, true), where);
            }
        };
        allow(file_, isDownload(action), "only downloads and pvt write files");
        allow(format_, isDownload(action), "only downloads and pvt write files");
        allow(fixDates_, isDownload(action) || action == Action::host,
              "only downloads and pvt write files");
        allow(reference_, isDownload(action) || action == Action::host,
              "only downloads and pvt write files");
        allow(link_, action == Action::pvt, "only pvt offers sentences");
        if (options_.sentences && action != Action::pvt) {
            throw CLI::ValidationError("--format", "only pvt has sentences");
        }
        allow(keepPartial_, isDownload(action), "only downloads and pvt write files");
        allow(trustTable_, isUpload(action), "only the send commands send");
        allow(details_, action == Action::host, "only host tells details");
    }

    // A line about the first word that nobody knows; empty when all are known.
    [[nodiscard]] std::string suggestion() const {
        std::string unknown;
        for (const CLI::App* app : withCommands()) {
            if (const auto rest = app->remaining(); !rest.empty() && unknown.empty()) {
                unknown = rest.front();
            }
        }
        const std::string near = nearest(unknown.substr(0, unknown.find('=')), knownWords(unknown));
        return unknown.empty() || near.empty() ? "" : "Did you mean " + near + "?\n";
    }

    [[nodiscard]] std::vector<const CLI::App*> withCommands() const {
        std::vector<const CLI::App*> apps = {&app_};
        for (const CLI::App* command : app_.get_subcommands(nullptr)) {
            apps.push_back(command);
        }
        return apps;
    }

    [[nodiscard]] std::vector<std::string> knownWords(const std::string& like) const {
        std::vector<std::string> words;
        if (like.starts_with('-')) {
            for (const CLI::Option* option : app_.get_options()) {
                for (const std::string& name : option->get_lnames()) {
                    words.push_back("--" + name);
                }
            }
        } else {
            for (const CLI::App* command : app_.get_subcommands(nullptr)) {
                words.push_back(command->get_name());
            }
        }
        return words;
    }

    CLI::App app_;
    CLI::Option* file_ = nullptr;
    CLI::Option* format_ = nullptr;
    CLI::Option* link_ = nullptr;
    CLI::Option* fixDates_ = nullptr;
    CLI::Option* reference_ = nullptr;
    CLI::Option* keepPartial_ = nullptr;
    CLI::Option* trustTable_ = nullptr;
    CLI::Option* details_ = nullptr;
    Options options_;
    std::string port_;
    std::vector<std::string> portDevices_;
    std::string decimal_;
    std::string language_;
    std::string formatName_;
    bool fixesDates_ = false;
    std::string referenceDate_;
};

}  // namespace

const FamilyTraits& Options::traits() const {
    const auto families = familyTraits();
    return *std::find_if(families.begin(), families.end(),
                         [this](const FamilyTraits& each) { return each.code == family(); });
}

std::string Options::family() const {
    const std::string family = upper(mark.substr(0, mark.find(';')));
    return family.empty() ? "GRM" : family;
}

double Options::patience(bool listening) const {
    constexpr double kPatience = 30;
    return timeout.value_or(listening ? 0 : kPatience);
}

std::variant<Options, ExitStatus> parseOptions(int argc, const char* const* argv) {
    return Parser().parse(argc, argv);
}

}  // namespace marlune::cli
