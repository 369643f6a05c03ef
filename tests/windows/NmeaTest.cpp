// With a virtual receiver on COM3 that streams sentences.
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

}  // namespace
}  // namespace marlune
