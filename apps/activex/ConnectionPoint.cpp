#include "ConnectionPoint.h"

#include <olectl.h>

#include <algorithm>

#include "Enumerator.h"
#include "marlune_com.h"

namespace marlune::activex {

using Microsoft::WRL::ComPtr;

namespace {

struct CopyPoint {
    static IConnectionPoint* copy(const ComPtr<IConnectionPoint>& held) {
        held->AddRef();
        return held.Get();
    }
};
using PointEnumerator =
    Enumerator<IEnumConnectionPoints, IConnectionPoint*, ComPtr<IConnectionPoint>, CopyPoint>;

struct HeldConnection {
    DWORD cookie;
    ComPtr<IUnknown> sink;
};
struct CopyConnection {
    static CONNECTDATA copy(const HeldConnection& held) {
        held.sink->AddRef();
        return {held.sink.Get(), held.cookie};
    }
};
using ConnectionEnumerator =
    Enumerator<IEnumConnections, CONNECTDATA, HeldConnection, CopyConnection>;

void callSink(IDispatch& sink, DISPID event, std::span<VARIANT> reversedParameters) {
    DISPPARAMS parameters{reversedParameters.data(), nullptr,
                          static_cast<UINT>(reversedParameters.size()), 0};
    EXCEPINFO exception{};
    sink.Invoke(event, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &parameters, nullptr,
                &exception, nullptr);
    SysFreeString(exception.bstrSource);
    SysFreeString(exception.bstrDescription);
    SysFreeString(exception.bstrHelpFile);
}

}  // namespace

void ConnectionPoint::raise(DISPID event, std::span<VARIANT> reversedParameters) {
    if (freezes_ > 0) {
        return;
    }
    const std::vector<Connection> connections = connections_;
    for (const Connection& connection : connections) {
        if (isConnected(connection.cookie)) {
            callSink(*connection.sink.Get(), event, reversedParameters);
        }
    }
}

void ConnectionPoint::freeze(bool frozen) {
    freezes_ = std::max(0, freezes_ + (frozen ? 1 : -1));
}

bool ConnectionPoint::isConnected(DWORD cookie) const {
    return std::any_of(connections_.begin(), connections_.end(),
                       [&](const Connection& connection) { return connection.cookie == cookie; });
}

HRESULT ConnectionPoint::QueryInterface(REFIID iid, void** result) {
    if (result == nullptr) {
        return E_POINTER;
    }
    const bool known = iid == __uuidof(IUnknown) || iid == __uuidof(IConnectionPoint);
    *result = known ? static_cast<IConnectionPoint*>(this) : nullptr;
    if (known) {
        AddRef();
    }
    return known ? S_OK : E_NOINTERFACE;
}

HRESULT ConnectionPoint::GetConnectionInterface(IID* iid) {
    if (iid == nullptr) {
        return E_POINTER;
    }
    *iid = __uuidof(__GpsControl);
    return S_OK;
}

HRESULT ConnectionPoint::GetConnectionPointContainer(IConnectionPointContainer** container) {
    if (container == nullptr) {
        return E_POINTER;
    }
    *container = &container_;
    container_.AddRef();
    return S_OK;
}

HRESULT ConnectionPoint::Advise(IUnknown* sink, DWORD* cookie) {
    if (sink == nullptr || cookie == nullptr) {
        return E_POINTER;
    }
    *cookie = 0;
    ComPtr<IDispatch> dispatch;
    // A sink may answer to the events' own identity only, or to nothing but late binding.
    if (FAILED(sink->QueryInterface(__uuidof(__GpsControl),
                                    reinterpret_cast<void**>(dispatch.GetAddressOf()))) &&
        FAILED(sink->QueryInterface(__uuidof(IDispatch),
                                    reinterpret_cast<void**>(dispatch.GetAddressOf())))) {
        return CONNECT_E_CANNOTCONNECT;
    }
    *cookie = ++lastCookie_;
    connections_.push_back({*cookie, std::move(dispatch)});
    return S_OK;
}

HRESULT ConnectionPoint::Unadvise(DWORD cookie) {
    const auto at =
        std::find_if(connections_.begin(), connections_.end(),
                     [&](const Connection& connection) { return connection.cookie == cookie; });
    if (at == connections_.end()) {
        return CONNECT_E_NOCONNECTION;
    }
    // Letting the sink go may call back into here, so the list is in order before.
    const Connection removed = std::move(*at);
    connections_.erase(at);
    return S_OK;
}

HRESULT ConnectionPoint::EnumConnections(IEnumConnections** connections) {
    std::vector<HeldConnection> held;
    for (const Connection& connection : connections_) {
        held.push_back({connection.cookie, connection.sink});
    }
    return ConnectionEnumerator::create(std::move(held), connections);
}

HRESULT ConnectionPoints::EnumConnectionPoints(IEnumConnectionPoints** points) {
    return PointEnumerator::create({ComPtr<IConnectionPoint>(&events_)}, points);
}

HRESULT ConnectionPoints::FindConnectionPoint(REFIID iid, IConnectionPoint** point) {
    if (point == nullptr) {
        return E_POINTER;
    }
    *point = nullptr;
    return iid == __uuidof(__GpsControl)
               ? events_.QueryInterface(__uuidof(IConnectionPoint), reinterpret_cast<void**>(point))
               : CONNECT_E_NOCONNECTION;
}

}  // namespace marlune::activex
