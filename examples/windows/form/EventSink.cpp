#include "EventSink.h"

// After windows.h:
#include <ocidl.h>
#include <oleauto.h>

using Microsoft::WRL::ComPtr;

namespace {

std::wstring textOf(VARIANT& value) {
    VARIANT text{};
    std::wstring result;
    if (SUCCEEDED(VariantChangeType(&text, &value, 0, VT_BSTR))) {
        result.assign(text.bstrVal, SysStringLen(text.bstrVal));
    }
    VariantClear(&text);
    return result;
}

}  // namespace

std::vector<std::wstring> parameterTexts(const DISPPARAMS& parameters) {
    std::vector<std::wstring> texts;
    for (UINT i = parameters.cArgs; i > 0; --i) {
        texts.push_back(textOf(parameters.rgvarg[i - 1]));
    }
    return texts;
}

HRESULT EventSink::describe(IUnknown* source) {
    ComPtr<IProvideClassInfo2> description;
    HRESULT found = source->QueryInterface(IID_PPV_ARGS(&description));
    if (SUCCEEDED(found)) {
        found = description->GetGUID(GUIDKIND_DEFAULT_SOURCE_DISP_IID, &events_);
    }
    ComPtr<ITypeInfo> controlClass;
    if (SUCCEEDED(found)) {
        found = description->GetClassInfo(&controlClass);
    }
    ComPtr<ITypeLib> library;
    UINT index = 0;
    if (SUCCEEDED(found)) {
        found = controlClass->GetContainingTypeLib(&library, &index);
    }
    return SUCCEEDED(found) ? library->GetTypeInfoOfGuid(events_, &names_) : found;
}

HRESULT EventSink::connect(IUnknown* source) {
    disconnect();
    HRESULT connected = describe(source);
    ComPtr<IConnectionPointContainer> points;
    if (SUCCEEDED(connected)) {
        connected = source->QueryInterface(IID_PPV_ARGS(&points));
    }
    if (SUCCEEDED(connected)) {
        connected = points->FindConnectionPoint(events_, &point_);
    }
    return SUCCEEDED(connected) ? point_->Advise(this, &cookie_) : connected;
}

void EventSink::disconnect() {
    if (cookie_ != 0) {
        point_->Unadvise(cookie_);
        cookie_ = 0;
    }
    point_.Reset();
}

HRESULT EventSink::QueryInterface(REFIID iid, void** result) {
    const bool known = iid == __uuidof(IUnknown) || iid == __uuidof(IDispatch) || iid == events_;
    *result = known ? static_cast<IDispatch*>(this) : nullptr;
    return known ? S_OK : E_NOINTERFACE;
}

HRESULT EventSink::GetTypeInfoCount(UINT* count) {
    *count = 0;
    return S_OK;
}

HRESULT EventSink::GetTypeInfo(UINT /*index*/, LCID /*locale*/, ITypeInfo** /*info*/) {
    return E_NOTIMPL;
}

HRESULT EventSink::GetIDsOfNames(REFIID /*reserved*/, LPOLESTR* names, UINT count, LCID /*locale*/,
                                 DISPID* ids) {
    return names_->GetIDsOfNames(names, count, ids);
}

HRESULT EventSink::Invoke(DISPID id, REFIID /*reserved*/, LCID /*locale*/, WORD /*flags*/,
                          DISPPARAMS* parameters, VARIANT* /*result*/, EXCEPINFO* /*exception*/,
                          UINT* /*argumentAtFault*/) {
    BSTR name = nullptr;
    UINT count = 0;
    if (FAILED(names_->GetNames(id, &name, 1, &count)) || count == 0) {
        return DISP_E_MEMBERNOTFOUND;
    }
    const std::wstring event(name, SysStringLen(name));
    SysFreeString(name);
    handler_(event, *parameters);
    return S_OK;
}
