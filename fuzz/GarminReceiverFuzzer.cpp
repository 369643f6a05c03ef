// The virtual Garmin unit against any bytes. The first byte chooses the unit; then follow steps:
//   0              time passes
//   1 to 127       that many bytes are heard as they stand
//   128 to 255     a good frame is heard: its id, then that many less 128 data bytes
// Whatever happens, all that the unit says is good frames.
#include <cstddef>
#include <cstdint>
#include <span>

#include "Require.h"
#include "receivers/garmin/GarminReceiver.h"

namespace {

using marlune::receivers::garmin::FrameReader;
using marlune::receivers::garmin::GarminReceiver;

void checkSaid(GarminReceiver& receiver, FrameReader& reader) {
    for (const std::uint8_t byte : receiver.takeOutput()) {
        marlune::require(reader.take(byte) != FrameReader::Outcome::bad);
    }
}

GarminReceiver makeReceiver(std::uint8_t choice) {
    static const auto kData = marlune::receivers::readData(
        "W;A;1;2;x;3\nP;B;4;5\nN;T\nT;6;7;38912.5;8;1\nT;180;180\nR;1;R\nW;C;9;1\nW;D;2;3\n");
    const auto& units = marlune::receivers::garmin::garminUnits();
    GarminReceiver::Settings settings;
    settings.unit = units[choice % units.size()];
    settings.data = kData;
    return GarminReceiver(std::move(settings));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::span<const std::uint8_t> input(data, size);
    const auto next = [&input](std::size_t count) {
        const auto taken = input.first(std::min(count, input.size()));
        input = input.subspan(taken.size());
        return taken;
    };
    GarminReceiver receiver = makeReceiver(size > 0 ? next(1).front() : 0);
    FrameReader reader;
    double now = 0;
    while (!input.empty()) {
        const std::size_t step = next(1).front();
        if (step == 0) {
            now += 0.6;
            receiver.elapse(now);
        } else if (step < 128) {
            receiver.hear(next(step), now);
        } else if (!input.empty()) {
            const std::uint8_t id = next(1).front();
            receiver.hear(marlune::receivers::garmin::frameOf(id, next(step - 128)), now);
        }
        checkSaid(receiver, reader);
    }
    // What was stored can be told.
    return receiver.lines().empty() ? -1 : 0;
}
