// The sentence readers' deadlines and endings, on the fake clock.
#include <gtest/gtest.h>

#include "nmea/Sentence.h"
#include "nmea/SentenceReader.h"
#include "nmea/SentenceStage.h"

namespace marlune {
namespace {

constexpr const char* kWaypoint = "$PMGNWPL,1*00";

class SentenceReaderTest : public testing::Test, protected SentenceStage {
protected:
    // The next read begins so many seconds after midnight.
    void startAt(double seconds) { host.setNow(39234 + seconds / 86400); }

    PortLease lease{*port};
    SentenceReader reader{services, lease, nmea};
};

TEST_F(SentenceReaderTest, MgnGetReturnsWhatItsCallersWaitFor) {
    const std::vector<std::pair<std::string, const char*>> cases = {
        {"*x$PMGNWPL,1*00\r\n", kWaypoint},
        {"$PMGNTRK,1*00\r\n$PMGNCMD,END*3D\r\n", "$PMGNCMD,END*3D"},
        {"$X,$PMGNCMD,UNABLE,*00", "$X,$PMGNCMD,UNABLE,*00"},
        {"$pmgnwpl,1*00$ $PMGNWPL,1*00", ""},
        {"$PMGNWPL,1*0", "$PMGNWPL,1*0"},
        {std::string("$PMGNWPL,\0\xE9*00", 14), "$PMGNWPL,"},
    };
    for (const auto& [arrives, returned] : cases) {
        SentenceStage stage;
        PortLease itsLease(*stage.port);
        stage.speak(arrives);
        const std::string line =
            SentenceReader(stage.services, itsLease, stage.nmea).mgnGet("$PMGNWPL", 3);
        EXPECT_STREQ(line.c_str(), returned) << arrives;
    }
}

TEST_F(SentenceReaderTest, SentencesWithoutEndAreBounded) {
    speak("$PMGNWPL," + std::string(kLongestSentence, 'b') + "*00");
    EXPECT_EQ(reader.mgnGet("$PMGNWPL", 3).size(), kLongestSentence + 2);
    nmea.inSentence = true;
    nmea.sentence.assign(kLongestSentence - 3, 'a');
    speak("bbbbbb\r");
    EXPECT_EQ(reader.nextSentence("b", 3), "") << "codes are looked for in capitals";
    EXPECT_EQ(nmea.sentence.size(), kLongestSentence);
}

TEST_F(SentenceReaderTest, MgnGetCountsFromARoundedStart) {
    // Three seconds, right within half a second, and the read of 1.1 s that they fall into.
    for (const auto& [start, seconds] :
         {std::pair{100.0, 3.3}, {100.4, 3.3}, {100.6, 4.4}, {101.5, 4.4}, {100.5, 3.3}}) {
        startAt(start);
        const double before = host.elapsed();
        EXPECT_EQ(reader.mgnGet("$PMGN", 3), "");
        EXPECT_NEAR(host.elapsed() - before, seconds, 1e-4) << start;
        EXPECT_EQ(takeLog(), Log{"box critical: Délai dépassé"});
    }
}

TEST_F(SentenceReaderTest, OtherSentencesKeepMgnGetGoingOnlyForItsTime) {
    startAt(100);
    for (int i = 0; i < 9; ++i) {
        speak("$GPGGA*00\r\n", 0.9);
    }
    EXPECT_EQ(reader.mgnGet("$PMGN", 3), "");
    EXPECT_EQ(host.boxTexts(), Log{}) << "something came all the time";
    EXPECT_NEAR(host.elapsed(), 3.6, 0.1);
}

TEST_F(SentenceReaderTest, NmeaGetPhraseTakesTheFirstMatch) {
    for (const auto& [codes, found] : {std::pair{" gpgga ", "$GPGGA,2*00"},
                                       {"XYZ|$GPWPL", "$GPWPL,3*00"},
                                       {"XYZ|", "$gpgga,1*00"},
                                       {"RMC", ""}}) {
        SentenceStage stage;
        PortLease itsLease(*stage.port);
        SentenceReader itsReader(stage.services, itsLease, stage.nmea);
        stage.speak("no sentence\r$gp$gpgga,1*00\r\n$GPGGA,2*00\r\n$GPWPL,3*00\r\n");
        itsReader.nmeaGetPhrase(codes, 3, 0);
        EXPECT_EQ(stage.nmea.lastSentence, found) << codes;
        EXPECT_EQ(stage.nmea.found, *found != '\0');
    }
}

TEST_F(SentenceReaderTest, NmeaGetPhraseCompletesASentenceThatTheTimeCut) {
    speak("$GPWPL,1");
    speak(",2*00\r\n", 9);
    EXPECT_EQ(reader.nextSentence("$GPWPL", 3), "");
    EXPECT_EQ(nmea.codeFilter, "$GPWPL");
    EXPECT_EQ(reader.nextSentence("$gpwpl", 7), "$GPWPL,1,2*00");
    EXPECT_EQ(reader.nextSentence("$GPWPL", 1), "") << "each is taken once";
    EXPECT_EQ(host.traced(), Log{"$GPWPL,1,2*00"});
}

TEST_F(SentenceReaderTest, NmeaGetPhraseWaitsItsDelayWithoutEvents) {
    startAt(100);
    speak("$A\r$B\r", 1);
    host.onProcessEvents = [this] { EXPECT_GE(host.elapsed(), 1.999); };
    reader.nmeaGetPhrase("$B", 3, 2);
    EXPECT_TRUE(nmea.found);
    EXPECT_NEAR(host.elapsed(), 2, 0.1);
}

TEST_F(SentenceReaderTest, ASentenceGoesToTheListenersEventWhenItAsked) {
    host.onProcessEvents = [this] { nmea.sentenceEvent = true; };
    speak("$GP\xC9*00\r\n");
    reader.nmeaGetPhrase("$GP", 3, 0);
    EXPECT_EQ(takeLog(), Log{"PhraseNMEA|$GPÉ*00"});
    EXPECT_EQ(nmea.lastSentence, "");
}

TEST_F(SentenceReaderTest, EndsAtOnceWhenThePortIsTakenAwayOrTheHostStops) {
    speak("$PMGNWPL,");
    host.onProcessEvents = [this] { port->close(); };
    EXPECT_EQ(reader.mgnGet("$PMGN", 3), "");
    EXPECT_EQ(reader.nextSentence("$GP", 3), "");
    port->open();
    PortLease next(*port);
    SentenceReader again(services, next, nmea);
    host.onProcessEvents = [this] { host.stop = true; };
    EXPECT_EQ(again.mgnGet("$PMGN", 3), "");
    EXPECT_EQ(again.nextSentence("$GP", 3), "");
    EXPECT_EQ(host.elapsed(), 0);
    EXPECT_EQ(host.boxTexts(), Log{});
}

}  // namespace
}  // namespace marlune
