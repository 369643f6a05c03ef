#include <gmock/gmock.h>

#include "receivers/mlr/MlrReceiver.h"
#include "receivers/sentences/Talk.h"
#include "support/Image.h"

namespace marlune::receivers::mlr {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const std::string kWhoIsIt = "$PMLR,26,01,01,0339";
const std::string kWhoIsItOld = "$PMLR,0E,01,01,0346";
const std::string kDone = "$PMLR,06,00,02A9";
const std::string kTracks = "$PMLR,24,02,0101,0399";
const std::string kPlaces = "$PMLR,24,02,0301,039B";

const std::string kHome = intact("GPWPL,4807.038,N,01131.000,E,HOME   MY HOUSE");
const std::string kEvian = intact("GPWPL,3330.000,S,15115.000,W,ÉVIAN  A B");
const std::string kMill = intact("GPWPL,0100.000,N,00200.000,E,MILL   ");
const std::string kTrip = intact("GPRTE,1,1,c,3,HOME,ÉVIAN,MILL");

Talk talk(MlrKind kind, std::string_view data = kHoldings,
          const std::vector<std::string>& faults = {}) {
    MlrReceiver::Settings settings;
    settings.data = readData(data);
    settings.faults = faults;
    return Talk(std::make_unique<MlrReceiver>(std::move(settings), kind));
}

// Everything that is said in ten seconds, with the speed of each piece.
std::vector<Said> saidAfter(Talk& unit, const std::string& command) {
    unit.receiver().hear(toAnsiBytes(command + "\r\n"), 1000);
    EXPECT_EQ(unit.receiver().baud(), 38400) << "at once";
    std::vector<Said> all;
    for (int tick = 0; tick < 200; ++tick) {
        const double now = 1000 + tick * 0.05;
        unit.receiver().elapse(now);
        const std::vector<Said> said = unit.receiver().takeSaid();
        EXPECT_TRUE(said.empty() || now >= 1000.9) << "the other end needs time to follow";
        all.insert(all.end(), said.begin(), said.end());
    }
    return all;
}

std::string textOf(const std::vector<Said>& said) {
    std::string text;
    for (const Said& each : said) {
        EXPECT_EQ(each.baud, 38400);
        text.append(each.bytes.begin(), each.bytes.end());
    }
    return text;
}

TEST(MlrReceiver, EachKindAnswersToItsOwnQuestion) {
    Talk blocks = talk(MlrKind::blocks);
    EXPECT_THAT(blocks.tell(kWhoIsItOld), IsEmpty());
    EXPECT_THAT(blocks.tell(kWhoIsIt), ElementsAre("$PMLR,IDGPS,01,MLR,FR,00,3.10,SP24 XC,0900"));
    Talk sentences = talk(MlrKind::sentences);
    EXPECT_THAT(sentences.tell(kWhoIsIt), IsEmpty());
    EXPECT_THAT(sentences.tell(kWhoIsItOld), ElementsAre("$INFOS,VALSAT 2.10 02/1999*54"));
    EXPECT_THAT(sentences.tell(kTracks), IsEmpty());
    EXPECT_EQ(sentences.receiver().baud(), 4800);
}

TEST(MlrReceiver, HearsNothingWithoutTheRightCheckField) {
    Talk unit = talk(MlrKind::blocks);
    for (const char* line : {"$PMLR,26,01,01,033A", "$PMLR,26,01,01,", "$PMLR,26,01,01",
                             "$PMLR,26,01,01,00339", "$PMLR,24,02,0101,039b", "$PMLR"}) {
        EXPECT_THAT(unit.tell(line), IsEmpty()) << line;
    }
    EXPECT_EQ(unit.receiver().complaints().size(), 6U);
    EXPECT_EQ(unit.receiver().baud(), 4800);
}

TEST(MlrReceiver, SendsTracksAsBlocksAtTheHigherSpeed) {
    Talk unit = talk(MlrKind::blocks);
    const std::string text = textOf(saidAfter(unit, kTracks));
    EXPECT_EQ(std::vector<std::uint8_t>(text.begin(), text.end()),
              image("8B '0000' 00 'DEBUT' 0D0A 8B '0001' 02"
                    "00 01 00 2C 0D 7E 00 0A 8B 38 00 98 55 00 36 87"
                    "00 01 00 2C 0D 80 00 0A 8B 38 00 00 00 00 00 00"
                    "0D0A 8B '0000' 00 'FIN' 0D0A"));
    EXPECT_EQ(unit.receiver().baud(), 4800);
    EXPECT_THAT(unit.wait(60), IsEmpty()) << "nothing behind the closing block";
}

TEST(MlrReceiver, NumbersAndBlocksGoOnBeyondOne) {
    std::string data = "N;LONG\n";
    for (int i = 0; i < 40; ++i) {
        data += i == 20 ? "T;-1;-2;0;-12;-1\n" : "T;1;2;0;0;0\n";
    }
    Talk unit = talk(MlrKind::blocks, data);
    const std::string text = textOf(saidAfter(unit, kTracks));
    constexpr std::size_t kDebut = 13;
    constexpr std::size_t kBlock = 6 + 16 * 16 + 2;
    ASSERT_EQ(text.size(), kDebut + 2 * kBlock + (6 + 8 * 16 + 2) + 11);
    EXPECT_EQ(text.substr(kDebut + kBlock + 1, 5), "0002\x10");
    EXPECT_EQ(text.substr(kDebut + 2 * kBlock + 1, 5), "0003\x08");
    const auto recordStarts = [&](std::size_t record, std::string_view start) {
        return text.substr(kDebut + record / 16 * kBlock + 6 + record % 16 * 16, start.size()) ==
               start;
    };
    EXPECT_TRUE(recordStarts(19, {"\0\x14", 2}));
    EXPECT_TRUE(recordStarts(20, {"\0\x01\xFF\xFF\x15\xA0\xFF\xFE\x2B\x40\xFF\xF4", 12}))
        << "a segment begins, south and west and below the sea";
    EXPECT_TRUE(recordStarts(39, {"\0\x14", 2}));
}

TEST(MlrReceiver, SendsWaypointsAsRecordsOfOneLength) {
    Talk unit = talk(MlrKind::blocks);
    const std::string text = fromAnsi(textOf(saidAfter(unit, kPlaces)));
    EXPECT_NE(text.find("0001\x03" + kHome + kEvian + "     " + kMill + "        \r\n"),
              std::string::npos)
        << text;
}

TEST(MlrReceiver, IsDeafWhileItSendsBlocks) {
    Talk unit = talk(MlrKind::blocks);
    unit.tell(kTracks);
    EXPECT_THAT(unit.tell(kWhoIsIt), IsEmpty());
    EXPECT_FALSE(unit.wait(5).empty());
    EXPECT_EQ(unit.tell(kWhoIsIt).size(), 1U);
}

TEST(MlrReceiver, ItsUserSendsSentencesWhenTheExchangeIsOver) {
    Talk blocks = talk(MlrKind::blocks);
    blocks.tell(kDone);
    EXPECT_THAT(blocks.wait(1.9), IsEmpty());
    EXPECT_THAT(blocks.wait(1), ElementsAre(kHome, kEvian, kMill, kTrip));
    EXPECT_THAT(blocks.wait(6), IsEmpty());
    EXPECT_EQ(blocks.wait(2).size(), 4U);
    blocks.tell(kWhoIsIt);
    EXPECT_THAT(blocks.wait(60), IsEmpty()) << "a command stops that";

    Talk sentences = talk(MlrKind::sentences);
    sentences.tell(kDone);
    EXPECT_THAT(sentences.wait(3),
                ElementsAre(kHome, kEvian, kMill, intact("GPWPL,4807.038,N,01131.000,E,TRC001 C"),
                            intact("GPWPL,4807.040,N,01131.000,E,TRC002 C"), kTrip));
}

TEST(MlrReceiver, NamesPointsBeyondAThousandAndNoneBeyondTheLast) {
    std::string data = "N;LONG\n";
    for (int i = 0; i < 10001; ++i) {
        data += "T;1;2\n";
    }
    Talk unit = talk(MlrKind::sentences, data);
    unit.tell(kDone);
    const std::vector<std::string> said = unit.wait(3);
    ASSERT_EQ(said.size(), 9999U);
    EXPECT_EQ(said[998], intact("GPWPL,0100.000,N,00200.000,E,TRC999 "));
    EXPECT_EQ(said[999], intact("GPWPL,0100.000,N,00200.000,E,TR1000 "));
}

TEST(MlrReceiver, StoresUploads) {
    Talk unit = talk(MlrKind::sentences, "W;LONGNAME;1;2;old\n");
    for (const std::string& line :
         {kHome, intact("GPWPL,0200.000,S,00200.000,W,LONGNA new, and more"),
          intact("GPRTE,2,1,c,7,HOME,LONGNA"), intact("GPRTE,2,2,c,7,HOME")}) {
        EXPECT_THAT(unit.tell(line), IsEmpty());
    }
    EXPECT_THAT(unit.receiver().complaints(), IsEmpty());
    unit.tell("$GPWPL,0200.000,S,00200.000,W,BAD*00");
    unit.tell(intact("GPRTE,1,1,c,8,NOBODY"));
    unit.tell(intact("GPXXX"));
    EXPECT_EQ(unit.receiver().complaints().size(), 3U);
    EXPECT_THAT(
        unit.receiver().lines(),
        ElementsAre("W;LONGNA;-2;-2;new, and more;;18;0", "W;HOME;48.1173;11.516667;MY HOUSE;;18;0",
                    "R;7;", "W;HOME;48.1173;11.516667;MY HOUSE;;18;0",
                    "W;LONGNA;-2;-2;new, and more;;18;0",
                    "W;HOME;48.1173;11.516667;MY HOUSE;;18;0"));
}

TEST(MlrReceiver, RefusesBySilence) {
    Talk unit =
        talk(MlrKind::blocks, kHoldings,
             {"refuse:packet=1,of=26", "refuse:packet=1,of=GPWPL", "silence:packet=2,of=BLOC"});
    EXPECT_THAT(unit.tell(kWhoIsIt), IsEmpty());
    EXPECT_EQ(unit.tell(kWhoIsIt).size(), 1U);
    const std::size_t held = unit.receiver().lines().size();
    unit.tell(intact("GPWPL,0100.000,N,00200.000,E,NEW    "));
    EXPECT_EQ(unit.receiver().lines().size(), held);
    unit.tell(kTracks);
    EXPECT_EQ(unit.wait(5).size(), 1U) << "only the opening block";
}

}  // namespace
}  // namespace marlune::receivers::mlr
