// With a virtual Garmin receiver on COM3 that stops in the middle of its third waypoint.
#include <gtest/gtest.h>

#include "Control.h"

namespace marlune {
namespace {

constexpr wchar_t kKey[] = L"Software\\Marlune";

TEST(CutGarminTest, TheHostComesBackAfterItsPatience) {
    constexpr DWORD kSeconds = 3;
    RegSetKeyValueW(HKEY_CURRENT_USER, kKey, L"Patience", REG_DWORD, &kSeconds, sizeof kSeconds);
    Control control;
    RegDeleteKeyW(HKEY_CURRENT_USER, kKey);
    Record record(control);
    ASSERT_EQ(control.connect().value.text(), "bool true");
    record.lines.clear();

    const ULONGLONG start = GetTickCount64();
    control.call(L"getWaypts");
    const ULONGLONG waited = GetTickCount64() - start;
    RecordProperty("milliseconds", static_cast<int>(waited));
    EXPECT_GE(waited, 1000U * kSeconds);
    EXPECT_EQ(record.count("WayptData("), 2);
    EXPECT_EQ(record.lines.back(), "EndDownload(W)");

    // What the receiver said once it says again, whole.
    record.lines.clear();
    control.call(L"getWaypts");
    EXPECT_GT(record.count("WayptData("), 2);
}

}  // namespace
}  // namespace marlune
