// The control, unmodified libusb, an emulated bus and a virtual receiver, when the bus misbehaves;
// program.sh runs every service over a bus that does not. Times are the system's here, so the
// dialogues are short.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "marlune/GpsControl.h"
#include "receivers/garmin/GarminUsbReceiver.h"
#include "receivers/usb/EmulatedUsbBus.h"
#include "receivers/usb/ReceiverFunction.h"
#include "support/FakeHost.h"
#include "support/TempFolder.h"

namespace marlune {
namespace {

using receivers::EmulatedUsbBus;
using receivers::ReceiverFunction;
using receivers::UsbPipes;
using testing::ElementsAre;

class UsbBusTest : public testing::Test {
protected:
    void plugIn(EmulatedUsbBus::Settings settings = {}) {
        control_.reset();
        bus_.reset();
        function_.emplace(receivers::garmin::makeGarminUsbReceiver({}),
                          ReceiverFunction::Habit::interrupt);
        bus_.emplace(*function_, settings);
        control_.emplace(host_, events_);
        control_->SetGpsMark("GRM_USB");
    }

    FakeHost host_;
    GpsControlEvents events_;
    std::optional<ReceiverFunction> function_;
    std::optional<EmulatedUsbBus> bus_;
    std::optional<GpsControl> control_;
};

TEST_F(UsbBusTest, ALateSessionFailsAndTheNextOneWorks) {
    plugIn();
    ASSERT_TRUE(control_->gpsConnect());
    bus_->fail([](UsbPipes::Faults& faults) { faults.lateMessages = 1; });
    EXPECT_EQ(control_->GetTime(), 0);
    EXPECT_THAT(host_.boxTexts(), ElementsAre("critical: Problème Ouverture de session"));
    EXPECT_NE(control_->GetTime(), 0);
}

// Pulls the device out at its first request, its second, and so on: no service may crash, wait for
// ever or claim success, and the control must be usable afterwards.
TEST_F(UsbBusTest, CanBeUnpluggedAtEveryPointOfAnUpload) {
    const TempFolder folder;
    const std::string path = folder.write("up.txt", "W;A;44;5;;0;18;0\nW;B;44;5;;0;18;0\n");
    bool whole = false;
    for (int request = 1; !whole; ++request) {
        plugIn({.unplugAtRequest = request});
        whole = control_->gpsConnect() && control_->SendWaypts(path);
        EXPECT_TRUE(whole || !control_->gpsConnect()) << request;
        ASSERT_LT(request, 60);
    }
}

}  // namespace
}  // namespace marlune
