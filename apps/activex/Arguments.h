// The arguments of a late-bound call, in the form that the members take. Script engines hand over
// references to their variables, where the members expect values, and values where SendWaypts and
// its kin expect a reference to a string.
#pragma once

#include <windows.h>
// After windows.h:
#include <oaidl.h>

#include <vector>

namespace marlune::activex {

class Arguments {
public:
    Arguments() = default;
    Arguments(const Arguments&) = delete;
    Arguments& operator=(const Arguments&) = delete;
    ~Arguments();

    // Takes copies of the values. stringByReference: whether the member takes one string, by
    // reference. On failure the index of the argument at fault, counted as Invoke counts, is in
    // fault().
    HRESULT take(const DISPPARAMS& given, bool stringByReference);

    [[nodiscard]] DISPPARAMS& parameters() { return parameters_; }
    [[nodiscard]] UINT fault() const { return fault_; }

private:
    std::vector<VARIANT> values_;
    BSTR string_ = nullptr;  // what the reference refers to
    DISPPARAMS parameters_{};
    UINT fault_ = 0;
};

}  // namespace marlune::activex
