#include "Automation.h"

#include <oleauto.h>

#include <algorithm>
#include <exception>
#include <new>

#include "Arguments.h"
#include "Bstr.h"
#include "ControlObject.h"
#include "Errors.h"
#include "Library.h"
#include "control/Surface.h"

namespace marlune::activex {
namespace {

// How each kind of result leaves the control.
void store(VARIANT_BOOL& to, bool value) {
    to = value ? VARIANT_TRUE : VARIANT_FALSE;
}

void store(double& to, double value) {
    to = value;
}

void store(BSTR& to, const std::string& value) {
    Bstr text(value);
    if (text.get() == nullptr) {
        throw std::bad_alloc();
    }
    to = text.release();
}

void store(VARIANT& to, bool value) {
    to.vt = VT_BOOL;
    store(to.boolVal, value);
}

// Whether the member takes one string, by reference.
bool takesTextReference(DISPID id) {
    return std::any_of(surface::kMembers.begin(), surface::kMembers.end(),
                       [&](const surface::Member& member) {
                           return member.id == id && member.parameters.size() == 1 &&
                                  member.parameters[0].type == surface::Type::textReference;
                       });
}

std::string fileName(BSTR* Fic) {
    return Fic == nullptr ? std::string() : fromBstr(*Fic);
}

}  // namespace

HRESULT Automation::loadTypes() {
    HRESULT loaded = LoadTypeLibEx(libraryPath().c_str(), REGKIND_NONE, &types_);
    if (SUCCEEDED(loaded)) {
        loaded = types_->GetTypeInfoOfGuid(__uuidof(_GpsControl), &dispatch_);
    }
    HREFTYPE table = 0;
    if (SUCCEEDED(loaded)) {
        loaded = dispatch_->GetRefTypeOfImplType(static_cast<UINT>(-1), &table);
    }
    return SUCCEEDED(loaded) ? dispatch_->GetRefTypeInfo(table, &table_) : loaded;
}

template <class Body>
HRESULT Automation::put(const Body& body) {
    const ControlObject::RunningCall running(object_);
    if (running.control() == nullptr) {
        return refuse(CO_E_OBJNOTCONNECTED);  // the host has let the control go
    }
    try {
        body(*running.control());
        return S_OK;
    } catch (const std::bad_alloc&) {
        return refuse(E_OUTOFMEMORY);
    } catch (const std::exception& error) {
        return refuse(E_FAIL, error.what());
    }
}

template <class Result, class Body>
HRESULT Automation::call(Result* result, const Body& body) {
    if (ControlObject::RunningCall(object_).isLineTaken()) {
        return refuse(RPC_E_SERVERCALL_RETRYLATER);
    }
    return ask(result, body);
}

template <class Result, class Body>
HRESULT Automation::ask(Result* result, const Body& body) {
    if (result == nullptr) {
        return refuse(E_POINTER);
    }
    *result = Result{};
    return put([&](GpsControl& control) {
        if constexpr (std::is_void_v<decltype(body(control))>) {
            body(control);  // an empty VARIANT
        } else {
            store(*result, body(control));
        }
    });
}

HRESULT Automation::GetTime(double* result) {
    return call(result, [](GpsControl& control) { return control.GetTime(); });
}

HRESULT Automation::put_SetDebug(BSTR value) {
    return put([&](GpsControl& control) { control.SetDebug(fromBstr(value)); });
}

HRESULT Automation::put_SetGpsMark(BSTR value) {
    return put([&](GpsControl& control) { control.SetGpsMark(fromBstr(value)); });
}

HRESULT Automation::StartPvtData(VARIANT_BOOL* result) {
    return call(result, [](GpsControl& control) { return control.StartPvtData(); });
}

HRESULT Automation::gpsConnect(VARIANT_BOOL* result) {
    return call(result, [](GpsControl& control) { return control.gpsConnect(); });
}

HRESULT Automation::gpsDisconnect(VARIANT* result) {
    return call(result, [](GpsControl& control) { control.gpsDisconnect(); });
}

HRESULT Automation::getTracks(VARIANT_BOOL* result) {
    return call(result, [](GpsControl& control) { return control.getTracks(); });
}

HRESULT Automation::getWaypts(VARIANT_BOOL* result) {
    return call(result, [](GpsControl& control) { return control.getWaypts(); });
}

HRESULT Automation::GetRoutes(VARIANT_BOOL* result) {
    return call(result, [](GpsControl& control) { return control.GetRoutes(); });
}

HRESULT Automation::get_getIdent(BSTR* result) {
    return call(result, [](GpsControl& control) { return control.getIdent(); });
}

HRESULT Automation::getProximites(VARIANT_BOOL* result) {
    return call(result, [](GpsControl& control) { return control.getProximites(); });
}

HRESULT Automation::getPosition(BSTR* result) {
    return call(result, [](GpsControl& control) { return control.getPosition(); });
}

HRESULT Automation::put_setNumPort(::numPort value) {
    return put([&](GpsControl& control) { control.setNumPort(static_cast<numPort>(value)); });
}

HRESULT Automation::StopPvtData(VARIANT* result) {
    return ask(result, [](GpsControl& control) { control.StopPvtData(); });
}

HRESULT Automation::StopTransfert(VARIANT* result) {
    return ask(result, [](GpsControl& control) { control.StopTransfert(); });
}

HRESULT Automation::SendWaypts(BSTR* Fic, VARIANT* result) {
    return call(result, [&](GpsControl& control) { return control.SendWaypts(fileName(Fic)); });
}

HRESULT Automation::get_getProtocoles(BSTR* result) {
    return ask(result, [](GpsControl& control) { return control.getProtocoles(); });
}

HRESULT Automation::SendRoutes(BSTR* Fic, VARIANT* result) {
    return call(result, [&](GpsControl& control) { return control.SendRoutes(fileName(Fic)); });
}

HRESULT Automation::SendTraces(BSTR* Fic, VARIANT_BOOL* result) {
    return call(result, [&](GpsControl& control) { return control.SendTraces(fileName(Fic)); });
}

HRESULT Automation::StartNMEA(BSTR NMEACode, short Delai, VARIANT_BOOL* result) {
    return call(result,
                [&](GpsControl& control) { return control.StartNMEA(fromBstr(NMEACode), Delai); });
}

HRESULT Automation::StopNMEA(VARIANT* result) {
    return ask(result, [](GpsControl& control) { control.StopNMEA(); });
}

HRESULT Automation::ResetComBuffers(VARIANT_BOOL* result) {
    return call(result, [](GpsControl& control) { return control.ResetComBuffers(); });
}

HRESULT Automation::GetTypeInfoCount(UINT* count) {
    if (count == nullptr) {
        return E_POINTER;
    }
    *count = 1;
    return S_OK;
}

HRESULT Automation::GetTypeInfo(UINT index, LCID /*locale*/, ITypeInfo** info) {
    if (info == nullptr) {
        return E_POINTER;
    }
    *info = nullptr;
    return index == 0 ? dispatch_.CopyTo(info) : DISP_E_BADINDEX;
}

HRESULT Automation::GetIDsOfNames(REFIID /*reserved*/, LPOLESTR* names, UINT count, LCID /*locale*/,
                                  DISPID* ids) {
    return dispatch_->GetIDsOfNames(names, count, ids);
}

HRESULT Automation::Invoke(DISPID id, REFIID /*reserved*/, LCID /*locale*/, WORD flags,
                           DISPPARAMS* parameters, VARIANT* result, EXCEPINFO* exception,
                           UINT* argumentAtFault) {
    if (parameters == nullptr) {
        return refuse(E_INVALIDARG);
    }
    const ControlObject::RunningCall running(object_);
    Arguments arguments;
    if (const HRESULT taken = arguments.take(*parameters, takesTextReference(id)); FAILED(taken)) {
        if (argumentAtFault != nullptr) {
            *argumentAtFault = arguments.fault();
        }
        return refuse(taken);
    }
    SetErrorInfo(0, nullptr);
    const HRESULT called =
        table_->Invoke(static_cast<_GpsControl*>(this), id, flags, &arguments.parameters(), result,
                       exception, argumentAtFault);
    // A member that ran and failed has left its own error object, and exception tells of it.
    return SUCCEEDED(called) || called == DISP_E_EXCEPTION ? called : refuse(called);
}

HRESULT Automation::InterfaceSupportsErrorInfo(REFIID iid) {
    const bool supports = iid == __uuidof(_GpsControl) || iid == __uuidof(IDispatch);
    return supports ? S_OK : S_FALSE;
}

HRESULT Automation::GetClassInfo(ITypeInfo** info) {
    return info == nullptr ? E_POINTER : types_->GetTypeInfoOfGuid(__uuidof(::GpsControl), info);
}

HRESULT Automation::GetGUID(DWORD kind, GUID* guid) {
    if (guid == nullptr) {
        return E_POINTER;
    }
    const bool known = kind == GUIDKIND_DEFAULT_SOURCE_DISP_IID;
    *guid = known ? __uuidof(__GpsControl) : GUID_NULL;
    return known ? S_OK : E_INVALIDARG;
}

}  // namespace marlune::activex
