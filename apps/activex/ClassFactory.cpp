#include "ClassFactory.h"

#include "ControlObject.h"

namespace marlune::activex {

HRESULT ClassFactory::QueryInterface(REFIID iid, void** result) {
    if (result == nullptr) {
        return E_POINTER;
    }
    const bool known = iid == __uuidof(IUnknown) || iid == __uuidof(IClassFactory);
    *result = known ? static_cast<IClassFactory*>(this) : nullptr;
    if (known) {
        AddRef();
    }
    return known ? S_OK : E_NOINTERFACE;
}

ULONG ClassFactory::AddRef() {
    return ++references_;
}

ULONG ClassFactory::Release() {
    const ULONG left = --references_;
    if (left == 0) {
        delete this;
    }
    return left;
}

HRESULT ClassFactory::CreateInstance(IUnknown* outer, REFIID iid, void** result) {
    if (result == nullptr) {
        return E_POINTER;
    }
    *result = nullptr;
    // What is aggregated hands its own identity to the outer object, and nothing else.
    if (outer != nullptr && iid != __uuidof(IUnknown)) {
        return CLASS_E_NOAGGREGATION;
    }
    return ControlObject::create(outer, iid, result);
}

HRESULT ClassFactory::LockServer(BOOL lock) {
    LibraryUse::hold(lock != FALSE);
    return S_OK;
}

}  // namespace marlune::activex
