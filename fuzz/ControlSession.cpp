#include "ControlSession.h"

#include <iterator>
#include <utility>

#include "Require.h"
#include "control/ControlFactory.h"
#include "support/TempFolder.h"

namespace marlune {
namespace {

// The upload files, and a documents folder.
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

const Files& files() {
    static const Files kFiles;
    return kFiles;
}

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
    [](GpsControl& control) {
        control.StopTransfert();
        control.StopPvtData();
        control.StopNMEA();
    },
    [](GpsControl& control) { (void)control.getProtocoles(); },
    [](GpsControl& control) { control.ResetComBuffers(); },
    [](GpsControl& control) { (void)control.getIdent(); },
    [](GpsControl& control) { control.StartNMEA("$GP", 2); },
};
constexpr std::uint8_t kConnect = 10;
constexpr std::uint8_t kStop = 11;

// A first byte from here on counts rounds of processing events, else it counts events.
constexpr int kRounds = 192;

}  // namespace

std::string ControlSession::QuietHost::documentsFolder() {
    return files().folder.path().string();
}

ControlSession::ControlSession(FuzzInput& input, const std::string& mark) : input_(input) {
    const int moment = input_.byte();
    eventsLeft_ = moment < kRounds ? moment : 0;
    roundsLeft_ = moment < kRounds ? 0 : 1 + 5 * (moment - kRounds);
    action_ = input_.byte();
    host_.onProcessEvents = [this] { pass(roundsLeft_); };
    auto port = std::make_unique<FuzzPort>(host_, input_);
    device_ = port.get();
    control_ = ControlFactory::make(host_, events_, std::move(port), nullptr);
    control_->SetGpsMark(mark);
    control_->setNumPort(numPort::Comm1);
    control_->SetDebug(input_.byte() % 16 == 1 ? "ON" : "OFF");
}

void ControlSession::run() {
    constexpr int kMostServices = 8;
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

void ControlSession::serve(std::uint8_t which) {
    device_->beginService();
    kServices[which % std::size(kServices)](*control_);
}

// Every event comes by here.
void ControlSession::hear(const std::string& text) {
    downloadsOpen_ += text.starts_with("StartDownload|") ? 1 : 0;
    downloadsOpen_ -= text.starts_with("EndDownload|") && downloadsOpen_ > 0 ? 1 : 0;
    runsOpen_ += text.starts_with("Startpvt|") ? 1 : 0;
    runsOpen_ -= text.starts_with("EndPvt") && runsOpen_ > 0 ? 1 : 0;
    pass(eventsLeft_);
}

void ControlSession::pass(int& left) {
    if (control_ && left > 0 && --left == 0) {
        act();
    }
}

void ControlSession::act() {
    switch (action_ % 8) {
        case 0:
        case 1:
            return serve(kStop);
        case 2:
            return control_->gpsDisconnect();
        case 3:
            return control_->SetGpsMark(action_ < 128 ? "MGN" : "MLR");
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

}  // namespace marlune
