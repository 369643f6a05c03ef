#include "garmin/records/PvtData.h"

#include <cmath>
#include <utility>

#include "garmin/values/ByteAccess.h"
#include "garmin/values/Nombre.h"
#include "garmin/values/NumberText.h"
#include "garmin/values/jour.h"

namespace marlune {
namespace {

// D800, the bytes that are used.
constexpr std::size_t kEllipsoidAltitudeAt = 0;
constexpr std::size_t kEpeAt = 4;
constexpr std::size_t kEphAt = 8;
constexpr std::size_t kEpvAt = 12;
constexpr std::size_t kFixAt = 16;
constexpr std::size_t kTimeOfWeekAt = 18;
constexpr std::size_t kRadiansNorthAt = 26;
constexpr std::size_t kRadiansEastAt = 34;
constexpr std::size_t kEastAt = 42;
constexpr std::size_t kNorthAt = 46;
constexpr std::size_t kUpAt = 50;
constexpr std::size_t kSeaLevelAt = 54;
constexpr std::size_t kLeapSecondsAt = 58;
constexpr std::size_t kWeekDaysAt = 60;

float singleAt(Bytes data, std::size_t offset) {
    return static_cast<float>(Nombre::BytestoSingle(bytesAt(data, offset, 4)));
}

double doubleAt(Bytes data, std::size_t offset) {
    return Nombre::BytestoDbl(bytesAt(data, offset, 8));
}

double finite(double value) {
    if (!std::isfinite(value)) {
        throw RunTimeError(RunTimeError::overflow);
    }
    return value;
}

// The record's time in seconds since the Garmin epoch. Sums below stay exact in doubles.
std::int32_t garminSeconds(Bytes data) {
    constexpr double kSecondsPerDay = 86400;
    const double timeOfWeek = roundTo<std::int32_t>(doubleAt(data, kTimeOfWeekAt));
    const std::int32_t days = Nombre::BytestoLong(bytesAt(data, kWeekDaysAt, 4));
    const double toWeek = roundTo<std::int32_t>(days * kSecondsPerDay);
    return roundTo<std::int32_t>(timeOfWeek + toWeek - byteAt(data, kLeapSecondsAt));
}

}  // namespace

void PvtData::Class_Initialize() {
    fixNames = {"unus", "inval", " 2d ", " 3d ", "2diff", "3diff"};
}

bool PvtData::GetAttributes(std::span<const std::uint8_t> data, int first, DebugTrace& trace,
                            char decimalSeparator) {
    try {
        fix = byteAt(data, kFixAt);
        if (fix == 0) {
            return false;
        }
        decode(data);
        makePoint(first, decimalSeparator);
        return true;
    } catch (const RunTimeError& error) {
        trace.traceLine("Erreur PvtData: " + std::to_string(error.number()) + ' ' + error.what());
        return false;
    }
}

void PvtData::decode(std::span<const std::uint8_t> data) {
    altitude = toSingle(double{singleAt(data, kEllipsoidAltitudeAt) + singleAt(data, kSeaLevelAt)});
    latitude = finite(doubleAt(data, kRadiansNorthAt) * kDegreesPerRadian);
    longitude = finite(doubleAt(data, kRadiansEastAt) * kDegreesPerRadian);
    east = singleAt(data, kEastAt);
    north = singleAt(data, kNorthAt);
    up = singleAt(data, kUpAt);
    epe = singleAt(data, kEpeAt);
    eph = singleAt(data, kEphAt);
    epv = singleAt(data, kEpvAt);
    time = jour::GarminTimeToDate(garminSeconds(data));
}

void PvtData::makePoint(int first, char decimalSeparator) {
    std::string line = "T";
    for (const double field : {latitude, longitude, time}) {
        line += ';';
        appendNumber(line, field, decimalSeparator);
    }
    line += ';';
    appendNumber(line, altitude, decimalSeparator);
    line += ';' + std::to_string(first);
    Trace made;
    made.SetAttributes("", line);
    point = std::move(made);
}

std::string PvtData::getIdent(char decimalSeparator) const {
    return point ? point->getIdent(decimalSeparator) : std::string();
}

}  // namespace marlune
