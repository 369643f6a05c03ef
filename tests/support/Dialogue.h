// Dialogues: what the control must send, what the device answers, and which events and boxes the
// host sees, as one ordered list.
//
//     Stage stage;
//     stage.play({sends(10, {7, 0}), answers(27, {1, 0}), sends(6, {27, 0}),
//                 event("StartDownload|W|1|---- W;..."), answers(35, record), ...},
//                [&] { stage.control().getWaypts(); });
//
// The list is compared whole: a missing, additional or misplaced step fails the test with both
// lists. Packets are framed here by hand, not by the control's own code. A device that is not
// given an answer is silent, and the fake clock moves on.
//
// A dialogue of Garmin packets plays over USB too: without the acknowledgements of either side,
// which do not exist there, and with a session, which is not told, before every service.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "control/Surface.h"
#include "marlune/GpsControl.h"
#include "support/FakeHost.h"
#include "support/ScriptedPort.h"
#include "support/ScriptedUsb.h"

namespace marlune {

using Bytes = std::vector<std::uint8_t>;

struct Step {
    enum class Kind { sends, answers, told };
    Kind kind;
    Bytes bytes = {};       // on the serial wire
    std::string text = {};  // of an event or box
    int pid = -1;           // of a Garmin packet, for other lines
    Bytes data = {};
};
using Script = std::vector<Step>;

// The frame of a Garmin packet.
Bytes garminFrame(std::uint8_t pid, const Bytes& data);

// Garmin packets, in either direction.
Step sends(std::uint8_t pid, const Bytes& data = {});
Step answers(std::uint8_t pid, const Bytes& data = {});
// Anything else on the wire.
Step sendsText(std::string_view text);
Step answersText(std::string_view text);
Step answersBytes(const Bytes& bytes);

// An event, its name and arguments joined by "|"; a box, as it is shown.
Step event(const std::string& text);
Step box(BoxIcon icon, const std::string& text);

// Joins scripts.
Script operator+(Script left, const Script& right);

// What the device does with a script on a serial line: each write, then the answers that follow it.
std::vector<ScriptedPort::Turn> serialTurnsOf(const Script& script);

// Keeps every event as its text, and calls handlers that tests hang into them.
class RecordedEvents : public NamedEvents {
public:
    using Tell = std::function<void(const std::string& text)>;
    explicit RecordedEvents(Tell tell) : tell_(std::move(tell)) {}

    // Calls `handler` inside the nth event of that name from now on.
    void when(const std::string& name, int nth, std::function<void()> handler);

private:
    struct Handler {
        std::string name;
        int left;
        std::function<void()> run;
    };
    void raise(const surface::Event& event, std::span<const surface::EventValue> values) override;

    Tell tell_;
    std::vector<Handler> handlers_;
};

// What a dialogue is played over. A unit on USB answers on its interrupt pipe, or announces there
// that data is available on its bulk pipe.
enum class Line { serial, usbInterrupt, usbBulk };

// A control on a scripted port, or on a scripted USB device, with its fake host.
class Stage {
public:
    explicit Stage(Line line = Line::serial);

    FakeHost host;
    RecordedEvents events;

    GpsControl& control() { return *control_; }
    ScriptedPort& port() { return *port_; }
    ScriptedUsb& usb() { return *usb_; }
    [[nodiscard]] bool onUsb() const { return line_ != Line::serial; }
    // Destroys the control, as a handler may.
    void destroyControl() { control_.reset(); }

    // Runs the call while the device plays its side, and compares what happened with the script.
    void play(const Script& script, const std::function<void()>& call);

    // Connects as a unit that announces these tags ("A100 D108"); what is exchanged is checked too.
    void connectGarmin(const std::string& tags);

    // A packet that is still on the line when the next service begins.
    void leaveOver(std::uint8_t pid);

    // What a transfer that plays this script must return: serial ones false in any case; on USB
    // true when transfer complete went over the line, either way, and no box complained.
    [[nodiscard]] bool resultOf(const Script& script) const;

private:
    [[nodiscard]] std::vector<ScriptedUsb::Turn> usbTurnsOf(const Script& script) const;
    [[nodiscard]] std::vector<std::string> expectedLog(const Script& script) const;

    Line line_;
    std::vector<std::string> log_;
    ScriptedPort* port_;
    ScriptedUsb* usb_;
    std::unique_ptr<GpsControl> control_;
};

// A pending abort, the product request and its answers, up to the acknowledged protocol array.
Script garminHandshake(const std::string& tags);
// Product data: id, version in hundredths, description and its zero byte.
Bytes productData(std::uint16_t id, std::uint16_t version, std::string_view description);
// A protocol array of these tags.
Bytes protocolArray(const std::string& tags);

}  // namespace marlune
