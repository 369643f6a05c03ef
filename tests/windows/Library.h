// marlune.ocx as a file with functions that the system calls.
#pragma once

#include <windows.h>

#include <stdexcept>

#include "Control.h"

namespace marlune {

class Library {
public:
    Library() : library_(LoadLibraryW(buildFile(L"apps\\activex\\marlune.ocx").c_str())) {
        if (library_ == nullptr) {
            throw std::runtime_error("marlune.ocx cannot be loaded");
        }
    }
    Library(const Library&) = delete;
    Library& operator=(const Library&) = delete;
    ~Library() { FreeLibrary(library_); }

    HRESULT registerServer() { return function<HRESULT()>("DllRegisterServer")(); }
    HRESULT unregisterServer() { return function<HRESULT()>("DllUnregisterServer")(); }
    HRESULT canUnloadNow() { return function<HRESULT()>("DllCanUnloadNow")(); }
    HRESULT install(BOOL install, const wchar_t* argument) {
        return function<HRESULT(BOOL, const wchar_t*)>("DllInstall")(install, argument);
    }

private:
    template <class Signature>
    Signature* function(const char* name) {
        return reinterpret_cast<Signature*>(
            reinterpret_cast<void*>(GetProcAddress(library_, name)));
    }

    HMODULE library_;
};

}  // namespace marlune
