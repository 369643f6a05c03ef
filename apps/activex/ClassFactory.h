// Makes controls for COM.
#pragma once

#include <windows.h>
// After windows.h:
#include <unknwn.h>

#include <atomic>
#include <optional>

#include "Library.h"

namespace marlune::activex {

class ClassFactory final : public IClassFactory {
public:
    ClassFactory() = default;
    ClassFactory(const ClassFactory&) = delete;
    ClassFactory& operator=(const ClassFactory&) = delete;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** result) override;
    ULONG STDMETHODCALLTYPE AddRef() override;
    ULONG STDMETHODCALLTYPE Release() override;
    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID iid, void** result) override;
    HRESULT STDMETHODCALLTYPE LockServer(BOOL lock) override;

private:
    ~ClassFactory() = default;

    std::atomic<ULONG> references_ = 1;
    LibraryUse use_;
};

}  // namespace marlune::activex
