// A unit that is a drive, from its description to its records and back. Input: the description and
// two GPX files, a zero byte between them.
#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>

#include "FuzzPort.h"
#include "Require.h"
#include "control/ControlFactory.h"
#include "marlune/GpsControl.h"
#include "support/Dialogue.h"
#include "support/TempFolder.h"

namespace {

using namespace marlune;

class Unit {
public:
    Unit(FuzzInput& input, std::string_view bytes) {
        for (const char* file :
             {"Garmin/GarminDevice.xml", "Garmin/GPX/A.gpx", "Garmin/GPX/Current/B.gpx"}) {
            const std::size_t end = std::min(bytes.find('\0'), bytes.size());
            (void)drive_.write(file, bytes.substr(0, end));
            bytes.remove_prefix(std::min(end + 1, bytes.size()));
        }
        Drive drive;
        drive.volumeName = "GARMIN";
        drive.isReady = true;
        drive.rootFolder = drive_.path().string();
        host_.driveList = {drive};
        control_ =
            ControlFactory::make(host_, events_, std::make_unique<FuzzPort>(host_, input), nullptr);
        control_->SetGpsMark("GRM_USB");
        connected_ = control_->gpsConnect();
    }

    // The lines that a download delivers, as many as it announced.
    void roundTrip(bool (GpsControl::*get)(), bool (GpsControl::*send)(const std::string&)) {
        lines_.clear();
        announced_.clear();
        const bool delivered = (control_.get()->*get)();
        require(delivered == !lines_.empty());
        const auto count = static_cast<std::size_t>(std::count(lines_.begin(), lines_.end(), '\n'));
        require(announced_ == (delivered ? "|" + std::to_string(count) + "|" : ""));
        const bool taken = (control_.get()->*send)(host_.write(lines_));
        require(!taken || connected_);
    }

private:
    class QuietHost : public FakeHost {
    public:
        std::string documentsFolder() override { return "/nonexistent"; }
        [[nodiscard]] std::string write(const std::string& lines) const {
            return folder_.write("upload.txt", "\xEF\xBB\xBF" + lines);
        }

    private:
        TempFolder folder_;
    };

    // "WayptData|1|W;...|D", and in front of them "StartDownload|W|1|...".
    void hear(const std::string& text) {
        const std::size_t second = text.find('|', text.find('|') + 1);
        if (text.starts_with("StartDownload|")) {
            announced_ = text.substr(second, text.find('|', second + 1) - second + 1);
        } else if (text.ends_with("|D")) {
            lines_ += text.substr(second + 1, text.size() - second - 3) + "\n";
        }
    }

    TempFolder drive_;
    QuietHost host_;
    RecordedEvents events_{[this](const std::string& text) { hear(text); }};
    std::unique_ptr<GpsControl> control_;
    bool connected_ = false;
    std::string lines_;
    std::string announced_;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    FuzzInput silence({bytes, 0});
    Unit unit(silence, {reinterpret_cast<const char*>(bytes), size});
    unit.roundTrip(&GpsControl::getWaypts, &GpsControl::SendWaypts);
    unit.roundTrip(&GpsControl::getTracks, &GpsControl::SendTraces);
    unit.roundTrip(&GpsControl::GetRoutes, &GpsControl::SendRoutes);
    return 0;
}
