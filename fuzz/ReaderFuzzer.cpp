// The sentence readers and the listener over any stream, which must end within their time-outs,
// whatever arrives. Input: a byte that chooses how the stream arrives, then the stream.
#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <vector>

#include "FuzzPort.h"
#include "Require.h"
#include "nmea/NmeaListener.h"
#include "nmea/SentenceReader.h"

namespace {

using namespace marlune;

using Data = std::span<const std::uint8_t>;

std::vector<std::string> listen(Data stream, std::size_t tellsAhead) {
    FuzzLine line(stream, tellsAhead);
    NmeaState state;
    const auto closeNothing = [] {};
    startNmea(line.services, line.port, state, closeNothing, "$gp", 2);
    std::erase_if(line.heard,
                  [](const std::string& event) { return !event.starts_with("PhraseNMEA|"); });
    return line.heard;
}

// The sentences that a reader takes from the stream, until it is silent.
void readAll(Data stream, const std::function<std::string(SentenceReader&)>& next) {
    FuzzLine line(stream, 0);
    PortLease lease(line.port);
    NmeaState state;
    SentenceReader reader(line.services, lease, state);
    while (!next(reader).empty()) {
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    if (size == 0) {
        return 0;
    }
    const Data stream = Data(bytes, size).subspan(1);

    // Bytes that are already here may be taken in one piece; nobody may hear a difference.
    const std::vector<std::string> heard = listen(stream, 0);
    require(listen(stream, bytes[0]) == heard);
    for (const std::string& event : heard) {
        const std::string sentence = event.substr(event.find('|') + 1);
        require(sentence.front() == '$' && sentence.find('$', 1) == std::string::npos);
    }

    readAll(stream, [](SentenceReader& reader) {
        std::string line = reader.mgnGet("$PMGN", 3);
        require(line.empty() || (line.front() == '$' && line.find('*') + 3 >= line.size()));
        return line;
    });
    readAll(stream, [](SentenceReader& reader) {
        std::string sentence = reader.nextSentence("$gpwpl|rte", 2);
        require(sentence.empty() || sentence.front() == '$');
        require(sentence.find('\r') == std::string::npos);
        return sentence;
    });
    return 0;
}
