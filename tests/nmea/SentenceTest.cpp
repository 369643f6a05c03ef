// Checksums, coordinate texts and the fields of sentences.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "base/RunTimeError.h"
#include "nmea/Geo.h"
#include "nmea/NmeaPacket.h"
#include "nmea/Sentence.h"

namespace marlune {
namespace {

std::string checksum(std::string_view text) {
    NmeaPacket packet;
    packet.SetAttributes(text);
    return packet.Signer();
}

TEST(NmeaPacket, SignsWhatStandsBetweenTheFirstAndTheLastCharacter) {
    const std::vector<std::pair<std::string, std::string>> cases = {
        {"$PMGNCMD,TRACK,2*", "23"},
        {"$AK*", "0A"},
        {"$\xE9*", "E9"},
        {"$ABx", "03"},
        {"", "00"},
        {"$", "00"},
        {"$*", "00"},
    };
    for (const auto& [text, expected] : cases) {
        EXPECT_EQ(checksum(text), expected) << text;
    }
}

TEST(Geo, WritesDegreesAndMinutes) {
    const std::vector<std::tuple<double, double, const char*>> cases = {
        {48.1173, 11.0 + 31.0 / 60, "4807.038,N,01131.000,E"},
        {0, 0, "0000.000,S,00000.000,W"},
        {-33.5, 151.25, "3330.000,S,15115.000,E"},
        {59.9996 / 60, -59.9996 / 60, "0060.000,N,00060.000,W"},
        {1e-9, -1e-9, "0000.000,N,00000.000,W"},
        {123.5, -1234.5, "12330.000,N,123430.000,W"},
    };
    for (const auto& [latitude, longitude, text] : cases) {
        Geo geo;
        geo.Position({latitude, longitude});
        EXPECT_EQ(geo.DMM(), text);
    }
}

TEST(Geo, HoldsSixteenBitsOfDegrees) {
    Geo geo;
    for (const double impossible : {32768.0, -1e300, std::numeric_limits<double>::quiet_NaN()}) {
        geo.Position({impossible, 0});
        EXPECT_THROW((void)geo.DMM(), RunTimeError);
    }
}

TEST(UpperCase, KnowsTheAccentedLettersOfTheWire) {
    EXPECT_EQ(upperCase("az\xE9\xFE\xF7\x9C\xFF*1"), "AZ\xC9\xDE\xF7\x8C\x9F*1");
}

}  // namespace
}  // namespace marlune
