#include <gmock/gmock.h>

#include <stdexcept>

#include "receivers/garmin/Abilities.h"
#include "receivers/garmin/Units.h"

namespace marlune::receivers::garmin {
namespace {

using testing::HasSubstr;

TEST(Units, TheTableDecidesForThoseThatAnnounceNothing) {
    EXPECT_EQ(tableTags(77, 361),
              "L001 A010 A100 D103 A200 D201 D103 A300 D300 A400 D403 A500 D501 A600 D600 A700 "
              "D700");
    EXPECT_EQ(tableTags(990, 100),
              "L001 A010 A100 D109 A201 D202 D109 A301 D310 A400 D109 A500 D501 A600 D600 A700 "
              "D700");
    EXPECT_EQ(tableTags(7, 1000), tableTags(990, 100)) << "no row for that version";
}

TEST(Abilities, AreReadInTheProtocolsOrder) {
    const Abilities street = abilitiesOf(
        "P000 L001 A010 A100 D105 A201 D202 D106 D210 A301 D310 D301 A600 D600 A800 D800");
    EXPECT_EQ(street.waypoint, "D105");
    EXPECT_EQ(street.routePoint, "D106");
    EXPECT_EQ(street.routeLink, "D210");
    EXPECT_EQ(street.trackHeader, "D310");
    EXPECT_EQ(street.trackPoint, "D301");
    EXPECT_TRUE(street.time && street.pvt);
    EXPECT_FALSE(street.position || street.almanac);
    EXPECT_EQ(street.proximity, "");
    const Abilities old = abilitiesOf("A200 D200 D100 A300 D300 A400 D400");
    EXPECT_EQ(old.routeLink + old.trackHeader + old.waypoint, "");
    EXPECT_EQ(old.proximity, "D400");
    EXPECT_EQ(abilitiesOf(tableTags(990, 100)).trackPoint, "D301") << "the table names none";
}

TEST(Abilities, ImpossibleTagsAreNamed) {
    const std::vector<std::pair<const char*, const char*>> cases = {
        {"A100", "A100 needs the tag of its waypoint type"},
        {"A100 A200", "A100 needs the tag"},
        {"A100 D200", "D200 is no waypoint type"},
        {"A100 D153", "D153 is no waypoint type"},
        {"A201 D202 D108 D108", "D108 is no route link type"},
        {"A301 D300", "D300 is no track header type"},
        {"a100 D100", "\"a100\" is no tag"},
        {"A1000", "\"A1000\" is no tag"},
        {"A10X", "\"A10X\" is no tag"},
    };
    for (const auto& [tags, fault] : cases) {
        try {
            abilitiesOf(tags);
            ADD_FAILURE() << tags << " was accepted";
        } catch (const std::invalid_argument& error) {
            EXPECT_THAT(error.what(), HasSubstr(fault));
        }
    }
}

TEST(Units, AreChosenByNameOrDescribed) {
    ReceiverOptions options;
    EXPECT_EQ(chooseUnit(options).name, garminUnits().front().name);
    options.unit = "gps45";
    EXPECT_EQ(chooseUnit(options).description, "GPS 45 Software 2.42");
    EXPECT_FALSE(chooseUnit(options).announces);
    options.productId = 31;
    EXPECT_THROW(chooseUnit(options), std::invalid_argument) << "named and described";
    options.unit.clear();
    options.version = 205;
    EXPECT_EQ(chooseUnit(options).tags, tableTags(31, 205));
    options.tags = "A100 D110";
    EXPECT_TRUE(chooseUnit(options).announces);
    options.productId = 65536;
    EXPECT_THROW(chooseUnit(options), std::invalid_argument);
    options = {};
    options.unit = "nonesuch";
    EXPECT_THROW(chooseUnit(options), std::invalid_argument);
}

}  // namespace
}  // namespace marlune::receivers::garmin
