// With the virtual Garmin receiver on COM3.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "Control.h"
#include "base/WideText_windows.h"

namespace marlune {
namespace {

using testing::ElementsAre;
using testing::StartsWith;

class GarminTest : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_EQ(control_.connect().value.text(), "bool true");
        record_.lines.clear();
    }

    Control control_;
    Record record_{control_};
};

TEST_F(GarminTest, IsIdentified) {
    EXPECT_THAT(control_.get(L"getIdent").value.text(),
                StartsWith("text Marlune Version 1.0.0 -  GPSId: 197 Version: 2.62 - MAP 162"));
    EXPECT_THAT(control_.get(L"getProtocoles").value.text(), testing::HasSubstr("D108"));
}

TEST_F(GarminTest, WaypointsComeAsEvents) {
    EXPECT_EQ(control_.call(L"getWaypts").value.text(), "bool false") << "the events tell";
    const auto count = static_cast<std::ptrdiff_t>(record_.records("WayptData").size());
    ASSERT_GT(count, 2);
    EXPECT_THAT(record_.lines.front(), StartsWith("StartDownload(W, " + std::to_string(count)));
    EXPECT_EQ(record_.lines.back(), "EndDownload(W)");
    EXPECT_THAT(record_.lines[1], testing::MatchesRegex("WayptData\\(1, W;.*, D\\)"));
    EXPECT_EQ(record_.count("WayptData"), count);
}

TEST_F(GarminTest, RecordsOfEveryKindComeAsEvents) {
    const struct {
        const wchar_t* member;
        std::vector<std::string> events;
    } cases[] = {
        {L"getTracks", {"StartDownload(T, ", "TrackHeader(1, N;", "TrackData(2, T;"}},
        {L"GetRoutes",
         {"StartDownload(R, ", "RouteHeader(1, R;", "RouteData(2, W;", "RouteLink(3, L;"}},
        {L"getProximites", {"StartDownload(P, ", "ProxData(1, W;"}},
    };
    for (const auto& [member, events] : cases) {
        record_.lines.clear();
        control_.call(member);
        for (std::size_t i = 0; i < events.size(); ++i) {
            ASSERT_GT(record_.lines.size(), i);
            EXPECT_THAT(record_.lines[i], StartsWith(events[i]));
        }
        EXPECT_THAT(record_.lines.back(), StartsWith("EndDownload("));
    }
}

TEST_F(GarminTest, PositionsComeUntilTheHostStops) {
    record_.when("PvtData", 2, [&] { control_.call(L"StopPvtData"); });
    control_.call(L"StartPvtData");
    ASSERT_GE(record_.lines.size(), 4U);
    EXPECT_THAT(record_.lines[0], StartsWith("Startpvt("));
    EXPECT_THAT(record_.lines[1], StartsWith("PvtData("));
    EXPECT_THAT(record_.lines, testing::Contains("EndPvt()"));
}

TEST_F(GarminTest, WhatIsSentComesBack) {
    const std::wstring path = buildFile(L"tests\\windows\\Repères.txt");
    const std::vector<std::string> sent = {"W;ESSAI1;48.5;2.25;La maison;120;18;0",
                                           "W;ÉCOLE;-48.6;-2.35;près du pré;99;18;0"};
    std::ofstream file(std::filesystem::path(path), std::ios::binary);
    file << "\xEF\xBB\xBF";  // the mark of a file in UTF-8
    for (const std::string& line : sent) {
        file << line << "\r\n";
    }
    file.close();
    control_.call(L"SendWaypts", {fromWide(path).c_str()});
    EXPECT_THAT(record_.lines,
                ElementsAre(StartsWith("StartUpload(W, 2, "), "WayptData(1, " + sent[0] + ", U)",
                            "WayptData(2, " + sent[1] + ", U)", "EndUpload(W)"));
    record_.lines.clear();
    control_.call(L"getWaypts");
    EXPECT_THAT(record_.records("WayptData"), testing::IsSupersetOf(sent));
}

TEST_F(GarminTest, MembersCanBeCalledInsideHandlers) {
    std::string identity;
    record_.when("WayptData", 2, [&] {
        identity = control_.get(L"getIdent").value.text();
        EXPECT_EQ(control_.call(L"StopTransfert").value.text(), "empty");
    });
    control_.call(L"getWaypts");
    EXPECT_THAT(identity, StartsWith("text Marlune Version"));
    EXPECT_LE(record_.count("WayptData"), 3) << "the record in hand, and one on its way";
    EXPECT_EQ(record_.lines.back(), "EndDownload(W)");
}

TEST_F(GarminTest, ADownloadInsideADownloadLeavesTheControlUsable) {
    record_.when("WayptData", 1, [&] { control_.call(L"gpsDisconnect"); });
    control_.call(L"getWaypts");
    EXPECT_EQ(record_.count("WayptData"), 1);
    EXPECT_EQ(record_.lines.back(), "EndDownload(W)");
    EXPECT_EQ(control_.connect().value.text(), "bool true");
    record_.lines.clear();
    control_.call(L"getWaypts");
    EXPECT_GT(record_.count("WayptData"), 2);
}

TEST_F(GarminTest, TheLastReferenceMayGoInsideAHandler) {
    record_.when("WayptData", 1, [&] {
        record_.sink().disconnect();
        control_.release();
    });
    IDispatch* const raw = control_.dispatch();
    DISPPARAMS none{};
    // A caller that holds no reference of its own, as script engines do.
    EXPECT_HRESULT_SUCCEEDED(raw->Invoke(8, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &none,
                                         nullptr, nullptr, nullptr));
    EXPECT_EQ(record_.count("WayptData"), 1);
    Control next;
    EXPECT_EQ(next.connect().value.text(), "bool true") << "the port is free again";
}

TEST_F(GarminTest, EverySinkHearsEveryEventWhileItIsConnected) {
    EventSink* second = nullptr;
    int heard = 0;
    EventSink late([&](const std::wstring&, DISPPARAMS&) {
        if (++heard == 2) {
            second->disconnect();
        }
    });
    second = &late;
    ASSERT_HRESULT_SUCCEEDED(late.connect(control_.dispatch()));
    control_.call(L"getWaypts");
    EXPECT_EQ(heard, 2);
    EXPECT_EQ(record_.lines.back(), "EndDownload(W)");
}

TEST_F(GarminTest, FrozenEventsAreLost) {
    const auto control = control_.as<IOleControl>();
    control->FreezeEvents(TRUE);
    control_.call(L"getWaypts");
    EXPECT_TRUE(record_.lines.empty());
    control->FreezeEvents(FALSE);
    control_.call(L"getWaypts");
    EXPECT_FALSE(record_.lines.empty());
}

TEST_F(GarminTest, ALostReferenceClosesTheConnection) {
    record_.sink().disconnect();
    control_.release();
    Control next;
    EXPECT_EQ(next.connect().value.text(), "bool true");
}

}  // namespace
}  // namespace marlune
