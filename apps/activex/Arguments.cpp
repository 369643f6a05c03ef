#include "Arguments.h"

#include <oleauto.h>

#include <utility>

namespace marlune::activex {
namespace {

// The value behind any number of references.
HRESULT copyValue(VARIANT& to, VARIANT& from) {
    HRESULT copied = VariantCopyInd(&to, &from);
    while (SUCCEEDED(copied) && (to.vt & VT_BYREF) != 0) {
        VARIANT inner{};
        copied = VariantCopyInd(&inner, &to);
        to = inner;
    }
    return copied;
}

}  // namespace

Arguments::~Arguments() {
    for (VARIANT& value : values_) {
        VariantClear(&value);
    }
    SysFreeString(string_);
}

HRESULT Arguments::take(const DISPPARAMS& given, bool stringByReference) {
    values_.resize(given.cArgs);
    for (UINT i = 0; i < given.cArgs; ++i) {
        fault_ = i;
        HRESULT taken = copyValue(values_[i], given.rgvarg[i]);
        if (SUCCEEDED(taken) && stringByReference) {
            taken = VariantChangeType(&values_[i], &values_[i], 0, VT_BSTR);
        }
        if (FAILED(taken)) {
            return taken;
        }
    }
    if (stringByReference && values_.size() == 1) {
        string_ = std::exchange(values_[0].bstrVal, nullptr);
        values_[0].vt = VT_BSTR | VT_BYREF;
        values_[0].pbstrVal = &string_;
    }
    parameters_ = {values_.data(), given.rgdispidNamedArgs, given.cArgs, given.cNamedArgs};
    return S_OK;
}

}  // namespace marlune::activex
