// A receiver that repeats what it hears, one packet for each byte and labelled with it, and says
// "t" whenever it was told to wait for a time. "9" switches it to 38400 bits per second.
#pragma once

#include <string>

#include "receivers/VirtualReceiver.h"

namespace marlune::receivers {

class EchoReceiver : public VirtualReceiver {
public:
    explicit EchoReceiver(Faults faults = {}) : VirtualReceiver(9600, std::move(faults)) {}

    [[nodiscard]] std::vector<std::string> lines() const override { return {"heard " + heard_}; }
    void wakeAt(double time) { due_ = time; }

protected:
    void heard(std::span<const std::uint8_t> bytes, double /*now*/) override {
        for (const std::uint8_t byte : bytes) {
            const std::string label(1, static_cast<char>(byte));
            heard_ += label;
            const bool refused = refuses(label);
            say(label,
                refused ? std::vector<std::uint8_t>{'-'} : std::vector<std::uint8_t>{byte, byte});
            if (byte == '9') {
                setBaud(38400);
            }
        }
    }
    void elapsed(double now) override {
        if (due_ && *due_ <= now) {
            due_.reset();
            say("t", {'t'});
        }
    }
    [[nodiscard]] std::optional<double> deadline() const override { return due_; }
    [[nodiscard]] std::vector<std::uint8_t> unknownPacket() const override { return {'?'}; }

private:
    std::string heard_;
    std::optional<double> due_;
};

}  // namespace marlune::receivers
