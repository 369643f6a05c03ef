#include "Safety.h"

// After windows.h:
#include <ocidl.h>

namespace marlune::activex {
namespace {

DWORD optionsOf(REFIID iid) {
    const bool initialises = iid == __uuidof(IPersistStreamInit) ||
                             iid == __uuidof(IPersistPropertyBag) ||
                             iid == __uuidof(IPersistStorage) || iid == __uuidof(IPersist);
    return initialises ? INTERFACESAFE_FOR_UNTRUSTED_DATA : 0U;
}

}  // namespace

HRESULT Safety::GetInterfaceSafetyOptions(REFIID iid, DWORD* supported, DWORD* enabled) {
    if (supported == nullptr || enabled == nullptr) {
        return E_POINTER;
    }
    *supported = optionsOf(iid);
    *enabled = *supported;
    IUnknown* part = nullptr;
    const HRESULT known = QueryInterface(iid, reinterpret_cast<void**>(&part));
    if (part != nullptr) {
        part->Release();
    }
    return known;
}

HRESULT Safety::SetInterfaceSafetyOptions(REFIID iid, DWORD mask, DWORD enabled) {
    return (mask & enabled & ~optionsOf(iid)) == 0 ? S_OK : E_FAIL;
}

}  // namespace marlune::activex
