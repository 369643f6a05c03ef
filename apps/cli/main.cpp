// marlune: one command against a GPS receiver, or the control as a child process of any program.
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <exception>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <system_error>

#include "cli/HostServices.h"
#include "cli/Interrupt.h"
#include "cli/OneShot.h"
#include "cli/Options.h"
#include "cli/Output.h"
#include "cli/PortCommands.h"
#include "cli/host/JsonHostSession.h"
#include "receivers/BuiltIn.h"
#include "words/Phrases.h"

namespace marlune::cli {
namespace {

constexpr int kLastPort = 40;

void configure(HostServices& host, const Options& options) {
    for (const PortDevice& device : options.portDevices) {
        host.bindPort(device.number, device.path);
    }
    if (options.documents) {
        host.setDocumentsFolder(*options.documents);
    }
    for (const std::string& drive : options.drives) {
        host.addDriveFolder(drive);
    }
    host.setDecimalSeparator(options.decimalSeparator);  // programs read it: not the locale's
    host.setPatience(options.patience(options.action == Action::nmea));
}

// The trace's folder is never made, and without it the control says nothing.
void tellWithoutTrace(HostServices& host, const Options& options, Output& messages) {
    const auto folder = std::filesystem::path(host.documentsFolder()) / "Palimor";
    std::error_code ignored;
    if (options.debug && !std::filesystem::is_directory(folder, ignored)) {
        const words::Speech say(options.language);
        messages.write("marlune: " + say(words::phrase::kNoTrace, {folder.string()}) + "\n");
    }
}

// The highest COM number that the user gave no meaning of its own.
int unusedPort(const Options& options) {
    const auto used = [&](int number) {
        return std::any_of(options.portDevices.begin(), options.portDevices.end(),
                           [&](const PortDevice& device) { return device.number == number; });
    };
    int number = kLastPort;
    while (number > 1 && used(number)) {
        --number;
    }
    return number;
}

// The family of "--port virtual". A listener wants a receiver that speaks without being asked.
std::string virtualFamily(const Options& options) {
    return options.action == Action::nmea && options.mark.empty() ? "nmea" : options.family();
}

// Sets the control up as the options say. Returns the receiver that "--port virtual" asks for.
std::unique_ptr<receivers::BuiltIn> setUp(GpsControl& control, HostServices& host,
                                          const Options& options) {
    control.setDateReference(options.dateReference);
    if (options.debug) {
        control.SetDebug("ON");
    }
    if (!options.mark.empty()) {
        control.SetGpsMark(options.mark);
    }
    std::unique_ptr<receivers::BuiltIn> receiver;
    if (options.port.kind == PortChoice::Kind::number) {
        control.setNumPort(static_cast<numPort>(options.port.number));
    } else if (options.port.kind != PortChoice::Kind::none) {
        std::string path = options.port.text;
        if (options.port.kind == PortChoice::Kind::builtIn) {
            const SignalsHeld held;
            receiver =
                std::make_unique<receivers::BuiltIn>(virtualFamily(options), options.port.text);
            path = receiver->path();
        }
        const int number = unusedPort(options);
        host.bindPort(number, path);
        control.setNumPort(static_cast<numPort>(number));
    }
    return receiver;
}

int runCommand(const Options& given, const Interrupt& interrupt) {
    HostServices host(interrupt);
    configure(host, given);
    Output records(STDOUT_FILENO, interrupt);
    Output messages(STDERR_FILENO, interrupt);
    const Options options = given.port.kind == PortChoice::Kind::automatic
                                ? withFoundPort(given, host, messages)
                                : given;
    tellWithoutTrace(host, options, messages);
    if (options.action == Action::ports) {
        return listPorts(host, records);
    }
    if (options.action == Action::find) {
        const int status = findReceivers(options, host, records, messages);
        return interrupt.requested() ? kSignalled + interrupt.signal() : status;
    }
    int status = kDone;
    if (options.action == Action::host) {
        JsonHostSession session(options, STDIN_FILENO, records, host, interrupt);
        const auto receiver = setUp(session.control(), host, options);
        session.run();
        status = records.broken() ? kFailed : kDone;
    } else {
        OneShot command(options, host, records, messages);
        const auto receiver = setUp(command.control(), host, options);
        status = command.run();
    }
    return interrupt.requested() ? kSignalled + interrupt.signal() : status;
}

// A port or pipe that took the number of a closed standard stream would be taken for that stream.
void openStandardStreams() {
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (fcntl(stream, F_GETFD) < 0) {
            // The lowest free number is the stream's own. Reading ends at once; writing fails.
            (void)open("/dev/null", stream == STDIN_FILENO ? O_WRONLY : O_RDONLY);
        }
    }
}

int run(int argc, const char* const* argv) {
    openStandardStreams();
    const auto parsed = parseOptions(argc, argv);
    if (const ExitStatus* status = std::get_if<ExitStatus>(&parsed)) {
        return *status;
    }
    const Interrupt interrupt;
    return runCommand(std::get<Options>(parsed), interrupt);
}

}  // namespace
}  // namespace marlune::cli

int main(int argc, char** argv) {
    const auto complain = [](const std::exception& error) {
        const std::string text = std::string("marlune: ") + error.what() + "\n";
        [[maybe_unused]] const ssize_t written = write(STDERR_FILENO, text.data(), text.size());
    };
    try {
        return marlune::cli::run(argc, argv);
    } catch (const std::invalid_argument& error) {
        complain(error);
        return marlune::cli::kWrongUsage;
    } catch (const std::exception& error) {
        complain(error);
        return marlune::cli::kFailed;
    }
}
