#include "Registration.h"

// After windows.h:
#include <comcat.h>
#include <oleauto.h>
#include <olectl.h>
#include <wrl/client.h>

#include <array>
#include <filesystem>
#include <string>

#include "Library.h"
#include "OleObject.h"
#include "marlune_com.h"
#include "resource.h"

// The system has these since Windows Vista; the compiler's headers do not declare them.
extern "C" HRESULT WINAPI RegisterTypeLibForUser(ITypeLib* types, OLECHAR* path, OLECHAR* help);
extern "C" HRESULT WINAPI UnRegisterTypeLibForUser(REFGUID library, WORD major, WORD minor,
                                                   LCID locale, SYSKIND system);

namespace marlune::activex {
namespace {

constexpr wchar_t kName[] = L"Marlune GPS transfer control";
constexpr wchar_t kProgId[] = L"Marlune.GpsControl";
constexpr wchar_t kVersionedProgId[] = L"Marlune.GpsControl.1";
constexpr wchar_t kTypeVersion[] = L"1.0";
constexpr WORD kTypeMajor = 1;
constexpr WORD kTypeMinor = 0;

HKEY rootOf(Scope scope) {
    return scope == Scope::allUsers ? HKEY_LOCAL_MACHINE : HKEY_CURRENT_USER;
}

std::wstring guidText(REFGUID guid) {
    std::array<wchar_t, 40> text{};
    StringFromGUID2(guid, text.data(), static_cast<int>(text.size()));
    return text.data();
}

std::wstring classKey() {
    return L"CLSID\\" + guidText(__uuidof(::GpsControl));
}

// Writes into the classes of one scope. After the first failure nothing more is written.
class ClassesWriter {
public:
    explicit ClassesWriter(Scope scope) : root_(rootOf(scope)) {}

    void set(const std::wstring& key, const wchar_t* name, const std::wstring& value) {
        if (result_ == ERROR_SUCCESS) {
            result_ = RegSetKeyValueW(root_, (L"Software\\Classes\\" + key).c_str(), name, REG_SZ,
                                      value.c_str(),
                                      static_cast<DWORD>((value.size() + 1) * sizeof(wchar_t)));
        }
    }
    void set(const std::wstring& key, const std::wstring& value) { set(key, nullptr, value); }

    [[nodiscard]] HRESULT result() const { return HRESULT_FROM_WIN32(result_); }

private:
    HKEY root_;
    LSTATUS result_ = ERROR_SUCCESS;
};

HRESULT writeClasses(Scope scope) {
    const std::wstring path = libraryPath();
    const std::wstring key = classKey();
    ClassesWriter classes(scope);
    classes.set(key, kName);
    classes.set(key + L"\\InprocServer32", path);
    classes.set(key + L"\\InprocServer32", L"ThreadingModel", L"Apartment");
    classes.set(key + L"\\ProgID", kVersionedProgId);
    classes.set(key + L"\\VersionIndependentProgID", kProgId);
    classes.set(key + L"\\TypeLib", guidText(LIBID_Marlune));
    classes.set(key + L"\\Version", kTypeVersion);
    classes.set(key + L"\\Control", L"");
    classes.set(key + L"\\MiscStatus", L"0");
    classes.set(key + L"\\MiscStatus\\1", std::to_wstring(OleObject::kMiscStatus));
    classes.set(key + L"\\ToolboxBitmap32", path + L", " + std::to_wstring(IDB_TOOLBOX));
    for (const GUID& category : {CATID_Control, CATID_Programmable}) {
        classes.set(key + L"\\Implemented Categories\\" + guidText(category), L"");
    }
    for (const wchar_t* progId : {kProgId, kVersionedProgId}) {
        classes.set(progId, kName);
        classes.set(std::wstring(progId) + L"\\CLSID", guidText(__uuidof(::GpsControl)));
    }
    classes.set(std::wstring(kProgId) + L"\\CurVer", kVersionedProgId);
    return classes.result();
}

// Where editors look for the help file that the types name.
std::wstring helpFolder(const std::filesystem::path& library) {
    const std::filesystem::path folder = library.parent_path();
    const std::filesystem::path manual = folder.parent_path() / L"manual";
    std::error_code unknown;
    return exists(manual / L"marlune.chm", unknown) ? manual.wstring() : folder.wstring();
}

HRESULT registerTypes(Scope scope) {
    std::wstring path = libraryPath();
    Microsoft::WRL::ComPtr<ITypeLib> types;
    const HRESULT loaded = LoadTypeLibEx(path.c_str(), REGKIND_NONE, &types);
    if (FAILED(loaded)) {
        return loaded;
    }
    std::wstring help = helpFolder(path);
    return scope == Scope::allUsers ? RegisterTypeLib(types.Get(), path.data(), help.data())
                                    : RegisterTypeLibForUser(types.Get(), path.data(), help.data());
}

// The same kind of system as the library was built for.
constexpr SYSKIND kSystem = sizeof(void*) == 8 ? SYS_WIN64 : SYS_WIN32;
// How the registry shows the classes of the library's sister of the other kind. On a system that
// has one kind only, these are our own.
constexpr REGSAM kSisterView = sizeof(void*) == 8 ? KEY_WOW64_32KEY : KEY_WOW64_64KEY;

// True when nothing of the tree stands any more.
bool removeTree(HKEY classes, const std::wstring& key) {
    const LSTATUS removed = RegDeleteTreeW(classes, key.c_str());
    return removed == ERROR_SUCCESS || removed == ERROR_FILE_NOT_FOUND;
}

bool isSisterRegistered(Scope scope) {
    const std::wstring server = L"Software\\Classes\\" + classKey() + L"\\InprocServer32";
    HKEY key = nullptr;
    const bool is = RegOpenKeyExW(rootOf(scope), server.c_str(), 0, KEY_READ | kSisterView, &key) ==
                    ERROR_SUCCESS;
    if (is) {
        RegCloseKey(key);
    }
    return is;
}

// The class is there for each kind of system; the names are shared, and go with the last class.
bool removeClasses(Scope scope) {
    HKEY classes = nullptr;
    if (RegOpenKeyExW(rootOf(scope), L"Software\\Classes", 0, KEY_READ | KEY_WRITE | DELETE,
                      &classes) != ERROR_SUCCESS) {
        return false;
    }
    bool removed = removeTree(classes, classKey());
    if (!isSisterRegistered(scope)) {
        removed = removeTree(classes, kProgId) && removed;
        removed = removeTree(classes, kVersionedProgId) && removed;
    }
    RegCloseKey(classes);
    return removed;
}

}  // namespace

HRESULT registerControlFor(Scope scope) {
    const HRESULT types = registerTypes(scope);
    return SUCCEEDED(types) ? writeClasses(scope) : types;
}

HRESULT registerControl() {
    if (SUCCEEDED(registerControlFor(Scope::allUsers))) {
        return S_OK;
    }
    const HRESULT registered = registerControlFor(Scope::currentUser);
    return SUCCEEDED(registered) ? S_OK : SELFREG_E_CLASS;
}

HRESULT unregisterControl() {
    UnRegisterTypeLib(LIBID_Marlune, kTypeMajor, kTypeMinor, LOCALE_NEUTRAL, kSystem);
    UnRegisterTypeLibForUser(LIBID_Marlune, kTypeMajor, kTypeMinor, LOCALE_NEUTRAL, kSystem);
    const bool forUser = removeClasses(Scope::currentUser);
    const bool forAll = removeClasses(Scope::allUsers);
    return forUser || forAll ? S_OK : SELFREG_E_CLASS;
}

}  // namespace marlune::activex
