// The control and the virtual unit against each other, on a clock of the test's own: what one unit
// gives is uploaded to an empty one of its kind and downloaded from there. Neither side knows the
// other's codecs, so a record type that both got wrong in the same way is all that could hide.
#include <gmock/gmock.h>

#include "control/ControlFactory.h"
#include "receivers/ReceiverPort.h"
#include "receivers/garmin/GarminReceiver.h"
#include "support/Dialogue.h"

namespace marlune::receivers::garmin {
namespace {

using Lines = std::vector<std::string>;
using Download = bool (GpsControl::*)();
using Upload = bool (GpsControl::*)(const std::string&);

// A unit with its data, and a control connected to it.
class Connection {
public:
    Connection(const std::string& tags, const std::string& data)
        : events_([this](const std::string& text) { take(text); }) {
        auto port = std::make_unique<ReceiverPort>(
            host_, std::make_unique<GarminReceiver>(settings(tags, data)));
        receiver_ = &port->receiver();
        control_ = ControlFactory::make(host_, events_, std::move(port),
                                        std::make_unique<ScriptedUsb>(host_));
        EXPECT_TRUE(control_->gpsConnect());
    }

    // The record lines of a transfer.
    Lines download(Download get) {
        lines_.clear();
        (control_.get()->*get)();
        return lines_;
    }
    Lines upload(Upload send, const Lines& lines) {
        std::string text = "\xEF\xBB\xBF";
        for (const std::string& line : lines) {
            text += line + "\r\n";
        }
        lines_.clear();
        (control_.get()->*send)(folder_.write("upload.txt", text));
        return lines_;
    }

    [[nodiscard]] Lines boxes() const { return host_.boxTexts(); }
    [[nodiscard]] Lines complaints() const { return receiver_->complaints(); }

private:
    static GarminReceiver::Settings settings(const std::string& tags, const std::string& data) {
        GarminReceiver::Settings settings;
        settings.unit.announces = true;
        settings.unit.tags = "A010 " + tags;
        settings.data = readData(data);
        return settings;
    }

    // "WayptData|1|W;...|D": the line stands between the last two bars.
    void take(const std::string& event) {
        const std::size_t end = event.rfind('|');
        const std::size_t start = event.rfind('|', end - 1);
        if (event.ends_with("|D") || event.ends_with("|U")) {
            lines_.push_back(event.substr(start + 1, end - start - 1));
        }
    }

    FakeHost host_;
    TempFolder folder_;
    const VirtualReceiver* receiver_ = nullptr;
    Lines lines_;
    RecordedEvents events_;
    std::unique_ptr<GpsControl> control_;
};

// Parts of the lines that come from the first unit, and what the second one gives in their place.
using Changes = std::vector<std::pair<std::string, std::string>>;

std::string changed(std::string line, const Changes& changes) {
    for (const auto& [from, to] : changes) {
        if (const std::size_t at = line.find(from); at != std::string::npos) {
            line.replace(at, from.size(), to);
        }
    }
    return line;
}

struct Transfers {
    Download get;
    Upload send;
};

void goRound(const std::string& tags, const std::string& data, const Transfers& transfers,
             const Changes& changes = {}) {
    Connection first(tags, data);
    Connection second(tags, "");
    Lines lines = first.download(transfers.get);
    EXPECT_GE(lines.size(), 3U) << tags;
    EXPECT_EQ(second.upload(transfers.send, lines), lines) << tags;
    for (std::string& line : lines) {
        line = changed(line, changes);
    }
    EXPECT_EQ(second.download(transfers.get), lines) << tags;
    EXPECT_THAT(second.boxes(), testing::IsEmpty()) << tags;
    EXPECT_THAT(second.complaints(), testing::IsEmpty()) << tags;
}

TEST(RoundTrip, WaypointsOfEveryType) {
    const std::string data =
        "W;LAC;45.5;-90.25;Le lac d'en haut;1042;18;0\n"
        "W;ÉTAPE;-33.75;151.125;Abri;-12.5;10;1\n"
        "W;SOMMET;0.000001;-0.000001;;;178;2\n";
    const Transfers waypoints = {&GpsControl::getWaypts, &GpsControl::SendWaypts};
    for (const std::string type :
         {"D100", "D101", "D102", "D103", "D104", "D105", "D107", "D108", "D109", "D110"}) {
        goRound("A100 " + type, data, waypoints);
    }
    // Their altitude has two bytes, and gets the lower two of the four of a single.
    for (const std::string type : {"D150", "D151", "D152", "D155"}) {
        goRound("A100 " + type, data, waypoints,
                {{";1042;", ";16384;"}, {";65523;", ";62208;"}, {";32767;", ";65024;"}});
    }
}

TEST(RoundTrip, RoutesOfEveryType) {
    const std::string data =
        "R;3;TOUR DU LAC\nW;LAC;45.5;-90.25;;1042;18;0\nL;RteLink LAC\nW;ABRI;-33.75;151.125\n"
        "R;7;RETOUR\nW;ABRI;-33.75;151.125\nL;RteLink ABRI\nW;LAC;45.5;-90.25;;1042;18;0\n";
    const Transfers routes = {&GpsControl::GetRoutes, &GpsControl::SendRoutes};
    for (const std::string tags :
         {"A200 D201 D100", "A200 D201 D103", "A200 D202 D108", "A201 D202 D108 D210",
          "A201 D202 D105 D210", "A201 D202 D106 D210"}) {
        goRound("A100 D108 " + tags, data, routes);
    }
    // Sent as a text, of which the unit takes the first letter, "R", as the number.
    goRound("A100 D108 A200 D200 D100", data, routes,
            {{"R;3;ROUTE 3", "R;82;ROUTE 82"}, {"R;7;ROUTE 7", "R;82;ROUTE 82"}});
}

// But for D303 and D304, which are received only.
TEST(RoundTrip, TracksOfEveryType) {
    const std::string data =
        "N;Montenvers\nT;45.5;-90.25;38912.25;1042;1\nT;45.625;-90.25;38912.5;1043;0\n"
        "T;45.75;-90.25;38912.75;;1\nN;Retour\nT;-33.75;151.125;38913;0;1\n";
    for (const std::string tags : {"A300 D300", "A300 D301", "A301 D310 D300", "A301 D310 D301",
                                   "A301 D311 D301", "A301 D312 D302"}) {
        goRound(tags, data, {&GpsControl::getTracks, &GpsControl::SendTraces});
    }
}

}  // namespace
}  // namespace marlune::receivers::garmin
