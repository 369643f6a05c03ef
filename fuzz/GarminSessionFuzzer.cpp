// A whole session with a Garmin unit that says anything, and a host application whose handler does
// anything once. Input: when the handler acts and what it does, whether the trace is on, then
// services, each a byte, with what the unit says meanwhile (FuzzPort.h) between them.
#include <cstdint>
#include <iterator>
#include <memory>
#include <span>
#include <string>
#include <utility>

#include "FuzzPort.h"
#include "Require.h"
#include "control/ControlFactory.h"
#include "marlune/GpsControl.h"
#include "support/Dialogue.h"
#include "support/TempFolder.h"
#include "usb/UsbDevice.h"

namespace {

using namespace marlune;

// The upload files, and a documents folder with a place for the trace.
struct Files {
    TempFolder folder;
    std::string waypoints = folder.write(
        "waypoints.txt", "W;PT1;45;45;NOTE;0;18;0\r\nW;PT2;-45,5;-90.25;;1,0e3;8196;2\r\nW;\r\n");
    std::string routes =
        folder.write("routes.txt", "R;1;HOME\r\nW;PT1;45;45;;0;18;0\r\nW;PT2;1;1;;0;18;0\r\n");
    std::string tracks =
        folder.write("tracks.txt", "N;TRACK\r\nT;45;45;32874.5;152;-1\r\nT;45;45;0;0;0\r\n");

    std::string trace = folder.write("Palimor/OcxDebug.txt", "");
};

class Session {
public:
    explicit Session(std::span<const std::uint8_t> bytes)
        : input_(bytes), actAt_(input_.byte()), action_(input_.byte()), traces_(input_.byte() % 4) {
        auto port = std::make_unique<FuzzPort>(host_, input_);
        device_ = port.get();
        control_ = ControlFactory::make(host_, events_, std::move(port), nullptr);
        control_->setNumPort(numPort::Comm1);
        control_->SetDebug(traces_ == 1 ? "ON" : "OFF");
    }

    void run() {
        constexpr int kMostServices = 24;
        serve(kConnect);
        for (int i = 0; i < kMostServices && !input_.empty() && control_; ++i) {
            serve(input_.byte());
            require(downloadsOpen_ == 0 && runsOpen_ == 0);
        }
        if (control_) {
            control_->gpsDisconnect();
            require(control_->getIdent().starts_with("Marlune Version "));
        }
    }

private:
    class QuietHost : public FakeHost {
    public:
        std::string documentsFolder() override { return files().folder.path().string(); }
    };

    static const Files& files() {
        static const Files kFiles;
        return kFiles;
    }

    static constexpr std::uint8_t kConnect = 10;
    static constexpr std::uint8_t kStop = 11;

    void serve(std::uint8_t which) {
        device_->beginService();
        using Service = void (*)(GpsControl&);
        constexpr Service kServices[] = {
            [](GpsControl& control) { control.getWaypts(); },
            [](GpsControl& control) { control.getTracks(); },
            [](GpsControl& control) { control.GetRoutes(); },
            [](GpsControl& control) { control.getProximites(); },
            [](GpsControl& control) { control.SendWaypts(files().waypoints); },
            [](GpsControl& control) { control.SendRoutes(files().routes); },
            [](GpsControl& control) { control.SendTraces(files().tracks); },
            [](GpsControl& control) { control.StartPvtData(); },
            [](GpsControl& control) { (void)control.GetTime(); },
            [](GpsControl& control) { (void)control.getPosition(); },
            [](GpsControl& control) { (void)control.gpsConnect(); },
            [](GpsControl& control) { control.StopTransfert(), control.StopPvtData(); },
            [](GpsControl& control) { (void)control.getProtocoles(); },
            [](GpsControl& control) { control.ResetComBuffers(); },
        };
        kServices[which % std::size(kServices)](*control_);
    }

    // Every event comes by here.
    void hear(const std::string& text) {
        downloadsOpen_ += text.starts_with("StartDownload|") ? 1 : 0;
        downloadsOpen_ -= text.starts_with("EndDownload|") ? 1 : 0;
        runsOpen_ += text.starts_with("Startpvt|") ? 1 : 0;
        runsOpen_ -= text.starts_with("EndPvt") && runsOpen_ > 0 ? 1 : 0;
        if (control_ && ++events_heard_ == actAt_) {
            act();
        }
    }

    void act() {
        switch (action_ % 8) {
            case 0:
            case 1:
                return serve(kStop);
            case 2:
                return control_->gpsDisconnect();
            case 3:
                return control_->SetGpsMark("MGN");
            case 4:
                control_.reset();
                device_ = nullptr;
                return;
            case 5:
                return serve(kConnect);
            default:
                return serve(action_);
        }
    }

    QuietHost host_;
    RecordedEvents events_{[this](const std::string& text) { hear(text); }};
    FuzzInput input_;
    int actAt_;
    std::uint8_t action_;
    int traces_;
    FuzzPort* device_ = nullptr;
    std::unique_ptr<GpsControl> control_;
    int events_heard_ = 0;
    int downloadsOpen_ = 0;
    int runsOpen_ = 0;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    Session({bytes, size}).run();
    return 0;
}
