// One-shot commands from outside: a child process, its receiver played by the test on a pty.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>

#include "cli/Program.h"
#include "garmin/GarminRecords.h"
#include "marlune/Gpx.h"
#include "support/Dialogue.h"
#include "support/Pty.h"
#include "support/TempFolder.h"

namespace marlune::cli {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

const std::string kPlace = "W;\xC3\x89T\xC3\x89;45;45;;0;18;0";
const std::string kTags = "A10 A100 D100 A200 D201 D100 A300 D300";

class OneShotTest : public testing::Test {
protected:
    // Plays the unit's side, byte for byte.
    void play(const Script& script) const {
        for (const Step& step : script) {
            if (step.kind == Step::Kind::answers) {
                ASSERT_EQ(device.write(step.bytes), step.bytes.size());
            } else {
                ASSERT_EQ(device.read(step.bytes.size()), step.bytes);
            }
        }
    }

    // The handshake, with the abort acknowledged: the program need not wait for that in vain.
    void connect() const {
        Script script = garminHandshake(kTags);
        script.insert(script.begin() + 1, answers(6, {10, 0}));
        play(script);
    }

    // Sends a file that holds kPlace.
    void sendPlace(const std::string& file) const {
        Program program = start({"send-waypoints", file});
        connect();
        play({sends(27, {1, 0}), answers(6, {27, 0})});
        EXPECT_EQ(program.line(), kPlace);
        const Bytes frame = device.read(5);  // 16, 35, size and the first letters
        EXPECT_EQ(frame, (Bytes{16, 35, 58, 0xC9, 'T'}));
        (void)device.readArrived();
        play({answers(6, {35, 0}), sends(12, {0})});
        EXPECT_EQ(program.wait(), 0);
    }

    [[nodiscard]] Program start(std::vector<std::string> arguments) const {
        arguments.insert(arguments.end(), {"--port", device.slavePath(), "--lang", "en"});
        return Program(std::move(arguments));
    }

    Pty device;
    TempFolder folder;
};

TEST_F(OneShotTest, PrintsRecordsAndKeepsTheMessagesApart) {
    const std::string gpx = folder.path() / "out.gpx";
    Program program = start({"waypoints", "--gpx", gpx});
    connect();
    play({sends(10, {7, 0}), answers(27, {2, 0}), acks(27), answers(35, d100("PT1")), acks(35)});
    // Each line is out before the next record.
    EXPECT_EQ(program.line(), d100Line("PT1"));
    play({answers(35, d100("PT2")), acks(35), answers(12, {7, 0}), acks(12)});
    EXPECT_EQ(program.rest(), d100Line("PT2") + "\n");
    EXPECT_EQ(program.wait(), 0);
    EXPECT_EQ(program.errors(), "---- W;id;lat;lon;comment;altitude;symbole;display opt. ------\n");
    EXPECT_THAT(GpxReader(GpxKind::waypoints).readFile(gpx),
                ElementsAre(d100Line("PT1"), d100Line("PT2")));
}

TEST_F(OneShotTest, NoticesAreNoFailure) {
    Program program = start({"tracks", "--gpx", folder.path() / "out.gpx"});
    connect();
    play({sends(10, {6, 0}), answers(27, {0, 0}), acks(27)});
    EXPECT_EQ(program.rest(), "");
    EXPECT_EQ(program.wait(), 0);
    EXPECT_EQ(program.errors(), "Aucune trace dans ce GPS\n");
    EXPECT_THAT(GpxReader(GpxKind::tracks).readFile(folder.path() / "out.gpx"), IsEmpty());
}

TEST_F(OneShotTest, ErrorsAreAndKeepTheOldFile) {
    const std::string gpx = folder.write("old.gpx", "old");
    Program program = start({"routes", "--gpx", gpx});
    connect();
    play({sends(10, {4, 0}), answers(21, {10, 0})});
    EXPECT_EQ(program.wait(), 1);
    EXPECT_EQ(program.errors(),
              "Erreur de protocole - pid = 21\n"
              "marlune: no route records received: the receiver refused\n");
    EXPECT_EQ(folder.read("old.gpx"), "old");
}

TEST_F(OneShotTest, TellsWhoTheReceiverIs) {
    const std::string nowhere = folder.path() / "none";
    Program program = start({"ident", "--debug", "--documents", nowhere});
    connect();
    EXPECT_EQ(program.rest(),
              "Marlune Version 1.0.0 -  GPSId: 77 Version: 2.8 - eTrex\n"
              "A010 A100 D100 A200 D201 D100 A300 D300\n");
    EXPECT_EQ(program.wait(), 0);
    EXPECT_EQ(program.errors(), "marlune: no trace is written: there is no folder " + nowhere +
                                    "/Palimor\nmarlune: the receiver announced its protocols\n");
    EXPECT_FALSE(std::filesystem::exists(nowhere));
}

TEST_F(OneShotTest, ReadsTheTimeAndPrintsItAsText) {
    Program program = start({"time"});
    connect();
    play({sends(10, {5, 0}), answers(6, {10, 0}), answers(14, {1, 15, 0xD7, 7, 12, 0, 34, 56})});
    EXPECT_EQ(program.rest(), "15/01/2007 12:34:56\n");
    EXPECT_EQ(program.wait(), 0);
}

TEST_F(OneShotTest, FailsWhenNoReceiverAnswers) {
    const struct {
        const char* port;
        const char* language;
        const char* error;
    } cases[] = {
        {"9", "en", "marlune: /no/such/device cannot be opened: No such file or directory\n"},
        {"9", "fr", "marlune: /no/such/device ne s'ouvre pas : No such file or directory\n"},
        {"/dev/null", "en", "marlune: /dev/null is no serial port\n"},
        {"41", "en", "marlune: this COM number means no device"},
    };
    for (const auto& c : cases) {
        Program program({"ident", "--port", c.port, "--port-device", "9=/no/such/device", "--lang",
                         c.language});
        EXPECT_EQ(program.wait(), 1);
        EXPECT_THAT(program.errors(), HasSubstr("Connexion Impossible\n"));
        EXPECT_THAT(program.errors(), HasSubstr(c.error));
        EXPECT_THAT(program.errors(), HasSubstr("docs/troubleshooting.md"));
    }
}

TEST_F(OneShotTest, WrongUsageOpensNothing) {
    Program program = start({"waypoints", "--colour"});
    EXPECT_EQ(program.wait(), 2);
    EXPECT_THAT(program.errors(), HasSubstr("--colour"));
    EXPECT_THAT(device.readArrived(), IsEmpty());
}

TEST_F(OneShotTest, SendsGpxAsTextLines) {
    sendPlace(folder.write(
        "in.gpx", "<gpx><wpt lat='45' lon='45'><name>\xC3\x89T\xC3\x89</name></wpt></gpx>"));
}

// Downloads print UTF-8, so that is what a file of such lines holds; it needs no mark here.
TEST_F(OneShotTest, SendsWhatDownloadsPrint) {
    sendPlace(folder.write("lines.txt", kPlace));
}

TEST_F(OneShotTest, RefusesFilesThatHoldNothingToSendBeforeItConnects) {
    const struct {
        std::string file;
        const char* error;
    } cases[] = {
        {folder.write("broken.gpx", "<gpx>\n<wpt"), "broken.gpx:2:"},
        {folder.write("empty.gpx", "<gpx/>"), "empty.gpx: the file holds no tracks"},
        {folder.path() / "missing.GPX", "missing.GPX: No such file"},
        {folder.path() / "missing.txt", "missing.txt: No such file"},
        {folder.path(), ": the file is a folder"},
    };
    for (const auto& c : cases) {
        Program program = start({"send-tracks", c.file});
        EXPECT_EQ(program.wait(), 1) << c.file;
        EXPECT_THAT(program.errors(), HasSubstr(c.error));
        EXPECT_THAT(device.readArrived(), IsEmpty());
    }
}

// The frame that a silent unit leaves open has no time-out of its own.
TEST_F(OneShotTest, CtrlCEndsASilenceInTheMiddleOfAFrame) {
    Program program = start({"waypoints"});
    connect();
    play({sends(10, {7, 0}), answers(27, {9, 0}), acks(27), answersBytes({16, 35, 58, 'P'})});
    program.signal(SIGINT);
    EXPECT_EQ(program.wait(), 130);
    EXPECT_EQ(device.read(8), garminFrame(10, {0, 0}));
}

TEST_F(OneShotTest, CtrlCStopsADownloadInTheReceiversTerms) {
    const std::string gpx = folder.path() / "part.gpx";
    Program program = start({"waypoints", "--gpx", gpx});
    connect();
    play({sends(10, {7, 0}), answers(27, {9, 0}), acks(27), answers(35, d100("PT1")), acks(35)});
    program.signal(SIGINT);
    play({sends(10, {0, 0})});
    EXPECT_EQ(program.wait(), 130);
    EXPECT_EQ(program.rest(), d100Line("PT1") + "\n");
    EXPECT_THAT(GpxReader(GpxKind::waypoints).readFile(gpx), ElementsAre(d100Line("PT1")));
}

// What a device sends beside its sentences is not shown, least of all on a terminal.
TEST_F(OneShotTest, ListensToSentencesWithoutConnecting) {
    Program program = start({"nmea", "gpgga", "30"});
    const std::string sentence = "$GPGGA,1,4807.038,N,01131.000,E";
    play({answersText(sentence + "\r\n\x1B[2J$GPGGA,\x1B[2J,4807.038,N,01131.000,E\r\n" + sentence +
                      "\r\n$")});
    EXPECT_EQ(program.line(), sentence);
    EXPECT_EQ(program.line(), sentence);
    program.signal(SIGINT);
    EXPECT_EQ(program.wait(), 130);
    EXPECT_THAT(program.errors(), HasSubstr("1 lines were no sentences"));
    EXPECT_THAT(device.readArrived(), IsEmpty());
}

// Protocols that are a guess: what the unit is sent in them might be nonsense to it.
TEST_F(OneShotTest, SendsNothingOnAGuess) {
    const std::string file = folder.write("lines.txt", kPlace);
    Program program = start({"send-waypoints", file});
    play({sends(10, {0, 0}), answers(6, {10, 0}), sends(254, {0}), answers(6, {254, 0}),
          answers(255, productData(9999, 100, "prototype")), sends(6, {255, 0})});
    EXPECT_EQ(program.wait(), 1);
    EXPECT_THAT(program.errors(), HasSubstr("--trust-table"));
}

TEST_F(OneShotTest, SendsNothingToAUnitThatItMayHaveMisheard) {
    Program program = start({"send-waypoints", folder.write("lines.txt", kPlace)});
    play({sends(10, {0, 0}), answers(6, {10, 0}), sends(254, {0}), answers(6, {254, 0}),
          answersBytes({16, 255, 5, 197, 0, 6, 1, 0, 0, 16, 3}), sends(6, {255, 0}),
          answers(253, protocolArray("A100 D108")), sends(6, {253, 0})});
    EXPECT_EQ(program.wait(), 1);
    EXPECT_THAT(program.errors(), HasSubstr("was damaged on its way"));
}

}  // namespace
}  // namespace marlune::cli
