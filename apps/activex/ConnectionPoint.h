// Where hosts connect to the events: the list of connected sinks, and the raising of an event to
// all of them.
#pragma once

#include <windows.h>
// After windows.h:
#include <ocidl.h>
#include <wrl/client.h>

#include <span>
#include <vector>

#include "Part.h"

namespace marlune::activex {

// It has an identity of its own, and lives and dies with the control.
class ConnectionPoint : public IConnectionPoint {
public:
    ConnectionPoint(IUnknown& whole, IConnectionPointContainer& container)
        : whole_(whole), container_(container) {}
    ConnectionPoint(const ConnectionPoint&) = delete;
    ConnectionPoint& operator=(const ConnectionPoint&) = delete;

    // Calls every connected sink; parameters stand in reverse, as Invoke takes them. A handler may
    // connect and disconnect sinks. What a handler answers is its host's business.
    void raise(DISPID event, std::span<VARIANT> reversedParameters);
    // While frozen, events are lost: the container cannot handle them.
    void freeze(bool frozen);

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** result) override;
    ULONG STDMETHODCALLTYPE AddRef() override { return whole_.AddRef(); }
    ULONG STDMETHODCALLTYPE Release() override { return whole_.Release(); }

    HRESULT STDMETHODCALLTYPE GetConnectionInterface(IID* iid) override;
    HRESULT STDMETHODCALLTYPE
    GetConnectionPointContainer(IConnectionPointContainer** container) override;
    HRESULT STDMETHODCALLTYPE Advise(IUnknown* sink, DWORD* cookie) override;
    HRESULT STDMETHODCALLTYPE Unadvise(DWORD cookie) override;
    HRESULT STDMETHODCALLTYPE EnumConnections(IEnumConnections** connections) override;

private:
    struct Connection {
        DWORD cookie;
        Microsoft::WRL::ComPtr<IDispatch> sink;
    };

    [[nodiscard]] bool isConnected(DWORD cookie) const;

    IUnknown& whole_;
    IConnectionPointContainer& container_;
    std::vector<Connection> connections_;
    DWORD lastCookie_ = 0;
    int freezes_ = 0;
};

// The control's list of connection points, which holds this one.
class ConnectionPoints : public Part<IConnectionPointContainer> {
public:
    explicit ConnectionPoints(IUnknown& whole) : Part(whole), events_(whole, *this) {}

    [[nodiscard]] ConnectionPoint& events() { return events_; }

    HRESULT STDMETHODCALLTYPE EnumConnectionPoints(IEnumConnectionPoints** points) override;
    HRESULT STDMETHODCALLTYPE FindConnectionPoint(REFIID iid, IConnectionPoint** point) override;

private:
    ConnectionPoint events_;
};

}  // namespace marlune::activex
