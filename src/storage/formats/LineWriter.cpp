#include <algorithm>
#include <cmath>
#include <ostream>

#include "garmin/values/Semicircles.h"
#include "resources/SymbolTable.h"
#include "storage/formats/RecordValues.h"
#include "storage/formats/Writers.h"

namespace marlune {
namespace {

// A text as a field: the separator of fields cannot stand in it.
std::string field(const std::string& text) {
    std::string clean = gpxText(text);
    std::replace(clean.begin(), clean.end(), ';', ',');
    return clean;
}

// An angle that came from whole semicircles, on its way back to them: it is truncated there, and
// the text of the number may lie a hair short. Other angles stay as they are.
double towardsSemicircle(double degrees) {
    constexpr double kHair = 1e-6;
    const double exact = degrees / kDegreesPerSemicircle;
    const double whole = std::round(exact);
    if (whole != 0 && std::abs(exact - whole) < kHair) {
        while (std::trunc(degrees / kDegreesPerSemicircle) != whole && std::abs(degrees) <= 180) {
            degrees = std::nextafter(degrees, std::copysign(HUGE_VAL, degrees));
        }
    }
    return degrees;
}

// The lines that upload files hold: full precision, unlike those that a control's events carry.
class LineWriter : public RecordWriter {
public:
    explicit LineWriter(std::ostream& out) : out_(out) {}

    void waypoint(const WaypointRecord& waypoint) override {
        const std::string position = positionOf(waypoint.latitude, waypoint.longitude);
        if (!position.empty()) {
            out_ << "W;" << field(waypoint.name) << ';' << position << ';'
                 << field(waypoint.comment) << ';' << altitudeOf(waypoint.altitude) << ';'
                 << waypoint.symbol.value_or(kDefaultSymbol) << ';'
                 << fileDisplay(waypoint).value_or(0) << "\r\n";
        }
    }

    void route(const RouteRecord& head) override {
        constexpr int kNumbers = 256;
        const int number = std::abs(head.number % kNumbers);
        const std::string name = field(head.name);
        out_ << "R;" << number << ';' << (name.empty() ? "ROUTE " + std::to_string(number) : name)
             << "\r\n";
    }

    void routePoint(const RoutePointRecord& point) override {
        waypoint(point.point);
        if (point.link) {
            out_ << "L;RteLink " << field(point.link->name) << "\r\n";
        }
    }

    void track(const TrackRecord& head) override { out_ << "N;" << field(head.name) << "\r\n"; }

    void trackPoint(const TrackPointRecord& point) override {
        const std::string position = positionOf(point.latitude, point.longitude);
        if (!position.empty()) {
            out_ << "T;" << position << ';' << fileNumber(daysOfSeconds(point.time)) << ';'
                 << altitudeOf(point.altitude) << (point.segmentStart ? ";-1" : ";0") << "\r\n";
        }
    }

    void finish() override {}
    [[nodiscard]] std::size_t leftOut() const override { return leftOut_; }

private:
    // 0 stands for an unknown altitude.
    static std::string altitudeOf(std::optional<float> altitude) {
        return fileNumber(altitude.value_or(0.0F));
    }

    std::string positionOf(double latitude, double longitude) {
        if (!filePosition(latitude, longitude)) {
            ++leftOut_;
            return {};
        }
        return fileNumber(towardsSemicircle(latitude)) + ';' +
               fileNumber(towardsSemicircle(longitude));
    }

    std::ostream& out_;
    std::size_t leftOut_ = 0;
};

}  // namespace

std::unique_ptr<RecordWriter> makeLineWriter(std::ostream& out) {
    return std::make_unique<LineWriter>(out);
}

}  // namespace marlune
