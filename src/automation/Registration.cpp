#include "automation/Registration.h"

#include <ole2.h>

#include "automation/Boundary.h"
#include "automation/Classes.h"
#include "automation/RegistryKey.h"
#include "automation/TypeLibrary.h"
#include "platform/Module.h"

namespace kestrel {

namespace {

constexpr bool Is64Bit = sizeof(void*) == 8;
constexpr REGSAM OtherView = Is64Bit ? KEY_WOW64_32KEY : KEY_WOW64_64KEY;
// The marshallers of the automation runtime: by type library, and for plain dispatch interfaces.
constexpr wchar_t TypeLibraryMarshaller[] = L"{00020424-0000-0000-C000-000000000046}";
constexpr wchar_t DispatchMarshaller[] = L"{00020420-0000-0000-C000-000000000046}";
constexpr wchar_t LibraryVersion[] = L"1.0";
// Below a root; all the other paths are below this one.
constexpr wchar_t Classes[] = L"Software\\Classes\\";

String BracedText(REFGUID guid) {
    wchar_t text[40];
    return String(text, static_cast<std::size_t>(StringFromGUID2(guid, text, 40)) - 1);
}

String LibraryId() { return BracedText(TypeLibraryId()); }
String ProgramName(const ClassFacts& facts) { return String(L"Kestrel.") + facts.name; }
String VersionedName(const ClassFacts& facts) { return ProgramName(facts) + L".1"; }
String ClassPath(const ClassFacts& facts) { return L"CLSID\\" + BracedText(facts.clsid); }
String InterfacePath(const IID& iid) { return L"Interface\\" + BracedText(iid); }
String PlatformPath() { return L"TypeLib\\" + LibraryId() + L"\\1.0\\0\\" + (Is64Bit ? L"win64" : L"win32"); }

HKEY RootOf(RegistrationScope scope) noexcept {
    return scope == RegistrationScope::User ? HKEY_CURRENT_USER : HKEY_LOCAL_MACHINE;
}

void WriteProgramName(const RegistryKey& classes, const ClassFacts& facts, const String& name) {
    classes.WriteBelow(name, facts.description);
    classes.WriteBelow(name + L"\\CLSID", BracedText(facts.clsid));
}

void WriteClass(const RegistryKey& classes, const ClassFacts& facts, const String& path) {
    const RegistryKey key(classes.Get(), ClassPath(facts));
    key.Write(facts.description);
    const RegistryKey server(key.Get(), L"InprocServer32");
    server.Write(path);
    server.Write(L"Apartment", L"ThreadingModel");
    key.WriteBelow(L"ProgID", VersionedName(facts));
    key.WriteBelow(L"VersionIndependentProgID", ProgramName(facts));
    key.WriteBelow(L"Programmable", {});
    key.WriteBelow(L"TypeLib", LibraryId());
    key.WriteBelow(L"Version", LibraryVersion);
    WriteProgramName(classes, facts, VersionedName(facts));
    WriteProgramName(classes, facts, ProgramName(facts));
    classes.WriteBelow(ProgramName(facts) + L"\\CurVer", VersionedName(facts));
}

void WriteInterface(const RegistryKey& classes, const IID& iid, const String& name, const wchar_t* marshaller) {
    const RegistryKey key(classes.Get(), InterfacePath(iid));
    key.Write(name);
    key.WriteBelow(L"ProxyStubClsid32", marshaller);
    key.WriteBelow(L"TypeLib", LibraryId());
    RegistryKey(key.Get(), L"TypeLib").Write(LibraryVersion, L"Version");
}

void WriteLibrary(const RegistryKey& classes, const String& path) {
    const RegistryKey version(classes.Get(), L"TypeLib\\" + LibraryId() + L"\\1.0");
    version.Write(L"Kestrel code rules 1.0");
    version.WriteBelow(L"FLAGS", L"0");
    version.WriteBelow(L"HELPDIR", path.substr(0, path.find_last_of(L'\\')));
    classes.WriteBelow(PlatformPath(), path);
}

void RemoveClass(HKEY root, const ClassFacts& facts) {
    const String path = Classes + ClassPath(facts);
    RemoveKey(root, path);
    if (KeyExists(root, path, OtherView)) return; // the other library still goes by these names
    RemoveKey(root, Classes + VersionedName(facts));
    RemoveKey(root, Classes + ProgramName(facts));
}

void RemoveLibrary(HKEY root) {
    const String library = Classes + (L"TypeLib\\" + LibraryId());
    RemoveKey(root, Classes + PlatformPath());
    if (!KeyExists(root, library, 0)) return;
    RemoveKeyIfChildless(root, library + L"\\1.0\\0");
    if (!KeyExists(root, library + L"\\1.0\\0", 0)) RemoveKey(root, library + L"\\1.0");
    RemoveKeyIfChildless(root, library);
}

// Takes back a registration that failed half way.
class Rollback {
  public:
    explicit Rollback(RegistrationScope scope) noexcept : mvarScope(scope) {}
    // Belongs to one registration.
    Rollback(const Rollback&) = delete;
    Rollback& operator=(const Rollback&) = delete;
    ~Rollback() {
        if (!mvarDone)
            static_cast<void>(Guarded(nullptr, [this] { Unregister(mvarScope); })); // the first failure is the one told
    }
    void Done() noexcept { mvarDone = true; }

  private:
    RegistrationScope mvarScope;
    bool mvarDone = false;
};

} // namespace

void Register(RegistrationScope scope) {
    Rollback rollback(scope);
    const RegistryKey classes(RootOf(scope), L"Software\\Classes");
    const String path = ModulePath(ThisModule());
    for (const auto* facts : AllClasses()) {
        if (facts->create != nullptr) WriteClass(classes, *facts, path);
        WriteInterface(classes, facts->iid, String(L"_") + facts->name, TypeLibraryMarshaller);
        if (facts->events != nullptr)
            WriteInterface(classes, *facts->events, String(L"__") + facts->name, DispatchMarshaller);
    }
    WriteLibrary(classes, path);
    rollback.Done();
}

void Unregister(RegistrationScope scope) {
    const HKEY root = RootOf(scope);
    for (const auto* facts : AllClasses()) {
        RemoveClass(root, *facts);
        RemoveKey(root, Classes + InterfacePath(facts->iid));
        if (facts->events != nullptr) RemoveKey(root, Classes + InterfacePath(*facts->events));
    }
    RemoveLibrary(root);
}

} // namespace kestrel
