// The sentence readers and the listener over any stream, which must end within their time-outs,
// whatever arrives. Input: a byte that chooses how the stream arrives, then the stream.
#include <algorithm>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "Require.h"
#include "nmea/NmeaListener.h"
#include "nmea/SentenceReader.h"
#include "support/FakeHost.h"

namespace {

using namespace marlune;

// A line that brings the stream, then silence. readAhead: how many bytes it admits to hold.
class StreamPort : public SerialPort {
public:
    StreamPort(FakeHost& host, std::string_view stream, std::size_t readAhead)
        : host_(host), stream_(stream), readAhead_(readAhead) {}

    std::int32_t open(const std::string& /*device*/, const std::string& /*settings*/,
                      QueueSizes /*queues*/) override {
        handle_ = 3;
        return 0;
    }
    void close() override { handle_ = -1; }
    [[nodiscard]] std::int64_t handle() const override { return handle_; }
    [[nodiscard]] bool isGone() const override { return handle_ < 1; }
    std::size_t read(std::span<std::uint8_t> into) override {
        const std::size_t count = std::min(into.size(), stream_.size());
        std::memcpy(into.data(), stream_.data(), count);
        stream_.remove_prefix(count);
        host_.advance(count > 0 ? 0.0001 : 1.1);
        return count;
    }
    [[nodiscard]] std::size_t available() const override {
        return std::min(readAhead_, stream_.size());
    }
    std::size_t write(std::span<const std::uint8_t> bytes) override { return bytes.size(); }
    void purge() override {}

private:
    FakeHost& host_;
    std::string_view stream_;
    std::size_t readAhead_;
    std::int64_t handle_ = -1;
};

class Sentences : public GpsControlEvents {
public:
    void PhraseNMEA(const std::string& sentence) override { heard.push_back(sentence); }
    std::vector<std::string> heard;
};

struct Bench {
    Bench(std::string_view stream, std::size_t readAhead)
        : port(host, std::make_unique<StreamPort>(host, stream, readAhead)) {
        port.open();
    }
    FakeHost host;
    Sentences events;
    DebugTrace trace{""};
    Services services{host, events, trace};
    ComPort port;
    NmeaState state;
};

std::vector<std::string> listen(std::string_view stream, std::size_t readAhead) {
    Bench bench(stream, readAhead);
    startNmea(
        bench.services, bench.port, bench.state, [] {}, "$gp", 2);
    return bench.events.heard;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    if (size == 0) {
        return 0;
    }
    const std::string_view stream(reinterpret_cast<const char*>(bytes) + 1, size - 1);

    // Bytes that are already here may be taken in one piece; nobody may hear a difference.
    const std::vector<std::string> heard = listen(stream, 0);
    require(listen(stream, bytes[0]) == heard);
    for (const std::string& sentence : heard) {
        require(sentence.front() == '$' && sentence.find('$', 1) == std::string::npos);
    }

    Bench bench(stream, 0);
    PortLease lease(bench.port);
    SentenceReader reader(bench.services, lease, bench.state);
    for (std::string line = "x"; !line.empty();) {
        line = reader.mgnGet("$PMGN", 3);
        require(line.empty() || (line.front() == '$' && line.find('*') + 3 >= line.size()));
    }

    Bench other(stream, 0);
    PortLease otherLease(other.port);
    SentenceReader phrases(other.services, otherLease, other.state);
    for (std::string sentence = "x"; !sentence.empty();) {
        sentence = phrases.nextSentence("$gpwpl|rte", 2);
        require(sentence.empty() || sentence.front() == '$');
        require(sentence.find('\r') == std::string::npos);
    }
    return 0;
}
