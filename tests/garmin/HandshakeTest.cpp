// Connecting and identifying a Garmin unit on a serial line.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/Dialogue.h"

namespace marlune {
namespace {

// What may be under way is aborted, and the unit is asked for its product data.
const Script kAsked = {sends(10, {0, 0}), sends(254, {0})};
const Step kNotIdentified = box(BoxIcon::critical, "GPS éteint ou mal connecté");

TEST(Handshake, IdentifiesAUnitThatAnnouncesItsProtocols) {
    Stage stage;
    stage.connectGarmin("P000 L001 A010 A100 D108");
    EXPECT_EQ(stage.control().getIdent(),
              "Marlune Version 1.0.0 -  GPSId: 77 Version: 2.8 - eTrex");
    EXPECT_EQ(stage.control().getProtocoles(), "P000 L001 A010 A100 D108");
    ASSERT_EQ(stage.port().openings.size(), 1U);
    EXPECT_EQ(stage.port().openings[0].settings, "baud=9600 parity=n data=8 stop=1");
    EXPECT_EQ(stage.port().openings[0].queues.input, 2048);
    EXPECT_EQ(stage.port().openings[0].queues.output, 1024);
}

TEST(Handshake, TakesTheProductTableForAUnitThatDoesNot) {
    Stage stage;
    stage.play(
        kAsked + Script{answers(6, {254, 0}), answers(255, productData(36, 310, "GPS 126\xE9")),
                        answers(248, {1}), answers(0), answers(248, {2}), sends(6, {255, 0})},
        [&] { EXPECT_TRUE(stage.control().gpsConnect()); });
    EXPECT_EQ(stage.control().getProtocoles(),
              "P000 L001 A010 A100 D152 A200 D200 D152 A300 D300 A500 D500 A600 D600 A700 D700");
    EXPECT_EQ(stage.control().getIdent(),
              "Marlune Version 1.0.0 -  GPSId: 36 Version: 3.1 - GPS 126é");
}

TEST(Handshake, AsksASilentUnitFiveTimes) {
    Stage stage;
    const double before = stage.host.elapsed();
    stage.play(kAsked + Script(4, sends(254, {0})) + Script{kNotIdentified},
               [&] { EXPECT_FALSE(stage.control().gpsConnect()); });
    // One read for the abort, then a read and a delay for each request.
    EXPECT_NEAR(stage.host.elapsed() - before, 1.1 + 5 * 2.1, 1e-6);
    EXPECT_FALSE(stage.port().isOpen());
}

// What an aborted transfer still had on the line is no answer to the product request.
TEST(Handshake, DropsWhatFollowsTheAbort) {
    Stage stage;
    stage.play({sends(10, {0, 0}), answers(6, {10, 0}), answers(35, {1, 2}), sends(254, {0}),
                answers(6, {254, 0}), answers(255, productData(77, 280, "eTrex")),
                sends(6, {255, 0}), answers(253, protocolArray("A100 D108")), sends(6, {253, 0})},
               [&] { EXPECT_TRUE(stage.control().gpsConnect()); });
}

// A user who asks for an end while the unit is silent is not told about the silence.
TEST(Handshake, EndsWithoutAWordWhenTheHostRequestsAStop) {
    for (const Script& answer : {Script{}, Script{answers(6)}}) {
        Stage stage;
        stage.host.onStopRequested = [&] { return stage.host.elapsed() > 1.5; };
        stage.play(kAsked + answer, [&] { EXPECT_FALSE(stage.control().gpsConnect()); });
    }
}

// The host's events are processed behind the abort, and a hundred times before the drain.
TEST(Handshake, AHandlerMayEndOrReplaceTheConnection) {
    const Script untilProduct = kAsked + Script{answers(6), answers(255, productData(77, 0, "A"))};
    const std::pair<int, Script> cases[] = {{1, Script{sends(10, {0, 0})}}, {9, untilProduct}};
    for (const auto& each : cases) {
        const int round = each.first;
        const Script& begun = each.second;
        const auto connect = [&](Stage& stage, const Script& script,
                                 const std::function<void()>& act) {
            stage.host.onProcessEvents = [&] {
                if (stage.host.eventRounds == round) {
                    act();
                }
            };
            stage.play(begun + script, [&] { EXPECT_FALSE(stage.control().gpsConnect()); });
            EXPECT_EQ(stage.control().lastConnection().outcome, ConnectionOutcome::abandoned);
        };
        Stage closed;
        connect(closed, {}, [&] { closed.control().gpsDisconnect(); });
        EXPECT_FALSE(closed.port().isOpen());
        EXPECT_EQ(closed.control().getProtocoles(), "");

        Stage replaced;
        connect(replaced, garminHandshake("A100 D108"),
                [&] { EXPECT_TRUE(replaced.control().gpsConnect()); });
        EXPECT_TRUE(replaced.port().isOpen());
        EXPECT_EQ(replaced.control().getProtocoles(), "A100 D108");
        EXPECT_EQ(replaced.control().lastConnection().capabilities, CapabilitySource::announced);

        Stage stopped;
        const bool asked = round > 1;
        connect(stopped, asked ? Script{sends(6, {255, 0})} : Script{},
                [&] { stopped.host.stop = true; });
        EXPECT_FALSE(stopped.port().isOpen());
        EXPECT_EQ(stopped.control().getProtocoles(), "");

        Stage destroyed;
        destroyed.host.onProcessEvents = [&] {
            if (destroyed.host.eventRounds == round) {
                destroyed.destroyControl();
            }
        };
        destroyed.play(begun, [&] { EXPECT_FALSE(destroyed.control().gpsConnect()); });
    }
}

// As one does that streams since an earlier connection.
TEST(Handshake, AUnitThatNeverFallsSilentIsHeardForTenSeconds) {
    Stage stage;
    stage.host.onProcessEvents = [&] {
        if (stage.host.eventRounds == 2) {
            for (double at = 0; at < 60; at += 0.5) {
                stage.port().arrive(garminFrame(51, {1}), at);
            }
        }
    };
    const double before = stage.host.elapsed();
    stage.play(
        kAsked + Script{answers(6), answers(255, productData(36, 310, "")), sends(6, {255, 0})},
        [&] { EXPECT_TRUE(stage.control().gpsConnect()); });
    EXPECT_NEAR(stage.host.elapsed() - before, 1.1 + 10, 0.6);
}

TEST(Handshake, AFailedConnectionLeavesNothingOfAnEarlierUnit) {
    const std::string nobody = "Marlune Version 1.0.0 -  GPSId:  Version:  - ";
    Stage stage;
    stage.connectGarmin("A100 D108");
    stage.control().SetGpsMark("MLR");
    stage.play({sendsText("$PMLR,26,01,01,0339\r\n"), sendsText("$PMLR,0E,01,01,0346\r\n")},
               [&] { EXPECT_FALSE(stage.control().gpsConnect()); });
    EXPECT_EQ(stage.control().getIdent(), nobody);
    stage.control().SetGpsMark("GRM");
    EXPECT_EQ(stage.control().getProtocoles(), "");

    stage.connectGarmin("A100 D108");
    stage.control().SetGpsMark("MLR");
    stage.play(
        {sendsText("$PMLR,26,01,01,0339\r\n"), answersText("$PMLR,IDGPS,x,SP24,a,b,1.20,X*00\r\n"),
         sendsText("$PMLR,06,00,02A9\r\n")},
        [&] { EXPECT_TRUE(stage.control().gpsConnect()); });
    stage.port().close();
    EXPECT_EQ(stage.control().getIdent(),
              "Marlune Version 1.0.0 -  GPSId:  Version: 1.2 - SP24 X*00");
}

TEST(Handshake, KnowsWhereTheProtocolsComeFrom) {
    const std::tuple<std::uint16_t, Script, CapabilitySource, const char*> cases[] = {
        {77,
         {answers(253, protocolArray("A100")), sends(6, {253, 0})},
         CapabilitySource::announced,
         "Protocole trouv\xE9 ...."},
        {36, {}, CapabilitySource::table, "Protocoles de la table des produits"},
        {4711, {}, CapabilitySource::generic, "Protocoles suppos\xE9s: produit inconnu"},
    };
    for (const auto& [product, announced, source, line] : cases) {
        Stage stage;
        stage.host.createTraceFolder();
        stage.control().SetDebug("on");
        stage.play(kAsked +
                       Script{answers(6), answers(255, productData(product, 310, "X")),
                              sends(6, {255, 0})} +
                       announced,
                   [&] { EXPECT_TRUE(stage.control().gpsConnect()); });
        EXPECT_EQ(stage.control().lastConnection().capabilities, source);
        EXPECT_THAT(stage.host.traced(), testing::Contains(line));
    }
}

// The protocol takes a frame as it stands, so that the unit may be misread from here on.
TEST(Handshake, CountsWhatWasDamagedOnItsWay) {
    Stage stage;
    constexpr std::uint8_t kWrongSum = 99;
    stage.play(
        kAsked + Script{answers(6), answers(255, productData(77, 310, "X")), sends(6, {255, 0}),
                        answersBytes({16, 253, 3, 'A', 101, 0, kWrongSum, 16, 3}),
                        sends(6, {253, 0})},
        [&] { EXPECT_TRUE(stage.control().gpsConnect()); });
    EXPECT_EQ(stage.control().getProtocoles(), "A101");
    EXPECT_EQ(stage.control().lastConnection().damaged, 1);
    stage.connectGarmin("A100 D108");
    EXPECT_EQ(stage.control().lastConnection().damaged, 0);
}

TEST(Handshake, TellsWhatAnswersWrongly) {
    const std::vector<std::pair<Script, const char*>> cases = {
        {{answersText("$GPGGA,1*00\r\n")},
         "Protocole Incorrect, Vérifiez votre GPS\nChoisissez l'option GRMN/GRMN."},
        {{answers(0, {254, 0})}, "Erreur de protocole(Ack) - pid = 0"},
        {{answers(21, {254, 0})}, "Erreur de protocole(Ack) - pid = 21"},
        {{answers(6, {254, 0}), answers(12)}, "Erreur de protocole(Product) - pid = 12"},
        {{answers(6, {254, 0})}, "Erreur de protocole(Product) - pid = 0"},
    };
    for (const auto& [answer, text] : cases) {
        Stage stage;
        stage.play(kAsked + answer + Script{box(BoxIcon::critical, text)},
                   [&] { EXPECT_FALSE(stage.control().gpsConnect()); });
        EXPECT_FALSE(stage.port().isOpen()) << text;
        // The control stays usable.
        stage.port().purge();
        stage.connectGarmin("A100 D108");
    }
}

TEST(Handshake, ReadsProductDataThatIsCutShort) {
    const std::vector<std::pair<Bytes, const char*>> cases = {
        {{77, 0, 24, 1, 'a', 'b'}, "GPSId: 77 Version: 2.8 - ab"},
        {{77, 0, 24, 1}, "GPSId: 77 Version: 2.8 - "},
        {{77}, "GPSId: 77 Version: 0 - "},
        {{}, "GPSId: 0 Version: 0 - "},
        {{0xFF, 0xFF, 0xFF, 0xFF, 'x', 0, 'y'}, "GPSId: 65535 Version: 655.35 - x"},
    };
    for (const auto& [data, ident] : cases) {
        Stage stage;
        stage.play(kAsked + Script{answers(6), answers(255, data), sends(6, {255, 0}),
                                   answers(253, protocolArray("A100")), sends(6, {253, 0})},
                   [&] { EXPECT_TRUE(stage.control().gpsConnect()); });
        EXPECT_THAT(stage.control().getIdent(), testing::EndsWith(ident));
    }
}

TEST(Handshake, AnEmptyProtocolArrayConnectsNobody) {
    Stage stage;
    stage.play(kAsked + Script{answers(6), answers(255, {77, 0, 0, 0}), sends(6, {255, 0}),
                               answers(253), sends(6, {253, 0})},
               [&] { EXPECT_FALSE(stage.control().gpsConnect()); });
    EXPECT_EQ(stage.control().getProtocoles(), "");
}

TEST(Handshake, TracesItsSteps) {
    Stage stage;
    stage.host.createTraceFolder();
    stage.control().SetDebug("on");
    stage.connectGarmin("A100 D108");
    EXPECT_THAT(stage.host.traced(),
                testing::ElementsAre(
                    "01/06/2007 12:00:00 Marlune 1.0.0",
                    "01/06/2007 12:00:00 Port Connect\xE9: \\\\.\\COM1 Handle: 3",
                    "Send  16 10 2 0 0 244 16 3", "GetAttributes: essai n\xB0 1 d\xE9lai: 1",
                    "Send  16 254 1 0 1 16 3", "Get  16 6 2 254 0 250 16 3",
                    "Get  16 255 10 77 0 24 1 101 84 114 101 120 0 137 16 3",
                    "Marlune Version 1.0.0 -  GPSId: 77 Version: 2.8 - eTrex",
                    "Send  16 6 2 255 0 249 16 3", "Get  16 253 6 65 100 0 68 108 0 168 16 3",
                    "Protocole trouv\xE9 ....", "Send  16 6 2 253 0 251 16 3", "A100 D108"));
}

}  // namespace
}  // namespace marlune
