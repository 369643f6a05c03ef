// Whole services over a real line: what a scripted port takes for granted. Each of these waits out
// two silences of 1.1 s in its handshake, so there are as few as possible.
#include <gtest/gtest.h>

#include <future>

#include "garmin/GarminRecords.h"
#include "host/DebugTrace.h"
#include "marlune/SystemHost.h"
#include "support/Pty.h"

namespace marlune {
namespace {

// A stage whose control opens a pseudo terminal by its own serial port and its own clock, while a
// thread at the other end plays the device's side, which hears every write.
class PtyStage : private SystemHost {
public:
    PtyStage() : events_([this](const std::string& text) { told_.push_back(event(text).text); }) {
        setDocumentsFolder(documents_.path().string());
        setDecimalSeparator('.');
        bindPort(1, pty_.slavePath());
        control_.setNumPort(numPort::Comm1);
    }

    GpsControl& control() { return control_; }

    void play(const Script& script, const std::function<void()>& call) {
        told_.clear();
        auto device = std::async(std::launch::async, [&] { return playDevice(script); });
        call();
        // What the device has not heard yet, the next service might discard.
        EXPECT_EQ(device.get(), "");
        std::vector<std::string> expected;
        for (const Step& step : script) {
            if (step.kind == Step::Kind::told) {
                expected.push_back(step.text);
            }
        }
        EXPECT_EQ(told_, expected);
    }
    void connectGarmin(const std::string& tags) {
        play(garminHandshake(tags), [this] { EXPECT_TRUE(control_.gpsConnect()); });
    }

private:
    // Ends at the first turn that is not as written. Returns what was wrong with it.
    [[nodiscard]] std::string playDevice(const Script& script) const {
        for (const ScriptedPort::Turn& turn : serialTurnsOf(script)) {
            const Bytes heard = pty_.read(turn.write.size());
            if (heard != turn.write) {
                return "the device heard:" + decimalDump(heard) +
                       "\n  expected:" + decimalDump(turn.write);
            }
            if (pty_.write(turn.answer) != turn.answer.size()) {
                return "the device could not answer:" + decimalDump(turn.answer);
            }
        }
        return {};
    }
    void messageBox(const std::string& text, BoxIcon icon) override {
        told_.push_back(box(icon, text).text);
    }

    TempFolder documents_;
    Pty pty_;
    std::vector<std::string> told_;  // of the control's thread only
    RecordedEvents events_;
    GpsControl control_{*this, events_};
};

const std::string kTags = "A100 D100";
const Step kStart =
    event("StartDownload|W|2|---- W;id;lat;lon;comment;altitude;symbole;display opt. ------");

// Every byte that a terminal would act on if the line were not raw, and 16, which is doubled on the
// wire: XON, XOFF, interrupt, end of file, carriage return, line feed, suspend, quote, delete, 255.
const std::string kControls = "\x11\x13\x03\x04\x1A\x16\x7F";
const Bytes kManyDles = {16, 16, 16, 16};
const Bytes kReturns = {0x0D, 0x0A, 0x11, 0x13};

Bytes awkward(const Bytes& latitude, const Bytes& longitude, const Bytes& unused) {
    return join(
        {padded("PT1", 6), latitude, longitude, unused, padded("A" + kControls + '\0', 40)});
}

Script download() {
    const std::string line = "W;PT1;22.588235;26.812349;A" + kControls + ";0;18;0";
    const Script opening = {sends(10, {7, 0}), answers(6, {10, 0}), answers(27, {2, 0}), acks(27),
                            kStart};
    const Script first = {answers(35, awkward(kManyDles, kReturns, {3, 16, 3, 0xFF})),
                          event("WayptData|1|" + line + "|D"), acks(35)};
    const Script second = {answers(35, d100("PT2")), event("WayptData|2|" + d100Line("PT2") + "|D"),
                           acks(35)};
    return opening + first + second + Script{answers(12, {7, 0}), acks(12), event("EndDownload|W")};
}

Script upload() {
    const std::string line = "W;PT1;45;45;A" + kControls + ";0;18;0";
    const Bytes k45Short = {0xFF, 0xFF, 0xFF, 0x1F};
    const Script opening = {sends(27, {1, 0}), answers(6, {27, 0}),
                            event("StartUpload|W|1|Waypoints")};
    const Script only = {event("WayptData|1|" + line + "|U"),
                         sends(35, awkward(k45Short, k45Short, Bytes(4, 0))), answers(6, {35, 0})};
    return opening + only + Script{sends(12, {0}), answers(6, {12, 0}), event("EndUpload|W")};
}

template <class AnyStage>
void exchangeWaypoints(AnyStage& stage) {
    const TempFolder folder;
    const std::string file =
        folder.write("upload.txt", "W;PT1;45;45;A" + kControls + ";0;18;0\r\n");
    stage.connectGarmin(kTags);
    stage.play(download(), [&] { stage.control().getWaypts(); });
    stage.play(upload(), [&] { stage.control().SendWaypts(file); });
    // The last answer was still unread; the next download does not take it for its own.
    stage.play(download(), [&] { stage.control().getWaypts(); });
}

TEST(PtyDialogue, ExchangesWaypointsAsAScriptedPortDoes) {
    Stage scripted;
    exchangeWaypoints(scripted);
    PtyStage real;
    exchangeWaypoints(real);
}

}  // namespace
}  // namespace marlune
