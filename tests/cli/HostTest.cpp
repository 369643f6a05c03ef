// The scriptable host from outside: a child process whose receiver is the test, on a pty. Most of
// it is shown on the NMEA listener, which opens the port by itself and lasts until it is stopped.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>

#include "cli/Program.h"
#include "support/Pty.h"

namespace marlune::cli {
namespace {

using testing::AllOf;
using testing::ContainsRegex;
using testing::HasSubstr;
using testing::StartsWith;

using Lines = std::vector<std::string>;

const std::string kSentence = "$GPGGA,120000,4807.038,N,01131.000,E,1,08,0.9,545.4,M,,,,*47";
const std::string kPhrase = R"({"event":"PhraseNMEA","Chaine":")" + kSentence + R"(\r\n"})";
const std::string kListen = R"({"call":"StartNMEA","args":["$gpgga",60]})";
const std::string kStop = R"({"call":"StopNMEA","args":[]})";
const std::string kIdent = R"({"call":"getIdent","args":[]})";
const std::string kDisconnect = R"({"call":"gpsDisconnect","args":[]})";
const std::string kStopped = R"({"call":"StopNMEA","result":null})";
const std::string kDisconnected = R"({"call":"gpsDisconnect","result":null})";
const std::string kIdentity =
    R"({"call":"getIdent","result":"Marlune Version 1.0.0 -  GPSId:  Version:  - "})";
const std::string kNmeaEnd = R"({"event":"EndDownload","DataType":"NMEA_END"})";
// How the listener ends: what it shows depends on whether sentences came without a gap.
constexpr const char* kListened =
    "\"box\":\"(Transfert terminé.|.GPGGA: pas de Position disponible)\".*"
    "\"event\":\"EndDownload\",\"DataType\":\"NMEA_END\".*"
    "\"call\":\"StartNMEA\",\"result\":(true|false)";

std::string joined(const Lines& lines) {
    std::string text;
    for (const std::string& line : lines) {
        text += line + "\n";
    }
    return text;
}

class HostTest : public testing::Test {
protected:
    // Sends so many sentences; each is heard when the next one begins.
    void sendSentences(std::size_t count) const {
        std::string text;
        for (std::size_t i = 0; i < count; ++i) {
            text += kSentence + "\r\n";
        }
        ASSERT_EQ(device.write(std::vector<std::uint8_t>(text.begin(), text.end())), text.size());
    }
    void say(const Lines& lines) const { program.write(joined(lines)); }

    // Starts listening, and waits until the first sentence was heard.
    void listen() {
        say({kListen});
        sendSentences(2);
        ASSERT_EQ(program.line(), kPhrase);
    }

    Pty device;
    Program program{{"host", "--port-device", "7=" + device.slavePath(), "--port", "7"}};
};

TEST_F(HostTest, AnswersEachCallWithItsResult) {
    const std::string unavailable = "Protocole non disponible pour ce GPS";
    const struct {
        std::string member;
        std::string arguments;
        std::string box;
        std::string result;
    } cases[] = {
        {"setNumPort", "7", "", "null"},
        {"SetDebug", "\"OFF\"", "", "null"},
        {"ResetComBuffers", "", "", "false"},
        {"SetGpsMark", "\"mlr\"", "", "null"},
        {"getProtocoles", "", "", "\"Protocole NMEA propriétaire MLR\""},
        {"GetTime", "", unavailable, "0"},
        {"getPosition", "", unavailable, "\"\""},
        {"SendWaypts", "\"/no/such/file\"", "Fichier non trouvé", "false"},
        {"setNumPort", "300", "", "null"},
        {"StopTransfert", "", "", "null"},
        {"StopPvtData", "", "", "null"},
        {"gpsDisconnect", "", "", "null"},
    };
    for (const auto& c : cases) {
        const std::string call = R"({"call":")" + c.member;
        say({call + R"(","args":[)" + c.arguments + "]}"});
        Lines answers = {call + R"(","result":)" + c.result + "}"};
        if (!c.box.empty()) {
            answers.insert(answers.begin(), R"({"box":")" + c.box + R"(","icon":"critical"})");
        }
        EXPECT_EQ(program.linesUpTo("{\"call\""), joined(answers));
    }
    program.closeInput();
    EXPECT_EQ(program.rest(), "");
    EXPECT_EQ(program.wait(), 0);
    EXPECT_EQ(program.errors(), "");
}

TEST_F(HostTest, GoesOnAfterLinesThatItCannotRead) {
    std::string input = std::string(3'000'000, 'x') + "\n\n[1]\n{\"call\":\"\xC9\",\"args\":[]}\n";
    input += std::string("{\"call\":\0}\n", 11) + R"({"call":"Format","args":[]})" + "\n";
    program.write(input + kIdent + "\n");
    for (const char* fault : {"longer than", "not JSON", "not a JSON object", "not JSON", "NUL",
                              R"(no member is called \"Format\")"}) {
        const std::string answer = program.line().value_or("");
        EXPECT_THAT(answer, testing::StartsWith(R"({"error":")"));
        EXPECT_THAT(answer, HasSubstr(fault));
    }
    EXPECT_EQ(program.line(), kIdentity);
}

TEST_F(HostTest, StopsAtOnceAndLetsOtherCallsWait) {
    listen();
    say({kIdent, "oops"});
    EXPECT_THAT(program.line().value_or(""), HasSubstr("not JSON"));
    say({kStop});
    const std::string answers = program.linesUpTo("getIdent");
    EXPECT_THAT(answers, testing::StartsWith(kStopped));
    EXPECT_THAT(answers, ContainsRegex(kListened));
    EXPECT_THAT(answers, testing::EndsWith(kIdentity + "\n"));
}

TEST_F(HostTest, ActsInsideTheNthEvent) {
    say({R"({"when":"PhraseNMEA","nth":3,"call":"StopNMEA","args":[]})",
         R"({"when":"PhraseNMEA","nth":2,"call":"getIdent","args":[]})",
         R"({"when":"EndDownload","nth":1,"call":"getProximites","args":[]})", kListen});
    sendSentences(10);
    EXPECT_EQ(program.linesUpTo("\"StartNMEA\""),
              joined({kPhrase, kPhrase, kIdentity, kPhrase, kStopped,
                      R"({"box":"Transfert terminé.","icon":"information"})", kNmeaEnd,
                      R"({"box":"Protocole non supporté par ce GPS","icon":"exclamation"})",
                      R"({"call":"getProximites","result":false})",
                      R"({"call":"StartNMEA","result":true})"}));
}

TEST_F(HostTest, CountsEventsFromTheLineOn) {
    listen();
    say({R"({"when":"PhraseNMEA","nth":2,"call":"StopNMEA","args":[]})", "known by its error"});
    EXPECT_THAT(program.line().value_or(""), HasSubstr("not JSON"));
    sendSentences(2);
    EXPECT_THAT(program.linesUpTo("\"StartNMEA\""),
                testing::StartsWith(joined({kPhrase, kPhrase, kStopped})));
}

TEST_F(HostTest, DisconnectsInTheMiddle) {
    listen();
    say({kDisconnect});
    EXPECT_THAT(program.linesUpTo("\"StartNMEA\""), testing::StartsWith(kDisconnected));
}

// A script in one piece runs in its order; only the stop behind the listener acts inside it.
TEST_F(HostTest, RunsAScriptInOrderAndEndsWithItsInput) {
    sendSentences(3);
    program.write(joined({kIdent, kListen, kStop, kIdent, "oops"}) + kDisconnect);
    program.closeInput();
    EXPECT_EQ(program.rest(),
              joined({kIdentity, kStopped,
                      R"({"box":"$GPGGA: pas de Position disponible","icon":"critical"})", kNmeaEnd,
                      R"({"call":"StartNMEA","result":false})", kIdentity,
                      R"x({"error":"the line is not JSON (byte 1)"})x", kDisconnected}));
    EXPECT_EQ(program.wait(), 0);
}

TEST_F(HostTest, WaitsForTheRunningCallAtTheEndOfInput) {
    listen();
    program.closeInput();
    sendSentences(2);
    EXPECT_EQ(program.line(), kPhrase);
    program.signal(SIGINT);
    EXPECT_THAT(program.rest(), ContainsRegex(kListened));
    EXPECT_EQ(program.wait(), 130);
}

TEST_F(HostTest, GivesIdsBackAndTellsDetails) {
    Program detailed({"host", "--details", "--port", "virtual"});
    detailed.write(R"({"call":"getIdents","id":1}
{"call":"gpsConnect","id":"two"}
{"call":"getWaypts"}
)");
    EXPECT_EQ(detailed.line(),
              R"({"error":"no member is called \"getIdents\"","call":"getIdents","id":1})");
    EXPECT_THAT(detailed.line().value_or(""),
                AllOf(StartsWith(R"({"call":"gpsConnect","id":"two","result":true,"connection":{)"),
                      HasSubstr(R"("capabilities":"announced"})")));
    const std::string told = detailed.linesUpTo("\"call\"");
    EXPECT_THAT(
        told,
        ContainsRegex(
            "\"record\":.\"name\":\"CHAMX\".*\"altitude\":1037.0,\"symbol\":18,\"symbolName\":"));
    EXPECT_THAT(told, ContainsRegex("\"transfer\":.*\"ending\":\"complete\",\"whole\":true,"));
}

// The receiver's answer would have been waited for a minute.
TEST_F(HostTest, DisconnectsWhileConnecting) {
    say({R"({"call":"gpsConnect"})"});
    (void)device.read(8);  // the handshake has begun
    say({kDisconnect});
    EXPECT_EQ(program.line(), kDisconnected);
    EXPECT_EQ(program.line(), R"({"call":"gpsConnect","result":false})");
}

TEST_F(HostTest, EndsOnASignal) {
    say({kIdent});
    EXPECT_EQ(program.line(), kIdentity);
    program.signal(SIGTERM);
    EXPECT_EQ(program.rest(), "");
    EXPECT_EQ(program.wait(), 143);
}

TEST_F(HostTest, EndsWhenNobodyReadsItsOutput) {
    listen();
    program.closeOutput();
    sendSentences(2);
    EXPECT_EQ(program.wait(), 1);
    EXPECT_EQ(program.errors(), "");
}

TEST_F(HostTest, EndsWhenNobodyWouldReadItsOutput) {
    say({kIdent});
    EXPECT_EQ(program.line(), kIdentity);
    program.closeOutput();
    EXPECT_EQ(program.wait(), 1);
}

}  // namespace
}  // namespace marlune::cli
