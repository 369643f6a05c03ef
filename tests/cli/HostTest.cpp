// The scriptable host from outside: a child process whose receiver is the test, on a pty. Most of
// it is shown on the NMEA listener, which opens the port by itself and lasts until it is stopped.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>

#include "cli/Program.h"
#include "support/Pty.h"

namespace marlune::cli {
namespace {

using testing::ContainsRegex;
using testing::HasSubstr;

constexpr const char* kSentence =
    "$GPGGA,120000,4807.038,N,01131.000,E,1,08,0.9,545.4,M,,,,*47\r\n";
constexpr const char* kPhrase =
    R"({"event":"PhraseNMEA","Chaine":"$GPGGA,120000,4807.038,N,01131.000,E,1,08,0.9,545.4,M,,,,*47\r\n"})"
    "\n";
constexpr const char* kListen = R"({"call":"StartNMEA","args":["$gpgga",60]})"
                                "\n";
constexpr const char* kStop = R"({"call":"StopNMEA","args":[]})"
                              "\n";
constexpr const char* kIdent = R"({"call":"getIdent","args":[]})"
                               "\n";
constexpr const char* kStopped = R"({"call":"StopNMEA","result":null})"
                                 "\n";
constexpr const char* kIdentity =
    R"({"call":"getIdent","result":"Marlune Version 1.0.0 -  GPSId:  Version:  - "})"
    "\n";
// How the listener ends: what it shows depends on whether sentences came without a gap.
constexpr const char* kListened =
    "\"box\":\"(Transfert terminé.|.GPGGA: pas de Position disponible)\".*"
    "\"event\":\"EndDownload\",\"DataType\":\"NMEA_END\".*"
    "\"call\":\"StartNMEA\",\"result\":(true|false)";

class HostTest : public testing::Test {
protected:
    // Sends so many sentences; each is heard when the next one begins.
    void sendSentences(int count) const {
        std::string text;
        for (int i = 0; i < count; ++i) {
            text += kSentence;
        }
        const std::vector<std::uint8_t> bytes(text.begin(), text.end());
        ASSERT_EQ(device.write(bytes), bytes.size());
    }

    // Starts listening, and waits until the first sentence was heard.
    void listen() {
        program.write(kListen);
        sendSentences(2);
        ASSERT_EQ(program.line().value_or("") + "\n", kPhrase);
    }

    Pty device;
    Program program{{"host", "--port-device", "7=" + device.slavePath(), "--port", "7"}};
};

TEST_F(HostTest, AnswersEachCallWithItsResult) {
    const struct {
        const char* call;
        const char* answers;
    } cases[] = {
        {R"({"call":"setNumPort","args":[7]})", R"({"call":"setNumPort","result":null})"},
        {R"({"call":"SetDebug","args":["OFF"]})", R"({"call":"SetDebug","result":null})"},
        {R"({"call":"ResetComBuffers","args":[]})", R"({"call":"ResetComBuffers","result":false})"},
        {R"({"call":"SetGpsMark","args":["mlr"]})", R"({"call":"SetGpsMark","result":null})"},
        {R"({"call":"getProtocoles","args":[]})",
         R"({"call":"getProtocoles","result":"Protocole NMEA propriétaire MLR"})"},
        {R"({"call":"GetTime","args":[]})",
         R"({"box":"Protocole non disponible pour ce GPS","icon":"critical"})"
         "\n"
         R"({"call":"GetTime","result":0})"},
        {R"({"call":"getPosition","args":[]})",
         R"({"box":"Protocole non disponible pour ce GPS","icon":"critical"})"
         "\n"
         R"({"call":"getPosition","result":""})"},
        {R"({"call":"SendWaypts","args":["/no/such/file"]})",
         R"({"box":"Fichier non trouvé","icon":"critical"})"
         "\n"
         R"({"call":"SendWaypts","result":false})"},
        {R"({"call":"setNumPort","args":[300]})", R"({"call":"setNumPort","result":null})"},
        {R"({"call":"StopTransfert","args":[]})", R"({"call":"StopTransfert","result":null})"},
        {R"({"call":"StopPvtData","args":[]})", R"({"call":"StopPvtData","result":null})"},
        {R"({"call":"gpsDisconnect","args":[]})", R"({"call":"gpsDisconnect","result":null})"},
    };
    for (const auto& c : cases) {
        program.write(c.call + std::string("\n"));
        EXPECT_EQ(program.linesUpTo("{\"call\""), c.answers + std::string("\n"));
    }
    program.closeInput();
    EXPECT_EQ(program.rest(), "");
    EXPECT_EQ(program.wait(), 0);
    EXPECT_EQ(program.errors(), "");
}

TEST_F(HostTest, GoesOnAfterLinesThatItCannotRead) {
    std::string input = std::string(3'000'000, 'x') + "\n\n[1]\n{\"call\":\"\xC9\",\"args\":[]}\n";
    input += std::string("{\"call\":\0}\n", 11) + R"({"call":"Format","args":[]})" + "\n";
    program.write(input + kIdent);
    for (const char* fault : {"longer than", "not JSON", "not a JSON object", "not JSON", "NUL",
                              R"(no member is called \"Format\")"}) {
        const std::string answer = program.line().value_or("");
        EXPECT_THAT(answer, testing::StartsWith(R"({"error":")"));
        EXPECT_THAT(answer, HasSubstr(fault));
    }
    EXPECT_EQ(program.line().value_or("") + "\n", kIdentity);
}

TEST_F(HostTest, StopsAtOnceAndLetsOtherCallsWait) {
    listen();
    program.write(kIdent + std::string("oops\n"));
    EXPECT_THAT(program.line().value_or(""), HasSubstr("not JSON"));
    program.write(kStop);
    const std::string answers = program.linesUpTo("getIdent");
    EXPECT_THAT(answers, testing::StartsWith(kStopped));
    EXPECT_THAT(answers, ContainsRegex(kListened));
    EXPECT_THAT(answers, testing::EndsWith(kIdentity));
}

TEST_F(HostTest, ActsInsideTheNthEvent) {
    program.write(R"({"when":"PhraseNMEA","nth":3,"call":"StopNMEA","args":[]})"
                  "\n"
                  R"({"when":"PhraseNMEA","nth":2,"call":"getIdent","args":[]})"
                  "\n"
                  R"({"when":"EndDownload","nth":1,"call":"getProximites","args":[]})"
                  "\n" +
                  std::string(kListen));
    sendSentences(10);
    const std::string nested = R"({"box":"Protocole non supporté par ce GPS","icon":"exclamation"})"
                               "\n"
                               R"({"call":"getProximites","result":false})"
                               "\n";
    EXPECT_EQ(program.linesUpTo("\"StartNMEA\""),
              std::string(kPhrase) + kPhrase + kIdentity + kPhrase + kStopped +
                  R"({"box":"Transfert terminé.","icon":"information"})"
                  "\n"
                  R"({"event":"EndDownload","DataType":"NMEA_END"})"
                  "\n" +
                  nested +
                  R"({"call":"StartNMEA","result":true})"
                  "\n");
}

TEST_F(HostTest, CountsEventsFromTheLineOn) {
    listen();
    program.write(R"({"when":"PhraseNMEA","nth":2,"call":"StopNMEA","args":[]})"
                  "\n" +
                  std::string("known by its error\n"));
    EXPECT_THAT(program.line().value_or(""), HasSubstr("not JSON"));
    sendSentences(2);
    const std::string answers = program.linesUpTo("\"StartNMEA\"");
    EXPECT_THAT(answers, testing::StartsWith(std::string(kPhrase) + kPhrase + kStopped));
    EXPECT_THAT(answers, ContainsRegex(kListened));
}

TEST_F(HostTest, DisconnectsInTheMiddle) {
    listen();
    program.write(R"({"call":"gpsDisconnect","args":[]})"
                  "\n");
    EXPECT_THAT(program.linesUpTo("\"StartNMEA\""),
                testing::StartsWith(R"({"call":"gpsDisconnect","result":null})"));
}

// A script in one piece runs in its order; only the stop behind the listener acts inside it.
TEST_F(HostTest, RunsAScriptInOrderAndEndsWithItsInput) {
    sendSentences(3);
    program.write(kIdent + std::string(kListen) + kStop + kIdent + "oops\n" +
                  R"({"call":"gpsDisconnect","args":[]})");
    program.closeInput();
    EXPECT_EQ(program.rest(),
              std::string(kIdentity) + kStopped +
                  R"({"box":"$GPGGA: pas de Position disponible","icon":"critical"})"
                  "\n"
                  R"({"event":"EndDownload","DataType":"NMEA_END"})"
                  "\n"
                  R"({"call":"StartNMEA","result":false})"
                  "\n" +
                  kIdentity + R"x({"error":"the line is not JSON (byte 1)"})x" + "\n" +
                  R"({"call":"gpsDisconnect","result":null})"
                  "\n");
    EXPECT_EQ(program.wait(), 0);
}

TEST_F(HostTest, WaitsForTheRunningCallAtTheEndOfInput) {
    listen();
    program.closeInput();
    sendSentences(2);
    EXPECT_EQ(program.line().value_or("") + "\n", kPhrase);
    program.signal(SIGINT);
    EXPECT_THAT(program.rest(), ContainsRegex(kListened));
    EXPECT_EQ(program.wait(), 130);
}

TEST_F(HostTest, EndsOnASignal) {
    program.write(kIdent);
    EXPECT_EQ(program.line().value_or("") + "\n", kIdentity);
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
    program.write(kIdent);
    EXPECT_EQ(program.line().value_or("") + "\n", kIdentity);
    program.closeOutput();
    EXPECT_EQ(program.wait(), 1);
}

}  // namespace
}  // namespace marlune::cli
