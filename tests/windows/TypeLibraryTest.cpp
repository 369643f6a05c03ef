#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <map>

#include "Control.h"
#include "base/WideText_windows.h"
#include "marlune_com.h"
#include "support/SurfaceLines.h"

namespace marlune {
namespace {

using Microsoft::WRL::ComPtr;

std::string fromBstr(BSTR text) {
    std::string result = fromWide({text, SysStringLen(text)});
    SysFreeString(text);
    return result;
}

std::string typeName(ITypeInfo& info, const TYPEDESC& type) {
    switch (type.vt) {
        case VT_VOID:
            return "void";
        case VT_I2:
            return "short";
        case VT_R8:
            return "double";
        case VT_BOOL:
            return "boolean";
        case VT_BSTR:
            return "string";
        case VT_VARIANT:
            return "variant";
        case VT_PTR:
            return typeName(info, *type.lptdesc) + "&";
        case VT_USERDEFINED: {
            ComPtr<ITypeInfo> other;
            BSTR name = nullptr;
            info.GetRefTypeInfo(type.hreftype, &other);
            other->GetDocumentation(MEMBERID_NIL, &name, nullptr, nullptr, nullptr);
            return fromBstr(name);
        }
        default:
            return "type " + std::to_string(type.vt);
    }
}

// A member as one line: "16 method SendWaypts(Fic string&) variant".
std::string functionLine(ITypeInfo& info, UINT index) {
    FUNCDESC* function = nullptr;
    info.GetFuncDesc(index, &function);
    const char* kind = function->invkind == INVOKE_PROPERTYGET   ? "get"
                       : function->invkind == INVOKE_PROPERTYPUT ? "put"
                                                                 : "method";
    std::array<BSTR, 8> names{};
    UINT count = 0;
    info.GetNames(function->memid, names.data(), names.size(), &count);
    std::string line =
        std::to_string(function->memid) + " " + kind + " " + fromBstr(names[0]) + "(";
    for (SHORT i = 0; i < function->cParams; ++i) {
        const auto at = static_cast<std::size_t>(i);
        line += i > 0 ? ", " : "";
        // The value of a property has no name.
        line += at + 1 < count ? fromBstr(names[at + 1]) + " " : "";
        line += typeName(info, function->lprgelemdescParam[i].tdesc);
    }
    line += ") " + typeName(info, function->elemdescFunc.tdesc);
    info.ReleaseFuncDesc(function);
    return line;
}

std::vector<std::string> functionLines(ITypeLib& types, const wchar_t* name, UINT from) {
    std::vector<std::string> lines;
    ComPtr<ITypeInfo> info;
    MEMBERID member = 0;
    USHORT found = 1;
    std::wstring wanted = name;
    types.FindName(wanted.data(), 0, &info, &member, &found);
    TYPEATTR* attributes = nullptr;
    if (info == nullptr || FAILED(info->GetTypeAttr(&attributes))) {
        return lines;
    }
    for (UINT i = from; i < attributes->cFuncs; ++i) {
        lines.push_back(functionLine(*info.Get(), i));
    }
    info->ReleaseTypeAttr(attributes);
    return lines;
}

class TypeLibraryTest : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_HRESULT_SUCCEEDED(
            LoadTypeLibEx(buildFile(L"apps\\activex\\marlune.ocx").c_str(), REGKIND_NONE, &types_));
    }

    ComPtr<ITypeLib> types_;
};

TEST_F(TypeLibraryTest, HasTheMembersAndTheEvents) {
    // A dispatch interface begins with the seven functions of IDispatch.
    EXPECT_THAT(functionLines(*types_.Get(), L"_GpsControl", 7),
                testing::ElementsAreArray(memberLines()));
    EXPECT_THAT(functionLines(*types_.Get(), L"__GpsControl", 0),
                testing::ElementsAreArray(eventLines()));
}

TEST_F(TypeLibraryTest, HasThePortsAndTheClass) {
    ComPtr<ITypeInfo> info;
    ASSERT_EQ(types_->GetTypeInfoCount(), 4U);
    TYPEATTR* attributes = nullptr;
    ASSERT_HRESULT_SUCCEEDED(types_->GetTypeInfo(0, &info));
    ASSERT_HRESULT_SUCCEEDED(info->GetTypeAttr(&attributes));
    ASSERT_EQ(attributes->typekind, TKIND_ENUM);
    ASSERT_EQ(attributes->cVars, 40);
    info->ReleaseTypeAttr(attributes);
    for (UINT i = 0; i < 40; ++i) {
        VARDESC* constant = nullptr;
        BSTR name = nullptr;
        info->GetVarDesc(i, &constant);
        info->GetDocumentation(constant->memid, &name, nullptr, nullptr, nullptr);
        EXPECT_EQ(fromBstr(name), "Comm" + std::to_string(i + 1));
        EXPECT_EQ(constant->lpvarValue->lVal, static_cast<LONG>(i + 1));
        info->ReleaseVarDesc(constant);
    }
    BSTR name = nullptr;
    ASSERT_HRESULT_SUCCEEDED(types_->GetDocumentation(3, &name, nullptr, nullptr, nullptr));
    EXPECT_EQ(fromBstr(name), "GpsControl");
}

// The sections of the manual: the first line below each heading, by the heading.
std::map<std::string, std::string> manualLines() {
    std::ifstream file(std::filesystem::path(sourceFile(L"apps\\activex\\help\\members.md")));
    std::map<std::string, std::string> lines;
    for (std::string line; std::getline(file, line);) {
        if (line.starts_with("## ")) {
            std::getline(file, lines[line.substr(3)]);
        }
    }
    return lines;
}

// F1 finds a page by the help context; the help file's are made from the same ids.
TEST_F(TypeLibraryTest, HasHelpForEveryMemberAndEvent) {
    const std::map<std::string, std::string> lines = manualLines();
    const auto expectHelp = [&](const GUID& iid, MEMBERID id, std::string_view name, DWORD page) {
        ComPtr<ITypeInfo> info;
        BSTR text = nullptr;
        BSTR file = nullptr;
        DWORD context = 0;
        ASSERT_HRESULT_SUCCEEDED(types_->GetTypeInfoOfGuid(iid, &info));
        ASSERT_HRESULT_SUCCEEDED(info->GetDocumentation(id, nullptr, &text, &context, &file));
        EXPECT_EQ(fromBstr(text), lines.at(std::string(name)));
        EXPECT_EQ(context, page) << name;
        EXPECT_THAT(fromBstr(file), testing::EndsWith("marlune.chm"));
    };
    for (const surface::Member& member : surface::kMembers) {
        expectHelp(__uuidof(_GpsControl), member.id, member.name, static_cast<DWORD>(member.id));
    }
    for (const surface::Event& event : surface::kEvents) {
        expectHelp(__uuidof(__GpsControl), event.id, event.name,
                   static_cast<DWORD>(100 + event.id));
    }
}

}  // namespace
}  // namespace marlune
