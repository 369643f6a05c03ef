// marlune-receiver: a virtual GPS receiver on a pseudo-terminal or an emulated USB bus, for tests,
// demonstrations and for whoever writes a host program and has no receiver at hand.
// docs/receivers.md is its manual.
//
// The path to open stands alone on the first line of the output. SIGUSR1 prints what the receiver
// holds; SIGINT, SIGTERM and SIGHUP end it with status 0, as does a hang-up that was ordered as a
// fault.
#include <pthread.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <chrono>
#include <csignal>
#include <exception>
#include <iomanip>
#include <iostream>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <string>
#include <thread>

#include "Signals.h"
#include "UsbRun.h"
#include "receivers/Families.h"
#include "receivers/Faults.h"
#include "receivers/PtyRunner.h"

namespace marlune::receivers {
namespace {

constexpr int kWrongUsage = 2;
constexpr int kNoLine = 1;

// Tells the signal thread that the receiver has ended by itself.
constexpr int kEnd = SIGUSR2;

struct Choices {
    std::string family = "garmin";
    ReceiverOptions receiver;
    std::string now;
    std::string link;
    bool print = false;
    std::string pipes = "mixed";
    std::vector<std::string> command;
};

// A Garmin unit that is no serial device: it has its own way to run.
constexpr const char* kUsb = "usb";

// "dd/mm/yyyy hh:mm:ss" as days since 30/12/1899.
double dateOf(const std::string& text) {
    using std::chrono::sys_days;
    unsigned day = 0;
    unsigned month = 0;
    int year = 0;
    unsigned hour = 0;
    unsigned minute = 0;
    unsigned second = 0;
    char slash[2] = {};
    char colon[2] = {};
    std::istringstream in(text);
    in >> day >> slash[0] >> month >> slash[1] >> year >> hour >> colon[0] >> minute >> colon[1] >>
        second;
    const std::chrono::year_month_day date{std::chrono::year(year), std::chrono::month(month),
                                           std::chrono::day(day)};
    const bool read = !in.fail() && (in >> std::ws).eof() && slash[0] == '/' && slash[1] == '/' &&
                      colon[0] == ':' && colon[1] == ':';
    if (!read || !date.ok() || hour > 23 || minute > 59 || second > 59) {
        throw std::invalid_argument("\"" + text + "\" is no date of the form dd/mm/yyyy hh:mm:ss");
    }
    constexpr sys_days kDayZero = std::chrono::year(1899) / std::chrono::December / 30;
    return static_cast<double>((sys_days(date) - kDayZero).count()) +
           (hour * 3600 + minute * 60 + second) / 86400.0;
}

std::string familyNames() {
    std::string names;
    for (const Family& family : receiverFamilies()) {
        names += std::string(family.name) + ", ";
    }
    return names + kUsb;
}

std::string checkFamily(const std::string& name) {
    const std::vector<Family>& families = receiverFamilies();
    const bool known = name == kUsb || std::any_of(families.begin(), families.end(),
                                                   [&](const Family& f) { return f.name == name; });
    return known ? "" : "\"" + name + "\" is none of " + familyNames();
}

std::string checkFileName(const std::string& name) {
    return name.empty() ? "an empty name" : "";
}

std::string unitsHelp() {
    std::ostringstream help;
    for (const Family& family : receiverFamilies()) {
        help << "\nUnits of the family " << family.name << " (the first is the default):\n";
        for (const Unit& unit : family.units()) {
            help << "  " << std::left << std::setw(14) << unit.name << unit.description << "\n";
        }
    }
    return help.str();
}

void describe(CLI::App& app, Choices& choices) {
    ReceiverOptions& receiver = choices.receiver;
    app.add_option("--family", choices.family, "What it speaks: " + familyNames())
        ->check(checkFamily)
        ->type_name("NAME")
        ->capture_default_str();
    app.add_option("--unit", receiver.unit, "A unit of the family, by name");
    app.add_option("--product", receiver.productId, "A Garmin unit by its product id instead");
    app.add_option("--version", receiver.version, "its software version, in hundredths");
    app.add_option("--tags", receiver.tags,
                   "and the protocols that it announces, \"A100 D108 ...\"; without them it "
                   "announces none and the published table tells what it speaks");
    app.add_option("--data", receiver.dataFile, "What it holds, as text lines")
        ->check(checkFileName)
        ->type_name("FILE");
    app.add_option("--baud", receiver.baud,
                   "Line speed in bits per second; bytes then take their time as on a real line")
        ->check(CLI::IsMember({1200, 2400, 4800, 9600, 19200, 38400, 57600, 115200}));
    app.add_option("--rate", receiver.rate, "Real-time records per second")->capture_default_str();
    app.add_flag_callback(
        "--no-fix", [&receiver] { receiver.hasFix = false; },
        "It finds no satellites (families magellan and nmea)");
    app.add_option("--now", choices.now,
                   "Its date at its first contact, \"dd/mm/yyyy hh:mm:ss\"; without it, the "
                   "system's, UTC");
    app.add_option("--fault", receiver.faults, "What goes wrong, see below; repeatable")
        ->type_name("FAULT")
        ->allow_extra_args(false);
    app.add_option("--link", choices.link, "Makes a symbolic link of that name to the pty")
        ->check(checkFileName)
        ->type_name("PATH");
    app.add_option("--pipes", choices.pipes,
                   "On USB: the input pipe that its packets take: interrupt, bulk or mixed")
        ->check(CLI::IsMember({"interrupt", "bulk", "mixed"}))
        ->capture_default_str();
    app.add_option("command", choices.command,
                   "On USB: the program that is to see the receiver, behind \"--\"");
    app.add_flag("--print", choices.print, "Prints what it holds when it ends, as text lines");
    app.footer(
        "\nOpen the path on the first line of the output as a serial port. With --family usb it "
        "is\n"
        "a Garmin unit on a USB bus that only the program behind \"--\" sees:\n"
        "  marlune-receiver --family usb -- marlune waypoints --mark GRM_USB\n"
        "SIGUSR1 prints what the receiver holds; SIGINT, SIGTERM and SIGHUP end it.\n" +
        unitsHelp() + "\n" + Faults::help());
}

void printLines(const PtyRunner& runner) {
    for (const std::string& line : runner.lines()) {
        std::cout << line << "\n";
    }
    std::cout.flush();
}

// Waits for signals beside the running receiver; the signals must be blocked in every thread.
class SignalThread {
public:
    SignalThread(PtyRunner& runner, const sigset_t& signals)
        : thread_([&runner, signals] {
              int signal = 0;
              while (::sigwait(&signals, &signal) == 0 && signal == SIGUSR1) {
                  printLines(runner);
              }
              runner.stop();
          }) {}
    SignalThread(const SignalThread&) = delete;
    SignalThread& operator=(const SignalThread&) = delete;
    ~SignalThread() {
        ::pthread_kill(thread_.native_handle(), kEnd);
        thread_.join();
    }

private:
    std::thread thread_;
};

int runReceiver(const Choices& choices) {
    const sigset_t signals = blockSignals({SIGUSR1, kEnd});
    const ReceiverOptions& options = choices.receiver;
    PtyRunner runner(receiverFamily(choices.family).make(options),
                     {options.baud.has_value(), choices.link});
    std::cout << runner.path() << std::endl;
    {
        const SignalThread signalThread(runner, signals);
        runner.run();
    }
    if (choices.print) {
        printLines(runner);
    }
    for (const std::string& complaint : runner.complaints()) {
        std::cerr << "marlune-receiver: " << complaint << "\n";
    }
    return 0;
}

int runUsb(const Choices& choices) {
    using Habit = ReceiverFunction::Habit;
    const Habit habit = choices.pipes == "interrupt" ? Habit::interrupt
                        : choices.pipes == "bulk"    ? Habit::bulk
                                                     : Habit::mixed;
    return runOnUsb({choices.receiver, habit, choices.print, choices.command});
}

int parseAndRun(int argc, char** argv) {
    Choices choices;
    CLI::App app("A virtual GPS receiver on a pseudo-terminal", "marlune-receiver");
    describe(app, choices);
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& end) {
        return app.exit(end) == 0 ? 0 : kWrongUsage;
    }
    if (!choices.command.empty() && choices.family != kUsb) {
        throw std::invalid_argument("only a receiver on USB takes a program to run");
    }
    if (!choices.link.empty() && choices.family == kUsb) {
        throw std::invalid_argument("a receiver on USB has no pseudo-terminal to link to");
    }
    if (!choices.now.empty()) {
        choices.receiver.now = dateOf(choices.now);
    }
    return choices.family == kUsb ? runUsb(choices) : runReceiver(choices);
}

int receiverMain(int argc, char** argv) {
    try {
        return parseAndRun(argc, argv);
    } catch (const std::invalid_argument& fault) {
        std::cerr << "marlune-receiver: " << fault.what() << "\n";
        return kWrongUsage;
    } catch (const std::exception& fault) {
        std::cerr << "marlune-receiver: " << fault.what() << "\n";
        return kNoLine;
    } catch (...) {
        return kNoLine;
    }
}

}  // namespace
}  // namespace marlune::receivers

int main(int argc, char** argv) {
    return marlune::receivers::receiverMain(argc, argv);
}
