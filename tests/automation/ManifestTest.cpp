// Activation without registration: through the manifest that lies beside the library, from copies of both in a folder
// of the test's own, so that what answers cannot be the registered library.
#include "automation/support/Late.h"
#include "automation/support/Library.h"

namespace kestrel::test {

namespace {

class ActivationContext {
  public:
    explicit ActivationContext(const String& manifest) {
        ACTCTXW parameters{};
        parameters.cbSize = sizeof(parameters);
        parameters.lpSource = manifest.c_str();
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
        const ActivationContext context(files.folder + L"\\Kestrel.manifest");
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
        const ActivationContext context(files.folder + L"\\Kestrel.manifest");
        const auto names = NewNames();
        ASSERT_EQ(PathOfCode(names.Get()), files.folder + L"\\Kestrel.dll");
        EXPECT_EQ(TextIn(Call(names.Get(), L"Add", {Arg(L"a")})), L"a");
        EXPECT_EQ(NumberIn(Call(names.Get(), L"Count")), 1);
    }
    CoFreeUnusedLibrariesEx(0, 0);
}

} // namespace kestrel::test
