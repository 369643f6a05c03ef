// A receiver at the end of a USB cable: puts the packets that it says on the input pipes.
#pragma once

#include <memory>

#include "receivers/VirtualReceiver.h"
#include "receivers/usb/UsbFunction.h"

namespace marlune::receivers {

class ReceiverFunction : public UsbFunction {
public:
    // Units differ in the pipe that their application packets take; what belongs to the USB layer
    // always takes the interrupt pipe.
    enum class Habit {
        interrupt,  // everything on the interrupt pipe
        bulk,       // every answer on the bulk pipe: announced, and ended by an empty transfer
        mixed       // each packet on the interrupt pipe when it fits into one of its packets, and
                    // all of the answer from the first that does not on the bulk pipe
    };

    // The receiver is one that hears and says whole USB packets.
    ReceiverFunction(std::unique_ptr<VirtualReceiver> receiver, Habit habit)
        : receiver_(std::move(receiver)), habit_(habit) {}

    [[nodiscard]] const VirtualReceiver& receiver() const { return *receiver_; }
    // The receiver's line has come to an end.
    void end() { receiver_->end(); }

    void hostWrote(std::span<const std::uint8_t> message, double now) override {
        receiver_->hear(message, now);
    }
    void elapse(double now) override { receiver_->elapse(now); }
    [[nodiscard]] std::optional<double> nextDeadline() const override {
        return receiver_->nextDeadline();
    }
    [[nodiscard]] bool gone() const override { return receiver_->hungUp(); }
    std::vector<UsbMessage> takeOutput() override;

private:
    std::unique_ptr<VirtualReceiver> receiver_;
    Habit habit_;
};

}  // namespace marlune::receivers
