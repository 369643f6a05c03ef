#include <algorithm>
#include <utility>
#include <vector>

#include "base/NoCase.h"
#include "resources/SymbolTable.h"
#include "storage/formats/CsvColumns.h"
#include "storage/formats/Readers.h"
#include "storage/formats/RecordValues.h"

namespace marlune {
namespace {

constexpr std::size_t kLongestField = 1U << 16U;
constexpr std::size_t kMostFields = 256;

struct Alias {
    std::string_view name;
    csv::Column column;
};

// What other programs call the columns.
constexpr auto kAliases = std::to_array<Alias>({{"type", csv::kKind},
                                                {"lat", csv::kLatitude},
                                                {"y", csv::kLatitude},
                                                {"lon", csv::kLongitude},
                                                {"lng", csv::kLongitude},
                                                {"long", csv::kLongitude},
                                                {"x", csv::kLongitude},
                                                {"alt", csv::kAltitude},
                                                {"ele", csv::kAltitude},
                                                {"elevation", csv::kAltitude},
                                                {"date", csv::kTime},
                                                {"cmt", csv::kComment},
                                                {"desc", csv::kComment},
                                                {"description", csv::kComment},
                                                {"sym", csv::kSymbol}});

// Splits a stream into rows of fields by RFC 4180, with the separator that the first row has.
class CsvRows {
public:
    explicit CsvRows(ByteSource& source) : source_(source), block_(1U << 16U) {}

    // False at the end. Empty lines are no rows.
    bool next(std::vector<std::string>& fields) {
        do {
            fields.clear();
            if (!hasMore()) {
                return false;
            }
            readRow(fields);
        } while (fields.size() == 1 && fields.front().empty());
        return true;
    }

    [[noreturn]] void fail(const char* reason, std::size_t offset) {
        throw FileParseError(reason, source_.placeOf(offset));
    }
    [[nodiscard]] std::size_t rowStart() const { return rowStart_; }

private:
    bool hasMore() {
        if (rest_.empty()) {
            rest_ = source_.read(block_);
        }
        return !rest_.empty();
    }

    char take() {
        const char c = rest_.front();
        rest_.remove_prefix(1);
        ++offset_;
        return c;
    }

    bool separates(char c) {
        const bool candidate = c == ',' || c == ';' || c == '\t';
        if (separator_ == 0 && candidate) {
            separator_ = c;
        }
        return candidate && c == separator_;
    }

    void readRow(std::vector<std::string>& fields) {
        rowStart_ = offset_;
        std::string field;
        while (hasMore()) {
            const char c = take();
            if (c == '"' && field.empty()) {
                readQuoted(field);
            } else if (c == '\n') {
                break;
            } else if (separates(c)) {
                add(fields, field);
            } else if (c != '\r') {
                append(field, c);
            }
        }
        add(fields, field);
    }

    void readQuoted(std::string& field) {
        const std::size_t start = offset_ - 1;
        while (hasMore()) {
            const char c = take();
            if (c != '"') {
                append(field, c);
            } else if (hasMore() && rest_.front() == '"') {
                append(field, take());
            } else {
                return;
            }
        }
        fail("a quoted field without an end", start);
    }

    void append(std::string& field, char c) {
        if (field.size() == kLongestField) {
            fail("a field is too long", offset_);
        }
        field += c;
    }

    static void add(std::vector<std::string>& fields, std::string& field) {
        if (fields.size() < kMostFields) {
            fields.push_back(std::exchange(field, {}));
        }
        field.clear();
    }

    ByteSource& source_;
    std::vector<char> block_;
    std::string_view rest_;
    std::size_t offset_ = 0;
    std::size_t rowStart_ = 0;
    char separator_ = 0;  // 0: none was seen yet
};

std::optional<csv::Column> columnNamed(std::string_view name) {
    constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
    name.remove_prefix(name.starts_with(kByteOrderMark) ? kByteOrderMark.size() : 0);
    const std::string text = gpxText(name);
    for (std::size_t i = 0; i < csv::kColumns; ++i) {
        if (equalsNoCase(csv::kNames[i], text)) {
            return static_cast<csv::Column>(i);
        }
    }
    const auto* const alias =
        std::find_if(kAliases.begin(), kAliases.end(),
                     [&](const Alias& each) { return equalsNoCase(each.name, text); });
    return alias == kAliases.end() ? std::nullopt : std::optional(alias->column);
}

// Where each column stands in the rows.
class CsvColumns {
public:
    explicit CsvColumns(const std::vector<std::string>& names) {
        places_.fill(names.size());
        for (std::size_t i = 0; i < names.size(); ++i) {
            const auto column = columnNamed(names[i]);
            if (column && places_[*column] == names.size()) {
                places_[*column] = i;
            }
        }
        complete_ =
            places_[csv::kLatitude] < names.size() && places_[csv::kLongitude] < names.size();
    }

    [[nodiscard]] bool complete() const { return complete_; }
    [[nodiscard]] std::string_view field(const std::vector<std::string>& row,
                                         csv::Column column) const {
        return places_[column] < row.size() ? std::string_view(row[places_[column]])
                                            : std::string_view();
    }

private:
    std::array<std::size_t, csv::kColumns> places_{};
    bool complete_ = false;
};

class CsvRecords {
public:
    CsvRecords(const CsvColumns& columns, RecordSink& sink) : columns_(columns), sink_(sink) {}

    void take(const std::vector<std::string>& row) {
        row_ = &row;
        const std::string_view kind = field(csv::kKind);
        if (kind == csv::kRoute) {
            RouteRecord route;
            ++routes_;
            route.number = wholeNumberOf(field(csv::kNumber), 0, UINT16_MAX).value_or(routes_);
            route.name = gpxText(field(csv::kName));
            sink_.route(route);
        } else if (kind == csv::kTrack) {
            takeTrack();
        } else if (kind == csv::kTrackPoint) {
            takeTrackPoint();
        } else if (kind == csv::kRoutePoint) {
            if (auto place = placeOf()) {
                sink_.routePoint({std::move(*place), linkOf()});
            }
        } else if (auto place = placeOf()) {
            sink_.waypoint(*place);
        }
    }

    void tell() const { leftOut_.tell(sink_); }

private:
    [[nodiscard]] std::string_view field(csv::Column column) const {
        return columns_.field(*row_, column);
    }

    void takeTrack() {
        TrackRecord track;
        track.name = gpxText(field(csv::kName));
        if (const auto display = wholeNumberOf(field(csv::kDisplay), 0, 1)) {
            track.display = *display != 0;
        }
        track.colour = wholeNumberOf(field(csv::kColour), 0, UINT8_MAX);
        sink_.track(track);
    }

    std::optional<FilePosition> position() {
        const auto latitude = gpxNumber(field(csv::kLatitude));
        const auto longitude = gpxNumber(field(csv::kLongitude));
        if (!gpxOnEarth(latitude, longitude)) {
            leftOut_.add();
            return std::nullopt;
        }
        return FilePosition{*latitude, *longitude};
    }

    void takeTrackPoint() {
        const auto at = position();
        if (!at) {
            return;
        }
        TrackPointRecord point;
        point.latitude = at->latitude;
        point.longitude = at->longitude;
        point.time = isoSeconds(field(csv::kTime));
        point.altitude = metresOf(field(csv::kAltitude));
        point.depth = metresOf(field(csv::kDepth));
        point.temperature = metresOf(field(csv::kTemperature));
        point.segmentStart = wholeNumberOf(field(csv::kNewSegment), 1, 1).has_value();
        sink_.trackPoint(point);
    }

    std::optional<WaypointRecord> placeOf() {
        const auto at = position();
        if (!at) {
            return std::nullopt;
        }
        WaypointRecord place;
        place.name = gpxText(field(csv::kName));
        place.comment = gpxText(field(csv::kComment));
        place.latitude = at->latitude;
        place.longitude = at->longitude;
        place.altitude = metresOf(field(csv::kAltitude));
        place.depth = metresOf(field(csv::kDepth));
        place.temperature = metresOf(field(csv::kTemperature));
        place.proximity = metresOf(field(csv::kProximity));
        place.time = isoSeconds(field(csv::kTime));
        place.symbol = symbolOf();
        if (const auto display = wholeNumberOf(field(csv::kDisplay), 0, UINT8_MAX)) {
            place.display = static_cast<std::uint8_t>(*display);
        }
        return place;
    }

    // A name or a number.
    std::optional<std::int16_t> symbolOf() {
        const std::string text = gpxText(field(csv::kSymbol));
        if (const auto number = wholeNumberOf(text, INT16_MIN, INT16_MAX)) {
            return static_cast<std::int16_t>(*number);
        }
        return text.empty() ? std::nullopt : std::optional(symbols_.numberOf(text, sink_));
    }

    [[nodiscard]] std::optional<RouteLinkRecord> linkOf() const {
        const auto linkClass = wholeNumberOf(field(csv::kLinkClass), INT16_MIN, INT16_MAX);
        const auto subclass = subclassOf(field(csv::kLinkSubclass));
        if (!linkClass || !subclass) {
            return std::nullopt;
        }
        return RouteLinkRecord{static_cast<std::int16_t>(*linkClass), *subclass,
                               gpxText(field(csv::kLinkName))};
    }

    const CsvColumns& columns_;
    RecordSink& sink_;
    const std::vector<std::string>* row_ = nullptr;
    int routes_ = 0;
    LeftOutCount leftOut_;
    SymbolNames symbols_;
};

}  // namespace

void readCsv(ByteSource& source, RecordSink& sink) {
    CsvRows rows(source);
    std::vector<std::string> row;
    if (!rows.next(row)) {
        rows.fail("the file is empty", 0);
    }
    const CsvColumns columns(row);
    if (!columns.complete()) {
        rows.fail("the first line names no columns latitude and longitude", rows.rowStart());
    }
    CsvRecords records(columns, sink);
    while (rows.next(row)) {
        records.take(row);
    }
    records.tell();
}

}  // namespace marlune
