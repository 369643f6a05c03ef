#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <string>
#include <vector>

#include "garmin/values/DegreeMinuteText.h"
#include "garmin/values/ErrorOf.h"
#include "garmin/values/Nombre.h"
#include "garmin/values/NumberText.h"
#include "garmin/values/Semicircles.h"

namespace marlune {
namespace {

using testing::ElementsAre;

TEST(Nombre, LaysNumbersLowestByteFirst) {
    EXPECT_THAT(Nombre::InttoBytes(-2), ElementsAre(0xFE, 0xFF));
    EXPECT_THAT(Nombre::LongToBytes(1), ElementsAre(1, 0, 0, 0));
    EXPECT_THAT(Nombre::LongToBytes(std::numeric_limits<std::int32_t>::min()),
                ElementsAre(0, 0, 0, 0x80));
    EXPECT_THAT(Nombre::FloattoBytes(152.0F), ElementsAre(0, 0, 0x18, 0x43));
    EXPECT_THAT(Nombre::DoubletoBytes(-0.25), ElementsAre(0, 0, 0, 0, 0, 0, 0xD0, 0xBF));
}

TEST(Semicircles, TurnIntoDegreesByTheLargeFactor) {
    EXPECT_EQ(degreesFromSemicircles(0), 0.0);
    EXPECT_LT(degreesFromSemicircles(0x7FFFFFFF), 180.0);
    EXPECT_EQ(degreesFromSemicircles(std::numeric_limits<std::int32_t>::min()),
              -180.00000000000009);
    EXPECT_EQ(degreesFromSemicircles(1), 8.38190317153931e-8);
}

TEST(Semicircles, AreTruncatedTowardsZero) {
    EXPECT_EQ(semicirclesFromDegrees(45), 536870911) << "one short";
    EXPECT_EQ(semicirclesFromDegrees(-45), -536870911);
    EXPECT_EQ(semicirclesFromDegrees(-0.0000001), -1);
    EXPECT_EQ(semicirclesFromDegrees(-0.00000008), 0);
    EXPECT_EQ(semicirclesFromDegrees(180), 2147483647);
    for (const double impossible : {180.1, -181.0, 1e300, HUGE_VAL, std::nan("")}) {
        EXPECT_EQ(errorOf([&] { (void)semicirclesFromDegrees(impossible); }),
                  RunTimeError::overflow)
            << impossible;
    }
}

TEST(NumberText, IsTheShortestWithoutExponent) {
    const std::vector<std::pair<double, std::string>> cases = {
        {-0.0, "0"},
        {0.1, "0,1"},
        {1e-7, "0,0000001"},
        {1e15, "1000000000000000"},
        {1.0 / 3, "0,3333333333333333"},
        {HUGE_VAL, "0"},
        {std::nan(""), "0"},
    };
    for (const auto& [value, text] : cases) {
        EXPECT_EQ(numberText(value, ','), text);
    }
    EXPECT_EQ(numberText(0.1F, '.'), "0.1") << "a single keeps to its own digits";
    EXPECT_EQ(numberText(5e-324, '.').size(), 326U);
    EXPECT_EQ(readNumber(numberText(1.7976931348623157e308, '.')), 1.7976931348623157e308);
}

// splitmix64.
std::uint64_t nextRandom(std::uint64_t& state) {
    std::uint64_t z = state += 0x9E3779B97F4A7C15;
    z = (z ^ (z >> 30U)) * 0xBF58476D1CE4E5B9;
    z = (z ^ (z >> 27U)) * 0x94D049BB133111EB;
    return z ^ (z >> 31U);
}

std::string randomText(std::uint64_t kind, std::uint64_t bits) {
    const auto low = static_cast<std::uint32_t>(bits);
    const auto single = std::bit_cast<float>(low);
    const double degrees = degreesFromSemicircles(static_cast<std::int32_t>(low));
    std::string text;
    switch (kind) {
        case 0:
            return numberText(std::bit_cast<double>(bits), '.');
        case 1:
            return numberText(single, '.');
        case 2:
            return numberText(degrees, '.');
        case 3:
            appendRounded(text, degrees, 6, '.');
            return text;
        case 4:
            appendRounded(text, single, 0, '.');
            return text;
        case 5:
            return numberText(32873 + (low >> 1U) / 86400.0, '.');
        case 6:
            appendRounded(text, std::bit_cast<double>(bits), 6, '.');
            return text;
        default:
            return numberText(
                static_cast<double>(bits >> 14U) / std::pow(10.0, static_cast<int>(bits % 14)),
                '.');
    }
}

// The checksum is what number_texts.py beside this file prints.
TEST(NumberText, IsTheShortestOfAMillion) {
    std::uint64_t state = 20070615;
    std::uint64_t checksum = 0xCBF29CE484222325;
    for (std::uint64_t i = 0; i < 1'000'000; ++i) {
        for (const char c : randomText(i % 8, nextRandom(state)) + '\n') {
            checksum = (checksum ^ static_cast<std::uint8_t>(c)) * 0x100000001B3;
        }
    }
    EXPECT_EQ(checksum, 0x38D5DB4E9D9ECEAE);
}

TEST(NumberText, ReadsUpToWhatCannotContinue) {
    const std::vector<std::tuple<std::string, double, std::size_t>> cases = {
        {"", 0, 0},
        {"abc", 0, 0},
        {".", 0, 0},
        {"-.e5", 0, 0},
        {"45.5", 45.5, 4},
        {"  -1.25;", -1.25, 7},
        {".5.5", 0.5, 2},
        {"5.", 5, 2},
        {"45,5", 45, 2},
        {"1e3", 1000, 3},
        {"1E-2x", 0.01, 4},
        {"1e+", 1, 1},
        {"--1", 0, 0},
        {"inf", 0, 0},
        {"1 000", 1, 1},
        {"- 5", 0, 0},
        {"\t7", 7, 2},
        {"1e400", HUGE_VAL, 5},
        {"1e-400", 0, 6},
        {"0.0001e-99999999999999999999", 0, 28},
        {"0e99999999999999999999", 0, 22},
    };
    for (const auto& [text, value, length] : cases) {
        const LeadingNumber read = leadingNumber(text);
        EXPECT_EQ(read.value, value) << text;
        EXPECT_EQ(read.length, length) << text;
    }
    EXPECT_EQ(readNumber(std::string(1'000'000, '9') + "e-999999"), 10.0)
        << "digits and exponent that take each other back";
    EXPECT_EQ(readNumber("0." + std::string(400, '0') + "1"), 0.0);
    EXPECT_EQ(readNumber("1" + std::string(400, '0')), HUGE_VAL);
}

TEST(Rounding, GoesToTheEvenNeighbour) {
    const std::vector<std::tuple<double, int, double>> cases = {
        {0.5, 0, 0},
        {2.5, 0, 2},
        {-2.5, 0, -2},
        {48.1172975, 6, 48.117298},
        {0.0000005, 6, 0},
        {0.0000015, 6, 0.000002},
        {-180.00000000000009, 6, -180},
        {1e300, 6, 1e300},
        {1e15 + 0.5, 0, 1e15},
    };
    for (const auto& [value, decimals, rounded] : cases) {
        EXPECT_EQ(roundHalfEven(value, decimals), rounded) << value;
    }
    EXPECT_EQ(roundTo<std::int16_t>(32767.5 - 1), 32766);
    EXPECT_EQ(roundTo<std::uint8_t>(-0.5), 0);
    for (const double beyond : {255.5, -0.6, std::nan(""), 1e300}) {
        EXPECT_EQ(errorOf([&] { (void)roundTo<std::uint8_t>(beyond); }), RunTimeError::overflow);
    }
    EXPECT_EQ(errorOf([] { (void)toSingle(3.5e38); }), RunTimeError::overflow);
}

TEST(DegreeMinuteText, TruncatesTheDegrees) {
    const std::vector<std::pair<double, std::string>> cases = {
        {45.5, "45° 30"},        {-0.25, "0° 15"}, {-1.25, "-1° 15"}, {48.1173, "48° 7,038"},
        {1.9999999999, "1° 60"}, {0, "0° 0"},      {1e9, ""},         {std::nan(""), ""},
    };
    for (const auto& [degrees, text] : cases) {
        EXPECT_EQ(degreeMinuteText(degrees, ','), text);
    }
}

}  // namespace
}  // namespace marlune
