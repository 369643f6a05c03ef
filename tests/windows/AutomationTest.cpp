#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "Control.h"
#include "base/WideText_windows.h"
#include "marlune_com.h"

namespace marlune {
namespace {

using Microsoft::WRL::ComPtr;
using testing::ElementsAre;

TEST(Automation, MembersGiveTheirKindOfValue) {
    Control control;
    EXPECT_EQ(control.get(L"getIdent").value.text(),
              "text Marlune Version 1.0.0 -  GPSId:  Version:  - ");
    EXPECT_EQ(control.get(L"getProtocoles").value.text(), "text ");
    EXPECT_EQ(control.call(L"ResetComBuffers").value.text(), "bool false");
    for (const wchar_t* member : {L"gpsDisconnect", L"StopNMEA", L"StopPvtData"}) {
        EXPECT_EQ(control.call(member).value.text(), "empty") << fromWide(member);
    }
}

TEST(Automation, NamesComeInAnyCaseAndValuesAreConverted) {
    Control control;
    EXPECT_HRESULT_SUCCEEDED(control.put(L"setNumPort", "3").result);
    EXPECT_HRESULT_SUCCEEDED(control.put(L"SetDebug", 1).result);
    EXPECT_HRESULT_SUCCEEDED(control.put(L"setgpsmark", "mgn;9600").result);
    EXPECT_EQ(control.get(L"GETPROTOCOLES").value.text(),
              "text Protocole NMEA propriétaire MAGELLAN");
}

TEST(Automation, TellsWhyAMemberCannotBeCalled) {
    Control control;
    const struct {
        const wchar_t* member;
        std::initializer_list<Value> arguments;
        WORD how;
        HRESULT result;
    } cases[] = {
        {L"getNothing", {}, DISPATCH_METHOD, DISP_E_UNKNOWNNAME},
        {L"setNumPort", {"three"}, DISPATCH_PROPERTYPUT, DISP_E_TYPEMISMATCH},
        {L"SetDebug", {}, DISPATCH_PROPERTYGET, DISP_E_MEMBERNOTFOUND},
        {L"getWaypts", {1}, DISPATCH_METHOD, DISP_E_BADPARAMCOUNT},
        {L"SendWaypts", {}, DISPATCH_METHOD, DISP_E_BADPARAMCOUNT},
        {L"StartNMEA", {"$GPGGA", 100000}, DISPATCH_METHOD, DISP_E_OVERFLOW},
    };
    for (const auto& c : cases) {
        SetErrorInfo(0, nullptr);
        EXPECT_EQ(control.call(c.member, c.arguments, c.how).result, c.result)
            << fromWide(c.member);
        if (c.result == DISP_E_UNKNOWNNAME) {
            continue;  // no member, no error of the control
        }
        ComPtr<IErrorInfo> error;
        ASSERT_EQ(GetErrorInfo(0, &error), S_OK) << fromWide(c.member);
        BSTR source = nullptr;
        BSTR description = nullptr;
        error->GetSource(&source);
        error->GetDescription(&description);
        EXPECT_STREQ(source, L"Marlune.GpsControl");
        EXPECT_NE(SysStringLen(description), 0U) << fromWide(c.member);
        SysFreeString(source);
        SysFreeString(description);
    }
}

TEST(Automation, EarlyBoundCallsTellErrorsToo) {
    const Control control;
    const auto gps = control.as<_GpsControl>();
    SetErrorInfo(0, nullptr);
    EXPECT_EQ(gps->gpsConnect(nullptr), E_POINTER);
    ComPtr<IErrorInfo> error;
    EXPECT_EQ(GetErrorInfo(0, &error), S_OK);
    EXPECT_EQ(control.as<ISupportErrorInfo>()->InterfaceSupportsErrorInfo(__uuidof(_GpsControl)),
              S_OK);
}

// Without a receiver every transfer stops at its first step, and says so.
constexpr char kUnavailable[] = "[critical] Protocole non disponible pour ce GPS";

TEST(Automation, TheFileOfAnUploadComesInManyForms) {
    Control control;
    const Record record(control);
    Value text("C:\\none.txt");
    Value reference;
    reference.vt = VT_BYREF | VT_BSTR;
    reference.pbstrVal = &text.bstrVal;
    Value variable;
    variable.vt = VT_BYREF | VT_VARIANT;
    variable.pvarVal = &text;
    for (const Value* argument : {&text, &reference, &variable}) {
        for (const wchar_t* member : {L"SendWaypts", L"SendRoutes", L"SendTraces"}) {
            const Outcome outcome = control.call(member, {*argument});
            EXPECT_HRESULT_SUCCEEDED(outcome.result) << fromWide(member);
            EXPECT_EQ(outcome.value.text(), "bool false") << fromWide(member);
        }
    }
    EXPECT_EQ(record.count(kUnavailable), 9);
    EXPECT_EQ(record.lines.size(), 9U);
}

TEST(Automation, APortThatIsNotThereIsTold) {
    Control control;
    const Record record(control);
    control.put(L"SetGpsMark", "autre");
    control.put(L"setNumPort", 39);
    // A family that is not known has no identification, so the connection counts as made.
    EXPECT_EQ(control.call(L"gpsConnect").value.text(), "bool true");
    EXPECT_THAT(record.lines,
                ElementsAre(testing::StartsWith("[critical] "), "[critical] Connexion Impossible"));
    EXPECT_GT(record.lines[0].size(), std::string("[critical] ").size()) << "the system's text";
}

TEST(Automation, WritesTheTraceIntoTheUsersDocuments) {
    HKEY folders = nullptr;
    constexpr wchar_t kFolders[] =
        L"Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\Shell Folders";
    ASSERT_EQ(RegOpenKeyExW(HKEY_CURRENT_USER, kFolders, 0, KEY_ALL_ACCESS, &folders), 0);
    std::array<wchar_t, MAX_PATH> before{};
    DWORD size = sizeof before;
    RegQueryValueExW(folders, L"Personal", nullptr, nullptr, reinterpret_cast<BYTE*>(before.data()),
                     &size);
    const std::wstring documents = buildFile(L"tests\\windows\\Données");
    CreateDirectoryW(documents.c_str(), nullptr);
    CreateDirectoryW((documents + L"\\Palimor").c_str(), nullptr);
    RegSetValueExW(folders, L"Personal", 0, REG_SZ,
                   reinterpret_cast<const BYTE*>(documents.c_str()),
                   static_cast<DWORD>((documents.size() + 1) * sizeof(wchar_t)));
    Control control;
    RegSetValueExW(folders, L"Personal", 0, REG_SZ, reinterpret_cast<BYTE*>(before.data()), size);
    RegCloseKey(folders);

    control.put(L"SetDebug", "on");
    control.put(L"SetGpsMark", "GRM_USB");
    EXPECT_EQ(control.call(L"gpsConnect").value.text(), "bool false") << "no device is there";
    control.call(L"gpsDisconnect");
    std::ifstream file(std::filesystem::path(documents + L"\\Palimor\\OcxDebug.txt"),
                       std::ios::binary);
    const std::string trace{std::istreambuf_iterator<char>(file), {}};
    EXPECT_THAT(trace, testing::HasSubstr("VolumeName      : "));
    EXPECT_THAT(trace, testing::HasSubstr("Clef de Registre USB GARMIN non trouv\xE9"
                                          "e\r\n"));
}

}  // namespace
}  // namespace marlune
