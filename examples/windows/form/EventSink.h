// Receives the events of a control and hands each one over by its name, as a script engine does.
#pragma once

#include <windows.h>
// After windows.h:
#include <ocidl.h>
#include <wrl/client.h>

#include <functional>
#include <string>
#include <utility>
#include <vector>

// An event's parameters as texts, in declared order.
std::vector<std::wstring> parameterTexts(const DISPPARAMS& parameters);

class EventSink : public IDispatch {
public:
    // An event: its name, and its parameters as they came, in reverse.
    using Handler = std::function<void(const std::wstring&, DISPPARAMS&)>;

    // The sink belongs to its maker and must outlive the connection.
    explicit EventSink(Handler handler) : handler_(std::move(handler)) {}
    EventSink(const EventSink&) = delete;
    EventSink& operator=(const EventSink&) = delete;
    ~EventSink() { disconnect(); }

    // Connects to the default events of an object that describes itself.
    HRESULT connect(IUnknown* source);
    void disconnect();

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** result) override;
    ULONG STDMETHODCALLTYPE AddRef() override { return 1; }
    ULONG STDMETHODCALLTYPE Release() override { return 1; }
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override;
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID locale, ITypeInfo** info) override;
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID reserved, LPOLESTR* names, UINT count,
                                            LCID locale, DISPID* ids) override;
    HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID reserved, LCID locale, WORD flags,
                                     DISPPARAMS* parameters, VARIANT* result, EXCEPINFO* exception,
                                     UINT* argumentAtFault) override;

private:
    // Finds the interface and the description of the source's default events.
    HRESULT describe(IUnknown* source);

    Handler handler_;
    IID events_{};
    Microsoft::WRL::ComPtr<ITypeInfo> names_;
    Microsoft::WRL::ComPtr<IConnectionPoint> point_;
    DWORD cookie_ = 0;
};
