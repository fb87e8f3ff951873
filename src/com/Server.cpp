// The entry points of the server.
#include <olectl.h>
#include <windows.h>

#include <cwchar>

#include "com/Classes.h"
#include "com/Failure.h"
#include "com/Module.h"
#include "com/Registration.h"

using namespace kpTables::com;

BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, void*) {
    if (reason == DLL_PROCESS_ATTACH) SetModule(module);
    return TRUE;
}

STDAPI DllGetClassObject(REFCLSID id, REFIID iid, void** object) {
    if (!object) return E_POINTER;
    *object = nullptr;
    return Returned([&]() -> HRESULT {
        const auto factory = FactoryOf(id);
        return factory ? factory->QueryInterface(iid, object) : CLASS_E_CLASSNOTAVAILABLE;
    });
}

STDAPI DllCanUnloadNow() { return InUse() ? S_FALSE : S_OK; }

STDAPI DllRegisterServer() {
    return Returned([] { return Register(Scope::Machine); });
}

STDAPI DllUnregisterServer() {
    return Returned([] { return Unregister(Scope::Machine); });
}

/// regsvr32 /n /i:user registers for the user alone, and with /u ends that.
STDAPI DllInstall(BOOL install, const wchar_t* commandLine) {
    if (!commandLine || std::wcscmp(commandLine, L"user") != 0) return E_INVALIDARG;
    return Returned([install] { return install ? Register(Scope::User) : Unregister(Scope::User); });
}
