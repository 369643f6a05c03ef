#include <gmock/gmock.h>

#include "receivers/magellan/MagellanReceiver.h"
#include "receivers/sentences/Talk.h"

namespace marlune::receivers::magellan {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const std::string kEnd = "$PMGNCMD,END*3D";
const std::string kUnable = "$PMGNCMD,UNABLE*63";

Talk talk(std::string_view data = kHoldings, const std::vector<std::string>& faults = {},
          bool hasFix = true) {
    MagellanReceiver::Settings settings;
    settings.data = readData(data);
    settings.date = 39083.5;
    settings.rate = 2;
    settings.hasFix = hasFix;
    settings.faults = faults;
    return Talk(std::make_unique<MagellanReceiver>(std::move(settings),
                                                   MagellanUnit{"X", "024", "3.15", "GPS 315"}));
}

TEST(MagellanReceiver, GivesItsListsAndEndsThem) {
    Talk unit = talk();
    EXPECT_THAT(unit.tell("$PMGNCMD,VERSION*28"), ElementsAre("$PMGNVER,024,3.15,GPS 315*05"));
    EXPECT_THAT(unit.tell("$PMGNCMD,WAYPOINT*71"),
                ElementsAre("$PMGNWPL,4807.038,N,01131.000,E,0000152,M,HOME,MY HOUSE,a*2F",
                            "$PMGNWPL,3330.000,S,15115.000,W,-0000003,M,ÉVIAN,A B,a*8D",
                            intact("PMGNWPL,0100.000,N,00200.000,E,0000000,M,MILL,,a"), kEnd));
    EXPECT_THAT(unit.tell("$PMGNCMD,TRACK,2*23"),
                ElementsAre("$PMGNTRK,4807.038,N,01131.000,E,00152,M,123519.25,A,WALK,150325*6F",
                            "$PMGNTRK,4807.040,N,01131.000,E,00000,M,000000.00,A,WALK*40", kEnd));
    EXPECT_EQ(unit.tell(intact("PMGNCMD,TRACK")).front(),
              "$PMGNTRK,4807.038,N,01131.000,E,00152,M,123519.25,A*7E");
    EXPECT_THAT(unit.tell("$PMGNCMD,ROUTE*2B"),
                ElementsAre("$PMGNRTE,2,1,c,3,TRIP,HOME,a,ÉVIAN,a*E1",
                            "$PMGNRTE,2,2,c,3,TRIP,MILL,a*51", kEnd));
    EXPECT_THAT(unit.receiver().complaints(), IsEmpty());
}

TEST(MagellanReceiver, StopsInTheMiddleOfAList) {
    Talk unit = talk();
    const std::string command = "$PMGNCMD,WAYPOINT*71\r\n";
    unit.receiver().hear(std::vector<std::uint8_t>(command.begin(), command.end()), 1000);
    unit.receiver().elapse(1000);
    EXPECT_EQ(unit.tell("$PMGNCMD,STOP*6A").size(), 1U);
    EXPECT_THAT(unit.wait(60), IsEmpty());
}

TEST(MagellanReceiver, HearsNothingWithoutTheRightChecksum) {
    Talk unit = talk();
    for (const char* line : {"$PMGNCMD,VERSION*29", "$PMGNCMD,VERSION", "$PMGNCMD,VERSION*",
                             "$PMGNCMD,VERSION*028", "$PMGNCMD,VERSION*2G", "PMGNCMD,VERSION*28",
                             "$PMGNWPL,4807.038,N,01131.000,E,1,M,X,,a*00"}) {
        EXPECT_THAT(unit.tell(line), IsEmpty()) << line;
    }
    EXPECT_EQ(unit.receiver().complaints().size(), 6U);
    EXPECT_EQ(unit.tell("$PMGN$PMGNCMD,VERSION*28").size(), 1U) << "a $ begins anew";
}

TEST(MagellanReceiver, RefusesWhatItDoesNotHoldOrKnow) {
    Talk empty = talk("");
    for (const char* command :
         {"PMGNCMD,WAYPOINT", "PMGNCMD,TRACK,2", "PMGNCMD,ROUTE", "PMGNCMD,JUMP", "PMGNJMP,1"}) {
        EXPECT_THAT(empty.tell(intact(command)), ElementsAre(kUnable)) << command;
    }
    Talk searching = talk(kHoldings, {}, false);
    EXPECT_THAT(searching.tell("$PMGNCMD,FIX*25"), ElementsAre(kUnable));
}

TEST(MagellanReceiver, SaysItsPositionUntilToldToStop) {
    Talk unit = talk();
    EXPECT_THAT(unit.tell("$PMGNCMD,FIX*25"),
                ElementsAre(testing::StartsWith("$GPGGA,120000.00,4807.")));
    const std::vector<std::string> more = unit.wait(2);
    ASSERT_EQ(more.size(), 4U);
    EXPECT_THAT(more[3], testing::StartsWith("$GPGGA,120002.00,"));
    EXPECT_NE(more[3].substr(17), more[2].substr(17)) << "it walks";
    unit.tell("$PMGNCMD,STOP*6A");
    EXPECT_THAT(unit.wait(60), IsEmpty());
}

TEST(MagellanReceiver, StoresUploadsByNameAndNumber) {
    Talk unit = talk();
    unit.tell(intact("PMGNCMD,HANDOFF"));
    for (const char* line : {
             "PMGNWPL,4600.000,S,00630.000,W,100,F,HOME,,a",
             "PMGNWPL,0000.500,N,00000.000,E,,M,Ça,x;y,a",
             "PMGNTRK,4600.000,N,00600.000,E,00010,M,120000.00,A,WALK,290224",
             "PMGNTRK,4600.000,N,00600.000,E,00010,M,180000.00,A,NEW",
             "PMGNTRK,4560.000,N,00600.000,E,00010,M,120001.00,A,WALK,290224",
             "PMGNRTE,2,1,c,3,BACK,MILL,a,HOME,a",
             "PMGNRTE,2,2,c,3,BACK,Ça,a",
             "PMGNRTE,1,1,c,4,,HOME,a",
             "PMGNCMD,END",
         }) {
        EXPECT_THAT(unit.tell(intact(line)), IsEmpty()) << line;
    }
    EXPECT_THAT(unit.receiver().lines(),
                ElementsAre("W;HOME;-46;-6.5;;30;18;0", "W;ÉVIAN;-33.5;-151.25;A,B;-3;18;0",
                            "W;MILL;1;2;;;18;0", "W;Ça;0.008333;0;x y;;18;0", "N;WALK",
                            "T;46;6;45351.5;10;-1", "T;46;6;45351.50001157408;10;0", "N;NEW",
                            "T;46;6;0.75;10;-1", "R;3;BACK", "W;MILL;1;2;;;18;0",
                            "W;HOME;-46;-6.5;;30;18;0", "W;Ça;0.008333;0;x y;;18;0", "R;4;",
                            "W;HOME;-46;-6.5;;30;18;0"));
    unit.tell(intact("PMGNTRK,4700.000,N,00600.000,E,00010,M,120000.00,A,NEW"));
    EXPECT_THAT(unit.receiver().lines(), testing::Contains("T;47;6;0.5;10;-1"));
    EXPECT_THAT(unit.receiver().lines(), testing::Not(testing::Contains("T;46;6;0.75;10;-1")));
}

TEST(MagellanReceiver, RefusesMalformedUploads) {
    Talk unit = talk("W;HOME;1;2\n");
    for (const char* line : {
             "PMGNWPL,9100.000,N,00600.000,E,0,M,A,,a",
             "PMGNWPL,4660.001,N,00600.000,E,0,M,A,,a",
             "PMGNWPL,4600.000,X,00600.000,E,0,M,A,,a",
             "PMGNWPL,,,,,0,M,A,,a",
             "PMGNWPL,4600.000,N,18000.001,E,0,M,A,,a",
             "PMGNWPL,4600.000,N,00600.000,E,1e3,M,A,,a",
             "PMGNWPL,4600.000,N,00600.000,E,0,M,,no name,a",
             "PMGNWPL",
             "PMGNTRK,4600.000,N,00600.000,E,0,M,246000.00,A,T",
             "PMGNTRK,4600.000,N,00600.000,E,0,M,120000.00,V,T",
             "PMGNTRK,4600.000,N,00600.000,E,0,M,120000.00,A,T,290223",
             "PMGNRTE,1,1,c,3,X,NOBODY,a",
             "PMGNRTE,2,2,c,3,X,HOME,a",
             "PMGNRTE,1,1,c,256,X,HOME,a",
             "PMGNRTE,1,2,c,3,X,HOME,a",
             "PMGNRTE,99999999999,1,c,3,X,HOME,a",
         }) {
        EXPECT_THAT(unit.tell(intact(line)), ElementsAre(kUnable)) << line;
    }
    EXPECT_THAT(unit.receiver().lines(), ElementsAre("W;HOME;1;2;;;18;0"));
}

TEST(MagellanReceiver, AcknowledgesUploadsWithHandshake) {
    Talk unit = talk("");
    const std::string place = "PMGNWPL,4600.000,N,00600.000,E,0,M,A,,a";
    EXPECT_THAT(unit.tell(intact(place)),
                ElementsAre(intact("PMGNCSM," + intact(place).substr(place.size() + 2))));
    EXPECT_THAT(unit.tell(kEnd), ElementsAre("$PMGNCSM,3D*12"));
    EXPECT_THAT(unit.tell("$PMGNCSM,3D*12"), IsEmpty());
    unit.tell(intact("PMGNCMD,HANDOFF"));
    EXPECT_THAT(unit.tell(kEnd), IsEmpty());
    unit.tell(intact("PMGNCMD,HANDON"));
    EXPECT_THAT(unit.tell(kEnd), ElementsAre("$PMGNCSM,3D*12"));
    EXPECT_THAT(unit.tell("$PMGNCMD,VERSION*28"),
                ElementsAre(intact("PMGNCSM,28"), testing::StartsWith("$PMGNVER")));
}

TEST(MagellanReceiver, FaultsGoByCommandsAndSentences) {
    Talk unit = talk(kHoldings, {"refuse:packet=2,of=WAYPOINT", "refuse:packet=1,of=PMGNWPL",
                                 "unknown:packet=1,of=END", "short:packet=1,of=PMGNRTE,keep=5"});
    EXPECT_EQ(unit.tell("$PMGNCMD,WAYPOINT*71").size(), 5U);
    EXPECT_THAT(unit.tell("$PMGNCMD,WAYPOINT*71"), ElementsAre(kUnable));
    EXPECT_EQ(unit.tell("$PMGNCMD,WAYPOINT*71").size(), 4U);
    EXPECT_THAT(unit.tell("$PMGNCMD,ROUTE*2B").front(), testing::StartsWith("$PMGN$PMGNRTE"));
    const std::string place = intact("PMGNWPL,4600.000,N,00600.000,E,0,M,A,,a");
    EXPECT_THAT(unit.tell(place), ElementsAre(kUnable));
    EXPECT_THAT(unit.receiver().lines(), testing::Not(testing::Contains("W;A;46;6;;0;18;0")));
}

TEST(MagellanReceiver, FollowsItsOptions) {
    ReceiverOptions options;
    options.productId = 37;
    options.version = 1205;
    options.baud = 9600;
    Talk unit(makeMagellanReceiver(options));
    EXPECT_EQ(unit.receiver().baud(), 9600);
    EXPECT_THAT(unit.tell("$PMGNCMD,VERSION*28"), ElementsAre(intact("PMGNVER,037,12.05,Unit 37")));
    options.unit = "nobody";
    EXPECT_THROW(makeMagellanReceiver(options), std::invalid_argument);
    options.unit = "";
    options.rate = 21;
    EXPECT_THROW(makeMagellanReceiver(options), std::invalid_argument);
}

}  // namespace
}  // namespace marlune::receivers::magellan
