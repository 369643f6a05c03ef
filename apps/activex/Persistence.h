// Saving and loading with a form. The control keeps nothing between two runs: a host sets what it
// needs through the members, so what is written is empty and nothing is read.
#pragma once

#include "Part.h"
// After windows.h:
#include <ocidl.h>

namespace marlune::activex {

class Persistence : public Part<IPersistStreamInit, IPersistPropertyBag, IPersistStorage> {
public:
    using Part::Part;

    HRESULT STDMETHODCALLTYPE GetClassID(CLSID* id) override;
    HRESULT STDMETHODCALLTYPE IsDirty() override { return S_FALSE; }
    HRESULT STDMETHODCALLTYPE InitNew() override { return S_OK; }

    HRESULT STDMETHODCALLTYPE Load(IStream* /*stream*/) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE Save(IStream* /*stream*/, BOOL /*clear*/) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE GetSizeMax(ULARGE_INTEGER* size) override;

    HRESULT STDMETHODCALLTYPE Load(IPropertyBag* /*bag*/, IErrorLog* /*log*/) override {
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE Save(IPropertyBag* /*bag*/, BOOL /*clear*/, BOOL /*all*/) override {
        return S_OK;
    }

    HRESULT STDMETHODCALLTYPE InitNew(IStorage* /*storage*/) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE Load(IStorage* /*storage*/) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE Save(IStorage* /*storage*/, BOOL /*same*/) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE SaveCompleted(IStorage* /*storage*/) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE HandsOffStorage() override { return S_OK; }
};

}  // namespace marlune::activex
