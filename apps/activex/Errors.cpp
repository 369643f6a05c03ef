#include "Errors.h"

#include <wrl/client.h>

#include "Bstr.h"
#include "host/Services.h"
#include "marlune_com.h"

namespace marlune::activex {

using Microsoft::WRL::ComPtr;

HRESULT refuse(HRESULT code, std::string_view text) {
    ComPtr<ICreateErrorInfo> description;
    ComPtr<IErrorInfo> error;
    if (SUCCEEDED(CreateErrorInfo(&description)) && SUCCEEDED(description.As(&error))) {
        wchar_t source[] = L"Marlune.GpsControl";
        description->SetGUID(__uuidof(_GpsControl));
        description->SetSource(source);
        description->SetDescription(Bstr(text).get());
        SetErrorInfo(0, error.Get());
    }
    return code;
}

HRESULT refuse(HRESULT code) {
    return refuse(code, systemErrorText(code));
}

}  // namespace marlune::activex
