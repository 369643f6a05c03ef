#include "receivers/mlr/Blocks.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>

#include "receivers/mlr/MlrSentences.h"
#include "receivers/nmea/SentenceText.h"

namespace marlune::receivers::mlr {
namespace {

constexpr char kStartMark = '\x8B';
constexpr std::size_t kRecordsPerBlock = 16;

std::string block(std::size_t number, std::size_t count, const std::string& content) {
    return kStartMark + nmea::padded(static_cast<std::int64_t>(number % 10000), 4) +
           static_cast<char>(count) + content + "\r\n";
}

// Records of one block have one length: blanks fill up the shorter ones.
std::string joined(std::vector<std::string> records) {
    std::size_t length = 0;
    for (const std::string& record : records) {
        length = std::max(length, record.size());
    }
    std::string all;
    for (std::string& record : records) {
        record.resize(length, ' ');
        all += record;
    }
    return all;
}

std::vector<std::string> blocksOf(const std::vector<std::string>& records) {
    std::vector<std::string> blocks = {block(0, 0, "DEBUT")};
    for (std::size_t at = 0; at < records.size(); at += kRecordsPerBlock) {
        const std::size_t count = std::min(kRecordsPerBlock, records.size() - at);
        const auto first = records.begin() + static_cast<std::ptrdiff_t>(at);
        blocks.push_back(block(blocks.size(), count,
                               joined({first, first + static_cast<std::ptrdiff_t>(count)})));
    }
    blocks.push_back(block(0, 0, "FIN"));
    return blocks;
}

void put(std::string& record, std::int64_t value, int bytes) {
    for (int shift = 8 * (bytes - 1); shift >= 0; shift -= 8) {
        record += static_cast<char>(static_cast<std::uint64_t>(value) >> shift & 0xFFU);
    }
}

std::int64_t thousandthsOfMinutes(double degrees) {
    return std::llround(degrees * 60 * 1000);
}

std::int64_t secondsOf(double date) {
    constexpr double kEpochDay = 29226;  // 06/01/1980
    constexpr double kSecondsADay = 86400;
    const double seconds = std::round((date - kEpochDay) * kSecondsADay);
    return static_cast<std::int64_t>(
        std::clamp(seconds, 0.0, static_cast<double>(std::numeric_limits<std::int32_t>::max())));
}

}  // namespace

std::string trackRecord(const TrackPoint& point, int number) {
    using Altitude = std::numeric_limits<std::int16_t>;
    const double altitude =
        std::clamp<double>(point.altitude.value_or(0), Altitude::min(), Altitude::max());
    std::string record;
    put(record, number, 2);
    put(record, thousandthsOfMinutes(std::clamp(point.latitude, -90.0, 90.0)), 4);
    put(record, thousandthsOfMinutes(point.longitude), 4);
    put(record, std::llround(altitude), 2);
    put(record, secondsOf(point.time), 4);
    return record;
}

std::vector<std::string> trackBlocks(const std::vector<Track>& tracks) {
    constexpr int kHighest = 65535;
    std::vector<std::string> records;
    int number = 0;
    for (const Track& track : tracks) {
        for (const TrackPoint& point : track.points) {
            number = point.newSegment ? 1 : number % kHighest + 1;
            records.push_back(trackRecord(point, number));
        }
    }
    return blocksOf(records);
}

std::vector<std::string> placeBlocks(const std::vector<Place>& places) {
    std::vector<std::string> records;
    for (const Place& place : places) {
        std::string record = placeSentence(place);
        record.resize(record.size() - 2);  // no line ending inside a block
        records.push_back(std::move(record));
    }
    return blocksOf(records);
}

}  // namespace marlune::receivers::mlr
