#include "Errors.h"

#include <wrl/client.h>

#include "Bstr.h"
#include "base/SystemError.h"
#include "host/Services.h"
#include "marlune_com.h"

namespace marlune::activex {

using Microsoft::WRL::ComPtr;

namespace {

std::string textOf(HRESULT code) {
    switch (code) {
        case DISP_E_TYPEMISMATCH:
            return "Incompatibilité de type";
        case DISP_E_OVERFLOW:
            return "Dépassement de capacité";
        case DISP_E_BADPARAMCOUNT:
            return "Nombre d'arguments incorrect";
        case DISP_E_PARAMNOTFOUND:
            return "Argument nommé introuvable";
        case DISP_E_BADVARTYPE:
            return "Type de variable non géré";
        case DISP_E_NOTACOLLECTION:
            return "Cet objet n'est pas une collection";
        case RPC_E_SERVERCALL_RETRYLATER:
            return "Le récepteur est occupé";
        case DISP_E_MEMBERNOTFOUND:
            return "Propriété ou méthode non gérée par cet objet";
        default:
            return systemErrorText(code);
    }
}

}  // namespace

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
    return refuse(code, textOf(code));
}

}  // namespace marlune::activex
