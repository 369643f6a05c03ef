// The whole way: the control, unmodified libusb, an emulated bus and a virtual receiver, which
// shares no codec with the control. Times are the system's here, so the dialogues are short.
#include <gtest/gtest.h>

#include <functional>
#include <map>

#include "marlune/GpsControl.h"
#include "receivers/garmin/GarminUsbReceiver.h"
#include "receivers/usb/EmulatedUsbBus.h"
#include "receivers/usb/ReceiverFunction.h"
#include "support/Dialogue.h"
#include "support/FakeHost.h"
#include "support/TempFolder.h"

namespace marlune {
namespace {

using receivers::EmulatedUsbBus;
using receivers::ReceiverFunction;
using receivers::UsbPipes;
using Habit = ReceiverFunction::Habit;
using Lines = std::vector<std::string>;

const std::string kData =
    "W;SOMMET;45.9236;6.8694;Mont Blanc;4808;18;0\n"
    "W;COL;45.1;6.5;;2645;18;0\n"
    "R;1;TOUR\nW;SOMMET;45.9236;6.8694;Mont Blanc;4808;18;0\nW;COL;45.1;6.5;;2645;18;0\n"
    "N;JOUR UN\nT;45.5;6.5;39083.5;1000;-1\nT;45.6;6.6;39083.6;1100;0\n";
const std::string kTags =
    "P000 L001 A010 A100 D108 A201 D202 D108 D210 A301 D310 D301 A600 D600 A700 D700 A800 D800";

struct Way {
    const char* name;
    Habit habit;
    UsbPipes::PacketSizes sizes;
};

// The name that test reports show.
void PrintTo(const Way& way, std::ostream* out) {
    *out << way.name;
}

class UsbBusTest : public testing::Test {
protected:
    UsbBusTest() : events_([this](const std::string& text) { told_.push_back(text); }) {
        host_.onMessageBox = [this](const FakeHost::Box& box) {
            told_.push_back("box: " + box.text);
        };
    }

    void plugIn(const Way& way, std::vector<std::string> faults = {}, int unplugAtRequest = 0) {
        control_.reset();
        bus_.reset();
        receivers::ReceiverOptions options;
        options.productId = 291;
        options.version = 280;
        options.tags = kTags;
        options.dataFile = folder_.write("data.txt", kData);
        options.now = 39234.5;
        options.rate = 100;
        options.faults = std::move(faults);
        function_.emplace(receivers::garmin::makeGarminUsbReceiver(options), way.habit);
        bus_.emplace(*function_, EmulatedUsbBus::Settings{.packetSizes = way.sizes,
                                                          .unplugAtRequest = unplugAtRequest});
        control_.emplace(host_, events_);
        control_->SetGpsMark("GRM_USB");
    }
    bool connect(const Way& way) {
        plugIn(way);
        return control_->gpsConnect();
    }
    // What was told during a call.
    Lines during(const std::function<void()>& call) {
        told_.clear();
        call();
        return std::exchange(told_, {});
    }
    Lines kept() { return function_->receiver().lines(); }

    FakeHost host_;
    TempFolder folder_;
    Lines told_;
    RecordedEvents events_;
    std::optional<ReceiverFunction> function_;
    std::optional<EmulatedUsbBus> bus_;
    std::optional<GpsControl> control_;
};

const Way kInterrupt = {"Interrupt", Habit::interrupt, {}};
const Way kBulk = {"Bulk", Habit::bulk, {}};

class EveryWayTest : public UsbBusTest, public testing::WithParamInterface<Way> {};
INSTANTIATE_TEST_SUITE_P(
    , EveryWayTest,
    testing::Values(kInterrupt, kBulk, Way{"Mixed", Habit::mixed, {}},
                    Way{"SmallPackets", Habit::mixed, {.bulk = 64, .interrupt = 16}}),
    [](const auto& way) { return way.param.name; });

TEST_P(EveryWayTest, DownloadsWhatTheUnitHolds) {
    ASSERT_TRUE(connect(GetParam()));
    EXPECT_EQ(control_->getProtocoles(), kTags);
    const std::string sommet = "W;SOMMET;45.9236;6.8694;Mont Blanc;4808;18;0";
    const std::string col = "W;COL;45.1;6.5;;2645;18;0";
    EXPECT_EQ(
        during([&] { EXPECT_TRUE(control_->getWaypts()); }),
        (Lines{"StartDownload|W|2|---- W;id;lat;lon;comment;altitude;symbole;display opt. "
               "------",
               "WayptData|1|" + sommet + "|D", "WayptData|2|" + col + "|D", "EndDownload|W"}));
    const Lines routes = during([&] { EXPECT_TRUE(control_->GetRoutes()); });
    ASSERT_GE(routes.size(), 5U);
    EXPECT_EQ(routes[1], "RouteHeader|1|R;1;TOUR|D");
    EXPECT_EQ(routes[2], "RouteData|2|" + sommet + "|D");
    EXPECT_EQ(routes.back(), "EndDownload|R");
    const Lines tracks = during([&] { EXPECT_TRUE(control_->getTracks()); });
    ASSERT_EQ(tracks.size(), 5U);
    EXPECT_EQ(tracks[1], "TrackHeader|1|N;JOUR UN|D");
    EXPECT_TRUE(tracks[2].starts_with("TrackData|2|T;45.5;6.5;39083.5;1000;-1")) << tracks[2];
}

TEST_P(EveryWayTest, UploadsFollowsAndTellsTheTime) {
    ASSERT_TRUE(connect(GetParam()));
    const std::string path = folder_.write("up.txt", "W;NEUF;44;5;note;100;18;0\n");
    during([&] { EXPECT_TRUE(control_->SendWaypts(path)); });
    const Lines lines = kept();
    EXPECT_TRUE(std::any_of(lines.begin(), lines.end(), [](const std::string& line) {
        return line.starts_with("W;NEUF;44;5;note;100;18");
    }));
    EXPECT_EQ(function_->receiver().complaints(), Lines());

    EXPECT_NE(during([&] { (void)control_->getPosition(); }),
              Lines{"box: Position non disponible"});
    int points = 0;
    events_.when("PvtData", 3, [&] { control_->StopPvtData(); });
    for (const std::string& text : during([&] { control_->StartPvtData(); })) {
        points += text.starts_with("PvtData|T;45.9") ? 1 : 0;
    }
    EXPECT_EQ(points, 3);
}

TEST_F(UsbBusTest, TellsTheTimeAndGivesTheDeviceBack) {
    ASSERT_TRUE(connect(kInterrupt));
    double time = 0;
    during([&] { time = control_->GetTime(); });
    EXPECT_NEAR(time, 39234.5, 0.001);
    EXPECT_FALSE(bus_->driverAttached());
    control_->gpsDisconnect();
    EXPECT_TRUE(bus_->driverAttached());
}

TEST_F(UsbBusTest, ALateSessionFailsAndTheNextOneWorks) {
    ASSERT_TRUE(connect(kInterrupt));
    bus_->fail([](UsbPipes::Faults& faults) { faults.lateMessages = 1; });
    EXPECT_EQ(during([&] { EXPECT_EQ(control_->GetTime(), 0); }),
              Lines{"box: Problème Ouverture de session"});
    EXPECT_EQ(during([&] { EXPECT_NE(control_->GetTime(), 0); }).size(), 1U);
}

TEST_F(UsbBusTest, AUnitThatHangsUpIsPulledOut) {
    plugIn(kInterrupt, {"hangup:packet=1,of=35"});
    ASSERT_TRUE(control_->gpsConnect());
    const Lines told = during([&] { EXPECT_FALSE(control_->getWaypts()); });
    ASSERT_FALSE(told.empty());
    EXPECT_FALSE(control_->gpsConnect());
}

// Pulls the device out at its first request, its second, and so on: no service may crash, wait for
// ever or claim success, and the control must be usable afterwards.
TEST_F(UsbBusTest, CanBeUnpluggedAtEveryPointOfAnUpload) {
    const std::string path = folder_.write("up.txt", "W;A;44;5;;0;18;0\nW;B;44;5;;0;18;0\n");
    const auto service = [&] { return control_->gpsConnect() && control_->SendWaypts(path); };
    bool whole = false;
    for (int request = 1; !whole; ++request) {
        plugIn(kInterrupt, {}, request);
        during([&] { whole = service(); });
        if (!whole) {
            EXPECT_FALSE(control_->gpsConnect()) << request;
        }
        ASSERT_LT(request, 60);
    }
}

}  // namespace
}  // namespace marlune
