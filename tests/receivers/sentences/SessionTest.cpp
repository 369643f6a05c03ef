// Sessions of the control with the receivers that speak sentences: what one gives is taken by
// another and comes back from there.
#include <gmock/gmock.h>

#include <functional>
#include <memory>

#include "host/CodePage.h"
#include "marlune/GpsControl.h"
#include "receivers/Families.h"
#include "receivers/sentences/ReceiverPort.h"
#include "support/ScriptedUsb.h"
#include "support/TempFolder.h"

namespace marlune::receivers {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

using Lines = std::vector<std::string>;

constexpr const char* kData =
    "W;HOME;48.1173;11.516667;MY HOUSE;152;18;0\n"
    "W;ÉVIAN;-33.5;-151.25;Port à l'est;-3;18;0\n"
    "N;Walk\n"
    "T;48.1173;11.516667;39230.25;152;-1\n"
    "T;48.118;-0.5;39230.25125;0;0\n"
    "T;-48.119;11.517;39230.5;-12;-1\n"
    "N;Way\n"
    "T;1;2;39231.5;3;-1\n"
    "R;3;TRIP\n"
    "W;HOME;48.1173;11.516667;MY HOUSE;152;18;0\n"
    "W;ÉVIAN;-33.5;-151.25;Port à l'est;-3;18;0\n"
    "W;MILL;1;2;;7;18;0\n"
    "W;FORD;1.5;2;;7;18;0\n"
    "W;BRIDGE;1.75;2;;7;18;0\n"
    "R;12;BACK\n"
    "W;MILL;1;2;;7;18;0\n"
    "W;HOME;48.1173;11.516667;MY HOUSE;152;18;0\n";

// Keeps the lines of records, and all other events and boxes as short texts.
class Told : public GpsControlEvents {
public:
    Lines lines;
    Lines others;
    std::function<void(const std::string& line)> onLine;

    void WayptData(std::int16_t /*number*/, const std::string& line,
                   const std::string& /*sens*/) override {
        keep(line);
    }
    void TrackHeader(std::int16_t /*number*/, const std::string& line,
                     const std::string& /*sens*/) override {
        keep(line);
    }
    void TrackData(std::int16_t /*number*/, const std::string& line,
                   const std::string& /*sens*/) override {
        keep(line);
    }
    void RouteHeader(std::int16_t /*number*/, const std::string& line,
                     const std::string& /*sens*/) override {
        keep(line);
    }
    void RouteData(std::int16_t /*number*/, const std::string& line,
                   const std::string& /*sens*/) override {
        keep(line);
    }
    void PvtData(const std::string& line) override { keep(line); }
    void PhraseNMEA(const std::string& sentence) override { keep(sentence); }
    void EndDownload(const std::string& type) override { others.push_back("end " + type); }
    void EndUpload(const std::string& type) override { others.push_back("end " + type); }
    void EndPvt() override { others.emplace_back("end pvt"); }

private:
    void keep(const std::string& line) {
        lines.push_back(line);
        if (onLine) {
            onLine(line);
        }
    }
};

// A control and the receiver at its port.
class Session {
public:
    explicit Session(const std::string& family, const std::string& data = kData,
                     ReceiverOptions options = {})
        : receiver_(make(family, data, std::move(options))) {
        host.onMessageBox = [this](const FakeHost::Box& box) {
            told.others.push_back("box " + box.text);
        };
        auto port = std::make_unique<ReceiverPort>(host, *receiver_);
        port_ = port.get();
        control_ = std::make_unique<GpsControl>(host, told, std::move(port),
                                                std::make_unique<ScriptedUsb>(host));
        control_->SetGpsMark(std::string(receiverFamily(family).code));
        control_->setNumPort(numPort::Comm1);
    }

    FakeHost host;
    Told told;

    GpsControl& control() { return *control_; }
    [[nodiscard]] const Lines& openings() const { return port_->openings; }
    VirtualReceiver& receiver() { return *receiver_; }

    Session& connect() {
        EXPECT_TRUE(control_->gpsConnect());
        return *this;
    }
    // The lines that a call brings.
    template <typename Call>
    Lines linesOf(const Call& call) {
        told.lines.clear();
        told.others.clear();
        call();
        return told.lines;
    }
    Lines waypoints() {
        return linesOf([this] { control_->getWaypts(); });
    }
    Lines tracks() {
        return linesOf([this] { control_->getTracks(); });
    }
    Lines routes() {
        return linesOf([this] { control_->GetRoutes(); });
    }
    // Uploads the lines and returns those that were told.
    Lines send(bool (GpsControl::*member)(const std::string&), const Lines& lines) {
        std::string text;
        for (const std::string& line : lines) {
            text += line + "\r\n";
        }
        const std::string path = folder_.write("upload.txt", toAnsi(text));
        return linesOf([&] { (control_.get()->*member)(path); });
    }

private:
    std::unique_ptr<VirtualReceiver> make(const std::string& family, const std::string& data,
                                          ReceiverOptions options) {
        options.dataFile = folder_.write("data.txt", data);
        options.now = 39234.5;  // the fake host's
        return receiverFamily(family).make(options);
    }

    TempFolder folder_;
    std::unique_ptr<VirtualReceiver> receiver_;
    ReceiverPort* port_ = nullptr;
    std::unique_ptr<GpsControl> control_;
};

// Names come padded to six characters, and are sent again as they are meant.
Lines unpadded(Lines lines) {
    for (std::string& line : lines) {
        const std::size_t end = line.find(';', 2);
        const std::size_t last = line.find_last_not_of(' ', end - 1);
        line.erase(last + 1, end - last - 1);
    }
    return lines;
}

ReceiverOptions unit(const std::string& name) {
    ReceiverOptions options;
    options.unit = name;
    return options;
}

ReceiverOptions faulty(const std::string& fault) {
    ReceiverOptions options;
    options.faults = {fault};
    return options;
}

TEST(MagellanSession, WaypointsAndRoutesComeBackAsTheyWere) {
    Session first("magellan");
    first.connect();
    EXPECT_THAT(first.control().getIdent(), HasSubstr("GPSId: 024 Version: 3.15 - GPS 315"));
    const Lines places = first.waypoints();
    EXPECT_THAT(places,
                ElementsAre("W;HOME;48.117298;11.516666;MY HOUSE;152;18;0",
                            "W;ÉVIAN;-33.5;-151.25;Port à l'est;-3;18;0", "W;MILL;1;2;;7;18;0",
                            "W;FORD;1.5;2;;7;18;0", "W;BRIDGE;1.75;2;;7;18;0"));
    const Lines routes = first.routes();
    EXPECT_THAT(routes, ElementsAre("R;3;TRIP", places[0], places[1], places[2], places[3],
                                    places[4], "R;12;BACK", places[2], places[0]));

    Session second("magellan", "");
    second.connect();
    EXPECT_EQ(second.send(&GpsControl::SendWaypts, places), places);
    EXPECT_EQ(second.waypoints(), places);
    EXPECT_EQ(second.send(&GpsControl::SendRoutes, routes), routes);
    EXPECT_EQ(second.waypoints(), places);
    EXPECT_EQ(second.routes(), routes);
    EXPECT_THAT(second.receiver().complaints(), IsEmpty());
}

// No sentence of an upload has a day, and names are sent in capitals: the tracks come back dated
// today, under names that say so.
TEST(MagellanSession, TracksComeBackOnTheSameTimeOfDay) {
    Session first("magellan");
    first.connect();
    const Lines tracks = first.tracks();
    EXPECT_THAT(tracks,
                ElementsAre("N;Walk - 28/05/2007", "T;48.117298;11.516666;39230.25;152;-1",
                            "T;48.118;-0.5;39230.25125;0;0", "T;-48.118999;11.517;39230.5;-12;0",
                            "N;Way - 29/05/2007", "T;1;2;39231.5;3;-1"));
    Session second("magellan", "");
    second.connect();
    EXPECT_EQ(second.send(&GpsControl::SendTraces, tracks), tracks);
    EXPECT_THAT(
        second.tracks(),
        ElementsAre("N;WALK - 28/05/2007 - 01/06/2007", "T;48.117298;11.516666;39234.25;152;-1",
                    "T;48.118;-0.5;39234.25125;0;0", "T;-48.118999;11.517;39234.5;-12;0",
                    "N;WAY - 29/05/2007 - 01/06/2007", "T;1;2;39234.5;3;-1"));
}

TEST(MagellanSession, StaysUsableWhateverGoesWrong) {
    struct Case {
        const char* fault;
        std::size_t lines;
        Lines others;
    };
    for (const Case& each : std::vector<Case>{
             {"garble:at=200", 4, {"end W"}},
             {"drop:at=250", 4, {"end W"}},
             {"double:at=130", 4, {"end W"}},
             {"refuse:packet=1,of=WAYPOINT", 0, {"end W"}},
             {"silence:packet=3,of=PMGNWPL,for=4", 2, {"box Délai dépassé", "end W"}},
             {"short:packet=2,of=PMGNWPL", 3, {"end W"}},
             {"unknown:packet=2,of=PMGNWPL", 5, {"end W"}},
         }) {
        Session session("magellan", kData, faulty(each.fault));
        session.connect();
        EXPECT_EQ(session.waypoints().size(), each.lines) << each.fault;
        EXPECT_EQ(session.told.others, each.others) << each.fault;
        EXPECT_EQ(session.waypoints().size(), 5U) << each.fault;
    }
}

TEST(MagellanSession, ANameThatComesTwiceIsToldOnce) {
    Session session("magellan", "W;A;1;2\nW;A;3;4\nW;B;5;6\n");
    EXPECT_EQ(session.connect().waypoints().size(), 2U);
}

TEST(MagellanSession, FollowsThePositionUntilStopped) {
    Session session("magellan");
    session.connect();
    session.told.onLine = [&](const std::string&) {
        if (session.told.lines.size() == 3) {
            session.control().StopPvtData();
        }
    };
    const Lines fixes = session.linesOf([&] { session.control().StartPvtData(); });
    EXPECT_THAT(
        fixes, ElementsAre(StartsWith("T;48.118"), StartsWith("T;48.118"), StartsWith("T;48.118")));
    EXPECT_THAT(session.told.others, ElementsAre("end pvt"));
    ReceiverOptions searching;
    searching.hasFix = false;
    Session lost("magellan", kData, searching);
    lost.connect();
    lost.linesOf([&] { lost.control().StartPvtData(); });
    EXPECT_THAT(lost.told.others, ElementsAre("box Position non disponible"));
}

TEST(MagellanSession, NeedsTheSpeedOfTheReceiver) {
    ReceiverOptions options;
    options.baud = 9600;
    Session session("magellan", kData, options);
    EXPECT_FALSE(session.control().gpsConnect());
    session.control().SetGpsMark("MGN;9600");
    EXPECT_TRUE(session.control().gpsConnect());
    EXPECT_EQ(session.waypoints().size(), 5U);
}

TEST(MlrSession, BlocksComeAtTheirOwnSpeedAndWaypointsGoBack) {
    Session first("mlr");
    first.connect();
    EXPECT_THAT(first.control().getIdent(), HasSubstr("Version: 3.1 - MLR SP24 XC"));
    const Lines places = first.waypoints();
    EXPECT_THAT(places,
                ElementsAre("W;HOME  ;48.117298;11.516666;MY HOUSE;0;18;0",
                            "W;ÉVIAN ;-33.5;-151.25;Port à l'est;0;18;0", "W;MILL  ;1;2;;0;18;0",
                            "W;FORD  ;1.5;2;;0;18;0", "W;BRIDGE;1.75;2;;0;18;0"));
    const std::string slow = "baud=4800 parity=n data=8 stop=2";
    EXPECT_THAT(first.openings(), ElementsAre(slow, "baud=38400 parity=n data=8 stop=2", slow));
    EXPECT_THAT(first.tracks(),
                ElementsAre("T;48.1173;11.516667;39230.25;152;-1", "T;48.118;-0.5;39230.25125;0;0",
                            "T;-48.119;11.517;39230.5;-12;-1", "T;1;2;39231.5;3;-1"));
    Session second("mlr", "");
    second.connect();
    EXPECT_EQ(second.send(&GpsControl::SendWaypts, places), unpadded(places));
    EXPECT_EQ(second.waypoints(), places);
    EXPECT_THAT(second.tracks(), IsEmpty());
    EXPECT_THAT(second.told.others, ElementsAre("box Aucune trace dans ce GPS"));
    EXPECT_THAT(second.receiver().complaints(), IsEmpty());
}

TEST(MlrSession, SentencesComeWhenTheUserSendsThemAndGoBack) {
    for (const char* name : {"sp24", "valsat"}) {
        Session first("mlr", kData, unit(name));
        first.connect();
        const Lines routes = first.routes();
        ASSERT_EQ(routes.size(), 9U);
        EXPECT_THAT(routes, testing::IsSupersetOf(
                                {"R;3;ROUTE 3", "W;FORD  ;1.5;2;;0;18;0", "R;12;ROUTE 12"}));
        const Lines places = first.waypoints();
        Session second("mlr", "", unit(name));
        second.connect();
        EXPECT_EQ(second.send(&GpsControl::SendRoutes, routes), unpadded(routes));
        EXPECT_EQ(second.routes(), routes);
        EXPECT_EQ(second.waypoints(), places);
        EXPECT_THAT(second.receiver().complaints(), IsEmpty());
    }
    Session session("mlr", kData, unit("valsat"));
    session.connect();
    EXPECT_THAT(session.control().getIdent(), HasSubstr("Version: 2.1 - GPS MLR VALSAT"));
    EXPECT_THAT(session.tracks(),
                ElementsAre("T;48.117298;11.516666;39234.0001;0;-1", "T;48.118;-0.5;39234.0002;0;0",
                            "T;-48.118999;11.517;39234.0003;0;-1", "T;1;2;39234.0004;0;-1"));
}

TEST(MlrSession, AStopEndsABlockDownloadThatNeverCloses) {
    Session session("mlr", kData, faulty("silence:packet=2,of=BLOC,for=2"));
    session.connect();
    const double start = session.host.elapsed();
    session.host.onStopRequested = [&] { return session.host.elapsed() > start + 60; };
    EXPECT_THAT(session.waypoints(), IsEmpty());
    session.host.onStopRequested = nullptr;
    EXPECT_EQ(session.waypoints().size(), 5U);
}

TEST(NmeaSession, HearsFixesAtTheirRateUntilStopped) {
    ReceiverOptions options;
    options.rate = 1;
    Session session("nmea", kData, options);
    session.told.onLine = [&](const std::string&) {
        if (session.told.lines.size() == 5) {
            session.control().StopNMEA();
        }
    };
    const Lines heard = session.linesOf([&] { session.control().StartNMEA("$gpgga", 10); });
    EXPECT_THAT(heard, testing::Each(StartsWith("$GPGGA,1200")));
    EXPECT_EQ(heard.size(), 5U);
    EXPECT_THAT(session.told.others, ElementsAre("box Transfert terminé.", "end NMEA_END"));
    Session searching("nmea", kData, unit("search"));
    EXPECT_THAT(searching.linesOf([&] { searching.control().StartNMEA("$GPGGA", 5); }), IsEmpty());
    EXPECT_THAT(searching.told.others,
                ElementsAre("box $GPGGA: pas de Position disponible", "end NMEA_END"));
}

}  // namespace
}  // namespace marlune::receivers
