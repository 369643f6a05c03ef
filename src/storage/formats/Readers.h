// The readers of all formats; see readRecords.
#pragma once

#include <set>
#include <string>

#include "marlune/RecordFiles.h"
#include "storage/formats/ByteSource.h"

namespace marlune {

void readGpx(ByteSource& source, RecordSink& sink);
void readCsv(ByteSource& source, RecordSink& sink);
void readLines(ByteSource& source, RecordSink& sink);

// One text line as a record: "W", "R", "N", "T" and "L" lines; others are nothing. The points of a
// route stand behind it. False for a position that is not on earth.
class LineTaker {
public:
    explicit LineTaker(RecordSink& sink) : sink_(sink) {}
    bool take(std::string_view line);
    // Hands over what waits for its link.
    void finish();

private:
    bool takeWaypoint(std::string_view line);
    bool takeTrackPoint(std::string_view line);
    void takeRoute(std::string_view line);
    void takeLink(std::string_view line);

    RecordSink& sink_;
    bool inRoute_ = false;
    int routes_ = 0;                           // those without a number are counted
    std::optional<RoutePointRecord> waiting_;  // for the link that may follow it
};

// Tells the sink, once, of points that are nowhere.
class LeftOutCount {
public:
    void add() { ++count_; }
    void tell(RecordSink& sink) const;

private:
    std::size_t count_ = 0;
};

// The symbols of a file. A name that nobody knows is told to the sink, once, and becomes 18.
class SymbolNames {
public:
    std::int16_t numberOf(const std::string& name, RecordSink& sink);

private:
    std::set<std::string> unknown_;
};

}  // namespace marlune
