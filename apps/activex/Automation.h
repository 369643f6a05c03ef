// The control's members as automation calls them, early bound or late bound, and the descriptions
// of their types.
#pragma once

#include "Part.h"
// After windows.h:
#include <ocidl.h>
#include <wrl/client.h>

#include "marlune_com.h"

namespace marlune::activex {

class ControlObject;

class Automation : public Part<_GpsControl, ISupportErrorInfo, IProvideClassInfo2> {
public:
    Automation(IUnknown& whole, ControlObject& object) : Part(whole), object_(object) {}

    // Reads the types from the library's own file. Must succeed before anything else is called.
    HRESULT loadTypes();

    // _GpsControl
    HRESULT STDMETHODCALLTYPE GetTime(double* result) override;
    HRESULT STDMETHODCALLTYPE put_SetDebug(BSTR value) override;
    HRESULT STDMETHODCALLTYPE put_SetGpsMark(BSTR value) override;
    HRESULT STDMETHODCALLTYPE StartPvtData(VARIANT_BOOL* result) override;
    HRESULT STDMETHODCALLTYPE gpsConnect(VARIANT_BOOL* result) override;
    HRESULT STDMETHODCALLTYPE gpsDisconnect(VARIANT* result) override;
    HRESULT STDMETHODCALLTYPE getTracks(VARIANT_BOOL* result) override;
    HRESULT STDMETHODCALLTYPE getWaypts(VARIANT_BOOL* result) override;
    HRESULT STDMETHODCALLTYPE GetRoutes(VARIANT_BOOL* result) override;
    HRESULT STDMETHODCALLTYPE get_getIdent(BSTR* result) override;
    HRESULT STDMETHODCALLTYPE getProximites(VARIANT_BOOL* result) override;
    HRESULT STDMETHODCALLTYPE getPosition(BSTR* result) override;
    HRESULT STDMETHODCALLTYPE put_setNumPort(::numPort value) override;
    HRESULT STDMETHODCALLTYPE StopPvtData(VARIANT* result) override;
    HRESULT STDMETHODCALLTYPE StopTransfert(VARIANT* result) override;
    HRESULT STDMETHODCALLTYPE SendWaypts(BSTR* Fic, VARIANT* result) override;
    HRESULT STDMETHODCALLTYPE get_getProtocoles(BSTR* result) override;
    HRESULT STDMETHODCALLTYPE SendRoutes(BSTR* Fic, VARIANT* result) override;
    HRESULT STDMETHODCALLTYPE SendTraces(BSTR* Fic, VARIANT_BOOL* result) override;
    HRESULT STDMETHODCALLTYPE StartNMEA(BSTR NMEACode, short Delai, VARIANT_BOOL* result) override;
    HRESULT STDMETHODCALLTYPE StopNMEA(VARIANT* result) override;
    HRESULT STDMETHODCALLTYPE ResetComBuffers(VARIANT_BOOL* result) override;

    // IDispatch
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override;
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID locale, ITypeInfo** info) override;
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID reserved, LPOLESTR* names, UINT count,
                                            LCID locale, DISPID* ids) override;
    HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID reserved, LCID locale, WORD flags,
                                     DISPPARAMS* parameters, VARIANT* result, EXCEPINFO* exception,
                                     UINT* argumentAtFault) override;

    // ISupportErrorInfo
    HRESULT STDMETHODCALLTYPE InterfaceSupportsErrorInfo(REFIID iid) override;

    // IProvideClassInfo2
    HRESULT STDMETHODCALLTYPE GetClassInfo(ITypeInfo** info) override;
    HRESULT STDMETHODCALLTYPE GetGUID(DWORD kind, GUID* guid) override;

private:
    // Runs a member of the control and stores what it gives (body: GpsControl& -> value) as a value
    // of automation. Whatever keeps the member from running becomes an error object.
    template <class Result, class Body>
    HRESULT call(Result* result, const Body& body);
    // The same for members that leave the line alone. They also run while another one reads.
    template <class Result, class Body>
    HRESULT ask(Result* result, const Body& body);
    // The same for a property that is set, which gives nothing.
    template <class Body>
    HRESULT put(const Body& body);

    ControlObject& object_;
    Microsoft::WRL::ComPtr<ITypeLib> types_;
    Microsoft::WRL::ComPtr<ITypeInfo> dispatch_;  // the members as scripts see them
    Microsoft::WRL::ComPtr<ITypeInfo> table_;     // the same members as a table of functions
};

}  // namespace marlune::activex
