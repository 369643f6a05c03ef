#include "garmin/records/Route.h"

#include <limits>
#include <utility>

#include "base/CodePage.h"
#include "garmin/values/ByteAccess.h"
#include "garmin/values/LineFields.h"
#include "garmin/values/NumberText.h"

namespace marlune {
namespace {

constexpr std::size_t kCommentAt = 1;
constexpr std::size_t kCommentLength = 20;
constexpr std::size_t kHeaderLength = 21;

std::uint8_t routeNumber(std::string_view field) {
    const std::string_view text = trimBlanks(field);
    const auto [value, length] = leadingNumber(text);
    const double number = roundHalfEven(value, 0);
    if (length == 0 || length != text.size() || !(number >= 0 && number <= 255)) {
        throw RunTimeError(RunTimeError::typeMismatch);
    }
    return static_cast<std::uint8_t>(number);
}

}  // namespace

void Route::GetAttributes(std::string_view format, std::span<const std::uint8_t> data) {
    if (format == "D202") {
        description_ = trimmedText(untilZero(data, 0, data.size()));
        return;
    }
    numRte = byteAt(data, 0);
    if (format == "D201") {
        const Bytes comment = untilZero(data, kCommentAt, kCommentLength);
        if (kCommentAt + comment.size() == data.size()) {
            // The record ended before a zero byte came: it must be whole.
            (void)bytesAt(data, kCommentAt, kCommentLength);
        }
        description_ = trimmedText(comment);
    } else {
        description_ = "ROUTE " + std::to_string(numRte);
    }
}

std::vector<std::uint8_t> Route::Coder(std::string_view format) const {
    constexpr std::uint8_t kBlank = 32;
    const bool numbered = format == "D201";
    std::vector<std::uint8_t> record;
    record.reserve(kHeaderLength);
    if (numbered) {
        record.push_back(numRte);
    }
    const std::string text = toAnsi(trimBlanks(description_));
    // One byte stays for the zero byte, so the text of D201 has 19 characters at most.
    const std::size_t room = kHeaderLength - 1 - record.size();
    const std::string_view kept = std::string_view(text).substr(0, room);
    record.insert(record.end(), kept.begin(), kept.end());
    record.push_back(0);
    record.resize(kHeaderLength, kBlank);
    return record;
}

std::string Route::getIdent() const {
    return "R;" + std::to_string(numRte) + ';' + description_;
}

void Route::SetAttributes(std::string_view line) {
    const auto fields = lineFields<3>(line);
    numRte = routeNumber(fields[1]);
    description_ = trimBlanks(fields[2]);
}

void Route::AddWaypt(Waypoint waypoint) {
    if (count_ == std::numeric_limits<std::int16_t>::max()) {
        throw RunTimeError(RunTimeError::overflow);
    }
    waypoints_.push_back(std::move(waypoint));
    ++count_;
}

}  // namespace marlune
