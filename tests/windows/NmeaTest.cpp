// With virtual receivers: one on COM3 that streams sentences, a Magellan on COM4.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Control.h"

namespace marlune {
namespace {

TEST(NmeaTest, SentencesComeUntilTheHostStops) {
    Control control;
    Record record(control);
    control.put(L"setNumPort", 3);
    // Not raised by the control: a message of the program's own, as from a button.
    record.when("PhraseNMEA", 1, [] { PostThreadMessageW(GetCurrentThreadId(), WM_APP, 0, 0); });
    record.when("PhraseNMEA", 3, [&] { control.call(L"StopNMEA"); });
    EXPECT_EQ(control.call(L"StartNMEA", {"$gpgga", 5}).value.text(), "bool true");
    EXPECT_THAT(record.lines, testing::ElementsAre(
                                  testing::StartsWith("PhraseNMEA($GPGGA,"), testing::_, testing::_,
                                  "[information] Transfert terminé.", "EndDownload(NMEA_END)"));
    EXPECT_THAT(record.lines[0], testing::HasSubstr("\r\n"));
    MSG left{};
    EXPECT_FALSE(PeekMessageW(&left, nullptr, WM_APP, WM_APP, PM_NOREMOVE))
        << "the host's messages are processed meanwhile";
}

TEST(NmeaTest, StatusTextsComeAsEvents) {
    Control control;
    Record record(control);
    control.put(L"setNumPort", 4);
    control.put(L"SetGpsMark", "MGN");
    ASSERT_EQ(control.call(L"gpsConnect").value.text(), "bool true");
    control.call(L"getWaypts");
    EXPECT_THAT(record.lines, testing::Contains(testing::StartsWith("WayptData(100, W;")));
    EXPECT_THAT(record.lines, testing::Contains("GpsInfo(Download en cours...1)"));
}

}  // namespace
}  // namespace marlune
