#include "Persistence.h"

#include "marlune_com.h"

namespace marlune::activex {

HRESULT Persistence::GetClassID(CLSID* id) {
    if (id == nullptr) {
        return E_POINTER;
    }
    *id = __uuidof(::GpsControl);
    return S_OK;
}

HRESULT Persistence::GetSizeMax(ULARGE_INTEGER* size) {
    if (size == nullptr) {
        return E_POINTER;
    }
    size->QuadPart = 0;
    return S_OK;
}

}  // namespace marlune::activex
