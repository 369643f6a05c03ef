#include <gtest/gtest.h>

#include <sstream>

#include "garmin/GpsCapability.h"
#include "resources/ProductTable.h"
#include "support/Dialogue.h"
#include "support/FakeHost.h"

namespace marlune {
namespace {

// The table of units as the public document groups it: products whose rows agree ("36/0-299" is
// product 36, versions 0.00 to 2.99), and their tags, "-" where they lack the protocol.
constexpr std::pair<const char*, const char*> kGroups[] = {
    {"7", "L001 A010 A100 D100 A200 D200 D100 - - - - A500 D500"},
    {"13 18 23 24 25 35 42", "L001 A010 A100 D100 A200 D200 D100 A300 D300 A400 D400 A500 D500"},
    {"14", "L001 A010 A100 D100 A200 D200 D100 - - A400 D400 A500 D500"},
    {"15", "L001 A010 A100 D151 A200 D200 D151 - - A400 D151 A500 D500"},
    {"20 33 34 52", "L002 A011 A100 D150 A200 D201 D150 - - A400 D450 A500 D550"},
    {"22 36/0-299", "L001 A010 A100 D152 A200 D200 D152 A300 D300 A400 D152 A500 D500"},
    {"29/0-399 44", "L001 A010 A100 D101 A200 D201 D101 A300 D300 A400 D101 A500 D500"},
    {"29/400-999", "L001 A010 A100 D102 A200 D201 D102 A300 D300 A400 D102 A500 D500"},
    {"31 41 47 55 56 59 61 62 74", "L001 A010 A100 D100 A200 D201 D100 A300 D300 - - A500 D500"},
    {"36/300-999", "L001 A010 A100 D152 A200 D200 D152 A300 D300 - - A500 D500"},
    {"39", "L001 A010 A100 D151 A200 D201 D151 A300 D300 - - A500 D500"},
    {"45", "L001 A010 A100 D152 A200 D201 D152 A300 D300 - - A500 D500"},
    {"48", "L001 A010 A100 D154 A200 D201 D154 A300 D300 - - A500 D501"},
    {"49 76 88", "L001 A010 A100 D102 A200 D201 D102 A300 D300 A400 D102 A500 D501"},
    {"50 53 112", "L001 A010 A100 D152 A200 D201 D152 A300 D300 - - A500 D501"},
    {"64 98", "L002 A011 A100 D150 A200 D201 D150 - - A400 D450 A500 D551"},
    {"71", "L001 A010 A100 D155 A200 D201 D155 A300 D300 - - A500 D501"},
    {"72", "L001 A010 A100 D104 A200 D201 D104 A300 D300 - - A500 D501"},
    {"73 77/350-360 97", "L001 A010 A100 D103 A200 D201 D103 A300 D300 - - A500 D501"},
    {"77/0-300", "L001 A010 A100 D100 A200 D201 D100 A300 D300 A400 D400 A500 D501"},
    {"77/301-349 77/361-999 87 95 96 100 105 106",
     "L001 A010 A100 D103 A200 D201 D103 A300 D300 A400 D403 A500 D501"},
    {"999", "L001 A010 A100 D109 A201 D202 D109 A301 D310 A400 D109 A500 D501"},
};
std::string expectedTags(std::istringstream tags) {
    std::string all = "P000";
    for (std::string tag; tags >> tag;) {
        all += tag == "-" ? "" : " " + tag;
    }
    return all + " A600 D600 A700 D700";
}

TEST(ProductTable, GivesEveryUnitItsTagsInEveryVersion) {
    FakeHost host;
    DebugTrace trace(host.documentsFolder());
    int rows = 0;
    for (const auto& [products, tags] : kGroups) {
        std::istringstream words(products);
        for (std::string product; words >> product; ++rows) {
            int id = 0;
            int low = 0;
            int high = 999;
            ASSERT_GE(std::sscanf(product.c_str(), "%d/%d-%d", &id, &low, &high), 1);
            for (const int version : {low, (low + high) / 2, high}) {
                GpsCapability capability;
                ASSERT_TRUE(capability.GetCapability(static_cast<std::uint16_t>(id),
                                                     static_cast<std::uint16_t>(version), trace));
                EXPECT_EQ(capability.getProtocoles(), expectedTags(std::istringstream(tags)))
                    << product << " at " << version;
                EXPECT_EQ(capability.physicalProtocol, "P000");
            }
        }
    }
    EXPECT_EQ(productRows().size(), static_cast<std::size_t>(rows))
        << "each stands where it is found";
}

TEST(GpsCapability, UnknownUnitsAndVersionsTakeTheGenericRow) {
    FakeHost host;
    DebugTrace trace(host.documentsFolder());
    for (const auto& [id, version] : {std::pair{1, 100}, {65535, 250}, {36, 1000}, {999, 65535}}) {
        GpsCapability capability;
        ASSERT_TRUE(capability.GetCapability(static_cast<std::uint16_t>(id),
                                             static_cast<std::uint16_t>(version), trace));
        capability.Decoder();
        EXPECT_EQ(capability.waypointType, "D109") << id;
        EXPECT_EQ(capability.trackHeaderType, "D310");
        EXPECT_EQ(capability.trackPointType, "") << "the row names a header where points stand";
        EXPECT_EQ(capability.proximityType, "") << "its proximity type is a waypoint type";
    }
}

TEST(GpsCapability, DecodesAProtocolArray) {
    GpsCapability capability;
    Bytes array = protocolArray("P000 L001 A010 A100 D100 A200 D202 D108 D210 D106 X007 A302 A301");
    array.push_back('D');  // an entry that is cut off
    capability.takeProtocolArray(array);
    capability.Decoder();
    EXPECT_EQ(capability.getProtocoles(),
              "P000 L001 A010 A100 D100 A200 D202 D108 D210 D106 X007 A302 A301");
    EXPECT_EQ(capability.waypointType, "D108") << "a later tag of the same role replaces it";
    EXPECT_EQ(capability.routeHeaderType, "D202");
    EXPECT_EQ(capability.routeLinkType, "D210");
    EXPECT_EQ(capability.trackProtocol, "A301");
    EXPECT_EQ(capability.physicalProtocol, "") << "only the product table knows it";
    EXPECT_EQ(capability.d106, "D106");
    EXPECT_EQ(capability.routePointType(), "D106");
}

TEST(GpsCapability, WritesNumbersInThreeDigitsOrMore) {
    GpsCapability capability;
    capability.takeProtocolArray(Bytes{'A', 7, 0, 'D', 0xFF, 0xFF, 0xC9, 1, 0});
    EXPECT_EQ(capability.getProtocoles(), "A007 D65535 É001");
}

}  // namespace
}  // namespace marlune
