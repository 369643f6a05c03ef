#include "support/Dialogue.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <sstream>

#include "control/ControlFactory.h"
#include "host/DebugTrace.h"

namespace marlune {
namespace {

bool isPacket(const Step& step, int pid) {
    return step.kind != Step::Kind::told && step.pid == pid;
}

// What does not exist on USB.
bool isAcknowledgement(const Step& step) {
    constexpr int kAck = 6;
    return isPacket(step, kAck);
}

// The packet on USB; data of one byte goes out as none.
Bytes usbBytes(const Step& step) {
    constexpr std::uint8_t kApplication = 20;
    const bool dropped = step.kind == Step::Kind::sends && step.data.size() == 1;
    return ScriptedUsb::packet(kApplication, static_cast<std::uint16_t>(step.pid),
                               dropped ? Bytes() : step.data);
}

// Puts a packet on the interrupt pipe, whose blocks are 64 bytes.
void addBlocks(std::vector<Bytes>& blocks, const Bytes& packet) {
    constexpr std::size_t kBlock = 64;
    for (std::size_t at = 0; at < packet.size(); at += kBlock) {
        const auto from = packet.begin() + static_cast<std::ptrdiff_t>(at);
        const std::size_t size = std::min(kBlock, packet.size() - at);
        blocks.emplace_back(from, from + static_cast<std::ptrdiff_t>(size));
    }
}

Bytes toBytes(std::string_view text) {
    return {text.begin(), text.end()};
}

// How a log tells a write: a sentence as it is, other bytes by their numbers.
std::string wireText(std::span<const std::uint8_t> bytes) {
    const bool isSentence = !bytes.empty() && bytes[0] == '$';
    return "send" +
           (isSentence ? " " + std::string(bytes.begin(), bytes.end()) : decimalDump(bytes));
}

}  // namespace

std::vector<ScriptedPort::Turn> serialTurnsOf(const Script& script) {
    std::vector<ScriptedPort::Turn> turns;
    for (const Step& step : script) {
        if (step.kind == Step::Kind::sends) {
            turns.push_back({.write = step.bytes});
        } else if (step.kind == Step::Kind::answers) {
            turns.push_back({.answer = step.bytes});
        }
    }
    return turns;
}

Bytes garminFrame(std::uint8_t pid, const Bytes& data) {
    Bytes plain;
    plain.push_back(pid);
    plain.push_back(static_cast<std::uint8_t>(data.size()));
    plain.insert(plain.end(), data.begin(), data.end());
    plain.push_back(static_cast<std::uint8_t>(-std::accumulate(plain.begin(), plain.end(), 0)));
    Bytes frame = {16};
    for (const std::uint8_t byte : plain) {
        frame.insert(frame.end(), byte == 16 ? 2 : 1, byte);
    }
    frame.push_back(16);
    frame.push_back(3);
    return frame;
}

Step sends(std::uint8_t pid, const Bytes& data) {
    return {Step::Kind::sends, garminFrame(pid, data), {}, pid, data};
}
Step answers(std::uint8_t pid, const Bytes& data) {
    return {Step::Kind::answers, garminFrame(pid, data), {}, pid, data};
}
Step sendsText(std::string_view text) {
    return {Step::Kind::sends, toBytes(text), {}};
}
Step answersText(std::string_view text) {
    return {Step::Kind::answers, toBytes(text), {}};
}
Step answersBytes(const Bytes& bytes) {
    return {Step::Kind::answers, bytes, {}};
}
Step event(const std::string& text) {
    return {Step::Kind::told, {}, text};
}
Step box(BoxIcon icon, const std::string& text) {
    return {Step::Kind::told, {}, "box " + boxText(icon, text)};
}

Script operator+(Script left, const Script& right) {
    left.insert(left.end(), right.begin(), right.end());
    return left;
}

void RecordedEvents::when(const std::string& name, int nth, std::function<void()> handler) {
    handlers_.push_back({name, nth, std::move(handler)});
}

void RecordedEvents::raise(const surface::Event& event,
                           std::span<const surface::EventValue> values) {
    std::string text(event.name);
    for (const surface::EventValue& value : values) {
        const auto* number = std::get_if<std::int16_t>(&value);
        text += '|';
        text += number == nullptr ? std::get<std::string_view>(value) : std::to_string(*number);
    }
    tell_(text);
    std::vector<std::function<void()>> due;
    for (Handler& handler : handlers_) {
        if (handler.name == event.name && --handler.left == 0) {
            due.push_back(handler.run);
        }
    }
    for (const auto& run : due) {
        run();
    }
}

Stage::Stage(Line line)
    : events([this](const std::string& text) { log_.push_back(text); }), line_(line) {
    host.onMessageBox = [this](const FakeHost::Box& shown) {
        log_.push_back("box " + boxText(shown.icon, shown.text));
    };
    auto port = std::make_unique<ScriptedPort>(host);
    port_ = port.get();
    port->observer.write = [this](std::span<const std::uint8_t> bytes) {
        log_.push_back(wireText(bytes));
    };
    auto usb = std::make_unique<ScriptedUsb>(host);
    usb_ = usb.get();
    usb->onWrite = [this](const Bytes& bytes) { log_.push_back(wireText(bytes)); };
    control_ = ControlFactory::make(host, events, std::move(port), std::move(usb));
    control_->setNumPort(numPort::Comm1);
    if (onUsb()) {
        control_->SetGpsMark("GRM_USB");
    }
}

// A bulk run for the answers to one write: announced once, ended by an empty block.
std::vector<ScriptedUsb::Turn> Stage::usbTurnsOf(const Script& script) const {
    std::vector<ScriptedUsb::Turn> turns;
    for (const Step& step : script) {
        if (step.kind == Step::Kind::told || isAcknowledgement(step)) {
            continue;
        }
        if (step.kind == Step::Kind::sends) {
            turns.push_back({.write = usbBytes(step)});
        } else if (line_ == Line::usbBulk) {
            turns.back().bulk.push_back(usbBytes(step));
        } else {
            addBlocks(turns.back().interrupt, usbBytes(step));
        }
    }
    for (ScriptedUsb::Turn& turn : turns) {
        if (!turn.bulk.empty()) {
            constexpr std::uint16_t kDataAvailable = 2;
            turn.interrupt.push_back(ScriptedUsb::packet(0, kDataAvailable));
            turn.bulk.emplace_back();
        }
    }
    return turns;
}

std::vector<std::string> Stage::expectedLog(const Script& script) const {
    std::vector<std::string> log;
    for (const Step& step : script) {
        if (step.kind == Step::Kind::told) {
            log.push_back(step.text);
        } else if (step.kind == Step::Kind::sends && !(onUsb() && isAcknowledgement(step))) {
            log.push_back(wireText(onUsb() ? usbBytes(step) : step.bytes));
        }
    }
    return log;
}

void Stage::play(const Script& script, const std::function<void()>& call) {
    log_.clear();
    if (onUsb()) {
        usb_->play(usbTurnsOf(script));
    } else {
        port_->play(serialTurnsOf(script));
    }
    call();
    EXPECT_EQ(log_, expectedLog(script));
}

void Stage::leaveOver(std::uint8_t pid) {
    if (onUsb()) {
        usb_->play({{.interrupt = {ScriptedUsb::packet(20, pid)},
                     .bulk = {ScriptedUsb::packet(20, pid)}}});
    } else {
        port_->arrive(garminFrame(pid, {}));
    }
}

bool Stage::resultOf(const Script& script) const {
    constexpr int kTransferComplete = 12;
    bool complete = false;
    for (const Step& step : script) {
        if (step.text.starts_with("box ")) {
            return false;
        }
        complete = complete || isPacket(step, kTransferComplete);
    }
    return complete && onUsb();
}

void Stage::connectGarmin(const std::string& tags) {
    const Script onUsbLine = {sends(254, {0}), answers(255, productData(77, 280, "eTrex")),
                              answers(253, protocolArray(tags))};
    play(onUsb() ? onUsbLine : garminHandshake(tags),
         [this] { EXPECT_TRUE(control_->gpsConnect()); });
}

Script garminHandshake(const std::string& tags) {
    return {sends(10, {0, 0}),    sends(254, {0}),
            answers(6, {254, 0}), answers(255, productData(77, 280, "eTrex")),
            sends(6, {255, 0}),   answers(253, protocolArray(tags)),
            sends(6, {253, 0})};
}

Bytes productData(std::uint16_t id, std::uint16_t version, std::string_view description) {
    const auto low = [](int word) { return static_cast<std::uint8_t>(word % 256); };
    const auto high = [](int word) { return static_cast<std::uint8_t>(word / 256); };
    Bytes data = {low(id), high(id), low(version), high(version)};
    data.resize(data.size() + description.size() + 1);
    std::copy(description.begin(), description.end(), data.begin() + 4);
    return data;
}

Bytes protocolArray(const std::string& tags) {
    Bytes array;
    std::istringstream words(tags);
    for (std::string tag; words >> tag;) {
        const int number = std::stoi(tag.substr(1));
        array.push_back(static_cast<std::uint8_t>(tag[0]));
        array.push_back(static_cast<std::uint8_t>(number % 256));
        array.push_back(static_cast<std::uint8_t>(number / 256));
    }
    return array;
}

}  // namespace marlune
