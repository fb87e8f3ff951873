#include "com/Registration.h"

#include <oleauto.h>
#include <windows.h>

#include <string>

#include "com/Classes.h"
#include "com/Ids.h"
#include "com/Module.h"
#include "com/Pointer.h"
#include "com/TypeLibrary.h"

// Missing in mingw-w64's headers.
extern "C" {
HRESULT WINAPI RegisterTypeLibForUser(ITypeLib* library, OLECHAR* path, OLECHAR* helpFolder);
HRESULT WINAPI UnRegisterTypeLibForUser(REFGUID id, WORD major, WORD minor, LCID locale, SYSKIND system);
}

namespace kpTables::com {
namespace {

class Key {
public:
    Key() noexcept = default;
    ~Key() {
        if (key_) RegCloseKey(key_);
    }
    Key(const Key&) = delete;
    Key& operator=(const Key&) = delete;

    LSTATUS Create(HKEY parent, const std::wstring& path) {
        return RegCreateKeyExW(parent, path.data(), 0, nullptr, 0, KEY_WRITE, nullptr, &key_, nullptr);
    }
    LSTATUS Open(HKEY parent, const std::wstring& path, REGSAM access) {
        return RegOpenKeyExW(parent, path.data(), 0, access, &key_);
    }
    HKEY Get() const noexcept { return key_; }

private:
    HKEY key_ = nullptr;
};

HKEY RootOf(Scope scope) { return scope == Scope::Machine ? HKEY_LOCAL_MACHINE : HKEY_CURRENT_USER; }

constexpr const wchar_t* kClassesPath = L"Software\\Classes\\";

std::wstring TextOf(REFGUID id) {
    wchar_t text[39];
    StringFromGUID2(id, text, static_cast<int>(std::size(text)));
    return text;
}

std::wstring ClassPath(const Class& each) { return std::wstring(kClassesPath) + L"CLSID\\" + TextOf(*each.id); }
std::wstring ProgIdPath(const Class& each) { return std::wstring(kClassesPath) + each.progId; }

/// Sets a value of a key, which is created; "" is the default value.
LSTATUS SetText(Scope scope, const std::wstring& path, const wchar_t* name, const std::wstring& text) {
    Key key;
    const LSTATUS created = key.Create(RootOf(scope), path);
    if (created != ERROR_SUCCESS) return created;
    const auto bytes = static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t));
    return RegSetValueExW(key.Get(), name, 0, REG_SZ, reinterpret_cast<const BYTE*>(text.data()), bytes);
}

LSTATUS EnterClass(Scope scope, const Class& each) {
    const struct {
        std::wstring path;
        const wchar_t* name;
        std::wstring text;
    } entries[] = {
        {ProgIdPath(each), nullptr, each.progId},
        {ProgIdPath(each) + L"\\CLSID", nullptr, TextOf(*each.id)},
        {ClassPath(each), nullptr, each.progId},
        {ClassPath(each) + L"\\ProgID", nullptr, each.progId},
        {ClassPath(each) + L"\\Programmable", nullptr, L""},
        {ClassPath(each) + L"\\TypeLib", nullptr, TextOf(kTypeLibrary)},
        {ClassPath(each) + L"\\Version", nullptr, L"1.0"},
        {ClassPath(each) + L"\\InprocServer32", nullptr, ModulePath()},
        {ClassPath(each) + L"\\InprocServer32", L"ThreadingModel", L"Apartment"},
    };
    for (const auto& entry : entries) {
        const LSTATUS set = SetText(scope, entry.path, entry.name, entry.text);
        if (set != ERROR_SUCCESS) return set;
    }
    return ERROR_SUCCESS;
}

LSTATUS RemoveTree(Scope scope, const std::wstring& path) {
    const LSTATUS removed = RegDeleteTreeW(RootOf(scope), path.data());
    return removed == ERROR_FILE_NOT_FOUND ? ERROR_SUCCESS : removed;
}

/// The type library's file, beside the server's.
std::wstring LibraryPath() {
    std::wstring path = ModulePath();
    path.resize(path.find_last_of(L'.'));
    return path + L".tlb";
}

/// Writes the type library, unless the folder cannot be written and has it already, and registers it.
HRESULT RegisterLibrary(Scope scope) {
    std::wstring path = LibraryPath();
    const HRESULT written = WriteTypeLibrary(path);
    Pointer<ITypeLib> library;
    const HRESULT loaded = LoadTypeLibEx(path.data(), REGKIND_NONE, library.Receive());
    if (FAILED(loaded)) return FAILED(written) ? written : loaded;
    return scope == Scope::Machine ? RegisterTypeLib(library.Get(), path.data(), nullptr)
                                   : RegisterTypeLibForUser(library.Get(), path.data(), nullptr);
}

HRESULT UnregisterLibrary(Scope scope) {
    const HRESULT result =
        scope == Scope::Machine
            ? UnRegisterTypeLib(kTypeLibrary, kLibraryMajor, kLibraryMinor, LOCALE_NEUTRAL, kLibrarySystem)
            : UnRegisterTypeLibForUser(kTypeLibrary, kLibraryMajor, kLibraryMinor, LOCALE_NEUTRAL, kLibrarySystem);
    DeleteFileW(LibraryPath().data());
    return result == TYPE_E_REGISTRYACCESS ? S_OK : result;
}

HRESULT ResultOf(LSTATUS status) { return status == ERROR_SUCCESS ? S_OK : HRESULT_FROM_WIN32(status); }

}  // namespace

HRESULT Register(Scope scope) {
    LSTATUS status = ERROR_SUCCESS;
    for (const Class& each : Classes())
        if (status == ERROR_SUCCESS) status = EnterClass(scope, each);
    const HRESULT result = status == ERROR_SUCCESS ? RegisterLibrary(scope) : ResultOf(status);
    if (FAILED(result)) Unregister(scope);
    return result;
}

HRESULT Unregister(Scope scope) {
    LSTATUS status = ERROR_SUCCESS;
    for (const Class& each : Classes()) {
        for (const std::wstring& path : {ClassPath(each), ProgIdPath(each)}) {
            const LSTATUS removed = RemoveTree(scope, path);
            if (status == ERROR_SUCCESS) status = removed;
        }
    }
    const HRESULT library = UnregisterLibrary(scope);
    return status == ERROR_SUCCESS ? library : ResultOf(status);
}

}  // namespace kpTables::com
