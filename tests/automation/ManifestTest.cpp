// Activation without registration: through the manifest that lies beside the library, from copies of both in a folder
// of the test's own, so that what answers cannot be the registered library.
#include <filesystem>
#include <fstream>

#include "automation/support/Late.h"
#include "automation/support/Library.h"

namespace kestrel::test {

namespace {

class ActivationContext {
  public:
    // The manifest, and where the assemblies lie that it depends on.
    ActivationContext(const String& manifest, const String& folder) {
        ACTCTXW parameters{};
        parameters.cbSize = sizeof(parameters);
        parameters.dwFlags = ACTCTX_FLAG_ASSEMBLY_DIRECTORY_VALID;
        parameters.lpSource = manifest.c_str();
        parameters.lpAssemblyDirectory = folder.c_str();
        mvarContext = CreateActCtxW(&parameters);
        if (mvarContext == INVALID_HANDLE_VALUE) throw HostError(HRESULT_FROM_WIN32(GetLastError()));
        ActivateActCtx(mvarContext, &mvarCookie);
    }
    // Activated once.
    ActivationContext(const ActivationContext&) = delete;
    ActivationContext& operator=(const ActivationContext&) = delete;
    ~ActivationContext() {
        DeactivateActCtx(0, mvarCookie);
        ReleaseActCtx(mvarContext);
    }

  private:
    HANDLE mvarContext;
    ULONG_PTR mvarCookie = 0;
};

class CopiedFiles {
  public:
    CopiedFiles() {
        wchar_t base[MAX_PATH];
        GetTempPathW(MAX_PATH, base);
        folder = String(base) + L"kestrel-" + std::to_wstring(GetCurrentProcessId());
        CreateDirectoryW(folder.c_str(), nullptr);
        for (const wchar_t* name : Names)
            if (!CopyFileW((LibraryFolder() + name).c_str(), (folder + name).c_str(), FALSE))
                throw HostError(HRESULT_FROM_WIN32(GetLastError()));
    }
    // Copied once, removed once.
    CopiedFiles(const CopiedFiles&) = delete;
    CopiedFiles& operator=(const CopiedFiles&) = delete;
    ~CopiedFiles() {
        for (const wchar_t* name : Names)
            DeleteFileW((folder + name).c_str());
        RemoveDirectoryW(folder.c_str());
    }

    String folder;

  private:
    static constexpr const wchar_t* Names[] = {L"\\Kestrel.dll", L"\\Kestrel.manifest"};
};

class ManifestTest : public ComTest {};

String PathOfModuleAt(const void* address) {
    HMODULE module = nullptr;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                       static_cast<LPCWSTR>(address), &module);
    wchar_t path[MAX_PATH];
    return String(path, GetModuleFileNameW(module, path, MAX_PATH));
}

// Where the code of an object lies: what its vtable points to.
String PathOfCode(IUnknown* object) { return PathOfModuleAt(**reinterpret_cast<void***>(object)); }

} // namespace

TEST_F(ManifestTest, EveryClassComesFromTheFolderOfTheManifest) {
    const CopiedFiles files;
    {
        const ActivationContext context(files.folder + L"\\Kestrel.manifest", files.folder);
        for (const wchar_t* name : {L"Kestrel.CodeClass", L"Kestrel.Band", L"Kestrel.cNodes", L"Kestrel.cNode",
                                    L"Kestrel.List", L"Kestrel.Names", L"Kestrel.CodeClass.1"}) {
            CLSID clsid{};
            ASSERT_EQ(CLSIDFromProgID(name, &clsid), S_OK) << testing::PrintToString(String(name));
            ComPtr<IDispatch> object;
            ASSERT_EQ(CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch, object.OutVoid()), S_OK);
            EXPECT_EQ(PathOfCode(object.Get()), files.folder + L"\\Kestrel.dll");
        }
    }
    CoFreeUnusedLibrariesEx(0, 0); // or the copy cannot be removed
}

TEST_F(ManifestTest, LateBoundCallsWork) {
    const CopiedFiles files;
    {
        const ActivationContext context(files.folder + L"\\Kestrel.manifest", files.folder);
        const auto names = NewNames();
        ASSERT_EQ(PathOfCode(names.Get()), files.folder + L"\\Kestrel.dll");
        EXPECT_EQ(TextIn(Call(names.Get(), L"Add", {Arg(L"a")})), L"a");
        EXPECT_EQ(NumberIn(Call(names.Get(), L"Count")), 1);
    }
    CoFreeUnusedLibrariesEx(0, 0);
}

// Whether the active context itself, not the registry, says which library has the class.
bool ContextNames(const CLSID& clsid) {
    ACTCTX_SECTION_KEYED_DATA found{};
    found.cbSize = sizeof(found);
    return FindActCtxSectionGuid(0, nullptr, ACTIVATION_CONTEXT_SECTION_COM_SERVER_REDIRECTION, &clsid, &found) !=
           FALSE;
}

// As in the manifest of a host program: the assembly's name alone. The library in the host's folder is found by it, and
// says the rest itself.
TEST_F(ManifestTest, ADependencyIsEnough) {
    const CopiedFiles files; // for the folder of the host's manifest
    const String host = files.folder + L"\\host.manifest";
    std::ofstream(std::filesystem::path(host))
        << R"(<assembly xmlns="urn:schemas-microsoft-com:asm.v1" manifestVersion="1.0">
               <dependency><dependentAssembly>
                 <assemblyIdentity type="win32" name="Kestrel" version="1.0.0.0" processorArchitecture=")"
        << (sizeof(void*) == 8 ? "amd64" : "x86") << R"("/></dependentAssembly></dependency></assembly>)";
    CLSID clsid{};
    ASSERT_EQ(CLSIDFromProgID(L"Kestrel.Names", &clsid), S_OK);
    EXPECT_FALSE(ContextNames(clsid));
    {
        const ActivationContext context(host, LibraryFolder());
        EXPECT_TRUE(ContextNames(clsid));
        EXPECT_EQ(PathOfCode(NewNames().Get()), LibraryFolder() + L"\\Kestrel.dll");
    }
    CoFreeUnusedLibrariesEx(0, 0);
    DeleteFileW(host.c_str());
}

} // namespace kestrel::test
