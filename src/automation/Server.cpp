// The entry points of the library.
#include <windows.h>

#include <ole2.h>

#include <algorithm>

#include "automation/Boundary.h"
#include "automation/ClassFactory.h"
#include "automation/Classes.h"
#include "automation/Registration.h"
#include "dialogs/WindowsDialogs.h"
#include "platform/ComPtr.h"
#include "platform/PlatformPorts.h"

using namespace kestrel;

STDAPI DllGetClassObject(REFCLSID clsid, REFIID riid, void** object) {
    if (object == nullptr) return E_POINTER;
    *object = nullptr;
    const auto& classes = AllClasses();
    const auto found = std::find_if(classes.begin(), classes.end(), [&](const ClassFacts* facts) {
        return facts->clsid == clsid && facts->create != nullptr;
    });
    if (found == classes.end()) return CLASS_E_CLASSNOTAVAILABLE;
    return Guarded(nullptr, [&] {
        static dialogs::WindowsDialogs windows;
        InstallPlatformPorts(&windows);
        Require(ComPtr<IClassFactory>(new ClassFactory(**found))->QueryInterface(riid, object));
    });
}

STDAPI DllCanUnloadNow() { return ModuleLock::IsLocked() ? S_FALSE : S_OK; }

STDAPI DllRegisterServer() {
    return Guarded(nullptr, [] { Register(RegistrationScope::Machine); });
}

STDAPI DllUnregisterServer() {
    return Guarded(nullptr, [] { Unregister(RegistrationScope::Machine); });
}

// With the command line "user" for the current user only, otherwise for the machine.
STDAPI DllInstall(BOOL install, LPCWSTR commandLine) {
    const bool user = commandLine != nullptr && lstrcmpiW(commandLine, L"user") == 0;
    const auto scope = user ? RegistrationScope::User : RegistrationScope::Machine;
    return Guarded(nullptr, [&] { install ? Register(scope) : Unregister(scope); });
}
