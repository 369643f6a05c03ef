#include "garmin/records/DataType.h"

#include <algorithm>
#include <array>
#include <charconv>

#include "base/RunTimeError.h"
#include "resources/WaypointLayouts.h"

namespace marlune {
namespace {

// Takes the text up to the separator, or to its end, off its front.
constexpr std::string_view takePiece(std::string_view& text, char separator) {
    const std::size_t end = std::min(text.find(separator), text.size());
    const std::string_view piece = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    return piece;
}

// from_chars is of no use at compile time; the rows hold nothing but small numbers.
constexpr int numberOf(std::string_view digits) {
    const bool negative = digits.starts_with('-');
    int value = 0;
    for (const char digit : digits.substr(negative ? 1 : 0)) {
        value = value * 10 + (digit - '0');
    }
    return negative ? -value : value;
}

constexpr DataType::Field takeField(std::string_view& row) {
    std::string_view pair = takePiece(row, ';');
    const int offset = numberOf(takePiece(pair, ' '));
    return {offset, numberOf(pair)};
}

constexpr DataType parse(const WaypointLayoutRow& row) {
    std::string_view text = row.text;
    DataType type;
    type.number = row.number;
    takePiece(text, ';');  // the name
    for (DataType::Field* const field :
         {&type.ident, &type.latitude, &type.longitude, &type.comment, &type.altitude, &type.symbol,
          &type.display}) {
        *field = takeField(text);
    }
    type.total = static_cast<std::size_t>(numberOf(text));
    return type;
}

// The rows are parsed by the compiler: records come by the thousand a second.
constexpr auto kTypes = [] {
    std::array<DataType, kWaypointLayoutRows.size()> types;
    std::transform(kWaypointLayoutRows.begin(), kWaypointLayoutRows.end(), types.begin(), parse);
    return types;
}();

}  // namespace

const DataType& DataType::Lire(std::string_view format) {
    const std::string_view digits = format.substr(std::min<std::size_t>(format.size(), 1));
    const char* const end = digits.data() + digits.size();
    int number = 0;
    const bool isName =
        format.starts_with('D') && std::from_chars(digits.data(), end, number).ptr == end;
    const auto* const found =
        std::find_if(kTypes.begin(), kTypes.end(),
                     [number](const DataType& type) { return type.number == number; });
    if (!isName || found == kTypes.end()) {
        throw RunTimeError(RunTimeError::index);
    }
    return *found;
}

}  // namespace marlune
