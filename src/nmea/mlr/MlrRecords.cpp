#include "nmea/mlr/MlrRecords.h"

#include <algorithm>
#include <array>
#include <vector>

#include "base/CodePage.h"
#include "base/RunTimeError.h"
#include "garmin/values/LineFields.h"
#include "garmin/values/NumberText.h"
#include "garmin/values/jour.h"
#include "nmea/Geo.h"
#include "nmea/NmeaPacket.h"
#include "nmea/PositionFields.h"
#include "nmea/Sentence.h"

namespace marlune {
namespace {

constexpr std::int16_t kSymbol = 18;
constexpr std::size_t kNameLength = 6;

// The time of a point that carries none.
double numberedTime(double today, double number) {
    return today + number / 10000;
}

// Where the values of a track record stand, most significant byte first. Known from descriptions
// only: to be corrected here when a record has been captured.
struct RecordField {
    std::size_t offset;
    std::size_t length;
};
constexpr RecordField kNumber = {0, 2};
constexpr RecordField kLatitude = {2, 4};   // thousandths of a minute, signed
constexpr RecordField kLongitude = {6, 4};  // thousandths of a minute, signed
constexpr RecordField kAltitude = {10, 2};  // metres, signed
constexpr RecordField kTime = {12, 4};      // seconds since the GPS epoch, 0 for none
constexpr double kUnitsPerDegree = 60000;

std::uint32_t unsignedAt(std::string_view record, RecordField field) {
    std::uint32_t value = 0;
    for (const char c : record.substr(field.offset, field.length)) {
        value = value << 8U | static_cast<std::uint8_t>(c);
    }
    return value;
}

double degreesAt(std::string_view record, RecordField field) {
    return static_cast<std::int32_t>(unsignedAt(record, field)) / kUnitsPerDegree;
}

// The number in "TRC012" or "TR0123".
std::int16_t pointNumber(std::string_view name) {
    const std::size_t start = contains(name, "TRC") ? 3 : 2;
    return roundTo<std::int16_t>(readNumber(name.substr(std::min(start, name.size()))));
}

void readTrackLine(Trace& point, std::string_view line, double today) {
    const std::vector<std::string_view> fields = splitText(line, ';');
    point.SetName(std::string(fields.at(1)));
    point.latitude = readNumber(fields.at(2));
    point.longitude = readNumber(fields.at(3));
    point.pFirst = fields.at(4).substr(0, 1) == "C";
    point.pTime = numberedTime(today, pointNumber(fields.at(1)));
}

}  // namespace

std::optional<std::string> GetAttributes_MLR(Waypoint& waypoint, std::string_view sentence) {
    const Sentence fields(sentence);
    try {
        waypoint.latitude = readLatitude(fields.field(1), fields.field(2));
        waypoint.longitude = readLongitude(fields.field(3), fields.field(4));
        waypoint.exact = readExactPosition(fields, 1);
    } catch (const RunTimeError&) {
        return std::nullopt;
    }
    constexpr std::size_t kTexts = 5;
    if (fields.receivedChecksum().empty() && fields.fieldCount() <= kTexts) {
        return std::nullopt;
    }
    const std::string_view texts = fields.field(kTexts);
    waypoint.ident = fromAnsi(texts.substr(0, kNameLength));
    waypoint.comment = fromAnsi(texts.substr(std::min(kNameLength + 1, texts.size())));
    waypoint.symbol = kSymbol;
    return std::string(fields.receivedChecksum().substr(0, 2));
}

std::string Coder_MLR(const Waypoint& waypoint) {
    Geo geo;
    geo.Position({waypoint.latitude, waypoint.longitude});
    std::string name = toAnsi(waypoint.ident);
    name.resize(kNameLength, ' ');
    return signedSentence("$GPWPL," + geo.DMM() + ',' + name + ' ' + toAnsi(waypoint.comment) +
                          '*');
}

// Through the waypoint's text line, whose six decimals are the point's precision.
std::optional<std::string> GetAttributes_MLR(Trace& point, std::string_view sentence,
                                             double today) {
    Waypoint waypoint;
    std::optional<std::string> checksum = GetAttributes_MLR(waypoint, sentence);
    try {
        readTrackLine(point, waypoint.getIdent('.'), today);
        point.exact = waypoint.exact;
    } catch (const RunTimeError&) {
        return std::nullopt;
    }
    return checksum;
}

std::uint16_t GetAttributes_MLR_SP(Trace& point, std::string_view record, double today) {
    if (record.size() < kMlrTrackRecordLength) {
        throw RunTimeError(RunTimeError::index);
    }
    const auto number = static_cast<std::uint16_t>(unsignedAt(record, kNumber));
    point.latitude = degreesAt(record, kLatitude);
    point.longitude = degreesAt(record, kLongitude);
    point.altitude = static_cast<std::int16_t>(unsignedAt(record, kAltitude));
    const auto seconds = static_cast<std::int32_t>(unsignedAt(record, kTime));
    point.pTime = seconds == 0 ? numberedTime(today, number) : jour::GpsTimeToDate(seconds);
    return number;
}

bool isDated_MLR_SP(std::string_view record) {
    return record.size() >= kMlrTrackRecordLength && unsignedAt(record, kTime) != 0;
}

}  // namespace marlune
