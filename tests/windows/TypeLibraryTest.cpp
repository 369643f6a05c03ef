#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Control.h"
#include "base/WideText_windows.h"
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

// In the library of either bitness.
class TypeLibraryTest : public testing::TestWithParam<const wchar_t*> {
protected:
    void SetUp() override {
        ASSERT_HRESULT_SUCCEEDED(
            LoadTypeLibEx(buildFile(GetParam()).c_str(), REGKIND_NONE, &types_));
    }

    ComPtr<ITypeLib> types_;
};

TEST_P(TypeLibraryTest, HasTheMembersAndTheEvents) {
    // A dispatch interface begins with the seven functions of IDispatch.
    EXPECT_THAT(functionLines(*types_.Get(), L"_GpsControl", 7),
                testing::ElementsAreArray(memberLines()));
    EXPECT_THAT(functionLines(*types_.Get(), L"__GpsControl", 0),
                testing::ElementsAreArray(eventLines()));
}

TEST_P(TypeLibraryTest, HasThePortsAndTheClass) {
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

INSTANTIATE_TEST_SUITE_P(Bitness, TypeLibraryTest,
                         testing::Values(L"apps\\activex\\marlune.ocx",
                                         L"..\\windows32\\apps\\activex\\marlune.ocx"));

}  // namespace
}  // namespace marlune
