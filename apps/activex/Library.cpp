#include "Library.h"

#include <olectl.h>

#include <array>
#include <atomic>
#include <cwchar>

#include "ClassFactory.h"
#include "Registration.h"
#include "marlune_com.h"

namespace marlune::activex {
namespace {

// COM asks a library, not an object, whether it is in use: this is the library's one number.
std::atomic<long>& uses() {
    static std::atomic<long> count = 0;
    return count;
}

}  // namespace

HINSTANCE libraryInstance() {
    HMODULE library = nullptr;
    GetModuleHandleExW(
        GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
        reinterpret_cast<LPCWSTR>(&libraryInstance), &library);
    return library;
}

std::wstring libraryPath() {
    std::array<wchar_t, 32768> path{};  // the longest path there is
    const DWORD length = GetModuleFileNameW(libraryInstance(), path.data(), path.size());
    return {path.data(), length};
}

void LibraryUse::hold(bool use) {
    uses() += use ? 1 : -1;
}

bool LibraryUse::any() {
    return uses() > 0;
}

}  // namespace marlune::activex

using marlune::activex::LibraryUse;

// Once loaded, the library stays for the life of the program. The compiler's runtime for threads
// takes one of the process's few slots of thread-local storage with every loading and never gives
// it back, so a host that lets its library go between two uses would run out of them.
extern "C" BOOL WINAPI DllMain(HINSTANCE library, DWORD reason, void* /*reserved*/) {
    if (reason == DLL_PROCESS_ATTACH) {
        HMODULE pinned = nullptr;
        GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_PIN,
                           reinterpret_cast<LPCWSTR>(library), &pinned);
    }
    return TRUE;
}

// The five functions that the system looks for in the library (marlune.def).

extern "C" HRESULT STDMETHODCALLTYPE DllGetClassObject(REFCLSID id, REFIID iid, void** result) {
    if (result == nullptr) {
        return E_POINTER;
    }
    *result = nullptr;
    if (id != __uuidof(::GpsControl)) {
        return CLASS_E_CLASSNOTAVAILABLE;
    }
    auto* const factory = new marlune::activex::ClassFactory;
    const HRESULT found = factory->QueryInterface(iid, result);
    factory->Release();
    return found;
}

extern "C" HRESULT STDMETHODCALLTYPE DllCanUnloadNow() {
    return LibraryUse::any() ? S_FALSE : S_OK;
}

extern "C" HRESULT STDMETHODCALLTYPE DllRegisterServer() {
    return marlune::activex::registerControl();
}

extern "C" HRESULT STDMETHODCALLTYPE DllUnregisterServer() {
    return marlune::activex::unregisterControl();
}

// "regsvr32 /n /i:user marlune.ocx": for the current user only, whatever the rights.
extern "C" HRESULT STDMETHODCALLTYPE DllInstall(BOOL install, LPCWSTR argument) {
    using namespace marlune::activex;
    if (install == FALSE) {
        return unregisterControl();
    }
    const bool forUser = argument != nullptr && std::wcscmp(argument, L"user") == 0;
    return forUser ? registerControlFor(Scope::currentUser) : registerControl();
}
