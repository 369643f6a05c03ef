#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "cli/Options.h"

namespace marlune::cli {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::internal::CaptureStderr;
using testing::internal::CaptureStdout;
using testing::internal::GetCapturedStderr;
using testing::internal::GetCapturedStdout;

std::variant<Options, ExitStatus> parse(std::vector<const char*> arguments) {
    arguments.insert(arguments.begin(), "marlune");
    return parseOptions(static_cast<int>(arguments.size()), arguments.data());
}

TEST(Options, StandBeforeOrBehindTheCommand) {
    const std::vector<const char*> words = {
        "--port",        "3",   "--mark",  "mgn;9600",    "--port-device", "3=/dev/x",
        "--port-device", "4=y", "--drive", "/tmp",        "--drive",       "/",
        "--decimal",     ",",   "--debug", "--documents", "docs",          "--gpx",
        "a.gpx"};
    const auto command = {"tracks"};
    for (const bool before : {true, false}) {
        std::vector<const char*> arguments = words;
        arguments.insert(before ? arguments.end() : arguments.begin(), command);
        const auto parsed = parse(arguments);
        ASSERT_TRUE(std::holds_alternative<Options>(parsed));
        const auto& options = std::get<Options>(parsed);
        EXPECT_EQ(options.action, Action::tracks);
        EXPECT_EQ(options.file, "a.gpx");
        EXPECT_EQ(options.port.kind, PortChoice::Kind::number);
        EXPECT_EQ(options.port.number, 3);
        EXPECT_EQ(options.mark, "mgn;9600");
        EXPECT_EQ(options.family(), "MGN");
        ASSERT_EQ(options.portDevices.size(), 2U);
        EXPECT_EQ(options.portDevices[0].number, 3);
        EXPECT_EQ(options.portDevices[0].path, "/dev/x");
        EXPECT_EQ(options.portDevices[1].path, "y");
        EXPECT_THAT(options.drives, ElementsAre("/tmp", "/"));
        EXPECT_EQ(options.decimalSeparator, ',');
        EXPECT_TRUE(options.debug);
        EXPECT_EQ(options.documents, "docs");
    }
}

TEST(Options, PortsAreNumbersDevicesOrVirtualReceivers) {
    using Kind = PortChoice::Kind;
    const struct {
        const char* port;
        Kind kind;
        int number;
        const char* text;
    } cases[] = {
        {"1", Kind::number, 1, ""},
        {"32767", Kind::number, 32767, ""},
        {"/dev/ttyUSB0", Kind::device, 0, "/dev/ttyUSB0"},
        {"tty=1", Kind::device, 0, "tty=1"},
        {"virtual", Kind::builtIn, 0, ""},
        {"virtual:GPS 12", Kind::builtIn, 0, "GPS 12"},
        {"./virtual", Kind::device, 0, "./virtual"},
    };
    for (const auto& c : cases) {
        const auto parsed = parse({"ident", "--port", c.port});
        ASSERT_TRUE(std::holds_alternative<Options>(parsed)) << c.port;
        const PortChoice& port = std::get<Options>(parsed).port;
        EXPECT_EQ(port.kind, c.kind) << c.port;
        EXPECT_EQ(port.number, c.number) << c.port;
        EXPECT_EQ(port.text, c.text) << c.port;
    }
}

TEST(Options, WrongUsageIsToldAndOpensNothing) {
    const struct {
        std::vector<const char*> arguments;
        const char* message;
    } cases[] = {
        {{}, "A command is required"},
        {{}, "marlune send-waypoints places.gpx"},
        {{"dance"}, "dance"},
        {{"wayponts", "--port", "1"}, "Did you mean waypoints?"},
        {{"tracks", "--prot=1"}, "Did you mean --port?"},
        {{"ident"}, "--port"},
        {{"nmea", "--mark", "GRM_USB", "$GPGGA", "5"}, "--port"},
        {{"ident", "--port", ""}, "COM number"},
        {{"ident", "--port", "99999"}, "99999"},
        {{"ident", "--port", "1", "--mark", "TOMTOM"}, "TOMTOM"},
        {{"ident", "--port", "1", "--mark", "GRM;9600"}, "GRM;9600"},
        {{"ident", "--port", "1", "--mark", "MGN;fast"}, "MGN;fast"},
        {{"ident", "--port", "virtual", "--mark", "GRM_USB"}, "GRM_USB"},
        {{"ident", "--port", "1", "--port-device", "1"}, "device path"},
        {{"ident", "--port", "1", "--port-device", "one=/dev/x"}, "one=/dev/x"},
        {{"ident", "--port", "1", "--port-device", "1="}, "1="},
        {{"ident", "--port", "1", "--decimal", ";"}, "neither . nor ,"},
        {{"ident", "--port", "1", "--drive", "/no/such/folder"}, "/no/such/folder"},
        {{"ident", "--port", "1", "--gpx", "a.gpx"}, "--gpx"},
        {{"tracks", "--port", "1", "--trust-table"}, "--trust-table"},
        {{"tracks", "--port", "1", "--details"}, "--details"},
        {{"tracks", "--port", "1", "--timeout", "-1"}, "--timeout"},
        {{"tracks", "--port", "1", "--lang", "de"}, "neither en nor fr"},
        {{"ident", "--port", "1", "more"}, "more"},
        {{"send-waypoints", "--port", "1"}, "FILE"},
        {{"nmea", "--port", "1", "$GPGGA"}, "SECONDS"},
        {{"nmea", "--port", "1", "$GPGGA", "0"}, "SECONDS"},
        {{"nmea", "--port", "1", "$GPGGA", "32768"}, "SECONDS"},
        {{"nmea", "--port", "1", "$GPGGA", "soon"}, "SECONDS"},
    };
    for (const auto& c : cases) {
        CaptureStderr();
        const auto parsed = parse(c.arguments);
        EXPECT_THAT(GetCapturedStderr(), HasSubstr(c.message));
        ASSERT_TRUE(std::holds_alternative<ExitStatus>(parsed)) << c.message;
        EXPECT_EQ(std::get<ExitStatus>(parsed), kWrongUsage) << c.message;
    }
}

TEST(Options, HelpIsNoError) {
    for (const char* option : {"--help", "--version"}) {
        CaptureStdout();
        const auto parsed = parse({option});
        EXPECT_FALSE(GetCapturedStdout().empty());
        ASSERT_TRUE(std::holds_alternative<ExitStatus>(parsed)) << option;
        EXPECT_EQ(std::get<ExitStatus>(parsed), kDone);
    }
}

}  // namespace
}  // namespace marlune::cli
