#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <objsafe.h>
#include <olectl.h>

#include <array>
#include <cstring>
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

// The picture in that place, each of its pixels as a square of that many, and nothing but paper
// around it.
void expectPictureAt(const Bitmap& bitmap, POINT corner, int width, int height, int scale = 1) {
    const int size = kSize * scale;
    int wrong = 0;
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const int left = x - corner.x;
            const int top = y - corner.y;
            const bool inside = left >= 0 && left < size && top >= 0 && top < size;
            const std::uint32_t wanted = inside ? sourcePixel(left / scale, top / scale) : kPaper;
            wrong += bitmap.pixel(x, y) != wanted ? 1 : 0;
        }
    }
    EXPECT_EQ(wrong, 0);
}

// A length of the picture on this screen.
int onScreen(int length) {
    const HDC screen = GetDC(nullptr);
    const int dots = GetDeviceCaps(screen, LOGPIXELSX);
    ReleaseDC(nullptr, screen);
    return MulDiv(length, dots, 96);
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
        if (IsWindow(form_) != FALSE) {
            EXPECT_EQ(GetWindow(form_, GW_CHILD), nullptr) << "the control took its window along";
            DestroyWindow(form_);
        }
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
    expectPictureAt(bitmap, {10, 20}, 200, 150);

    site_->setPlace({60, 5, 70, 9});
    expectPlace({60, 5, 60 + kSize, 5 + kSize});
}

// Run on screens of several resolutions.
TEST_F(ContainerTest, KeepsItsMillimetresOnFinerScreens) {
    const int size = onScreen(kSize);
    const RECT place = site_->place();
    EXPECT_EQ(place.right - place.left, size);
    SIZEL extent{};
    EXPECT_HRESULT_SUCCEEDED(site_->control()->GetExtent(DVASPECT_CONTENT, &extent));
    EXPECT_EQ(extent.cx, 847);  // a third of an inch
    EXPECT_EQ(extent.cy, 847);
    // Up to its last corner, the window is covered.
    Bitmap bitmap(200, 150);
    bitmap.drawWindow(form_);
    EXPECT_EQ(bitmap.pixel(10 + size - 1, 20 + size - 1), sourcePixel(kSize - 1, kSize - 1));
    EXPECT_EQ(bitmap.pixel(10 + size, 20 + size), kPaper);
}

TEST_F(ContainerTest, DrawsIntoTheBoundsItIsGiven) {
    const auto view = as<IViewObject2>();
    const auto draw = [&](HDC context) {
        const RECTL bounds = {7, 9, 7 + 2 * kSize, 9 + 2 * kSize};
        return view->Draw(DVASPECT_CONTENT, -1, nullptr, nullptr, nullptr, context, &bounds,
                          nullptr, nullptr, 0);
    };
    Bitmap direct(100, 90);
    SendMessageW(form_, WM_ERASEBKGND, reinterpret_cast<WPARAM>(direct.context()), 0);
    EXPECT_HRESULT_SUCCEEDED(draw(direct.context()));
    expectPictureAt(direct, {7, 9}, 100, 90, 2);

    // Through metafiles of both kinds, as documents keep pictures.
    const HDC recorder = CreateMetaFileW(nullptr);
    EXPECT_HRESULT_SUCCEEDED(draw(recorder));
    const HMETAFILE oldKind = CloseMetaFile(recorder);
    Bitmap fromOld(100, 90);
    SendMessageW(form_, WM_ERASEBKGND, reinterpret_cast<WPARAM>(fromOld.context()), 0);
    EXPECT_TRUE(PlayMetaFile(fromOld.context(), oldKind));
    DeleteMetaFile(oldKind);
    expectPictureAt(fromOld, {7, 9}, 100, 90, 2);

    const HDC newRecorder = CreateEnhMetaFileW(nullptr, nullptr, nullptr, nullptr);
    EXPECT_HRESULT_SUCCEEDED(draw(newRecorder));
    const HENHMETAFILE newKind = CloseEnhMetaFile(newRecorder);
    Bitmap fromNew(100, 90);
    SendMessageW(form_, WM_ERASEBKGND, reinterpret_cast<WPARAM>(fromNew.context()), 0);
    const RECT frame = {7, 9, 7 + 2 * kSize - 1, 9 + 2 * kSize - 1};
    EXPECT_TRUE(PlayEnhMetaFile(fromNew.context(), newKind, &frame));
    DeleteEnhMetaFile(newKind);
    // Playing scales it to the frame, so only its middle is sure to the pixel.
    EXPECT_EQ(fromNew.pixel(7 + kSize, 9 + kSize), sourcePixel(kSize / 2, kSize / 2));
}

TEST_F(ContainerTest, KeepsItsExtent) {
    SIZEL before{};
    SIZEL asked = {10000, 20000};
    SIZEL after{};
    EXPECT_HRESULT_SUCCEEDED(site_->control()->GetExtent(DVASPECT_CONTENT, &before));
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
    EXPECT_EQ(verb(OLEIVERB_PROPERTIES), S_OK);
    EXPECT_EQ(verb(OLEIVERB_DISCARDUNDOSTATE), S_OK);
    EXPECT_EQ(as<IOleInPlaceObject>()->InPlaceDeactivate(), S_OK);
    EXPECT_FALSE(IsWindow(window));
    EXPECT_HRESULT_FAILED(as<IOleInPlaceObject>()->GetWindow(&window));
    EXPECT_EQ(verb(OLEIVERB_OPEN), S_OK) << "it has no other place than the form";
    expectPlace({10, 20, 10 + kSize, 20 + kSize});
}

TEST_F(ContainerTest, LosesItsWindowWithTheForm) {
    const auto object = as<IOleInPlaceObject>();
    HWND window = nullptr;
    ASSERT_HRESULT_SUCCEEDED(object->GetWindow(&window));
    DestroyWindow(form_);
    EXPECT_HRESULT_FAILED(object->GetWindow(&window));
    EXPECT_EQ(object->SetObjectRects(&kPlace, &kPlace), S_OK);
    EXPECT_EQ(object->InPlaceDeactivate(), S_OK);
}

TEST_F(ContainerTest, LeavesTheFormWithItsSite) {
    HWND window = nullptr;
    ASSERT_HRESULT_SUCCEEDED(as<IOleInPlaceObject>()->GetWindow(&window));
    EXPECT_EQ(site_->control()->SetClientSite(nullptr), S_OK);
    EXPECT_FALSE(IsWindow(window));
    EXPECT_HRESULT_FAILED(
        site_->control()->DoVerb(OLEIVERB_SHOW, nullptr, nullptr, 0, form_, &kPlace));
}

// A container that will not give way gets its own size back each time the control asks.
TEST_F(ContainerTest, DoesNotArgueForever) {
    class StubbornSite : public ControlSite {
    public:
        using ControlSite::ControlSite;
        HRESULT STDMETHODCALLTYPE OnPosRectChange(const RECT* /*position*/) override {
            return ++requests < 100 ? setPlace(kPlace) : E_FAIL;
        }
        int requests = 0;
    };
    StubbornSite site(form_, kPlace);
    ASSERT_HRESULT_SUCCEEDED(site.create(__uuidof(GpsControl)));
    EXPECT_LE(site.requests, 2);
    site.requests = 0;
    site.setPlace({0, 0, 150, 150});
    EXPECT_EQ(site.requests, 1);
}

TEST_F(ContainerTest, TellsItsContainerOfBoxes) {
    class WatchedSite : public ControlSite {
    public:
        using ControlSite::ControlSite;
        HRESULT STDMETHODCALLTYPE EnableModeless(BOOL enable) override {
            seen += enable != FALSE ? "enabled " : "disabled ";
            return S_OK;
        }
        std::string seen;
    };
    WatchedSite site(form_, kPlace);
    ASSERT_HRESULT_SUCCEEDED(site.create(__uuidof(GpsControl)));
    const BoxReader reader(
        [&](const std::wstring& /*text*/, const std::string& /*icon*/) { site.seen += "box "; });
    ComPtr<_GpsControl> gps;
    ASSERT_HRESULT_SUCCEEDED(site.control()->QueryInterface(IID_PPV_ARGS(&gps)));
    VARIANT_BOOL result = VARIANT_FALSE;
    gps->getTracks(&result);  // without a receiver
    EXPECT_EQ(site.seen, "disabled box enabled ");
}

TEST_F(ContainerTest, SavesAnEmptyState) {
    ComPtr<IStream> stream;
    ASSERT_HRESULT_SUCCEEDED(CreateStreamOnHGlobal(nullptr, TRUE, &stream));
    const auto state = as<IPersistStreamInit>();
    const auto rewind = [&] { stream->Seek({}, STREAM_SEEK_SET, nullptr); };
    EXPECT_EQ(state->IsDirty(), S_FALSE);
    EXPECT_HRESULT_SUCCEEDED(state->Load(stream.Get())) << "of a form that saved nothing";
    EXPECT_HRESULT_SUCCEEDED(state->Save(stream.Get(), TRUE));
    STATSTG size{};
    ULARGE_INTEGER announced{};
    stream->Stat(&size, STATFLAG_NONAME);
    EXPECT_HRESULT_SUCCEEDED(state->GetSizeMax(&announced));
    EXPECT_EQ(size.cbSize.QuadPart, announced.QuadPart);
    rewind();
    EXPECT_HRESULT_SUCCEEDED(state->Load(stream.Get()));
    for (const char* strange : {"?", "garbage!"}) {
        ComPtr<IStream> other;
        ASSERT_HRESULT_SUCCEEDED(CreateStreamOnHGlobal(nullptr, TRUE, &other));
        other->Write(strange, static_cast<ULONG>(std::strlen(strange)), nullptr);
        other->Seek({}, STREAM_SEEK_SET, nullptr);
        EXPECT_EQ(state->Load(other.Get()), STG_E_INVALIDHEADER) << strange;
    }
    EXPECT_EQ(state->Load(nullptr), E_POINTER);
    EXPECT_EQ(state->Save(nullptr, TRUE), E_POINTER);
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
