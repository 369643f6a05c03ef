// The listener: which sentences it reports, when it ends, and what it leaves behind.
#include <gtest/gtest.h>

#include "base/SystemError.h"
#include "nmea/NmeaListener.h"
#include "nmea/SentenceStage.h"

namespace marlune {
namespace {

constexpr const char* kOpen = "open baud=4800 parity=n data=8 stop=1";
constexpr const char* kDone = "box information: Transfert terminé.";
constexpr const char* kNoPosition = "box critical: $GPGGA: pas de Position disponible";
constexpr const char* kEnd = "EndDownload|NMEA_END";
constexpr const char* kFix = "$GPGGA,120000,4830.000,N,00130.000,W,1*00\r\n";
constexpr const char* kSouth = "$GPGGA,120001,4830.000,S,00130.000,W,1*00\r\n";
constexpr const char* kNoFix = "$GPGGA,120002,,,,,0*00\r\n";

class NmeaListenerTest : public testing::Test, protected SentenceStage {
protected:
    bool start(const std::string& code, std::int16_t seconds) {
        const auto closePort = [this] { port->close(); };
        return startNmea(services, *port, nmea, closePort, code, seconds);
    }
    static std::string phrase(const std::string& text) { return "PhraseNMEA|" + text; }
};

TEST_F(NmeaListenerTest, ReportsSentencesWithAPosition) {
    trace.close();
    speak(std::string("noise") + kFix + "$GPRMC,1,A,N\r\n" + kNoFix + kSouth + "$GPGGA,1\r\n" +
          kFix + "$");
    events.when("PhraseNMEA", 3, [this] { nmea.stopRequested = true; });
    EXPECT_TRUE(start(" $gpgga ", 5));
    EXPECT_EQ(takeLog(), (Log{"close", kOpen, phrase(kFix), phrase(kSouth), phrase(kFix), kDone,
                              "close", kEnd}));
    EXPECT_FALSE(nmea.found);
    EXPECT_FALSE(nmea.sentenceEvent);
    EXPECT_EQ(host.traced(), (Log{"StartNMEA1.0.0", "$GPGGA,120000,4830.000,N,00130.000,W,1*00",
                                  "$GPGGA,120001,4830.000,S,00130.000,W,1*00",
                                  "$GPGGA,120000,4830.000,N,00130.000,W,1*00",
                                  "01/06/2007 12:00:00:Transfert termin\xE9."}));
    EXPECT_FALSE(port->isOpen());
}

TEST_F(NmeaListenerTest, EndsAfterTheLastPosition) {
    host.setNow(39234);
    for (int i = 0; i < 8; ++i) {
        speak(kFix, 1);
        speak("$", 0);
    }
    EXPECT_FALSE(start("$GPGGA", 3)) << "the silence before the end forgets the position";
    EXPECT_NEAR(host.elapsed(), 8 + 3.3, 0.2);
    const Log log = takeLog();
    EXPECT_EQ(log.size(), 2U + 8U + 3U);
    EXPECT_EQ(log[10], kNoPosition);
}

TEST_F(NmeaListenerTest, TheLastMatchingSentenceDecidesTheEnd) {
    for (const auto& [arrives, box] : {std::pair{std::string(kFix) + "$GPRMC,1,A,x\r\n", kDone},
                                       {std::string(kFix) + kNoFix, kNoPosition},
                                       {"$GPGGA,,,n,\r\n", kNoPosition},
                                       {"", kNoPosition}}) {
        SentenceStage stage;
        stage.speak(arrives + "$stop", 0.5);
        stage.host.onProcessEvents = [&] { stage.nmea.stopRequested = stage.host.elapsed() > 0.6; };
        // The device goes on talking until the user stops.
        for (int i = 0; i < 20; ++i) {
            stage.speak(".", 0.05);
        }
        const auto closeNothing = [] {};
        startNmea(stage.services, *stage.port, stage.nmea, closeNothing, "$GPGGA", 5);
        const Log log = stage.takeLog();
        EXPECT_EQ(log[log.size() - 3], box) << arrives;
        EXPECT_EQ(log.back(), kEnd);
        EXPECT_LT(stage.host.elapsed(), 1);
    }
}

TEST_F(NmeaListenerTest, StopsBetweenTwoSentencesAndInAHandler) {
    speak(std::string(kFix) + kFix + kFix + "$");
    events.when("PhraseNMEA", 1,
                [this] { host.onProcessEvents = [this] { nmea.stopRequested = true; }; });
    EXPECT_TRUE(start("", 5));
    EXPECT_EQ(takeLog(), (Log{"close", kOpen, phrase(kFix), kDone, "close", kEnd}));
}

TEST_F(NmeaListenerTest, AStopAskedForEarlierCountsForNothing) {
    nmea.stopRequested = true;
    nmea.found = true;
    speak(std::string(kFix) + "$");
    EXPECT_FALSE(start("GGA", 2));
    EXPECT_EQ(takeLog()[2], phrase(kFix));
    nmea.found = true;
    EXPECT_FALSE(start("GGA", 0)) << "nor does a sentence of an earlier call";
}

TEST_F(NmeaListenerTest, TellsWhyThePortDoesNotOpen) {
    line->openError = 2;
    EXPECT_FALSE(start("$GPGGA", 5));
    const std::string box = "box critical: " + systemErrorText(2);
    EXPECT_EQ(takeLog(), (Log{"close", kOpen, box, box, "close"})) << "no end event";
    EXPECT_EQ(host.traced().back(), "erreur 2 - " + systemErrorText(2));
}

TEST_F(NmeaListenerTest, ADisconnectingHandlerLeavesTheNextConnectionAlone) {
    speak(std::string(kFix) + kFix + "$");
    events.when("PhraseNMEA", 1, [this] {
        port->close();
        port->open();
    });
    EXPECT_TRUE(start("$GPGGA", 5));
    EXPECT_EQ(takeLog(), (Log{"close", kOpen, phrase(kFix), "close", kOpen, kDone, kEnd}));
    EXPECT_TRUE(port->isOpen());
}

TEST_F(NmeaListenerTest, EndsWhenTheDeviceIsPulledOutOrTheHostStops) {
    speak(kFix);
    line->unplug();
    EXPECT_FALSE(start("$GPGGA", 5));
    EXPECT_NEAR(host.elapsed(), 5, 0.1);
    EXPECT_EQ(takeLog().back(), kEnd);

    SentenceStage stage;
    stage.speak(std::string(kFix) + "$");
    stage.host.onStopRequested = [&] { return stage.host.elapsed() > 0.5; };
    EXPECT_TRUE(startNmea(
        stage.services, *stage.port, stage.nmea, [] {}, "$GPGGA", 5))
        << "the read was cut short; there was no silence";
    EXPECT_LT(stage.host.elapsed(), 0.7);
}

}  // namespace
}  // namespace marlune
