#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>

#include "Control.h"
#include "Library.h"
#include "base/WideText_windows.h"

namespace marlune {
namespace {

constexpr char kClass[] = "CLSID\\{18192555-56F6-4EFF-A115-89D2D3CF3ACE}";

// The text of a value below the classes of all users or of this user; "-" when there is none.
std::string classValue(HKEY root, const std::string& key, const char* name = "") {
    std::array<char, 1024> text{};
    DWORD size = text.size();
    const LSTATUS found = RegGetValueA(root, ("Software\\Classes\\" + key).c_str(), name,
                                       RRF_RT_REG_SZ, nullptr, text.data(), &size);
    return found == ERROR_SUCCESS ? text.data() : "-";
}

bool isKnownFor(HKEY root) {
    return classValue(root, "Marlune.GpsControl\\CurVer") != "-" ||
           classValue(root, "Marlune.GpsControl.1") != "-" || classValue(root, kClass) != "-";
}

HRESULT loadTypes() {
    constexpr GUID kTypes = {
        0xC8902A38, 0xCF05, 0x4271, {0x83, 0xBA, 0x68, 0x26, 0xEE, 0xCC, 0xE0, 0xD2}};
    Microsoft::WRL::ComPtr<ITypeLib> types;
    return LoadRegTypeLib(kTypes, 1, 0, LOCALE_NEUTRAL, &types);
}

// Everything that COM, script engines and form designers look for.
void expectKnownFor(HKEY root) {
    const std::string key = kClass;
    EXPECT_EQ(classValue(root, "Marlune.GpsControl\\CLSID"), key.substr(6));
    EXPECT_EQ(classValue(root, "Marlune.GpsControl.1\\CLSID"), key.substr(6));
    EXPECT_EQ(classValue(root, "Marlune.GpsControl\\CurVer"), "Marlune.GpsControl.1");
    EXPECT_EQ(classValue(root, key + "\\ProgID"), "Marlune.GpsControl.1");
    EXPECT_EQ(classValue(root, key + "\\VersionIndependentProgID"), "Marlune.GpsControl");
    EXPECT_EQ(classValue(root, key + "\\InprocServer32", "ThreadingModel"), "Apartment");
    EXPECT_THAT(classValue(root, key + "\\InprocServer32"), testing::EndsWith("\\marlune.ocx"));
    EXPECT_THAT(classValue(root, key + "\\ToolboxBitmap32"),
                testing::EndsWith("\\marlune.ocx, 102"));
    EXPECT_EQ(classValue(root, key + "\\Control"), "");
    EXPECT_EQ(classValue(root, key + "\\Version"), "1.0");
    EXPECT_HRESULT_SUCCEEDED(loadTypes());
}

class RegistrationTest : public testing::Test {
protected:
    void SetUp() override { library_.unregisterServer(); }
    // As the other tests expect it.
    void TearDown() override {
        library_.unregisterServer();
        library_.registerServer();
    }

    Library library_;
};

TEST_F(RegistrationTest, IsForAllUsers) {
    ASSERT_HRESULT_SUCCEEDED(library_.registerServer());
    expectKnownFor(HKEY_LOCAL_MACHINE);
    EXPECT_FALSE(isKnownFor(HKEY_CURRENT_USER));
    EXPECT_NO_THROW(Control());
}

// Wine makes no objects from what is registered for one user, so these look at the registry only.
TEST_F(RegistrationTest, IsForTheUserWhenAsked) {
    ASSERT_HRESULT_SUCCEEDED(library_.install(TRUE, L"user"));
    expectKnownFor(HKEY_CURRENT_USER);
    EXPECT_FALSE(isKnownFor(HKEY_LOCAL_MACHINE));
}

TEST_F(RegistrationTest, IsForTheUserWithoutRights) {
    // A key that is gone refuses every writing, as the machine's key does to a plain user.
    HKEY gone = nullptr;
    RegCreateKeyW(HKEY_CURRENT_USER, L"Software\\MarluneGone", &gone);
    RegDeleteKeyW(HKEY_CURRENT_USER, L"Software\\MarluneGone");
    RegOverridePredefKey(HKEY_LOCAL_MACHINE, gone);
    const HRESULT registered = library_.registerServer();
    RegOverridePredefKey(HKEY_LOCAL_MACHINE, nullptr);
    RegCloseKey(gone);
    EXPECT_HRESULT_SUCCEEDED(registered);
    expectKnownFor(HKEY_CURRENT_USER);
    EXPECT_FALSE(isKnownFor(HKEY_LOCAL_MACHINE));
}

TEST_F(RegistrationTest, LeavesNothingBehind) {
    ASSERT_HRESULT_SUCCEEDED(library_.registerServer());
    ASSERT_HRESULT_SUCCEEDED(library_.install(TRUE, L"user"));
    ASSERT_HRESULT_SUCCEEDED(library_.unregisterServer());
    EXPECT_FALSE(isKnownFor(HKEY_LOCAL_MACHINE));
    EXPECT_FALSE(isKnownFor(HKEY_CURRENT_USER));
    EXPECT_HRESULT_FAILED(loadTypes());
    EXPECT_HRESULT_SUCCEEDED(library_.unregisterServer()) << "twice does no harm";
}

TEST_F(RegistrationTest, TheLibraryStaysLoadedWhileItIsUsed) {
    ASSERT_HRESULT_SUCCEEDED(library_.registerServer());
    EXPECT_EQ(library_.canUnloadNow(), S_OK);
    {
        const Control control;
        EXPECT_EQ(library_.canUnloadNow(), S_FALSE);
        const auto points = control.as<IConnectionPointContainer>();
        Microsoft::WRL::ComPtr<IEnumConnectionPoints> enumerator;
        ASSERT_HRESULT_SUCCEEDED(points->EnumConnectionPoints(&enumerator));
    }
    EXPECT_EQ(library_.canUnloadNow(), S_OK);
}

// A process has some 1,080 slots of thread-local storage, and every loading takes one.
TEST(LibraryTest, CanBeLetGoAndLoadedTimeAndAgain) {
    for (int i = 0; i < 1200; ++i) {
        ASSERT_NO_THROW(Control()) << i;
        CoFreeUnusedLibrariesEx(0, 0);
    }
}

}  // namespace
}  // namespace marlune
