// Any bytes to the receivers that speak sentences, with time passing between lines. The first byte
// chooses the receiver. Whatever was uploaded, what it holds can be read back as text lines.
#include <algorithm>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "Require.h"
#include "receivers/DeviceData.h"
#include "receivers/magellan/MagellanReceiver.h"
#include "receivers/mlr/MlrReceiver.h"
#include "receivers/nmea/NmeaReceiver.h"

namespace marlune::receivers {
namespace {

nmea::SentenceReceiver::Settings settings() {
    nmea::SentenceReceiver::Settings settings;
    settings.data =
        readData("W;HOME;48.1173;11.516667\nN;WALK\nT;48.1;11.5\nR;3;TRIP\nW;HOME;1;2\n");
    settings.date = 39083.5;
    return settings;
}

std::unique_ptr<VirtualReceiver> receiverOf(std::uint8_t choice) {
    switch (choice % 4) {
        case 0:
            return std::make_unique<magellan::MagellanReceiver>(
                settings(), magellan::MagellanUnit{"X", "024", "3.15", "X"});
        case 1:
            return std::make_unique<mlr::MlrReceiver>(settings(), mlr::MlrKind::blocks);
        case 2:
            return std::make_unique<mlr::MlrReceiver>(settings(), mlr::MlrKind::sentences);
        default:
            return std::make_unique<nmea::NmeaReceiver>(settings());
    }
}

void letItSpeak(VirtualReceiver& receiver, double now) {
    for (int steps = 0; steps < 20 && receiver.nextDeadline().value_or(now + 1) <= now; ++steps) {
        receiver.elapse(now);
    }
    receiver.takeOutput();
}

void check(const VirtualReceiver& receiver) {
    const std::vector<std::string> lines = receiver.lines();
    std::string text;
    for (const std::string& line : lines) {
        text += line + '\n';
    }
    require(linesOf(readData(text)) == lines);
}

void run(std::span<const std::uint8_t> bytes) {
    const auto receiver = receiverOf(bytes.front());
    bytes = bytes.subspan(1);
    double now = 0;
    while (!bytes.empty()) {
        const auto end = std::find(bytes.begin(), bytes.end(), '\n');
        const auto size =
            std::min<std::size_t>(static_cast<std::size_t>(end - bytes.begin()) + 1, bytes.size());
        receiver->hear(bytes.first(size), now);
        bytes = bytes.subspan(size);
        letItSpeak(*receiver, now);
        now += 0.7;
    }
    check(*receiver);
}

}  // namespace
}  // namespace marlune::receivers

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size > 0) {
        marlune::receivers::run({data, size});
    }
    return 0;
}
