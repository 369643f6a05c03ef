// Dialogues with the virtual Garmin unit, on memory and on a clock of the test's own.
#include <gmock/gmock.h>

#include <iomanip>
#include <sstream>

#include "receivers/garmin/GarminReceiver.h"
#include "support/Image.h"

namespace marlune::receivers::garmin {
namespace {

using Bytes = std::vector<std::uint8_t>;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;
using testing::StartsWith;

constexpr const char* kAll =
    "P000 L001 A010 A100 D100 A201 D202 D105 D210 A301 D310 D300 A400 D400 A500 D500 A600 D600 "
    "A700 D700 A800 D800";

constexpr const char* kData =
    "W;A;45;-90;ONE\nW;B;0;0;TWO\n"
    "P;C;45;-90;;;;;150\n"
    "N;Lac\nT;45;-90;32874.5;;1\nT;0;0\nT;180;180\n"
    "R;1;TOUR\nW;A;45;-90\nL;RteLink x\nW;B;0;0\nR;2;ONE\nW;B;0;0\n";

// The records of this data, as they travel.
constexpr const char* kHere = "00 00 00 20 00 00 00 C0 ";

class GarminReceiverTest : public testing::Test {
protected:
    void start(const std::string& tags = kAll, const std::string& data = kData,
               const std::vector<std::string>& faults = {}, bool announces = true) {
        GarminReceiver::Settings settings;
        settings.unit.productId = 197;
        settings.unit.version = 262;
        settings.unit.description = "GPS";
        settings.unit.announces = announces;
        settings.unit.tags = tags;
        settings.data = readData(data);
        settings.date = 38912.5;  // 14/07/2006 12:00:00
        settings.faults = faults;
        receiver_ = std::make_unique<GarminReceiver>(std::move(settings));
    }

    Bytes hear(const Bytes& bytes) {
        receiver_->hear(bytes, now_);
        return receiver_->takeOutput();
    }

    // Sends one packet; returns what comes back, each packet as "id: bytes in hexadecimal".
    std::vector<std::string> tell(std::uint8_t id, const std::string& data) {
        return packetsOf(hear(frameOf(id, image(data))));
    }
    std::vector<std::string> acknowledge(int id) {
        return packetsOf(hear(frameOf(6, Bytes{static_cast<std::uint8_t>(id), 0})));
    }

    static std::vector<std::string> packetsOf(const Bytes& bytes) {
        std::vector<std::string> packets;
        FrameReader reader;
        for (const std::uint8_t byte : bytes) {
            if (reader.take(byte) == FrameReader::Outcome::packet) {
                std::ostringstream text;
                text << int{reader.packet().id} << ":" << std::hex << std::uppercase;
                for (const std::uint8_t each : reader.packet().data) {
                    text << ' ' << std::setw(2) << std::setfill('0') << int{each};
                }
                packets.push_back(text.str());
            }
        }
        return packets;
    }
    static std::string packet(int id, const std::string& data) {
        return packetsOf(frameOf(static_cast<std::uint8_t>(id), image(data))).front();
    }

    // Runs a whole download, acknowledging everything; returns the packets after the command's ACK.
    std::vector<std::string> download(std::uint8_t command) {
        std::vector<std::string> all;
        std::vector<std::string> said = packetsOf(hear(frameOf(10, Bytes{command, 0})));
        said.erase(said.begin());
        while (!said.empty()) {
            all.insert(all.end(), said.begin(), said.end());
            said = acknowledge(std::stoi(said.back()));
        }
        return all;
    }

    double now_ = 0;
    std::unique_ptr<VirtualReceiver> receiver_;
};

TEST_F(GarminReceiverTest, IntroducesItselfByteForByte) {
    start("A100 D108");
    EXPECT_EQ(hear(image("10 FE 01 00 01 10 03")),
              image("10 06 02 FE 00 FA 10 03"                    // ACK of the request
                    "10 FF 08 C5 00 06 01 'GPS' 00 43 10 03"));  // 197, 262, "GPS"
    EXPECT_EQ(hear(image("10 06 02 FF 00 F9 10 03")),
              image("10 FD 06 'A' 64 00 'D' 6C 00 A8 10 03"));
    EXPECT_THAT(hear(image("10 06 02 FD 00 FB 10 03")), IsEmpty());
}

TEST_F(GarminReceiverTest, SaysNothingMoreWhenItAnnouncesNothing) {
    start(kAll, "", {}, false);
    EXPECT_THAT(tell(254, "00"), ElementsAre("6: FE 00", StartsWith("255: C5 00 06 01")));
    EXPECT_THAT(acknowledge(255), IsEmpty());
}

TEST_F(GarminReceiverTest, SendsFurtherProductDataWithoutWaiting) {
    ReceiverOptions options;
    options.unit = "map162";
    const auto receiver = makeGarminReceiver(options);
    receiver->hear(frameOf(254, {}), 0);
    EXPECT_THAT(
        packetsOf(receiver->takeOutput()),
        ElementsAre("6: FE 00", StartsWith("255:"), StartsWith("248:"), StartsWith("248:")));
    receiver->hear(frameOf(6, image("F8 00")), 0);
    EXPECT_THAT(receiver->takeOutput(), IsEmpty()) << "their acknowledgements are nobody's";
    receiver->hear(frameOf(6, image("FF 00")), 0);
    EXPECT_THAT(packetsOf(receiver->takeOutput()),
                ElementsAre(StartsWith("253: 50 00 00 4C 01 00")));
}

TEST_F(GarminReceiverTest, WaitsForEachAcknowledgement) {
    start();
    EXPECT_THAT(tell(10, "07 00"), ElementsAre("6: 0A 00", "27: 02 00"));
    now_ = 3600;
    receiver_->elapse(now_);
    EXPECT_THAT(receiver_->takeOutput(), IsEmpty()) << "however long it takes";
    EXPECT_THAT(acknowledge(35), IsEmpty()) << "that is another packet's";
    EXPECT_THAT(tell(6, ""), IsEmpty());
    EXPECT_THAT(acknowledge(27),
                ElementsAre(packet(35, std::string("'A     '") + kHere + "4x00 'ONE' 37x20")));
    EXPECT_THAT(acknowledge(27), IsEmpty()) << "no record of it is waiting any more";
    EXPECT_THAT(acknowledge(35), ElementsAre(packet(35, "'B     ' 12x00 'TWO' 37x20")));
    EXPECT_THAT(acknowledge(35), ElementsAre("12: 07 00"));
    EXPECT_THAT(acknowledge(12), IsEmpty());
    EXPECT_THAT(tell(21, "0C 00"), IsEmpty()) << "nothing left to repeat";
}

TEST_F(GarminReceiverTest, RepeatsOnlyWhatIsRefused) {
    start();
    tell(10, "07 00");
    const auto first = acknowledge(27);
    EXPECT_EQ(tell(21, "23 00"), first);
    EXPECT_EQ(tell(21, "23 00"), first);
    EXPECT_THAT(acknowledge(35), ElementsAre(StartsWith("35: 42")));
}

TEST_F(GarminReceiverTest, GivesTracksRoutesAndProximities) {
    start();
    EXPECT_THAT(
        download(6),
        ElementsAre("27: 04 00", packet(99, "01 FF 'Lac' 00"),
                    packet(34, std::string(kHere) + "40 FA 01 00 01"), packet(34, "8x00 4xFF 00"),
                    packet(34, "FF FF FF 7F FF FF FF 7F 4xFF 00"), "12: 06 00"));
    EXPECT_THAT(download(4),
                ElementsAre("27: 06 00", packet(29, "'TOUR' 00"),
                            packet(30, std::string(kHere) + "12 00 'A' 00"),
                            packet(98, "03 00 6x00 12xFF 'x' 00"), packet(30, "8x00 12 00 'B' 00"),
                            packet(29, "'ONE' 00"), packet(30, "8x00 12 00 'B' 00"), "12: 04 00"));
    EXPECT_THAT(download(3),
                ElementsAre("27: 01 00",
                            packet(19, std::string("'C     '") + kHere + "4x00 40x20 00 00 16 43"),
                            "12: 03 00"));
    EXPECT_THAT(download(1), ElementsAre("27: 00 00", "12: 01 00")) << "no almanac yet";
    EXPECT_THAT(receiver_->complaints(), IsEmpty());
}

TEST_F(GarminReceiverTest, OldUnitsHaveNoHeadersAndNoLinks) {
    start("A100 D100 A200 D200 D100 A300 D300");
    EXPECT_THAT(download(6), ElementsAre("27: 03 00", StartsWith("34:"), StartsWith("34:"),
                                         StartsWith("34:"), "12: 06 00"));
    EXPECT_THAT(download(4),
                ElementsAre("27: 05 00", "29: 01", StartsWith("30: 41"), StartsWith("30: 42"),
                            "29: 02", StartsWith("30: 42"), "12: 04 00"));
    EXPECT_THAT(tell(10, "03 00"), ElementsAre("6: 0A 00")) << "it has no proximities";
    EXPECT_THAT(tell(10, "05 00"), ElementsAre("6: 0A 00"));
    EXPECT_THAT(tell(10, "31 00"), ElementsAre("6: 0A 00"));
    EXPECT_EQ(receiver_->nextDeadline(), std::nullopt);
}

TEST_F(GarminReceiverTest, ANewRequestEndsWhatWasUnderWay) {
    start();
    tell(10, "07 00");
    acknowledge(27);
    EXPECT_THAT(tell(10, "00 00"), ElementsAre("6: 0A 00"));
    EXPECT_THAT(acknowledge(35), IsEmpty());
    tell(10, "07 00");
    EXPECT_THAT(tell(10, "06 00"), ElementsAre("6: 0A 00", "27: 04 00"));
    EXPECT_THAT(tell(254, "00"), ElementsAre("6: FE 00", StartsWith("255:")));
    EXPECT_THAT(acknowledge(27), IsEmpty());
    EXPECT_THAT(acknowledge(255), ElementsAre(StartsWith("253:")));
}

TEST_F(GarminReceiverTest, TellsTheTimeAndWhereItIs) {
    start();
    now_ = 100;
    tell(10, "00 00");  // its clock starts at the first contact
    now_ = 165;
    EXPECT_THAT(tell(10, "05 00"), ElementsAre("6: 0A 00", "14: 07 0E D6 07 0C 00 01 05"));
    const auto position = tell(10, "02 00");
    ASSERT_THAT(position, SizeIs(2));
    EXPECT_THAT(position[1], StartsWith("17:"));
    EXPECT_EQ(position[1].size(), 3 + 16 * 3U);
    EXPECT_THAT(tell(10, "11 00"), ElementsAre("6: 0A 00", "40: 26 01 64 05"));
}

TEST_F(GarminReceiverTest, StreamsUntilItIsToldToStop) {
    start();
    now_ = 10;
    EXPECT_THAT(tell(10, "31 00"), ElementsAre("6: 0A 00", StartsWith("51:")));
    EXPECT_EQ(receiver_->nextDeadline(), 11);
    receiver_->elapse(10.9);
    EXPECT_THAT(receiver_->takeOutput(), IsEmpty());
    receiver_->elapse(11.1);
    EXPECT_THAT(packetsOf(receiver_->takeOutput()), ElementsAre(StartsWith("51:")));
    EXPECT_EQ(receiver_->nextDeadline(), 12) << "no drift";
    receiver_->elapse(99);
    EXPECT_THAT(packetsOf(receiver_->takeOutput()), SizeIs(1)) << "what was missed is missed";
    EXPECT_THAT(acknowledge(51), IsEmpty());
    EXPECT_THAT(tell(10, "32 00"), ElementsAre("6: 0A 00"));
    EXPECT_EQ(receiver_->nextDeadline(), std::nullopt);
}

TEST_F(GarminReceiverTest, ATransferHasTheLineForItself) {
    start();
    tell(10, "31 00");
    tell(10, "07 00");
    receiver_->elapse(5);
    EXPECT_THAT(receiver_->takeOutput(), IsEmpty());
    tell(10, "00 00");
    EXPECT_EQ(receiver_->nextDeadline(), std::nullopt) << "abort ends the stream too";
}

TEST_F(GarminReceiverTest, RefusesBadFramesAndForgetsStalledOnes) {
    start();
    EXPECT_THAT(packetsOf(hear(image("10 0A 02 07 00 EE 10 03"))), ElementsAre("21: 0A 00"));
    EXPECT_THAT(hear(image("10 0A 02 07 00 10")), IsEmpty());
    now_ = 5;
    // Without forgetting, the 16 that begins this frame would be the other half of the one before.
    EXPECT_THAT(tell(10, "07 00"), ElementsAre("6: 0A 00", "27: 02 00"));
    // One byte at a time, within the second.
    Bytes said;
    for (const std::uint8_t byte : frameOf(6, image("1B 00"))) {
        now_ += 0.9;
        said = hear({byte});
    }
    EXPECT_THAT(packetsOf(said), ElementsAre(StartsWith("35: 41")));
}

TEST_F(GarminReceiverTest, FaultsStrikeTheNamedPacket) {
    start(kAll, kData,
          {"refuse:packet=2,of=10", "unknown:packet=2,of=35", "short:packet=1,of=12,keep=5"});
    tell(10, "00 00");
    EXPECT_THAT(tell(10, "07 00"), ElementsAre("21: 0A 00"));
    EXPECT_THAT(tell(10, "07 00"), ElementsAre("6: 0A 00", "27: 02 00"));
    acknowledge(27);
    EXPECT_THAT(acknowledge(35), ElementsAre("200: 01 02 03", StartsWith("35: 42")));
    EXPECT_EQ(hear(frameOf(6, image("23 00"))), image("10 0C 02 07 00"));
}

TEST_F(GarminReceiverTest, StoresAnUploadOfWaypointsByName) {
    start();
    EXPECT_THAT(tell(27, "02 00"), ElementsAre("6: 1B 00"));
    EXPECT_THAT(tell(35, std::string("'B     '") + kHere + "4x00 'NEW' 00 36x20"),
                ElementsAre("6: 23 00"));
    EXPECT_THAT(tell(35, std::string("'D     '") + kHere + "4x00 40x20"), ElementsAre("6: 23 00"));
    EXPECT_THAT(receiver_->lines(), testing::Not(testing::Contains(HasSubstr("NEW"))))
        << "kept when it is complete";
    EXPECT_THAT(tell(12, "00"), ElementsAre("6: 0C 00"));
    EXPECT_THAT(receiver_->complaints(), IsEmpty());
    EXPECT_THAT(
        download(7),
        ElementsAre("27: 03 00", StartsWith("35: 41"),
                    packet(35, std::string("'B     '") + kHere + "4x00 'NEW' 37x20"),
                    packet(35, std::string("'D     '") + kHere + "4x00 40x20"), "12: 07 00"));
}

TEST_F(GarminReceiverTest, StoresRoutesAndTracksByName) {
    start();
    tell(27, "04 00");
    tell(29, "'TOUR' 00 16x20");
    tell(30, "8x00 12 00 'X' 00");
    tell(98, "FF 00 6x00 11xFF 00 'X        ' 00");
    tell(30, "8x00 12 00 'Y' 00");
    tell(12, "00");
    tell(27, "03 00");
    tell(99, "FF 00 'New' 00 00");
    tell(34, std::string(kHere) + "4x00 FF");
    tell(34, "12x00 00");
    tell(12, "");
    EXPECT_THAT(receiver_->complaints(), IsEmpty());
    const std::vector<std::string> lines = receiver_->lines();
    EXPECT_THAT(std::vector<std::string>(lines.begin() + 3, lines.end()),
                ElementsAre("N;Lac", "T;45;-90;32874.5;;-1", "T;0;0;0;;0", "T;180;180;0;;0",
                            "N;New", "T;45;-90;0;;-1", "T;0;0;0;;0",  //
                            "R;1;ONE", "W;B;0;0;;;18;0",              //
                            "R;2;TOUR", "W;X;0;0;;;18;0", "L;RteLink X", "W;Y;0;0;;;18;0"));
}

TEST_F(GarminReceiverTest, ATrackLogIsReplacedAsAWhole) {
    start("A100 D100 A200 D201 D100 A300 D300");
    tell(27, "01 00");
    tell(34, std::string(kHere) + "4x00 FF");
    tell(12, "");
    EXPECT_THAT(download(6), ElementsAre("27: 01 00", StartsWith("34:"), "12: 06 00"));
}

TEST_F(GarminReceiverTest, WondersAboutWhatIsWrongWithAnUpload) {
    start();
    tell(27, "03 00");
    tell(35, "'SHORT'");
    tell(30, "8x00 12 00 'X' 00");
    tell(12, "");
    EXPECT_THAT(receiver_->complaints(),
                ElementsAre("3 records were announced, 2 came",
                            "record 1, a waypoint of 5 bytes, ends too early",
                            "record 2, a route point of 12 bytes, stands in front of every route "
                            "header"));
    tell(35, "'STRAY'");
    tell(27, "01 00");
    tell(10, "00 00");
    EXPECT_THAT(receiver_->complaints(), SizeIs(5));
    EXPECT_THAT(receiver_->complaints()[3], HasSubstr("packet 35 came out of turn"));
    EXPECT_THAT(receiver_->complaints()[4], HasSubstr("broken off"));
}

TEST_F(GarminReceiverTest, TurnedOffItIsDeaf) {
    start();
    EXPECT_THAT(tell(10, "08 00"), ElementsAre("6: 0A 00"));
    EXPECT_THAT(tell(254, "00"), IsEmpty());
}

TEST_F(GarminReceiverTest, HoldsWhatItsRecordsHaveRoomFor) {
    start("A100 D103 A201 D202 D108 A302 D311 D303",
          "W;LONGNAME1;45;-90;x;100;999;2\nW;LONGNAME2;45;-90\n"
          "N;First\nT;0;0\nT;1;1;;;1\nN;Second\nT;0;0\n");
    EXPECT_THAT(receiver_->lines(),
                ElementsAre("W;LONGNA;45;-90;;;18;0", "N;Track 1", "T;0;0;0;;-1", "T;1;1;0;;-1",
                            "N;Track 2", "T;0;0;0;;-1"));
    std::string crowd;
    for (int i = 0; i < 65536; ++i) {
        crowd += "W;" + std::to_string(i) + ";0;0\n";
    }
    EXPECT_THROW(start(kAll, crowd), std::invalid_argument) << "more than a count can tell";
}

TEST_F(GarminReceiverTest, EveryUnitGivesBackWhatItGave) {
    for (const GarminUnit& unit : garminUnits()) {
        ReceiverOptions options;
        options.unit = unit.name;
        options.now = 39000;
        receiver_ = makeGarminReceiver(options);
        const auto full = receiver_->lines();
        ASSERT_THAT(full, SizeIs(testing::Ge(8U))) << unit.name;
        // Downloads everything from one and uploads it to another of its kind.
        GarminReceiver second({unit, {}, 9600, 1, 39000, {}});
        for (const std::uint8_t command : Bytes{7, 3, 6, 4}) {
            for (const std::string& packet : download(command)) {
                const auto id = static_cast<std::uint8_t>(std::stoi(packet));
                second.hear(frameOf(id, image(packet.substr(packet.find(' ')))), 0);
            }
        }
        EXPECT_EQ(second.lines(), full) << unit.name;
        EXPECT_THAT(second.complaints(), IsEmpty()) << unit.name;
    }
}

}  // namespace
}  // namespace marlune::receivers::garmin
