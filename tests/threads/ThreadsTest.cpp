// Controls of every family at once, each on a thread of its own with a device of its own. What it
// asserts is little: the thread sanitizer, which it is built with, looks at what they share.
#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "marlune/GpsControl.h"
#include "marlune/SystemHost.h"
#include "receivers/Families.h"
#include "receivers/PtyRunner.h"
#include "support/Dialogue.h"
#include "support/TempFolder.h"

namespace marlune {
namespace {

class QuietHost : public SystemHost {
public:
    void messageBox(const std::string& /*text*/, BoxIcon /*icon*/) override {}
};

class Counter : public GpsControlEvents {
public:
    void WayptData(std::int16_t /*number*/, const std::string& /*line*/,
                   const std::string& /*sens*/) override {
        ++records;
    }
    void TrackData(std::int16_t /*number*/, const std::string& /*line*/,
                   const std::string& /*sens*/) override {
        ++records;
    }
    void PhraseNMEA(const std::string& /*sentence*/) override {
        if (++records == 5) {
            control->StopNMEA();
        }
    }

    GpsControl* control = nullptr;
    int records = 0;
};

// A control on a virtual receiver's pty, with its trace on: the lines of all traces are numbered
// together.
void onAPty(const std::string& family, const std::function<void(GpsControl&)>& use) {
    receivers::ReceiverOptions options;
    options.rate = 20;
    receivers::PtyRunner device(receivers::receiverFamily(family).make(options), {});
    device.start();
    const TempFolder folder;
    std::filesystem::create_directory(folder.path() / "Palimor");
    QuietHost host;
    host.setDocumentsFolder(folder.path().string());
    host.bindPort(1, device.path());
    Counter counter;
    GpsControl control(host, counter);
    counter.control = &control;
    control.SetDebug("ON");
    control.setNumPort(numPort::Comm1);
    use(control);
    EXPECT_GT(counter.records, 0) << family;
    EXPECT_TRUE(std::filesystem::exists(folder.path() / "Palimor" / "OcxDebug.txt")) << family;
}

void download(const std::string& family, const std::string& mark) {
    onAPty(family, [&](GpsControl& control) {
        control.SetGpsMark(mark);
        EXPECT_TRUE(control.gpsConnect()) << mark;
        control.getWaypts();
        control.getTracks();
        control.gpsDisconnect();
    });
}

void listen() {
    onAPty("nmea", [](GpsControl& control) { control.StartNMEA("$GPGGA", 10); });
}

void onUsb() {
    Stage stage(Line::usbBulk);
    stage.connectGarmin("A100 D108");
    stage.play({sends(10, {7, 0}), answers(27, {0, 0}),
                box(BoxIcon::information, "Aucun Waypoint dans ce Gps")},
               [&] { EXPECT_FALSE(stage.control().getWaypts()); });
}

void onADrive() {
    const TempFolder folder;
    (void)folder.write("Garmin/GarminDevice.xml",
                       "<Device><Description>Unit</Description><MassStorageMode><DataType>"
                       "<Name>GPSData</Name><File><Location><Path>GPX</Path></Location>"
                       "<TransferDirection>OutputFromUnit</TransferDirection></File>"
                       "</DataType></MassStorageMode></Device>");
    (void)folder.write("GPX/a.gpx", "<gpx><wpt lat='1' lon='2'><name>A</name></wpt></gpx>");
    Stage stage(Line::usbInterrupt);
    Drive drive;
    drive.isReady = true;
    drive.volumeName = "GARMIN";
    drive.rootFolder = folder.path().string();
    stage.host.driveList = {drive};
    stage.usb().path.clear();
    EXPECT_TRUE(stage.control().gpsConnect());
    EXPECT_TRUE(stage.control().getWaypts());
}

TEST(Threads, ControlsOfAllFamiliesWorkSideBySide) {
    const std::vector<std::function<void()>> works = {[] { download("garmin", "GRM"); },
                                                      [] { download("magellan", "MGN"); },
                                                      [] { download("mlr", "MLR"); },
                                                      listen,
                                                      onUsb,
                                                      onADrive};
    constexpr int kEach = 2;
    std::vector<std::thread> threads;
    for (int i = 0; i < kEach; ++i) {
        for (const auto& work : works) {
            threads.emplace_back(work);
        }
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
}

}  // namespace
}  // namespace marlune
