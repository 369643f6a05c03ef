#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <objsafe.h>

#include <array>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "Bitmap.h"
#include "Control.h"
#include "ControlSite.h"
#include "marlune_com.h"

namespace marlune {
namespace {

using Microsoft::WRL::ComPtr;

constexpr int kSize = 32;
constexpr std::uint32_t kPaper = 0x123456;

// The picture of the sources: 24 bits a pixel, from the bottom row up.
std::uint32_t sourcePixel(int x, int y) {
    static const std::vector<char> bytes = [] {
        std::ifstream file(std::filesystem::path(sourceFile(L"apps\\activex\\picture.bmp")),
                           std::ios::binary);
        return std::vector<char>{std::istreambuf_iterator<char>(file), {}};
    }();
    const std::size_t at = 54 + static_cast<std::size_t>(((kSize - 1 - y) * kSize + x) * 3);
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(bytes.at(at + i)); };
    return static_cast<std::uint32_t>(byte(2) << 16 | byte(1) << 8 | byte(0));
}

// The picture at (left, top), and nothing but paper around it.
void expectPictureAt(const Bitmap& bitmap, int left, int top, int width, int height) {
    int wrong = 0;
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const bool inside = x >= left && x < left + kSize && y >= top && y < top + kSize;
            const std::uint32_t wanted = inside ? sourcePixel(x - left, y - top) : kPaper;
            wrong += bitmap.pixel(x, y) != wanted ? 1 : 0;
        }
    }
    EXPECT_EQ(wrong, 0);
}

LRESULT CALLBACK paper(HWND window, UINT message, WPARAM first, LPARAM second) {
    if (message != WM_ERASEBKGND) {
        return DefWindowProcW(window, message, first, second);
    }
    RECT all{};
    GetClientRect(window, &all);
    const HBRUSH brush = CreateSolidBrush(RGB(kPaper >> 16, kPaper >> 8 & 0xFF, kPaper & 0xFF));
    FillRect(reinterpret_cast<HDC>(first), &all, brush);
    DeleteObject(brush);
    return 1;
}

class ContainerTest : public testing::Test {
protected:
    static constexpr RECT kPlace = {10, 20, 110, 100};  // larger than the picture

    void SetUp() override {
        WNDCLASSW kind{};
        kind.lpfnWndProc = paper;
        kind.hInstance = GetModuleHandleW(nullptr);
        kind.lpszClassName = L"MarlunePaper";
        RegisterClassW(&kind);
        form_ = CreateWindowW(kind.lpszClassName, L"", WS_POPUP | WS_VISIBLE, 0, 0, 200, 150,
                              nullptr, nullptr, kind.hInstance, nullptr);
        site_ = std::make_unique<ControlSite>(form_, kPlace);
        ASSERT_HRESULT_SUCCEEDED(site_->create(__uuidof(GpsControl)));
    }
    void TearDown() override {
        site_.reset();
        EXPECT_EQ(GetWindow(form_, GW_CHILD), nullptr) << "the control took its window along";
        DestroyWindow(form_);
    }
    template <class Interface>
    ComPtr<Interface> as() {
        ComPtr<Interface> other;
        site_->control()->QueryInterface(__uuidof(Interface),
                                         reinterpret_cast<void**>(other.GetAddressOf()));
        return other;
    }
    void expectPlace(const RECT& wanted) {
        const RECT place = site_->place();
        EXPECT_TRUE(EqualRect(&place, &wanted));
        RECT window{};
        HWND child = nullptr;
        EXPECT_HRESULT_SUCCEEDED(as<IOleInPlaceObject>()->GetWindow(&child));
        GetWindowRect(child, &window);
        MapWindowPoints(nullptr, form_, reinterpret_cast<POINT*>(&window), 2);
        EXPECT_TRUE(EqualRect(&window, &wanted));
    }

    HWND form_ = nullptr;
    std::unique_ptr<ControlSite> site_;
};

TEST_F(ContainerTest, ShowsAtThePicturesSizeInPlace) {
    expectPlace({10, 20, 10 + kSize, 20 + kSize});
    Bitmap bitmap(200, 150);
    bitmap.drawWindow(form_);
    expectPictureAt(bitmap, 10, 20, 200, 150);

    site_->setPlace({60, 5, 70, 9});
    expectPlace({60, 5, 60 + kSize, 5 + kSize});
}

TEST_F(ContainerTest, DrawsAtThePicturesSizeWhateverIsAsked) {
    Bitmap bitmap(100, 90);
    SendMessageW(form_, WM_ERASEBKGND, reinterpret_cast<WPARAM>(bitmap.context()), 0);
    const RECTL bounds = {7, 9, 95, 12};
    EXPECT_HRESULT_SUCCEEDED(as<IViewObject2>()->Draw(DVASPECT_CONTENT, -1, nullptr, nullptr,
                                                      nullptr, bitmap.context(), &bounds, nullptr,
                                                      nullptr, 0));
    expectPictureAt(bitmap, 7, 9, 100, 90);
}

TEST_F(ContainerTest, KeepsItsExtent) {
    SIZEL before{};
    SIZEL asked = {10000, 20000};
    SIZEL after{};
    EXPECT_HRESULT_SUCCEEDED(site_->control()->GetExtent(DVASPECT_CONTENT, &before));
    EXPECT_EQ(before.cx, MulDiv(kSize, 2540, 96));
    EXPECT_HRESULT_SUCCEEDED(site_->control()->SetExtent(DVASPECT_CONTENT, &asked));
    EXPECT_HRESULT_SUCCEEDED(as<IViewObject2>()->GetExtent(DVASPECT_CONTENT, -1, nullptr, &after));
    EXPECT_EQ(after.cx, before.cx);
    EXPECT_EQ(after.cy, before.cy);
    expectPlace({10, 20, 10 + kSize, 20 + kSize});
}

TEST_F(ContainerTest, GoesThroughItsVerbs) {
    IOleObject& control = *site_->control();
    const auto verb = [&](LONG which) {
        return control.DoVerb(which, nullptr, site_.get(), 0, form_, &kPlace);
    };
    HWND window = nullptr;
    ASSERT_HRESULT_SUCCEEDED(as<IOleInPlaceObject>()->GetWindow(&window));
    EXPECT_EQ(verb(OLEIVERB_UIACTIVATE), S_OK);
    EXPECT_EQ(verb(OLEIVERB_HIDE), S_OK);
    EXPECT_FALSE(IsWindowVisible(window));
    EXPECT_EQ(verb(OLEIVERB_SHOW), S_OK);
    EXPECT_TRUE(IsWindowVisible(window));
    EXPECT_EQ(verb(7), OLEOBJ_S_INVALIDVERB);
    EXPECT_EQ(as<IOleInPlaceObject>()->InPlaceDeactivate(), S_OK);
    EXPECT_FALSE(IsWindow(window));
    EXPECT_HRESULT_FAILED(as<IOleInPlaceObject>()->GetWindow(&window));
    EXPECT_EQ(verb(OLEIVERB_INPLACEACTIVATE), S_OK);
    expectPlace({10, 20, 10 + kSize, 20 + kSize});
}

TEST_F(ContainerTest, SavesAnEmptyState) {
    ComPtr<IStream> stream;
    ASSERT_HRESULT_SUCCEEDED(CreateStreamOnHGlobal(nullptr, TRUE, &stream));
    const auto state = as<IPersistStreamInit>();
    EXPECT_EQ(state->IsDirty(), S_FALSE);
    EXPECT_HRESULT_SUCCEEDED(state->Save(stream.Get(), TRUE));
    STATSTG size{};
    stream->Stat(&size, STATFLAG_NONAME);
    EXPECT_EQ(size.cbSize.QuadPart, 0U);
    EXPECT_HRESULT_SUCCEEDED(state->Load(stream.Get()));
    CLSID id{};
    EXPECT_HRESULT_SUCCEEDED(as<IPersistPropertyBag>()->GetClassID(&id));
    EXPECT_EQ(id, __uuidof(GpsControl));
}

TEST_F(ContainerTest, IsNotSafeForScriptsOfStrangers) {
    ComPtr<IObjectSafety> safety;
    ASSERT_HRESULT_SUCCEEDED(site_->control()->QueryInterface(
        IID_IObjectSafety, reinterpret_cast<void**>(safety.GetAddressOf())));
    DWORD supported = 0;
    DWORD enabled = 0;
    EXPECT_EQ(safety->GetInterfaceSafetyOptions(IID_IDispatch, &supported, &enabled), S_OK);
    EXPECT_EQ(supported, 0U);
    constexpr DWORD kCaller = INTERFACESAFE_FOR_UNTRUSTED_CALLER;
    EXPECT_EQ(safety->SetInterfaceSafetyOptions(IID_IDispatch, kCaller, kCaller), E_FAIL);
    constexpr DWORD kData = INTERFACESAFE_FOR_UNTRUSTED_DATA;
    EXPECT_EQ(safety->SetInterfaceSafetyOptions(IID_IPersistPropertyBag, kData, kData), S_OK);
}

TEST_F(ContainerTest, TellsItsTraitsAndItsEvents) {
    DWORD status = 0;
    EXPECT_HRESULT_SUCCEEDED(site_->control()->GetMiscStatus(DVASPECT_CONTENT, &status));
    EXPECT_EQ(status, static_cast<DWORD>(OLEMISC_RECOMPOSEONRESIZE | OLEMISC_CANTLINKINSIDE |
                                         OLEMISC_INSIDEOUT | OLEMISC_ACTIVATEWHENVISIBLE |
                                         OLEMISC_SETCLIENTSITEFIRST));
    GUID events{};
    EXPECT_HRESULT_SUCCEEDED(
        as<IProvideClassInfo2>()->GetGUID(GUIDKIND_DEFAULT_SOURCE_DISP_IID, &events));
    EXPECT_EQ(events, __uuidof(__GpsControl));
    LPOLESTR name = nullptr;
    EXPECT_HRESULT_SUCCEEDED(site_->control()->GetUserType(USERCLASSTYPE_FULL, &name));
    EXPECT_STREQ(name, L"Marlune GPS transfer control");
    CoTaskMemFree(name);
}

// What holds the control inside another object keeps one identity.
TEST(Aggregation, TheOuterObjectAnswersForAll) {
    class Outer : public IUnknown {
    public:
        HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** result) override {
            if (iid != __uuidof(IUnknown)) {
                return inner->QueryInterface(iid, result);
            }
            *result = this;
            AddRef();
            return S_OK;
        }
        ULONG STDMETHODCALLTYPE AddRef() override { return ++references; }
        ULONG STDMETHODCALLTYPE Release() override { return --references; }
        ULONG references = 1;
        ComPtr<IUnknown> inner;
    };
    Outer outer;
    EXPECT_EQ(
        CoCreateInstance(__uuidof(GpsControl), &outer, CLSCTX_INPROC_SERVER, __uuidof(IDispatch),
                         reinterpret_cast<void**>(outer.inner.GetAddressOf())),
        CLASS_E_NOAGGREGATION);
    ASSERT_HRESULT_SUCCEEDED(
        CoCreateInstance(__uuidof(GpsControl), &outer, CLSCTX_INPROC_SERVER, __uuidof(IUnknown),
                         reinterpret_cast<void**>(outer.inner.GetAddressOf())));
    {
        ComPtr<IOleObject> object;
        ASSERT_HRESULT_SUCCEEDED(outer.inner.As(&object));
        EXPECT_EQ(outer.references, 2U);
        ComPtr<IUnknown> whole;
        ASSERT_HRESULT_SUCCEEDED(object.As(&whole));
        EXPECT_EQ(whole.Get(), &outer);
    }
    EXPECT_EQ(outer.references, 1U);
}

}  // namespace
}  // namespace marlune
