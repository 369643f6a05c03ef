// With a virtual Garmin receiver on COM3 that speaks at the pace of its line and has a track of 78
// points, which take as long at 9600 baud as 39 at 4800: what the windows of the program get to do
// meanwhile.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <utility>
#include <vector>

#include "Control.h"
#include "marlune_com.h"

namespace marlune {
namespace {

constexpr UINT kEveryMilliseconds = 100;

// A window that wants to be painted at every tick of its timer, and counts what it gets.
class LiveWindow {
public:
    LiveWindow() {
        WNDCLASSW kind{};
        kind.lpfnWndProc = procedure;
        kind.hInstance = GetModuleHandleW(nullptr);
        kind.lpszClassName = L"MarluneLive";
        RegisterClassW(&kind);
        window_ = CreateWindowW(kind.lpszClassName, L"", WS_POPUP | WS_VISIBLE, 0, 0, 50, 50,
                                nullptr, nullptr, kind.hInstance, nullptr);
        SetWindowLongPtrW(window_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
        SetTimer(window_, 1, kEveryMilliseconds, nullptr);
    }
    LiveWindow(const LiveWindow&) = delete;
    LiveWindow& operator=(const LiveWindow&) = delete;
    ~LiveWindow() {
        SetWindowLongPtrW(window_, GWLP_USERDATA, 0);
        DestroyWindow(window_);
    }

    // As a key of the user's.
    void press() { PostMessageW(window_, WM_KEYDOWN, VK_RETURN, 0); }

    int ticks = 0;
    int paintings = 0;
    int keys = 0;
    std::function<void()> onTick = [] {};  // done once

private:
    static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM first, LPARAM second) {
        auto* const self = reinterpret_cast<LiveWindow*>(GetWindowLongPtrW(window, GWLP_USERDATA));
        if (self != nullptr && message == WM_TIMER) {
            ++self->ticks;
            InvalidateRect(window, nullptr, TRUE);
            std::exchange(self->onTick, [] {})();
        }
        if (self != nullptr) {
            self->paintings += message == WM_PAINT ? 1 : 0;
            self->keys += message == WM_KEYDOWN ? 1 : 0;
        }
        return DefWindowProcW(window, message, first, second);
    }

    HWND window_;
};

class SlowGarminTest : public testing::Test {
protected:
    static constexpr int kPoints = 78;

    void SetUp() override {
        ASSERT_EQ(control_.connect().value.text(), "bool true");
        record_.lines.clear();
    }
    [[nodiscard]] int points() const { return static_cast<int>(record_.count("TrackData(")); }

    Control control_;
    Record record_{control_};
};

TEST_F(SlowGarminTest, WindowsArePaintedAndGetTheirTimersButNoInput) {
    LiveWindow window;
    window.press();
    const ULONGLONG start = GetTickCount64();
    control_.call(L"getTracks");
    const auto duration = static_cast<int>(GetTickCount64() - start);
    RecordProperty("milliseconds", duration);
    RecordProperty("ticks", window.ticks);
    RecordProperty("paintings", window.paintings);
    EXPECT_EQ(points(), kPoints);
    // The line sets the pace of the download; a busy machine may swallow a part of the ticks.
    EXPECT_GT(window.ticks, duration / static_cast<int>(kEveryMilliseconds) / 4) << duration;
    EXPECT_GT(window.paintings, window.ticks / 4);
    EXPECT_EQ(window.keys, 0) << "input would let the user start another transfer";
}

TEST_F(SlowGarminTest, TheLineIsTakenWhileAWindowLives) {
    LiveWindow window;
    std::vector<HRESULT> answers;
    const auto gps = control_.as<_GpsControl>();
    window.onTick = [&] {
        VARIANT_BOOL result = VARIANT_FALSE;
        VARIANT empty{};
        BSTR text = nullptr;
        answers = {gps->getWaypts(&result), gps->gpsConnect(&result), gps->gpsDisconnect(&empty),
                   gps->get_getIdent(&text)};
    };
    control_.call(L"getTracks");
    EXPECT_THAT(answers, testing::SizeIs(4));
    EXPECT_THAT(answers, testing::Each(RPC_E_SERVERCALL_RETRYLATER));
    EXPECT_EQ(points(), kPoints) << "the transfer goes on undisturbed";
    EXPECT_THAT(control_.get(L"getIdent").value.text(), testing::HasSubstr("MAP 162"));
}

TEST_F(SlowGarminTest, ATimerMayEndTheTransfer) {
    LiveWindow window;
    window.onTick = [&] { EXPECT_HRESULT_SUCCEEDED(control_.call(L"StopTransfert").result); };
    control_.call(L"getTracks");
    EXPECT_LT(points(), kPoints);
    EXPECT_EQ(record_.lines.back(), "EndDownload(T)");
}

TEST_F(SlowGarminTest, ATimerMayLetTheControlGo) {
    LiveWindow window;
    IDispatch* const raw = control_.dispatch();
    window.onTick = [&] {
        record_.sink().disconnect();
        control_.release();
    };
    DISPPARAMS none{};
    EXPECT_HRESULT_SUCCEEDED(raw->Invoke(7, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &none,
                                         nullptr, nullptr, nullptr));
    EXPECT_LT(points(), kPoints);
    Control next;
    EXPECT_EQ(next.connect().value.text(), "bool true") << "the port is free again";
}

}  // namespace
}  // namespace marlune
