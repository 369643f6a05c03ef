#include "nmea/mlr/BlockDownload.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>

#include "base/CodePage.h"
#include "nmea/Messages.h"
#include "nmea/Sentence.h"
#include "nmea/Waiting.h"
#include "nmea/mlr/BlockSplitter.h"
#include "serial/LineSpeeds.h"

namespace marlune {
namespace {

// At both speeds.
constexpr int kStopBits = 2;

// An endless stream of blocks must not fill the memory; no receiver holds a thousandth of this.
constexpr std::size_t kMostBytes = std::size_t{64} << 20U;

class BlockDownload {
public:
    BlockDownload(Services& services, PortLease& port) : services_(services), port_(port) {}

    // True once the closing block came.
    bool receive();
    MlrBlocks& result() { return result_; }

private:
    void takeBlock(const std::string& block);
    void tell(const std::string& text) { services_.events.GpsInfo(text); }

    Services& services_;
    PortLease& port_;
    BlockSplitter splitter_;
    MlrBlocks result_;
    std::size_t keptBytes_ = 0;
};

bool BlockDownload::receive() {
    Host& host = services_.host;
    std::array<std::uint8_t, 512> buffer{};
    while (mayGoOn(port_, host)) {
        const std::size_t count = readSome(port_, buffer);
        if (count == 0) {
            if (port_.isGone()) {
                return false;
            }
            // The only way out of a silence is the user's.
            host.processEvents();
            continue;
        }
        for (const std::string& block :
             splitter_.take({reinterpret_cast<const char*>(buffer.data()), count})) {
            if (!mayGoOn(port_, host)) {
                return false;
            }
            if (contains(block, "FIN")) {
                return true;
            }
            takeBlock(block);
            services_.trace.traceLineOf([&] { return "Get: " + fromAnsi(block); });
        }
    }
    return false;
}

void BlockDownload::takeBlock(const std::string& block) {
    const bool carriesRecords = !contains(block, "DEBUT") && block.size() > BlocMLR::kHeaderLength;
    if (!carriesRecords) {
        return;
    }
    if (keptBytes_ + block.size() > kMostBytes) {
        ++result_.dropped;
        return;
    }
    keptBytes_ += block.size();
    const BlocMLR& kept = result_.blocks.emplace_back(block);
    result_.total += static_cast<int>(kept.recordCount());
    tell(nmeatext::kMlrProgress + std::to_string(result_.total));
}

}  // namespace

MlrBlocks mlrBlockDownload(Services& services, PortLease& port, std::string_view request,
                           std::string_view closing) {
    MlrBlocks nothing;
    nothing.ending = endingOfSilence(port, services.host);
    if (port.isGone()) {
        return nothing;
    }
    const auto write = [&](std::string_view text) {
        port.write({reinterpret_cast<const std::uint8_t*>(text.data()), text.size()});
    };
    write(request);
    port.reopen(lineSettings(kMlrBlockSpeed, kStopBits),
                [&] { services.events.GpsInfo(nmeatext::kMlrProgress); });
    BlockDownload download(services, port);
    const bool complete = download.receive();
    nothing.ending = endingOfSilence(port, services.host);
    if (port.holds() && !port.isOpen()) {
        return nothing;
    }
    port.reopen(lineSettings(kNmeaSpeed, kStopBits));
    write(closing);
    if (!complete) {
        return nothing;
    }
    services.events.GpsInfo(nmeatext::kMlrDone);
    return std::move(download.result());
}

}  // namespace marlune
