#include <gtest/gtest.h>

#include "control/Rehearsal.h"

namespace marlune {
namespace {

WaypointRecord hut() {
    WaypointRecord record;
    record.name = "Cabane du Lac";
    record.comment = "open in summer";
    record.latitude = 46.25;
    record.longitude = 6.5;
    record.altitude = 1208.4F;
    record.depth = 3.5F;
    record.time = 1.0e9;
    record.symbol = 150;
    return record;
}

struct Unit {
    const char* code;
    const char* protocols;
    const char* name;     // what it keeps of the hut's
    const char* comment;  // likewise
    bool symbol;
    bool altitude;
};

class KeptWaypoint : public testing::TestWithParam<Unit> {};

TEST_P(KeptWaypoint, IsWhatTheTypeHasRoomFor) {
    const auto kept = Rehearsal(GetParam().code, GetParam().protocols).waypoint(hut());
    ASSERT_TRUE(kept);
    EXPECT_EQ(kept->name, GetParam().name);
    EXPECT_EQ(kept->comment, GetParam().comment);
    const Losses losses = lossesOf(hut(), *kept);
    EXPECT_EQ(losses.name, hut().name != GetParam().name);
    EXPECT_EQ(losses.comment, hut().comment != GetParam().comment);
    EXPECT_EQ(losses.symbol, !GetParam().symbol);
    EXPECT_EQ(losses.altitude, !GetParam().altitude);
    EXPECT_TRUE(losses.time && losses.more) << "upload files have no field for either";
}

INSTANTIATE_TEST_SUITE_P(
    OfEveryFamily, KeptWaypoint,
    testing::Values(Unit{"GRM", "A100 D100 A200", "Cabane", "open in summer", false, false},
                    Unit{"GRM", "A100 D103", "Cabane", "open in summer", true, false},
                    Unit{"GRM_USB", "A100 D108", "Cabane du Lac", "open in summer", true, true},
                    Unit{"GRM", "A100 D109", "Cabane-du-Lac", "open in summer", true, true},
                    Unit{"GRM_USB_GPX", "", "Cabane du Lac", "open in summer", true, true},
                    Unit{"MGN", "", "Cabane-du-Lac", "open in summer", false, true},
                    Unit{"MLR", "", "Cabane", "open in summer", false, false}));

TEST(Rehearsal, TellsWhatCannotBeSent) {
    WaypointRecord nowhere = hut();
    nowhere.latitude = 95;
    EXPECT_FALSE(Rehearsal("GRM", "A100 D108").waypoint(nowhere));
    // A type one byte too short for its own symbol.
    EXPECT_FALSE(Rehearsal("GRM", "A100 D154").waypoint(hut()));
    TrackRecord track;
    track.points.resize(1);
    EXPECT_FALSE(Rehearsal("GRM", "A301 D310 D303").track(track)) << "that type is never sent";
}

TEST(Rehearsal, KnowsTheKindsThatAReceiverTakes) {
    const Rehearsal waypointsOnly("GRM", "P000 L001 A100 D100");
    EXPECT_TRUE(waypointsOnly.takes(GpxKind::waypoints));
    EXPECT_FALSE(waypointsOnly.takes(GpxKind::tracks));
    EXPECT_FALSE(Rehearsal("MLR", "").takes(GpxKind::tracks));
    EXPECT_TRUE(Rehearsal("MGN", "").takes(GpxKind::tracks));
    EXPECT_FALSE(Rehearsal("NOBODY", "").takes(GpxKind::waypoints));
}

TrackRecord climb() {
    TrackRecord track;
    track.name = "Tour du Lac";
    for (int i = 0; i < 3; ++i) {
        TrackPointRecord point;
        point.latitude = 46 + i * 0.01;
        point.longitude = 6;
        point.time = 1.0e9 + i;
        point.altitude = 800.0F + static_cast<float>(i);
        point.temperature = 12.5F;
        track.points.push_back(point);
    }
    return track;
}

TEST(Rehearsal, TellsWhatATrackLoses) {
    const auto plain = Rehearsal("GRM", "A300 D300").track(climb());
    ASSERT_TRUE(plain);
    EXPECT_EQ(plain->points.size(), 3U);
    const Losses ofPlain = lossesOf(climb(), *plain);
    EXPECT_TRUE(ofPlain.name && ofPlain.altitude && ofPlain.more);
    EXPECT_FALSE(ofPlain.time);

    const auto full = Rehearsal("GRM", "A301 D310 D301").track(climb());
    ASSERT_TRUE(full);
    const Losses ofFull = lossesOf(climb(), *full);
    EXPECT_FALSE(ofFull.name || ofFull.altitude || ofFull.time);

    const auto magellan = Rehearsal("MGN", "").track(climb());
    ASSERT_TRUE(magellan);
    EXPECT_EQ(magellan->name, "TOUR DU LAC");
    EXPECT_TRUE(lossesOf(climb(), *magellan).time) << "its sentence has no date";
}

TEST(Rehearsal, TellsWhatARouteLoses) {
    RouteRecord route;
    route.number = 3;
    route.name = "A route of more than twenty letters";
    route.points.push_back({hut(), std::nullopt});
    const auto kept = Rehearsal("GRM", "A100 D108 A200 D201 D103").route(route);
    ASSERT_TRUE(kept);
    EXPECT_EQ(kept->name, "A route of more tha");
    EXPECT_TRUE(lossesOf(route, *kept).name);
    ASSERT_EQ(kept->points.size(), 1U);
}

}  // namespace
}  // namespace marlune
