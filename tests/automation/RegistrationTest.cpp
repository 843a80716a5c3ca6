// What registration writes and removes, in registry roots of its own: the registration that the other tests live from
// stays as it is. The tests name every key, as what stays behind is what nobody thought of.
#include <functional>
#include <map>

#include "automation/support/ImportHook.h"
#include "automation/support/Library.h"

namespace kestrel::test {

namespace {

// A predefined root that, in this process, leads to an empty key.
class EmptyRoot {
  public:
    explicit EmptyRoot(HKEY root) : mvarRoot(root) {
        RegDeleteTreeW(HKEY_CURRENT_USER, Path);
        const LSTATUS made =
            RegCreateKeyExW(HKEY_CURRENT_USER, Path, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &mvarKey, nullptr);
        Must(HRESULT_FROM_WIN32(static_cast<DWORD>(made)));
        RegOverridePredefKey(mvarRoot, mvarKey);
    }
    // One override at a time.
    EmptyRoot(const EmptyRoot&) = delete;
    EmptyRoot& operator=(const EmptyRoot&) = delete;
    ~EmptyRoot() {
        RegOverridePredefKey(mvarRoot, nullptr);
        RegCloseKey(mvarKey);
        RegDeleteTreeW(HKEY_CURRENT_USER, Path);
    }
    [[nodiscard]] HKEY Key() const noexcept { return mvarKey; }

  private:
    static constexpr const wchar_t* Path = sizeof(void*) == 8 ? L"Software\\KestrelTest64" : L"Software\\KestrelTest32";
    HKEY mvarRoot;
    HKEY mvarKey = nullptr;
};

using RegistryContent = std::map<String, String>; // path of a key, "|" and the name of a value; its text

void Collect(HKEY key, const String& path, RegistryContent& content) {
    wchar_t name[256];
    for (DWORD i = 0;; ++i) {
        DWORD length = 256;
        wchar_t value[512];
        DWORD size = sizeof(value);
        if (RegEnumValueW(key, i, name, &length, nullptr, nullptr, reinterpret_cast<BYTE*>(value), &size) !=
            ERROR_SUCCESS)
            break;
        content[path + L"|" + name] = String(value, size / sizeof(wchar_t) - 1);
    }
    for (DWORD i = 0; RegEnumKeyW(key, i, name, 256) == ERROR_SUCCESS; ++i) {
        HKEY below = nullptr;
        if (RegOpenKeyExW(key, name, 0, KEY_READ, &below) != ERROR_SUCCESS) continue;
        Collect(below, path.empty() ? name : path + L"\\" + name, content);
        RegCloseKey(below);
    }
}

RegistryContent Below(HKEY root, const wchar_t* path) {
    RegistryContent content;
    HKEY key = nullptr;
    if (RegOpenKeyExW(root, path, 0, KEY_READ, &key) == ERROR_SUCCESS) {
        Collect(key, {}, content);
        RegCloseKey(key);
    }
    return content;
}

String GuidText(const GUID& guid) {
    wchar_t text[40];
    StringFromGUID2(guid, text, 40);
    return text;
}

constexpr const wchar_t* LibraryId = L"{5FCF6600-4BF4-4628-AC4C-29A59E8E09EF}";

void ExpectClass(RegistryContent& expected, const String& name, const GUID& clsid, const String& description) {
    const String key = L"CLSID\\" + GuidText(clsid);
    expected[key + L"|"] = description;
    expected[key + L"\\InprocServer32|"] = LibraryPath();
    expected[key + L"\\InprocServer32|ThreadingModel"] = L"Apartment";
    expected[key + L"\\ProgID|"] = L"Kestrel." + name + L".1";
    expected[key + L"\\Programmable|"] = L"";
    expected[key + L"\\TypeLib|"] = LibraryId;
    expected[key + L"\\Version|"] = L"1.0";
    expected[key + L"\\VersionIndependentProgID|"] = L"Kestrel." + name;
    for (const String& program : {L"Kestrel." + name, L"Kestrel." + name + L".1"}) {
        expected[program + L"|"] = description;
        expected[program + L"\\CLSID|"] = GuidText(clsid);
    }
    expected[L"Kestrel." + name + L"\\CurVer|"] = L"Kestrel." + name + L".1";
}

void ExpectInterface(RegistryContent& expected, const String& name, const GUID& iid, const wchar_t* marshaller) {
    const String key = L"Interface\\" + GuidText(iid);
    expected[key + L"|"] = name;
    expected[key + L"\\ProxyStubClsid32|"] = marshaller;
    expected[key + L"\\TypeLib|"] = LibraryId;
    expected[key + L"\\TypeLib|Version"] = L"1.0";
}

RegistryContent WholeRegistration() {
    constexpr const wchar_t* byLibrary = L"{00020424-0000-0000-C000-000000000046}";
    constexpr const wchar_t* byDispatch = L"{00020420-0000-0000-C000-000000000046}";
    RegistryContent expected;
    ExpectClass(expected, L"CodeClass", __uuidof(::CodeClass), L"Kestrel code rule");
    ExpectClass(expected, L"Band", __uuidof(::Band), L"Kestrel segment of a code rule");
    ExpectClass(expected, L"cNodes", __uuidof(::cNodes), L"Kestrel relation tree");
    ExpectClass(expected, L"cNode", __uuidof(::cNode), L"Kestrel relation");
    ExpectClass(expected, L"List", __uuidof(::List), L"Kestrel named item");
    ExpectClass(expected, L"Names", __uuidof(::Names), L"Kestrel collection of names");
    ExpectInterface(expected, L"_CodeClass", __uuidof(_CodeClass), byLibrary);
    ExpectInterface(expected, L"_Band", __uuidof(_Band), byLibrary);
    ExpectInterface(expected, L"_cNodes", __uuidof(_cNodes), byLibrary);
    ExpectInterface(expected, L"_cNode", __uuidof(_cNode), byLibrary);
    ExpectInterface(expected, L"_Lists", __uuidof(_Lists), byLibrary);
    ExpectInterface(expected, L"_List", __uuidof(_List), byLibrary);
    ExpectInterface(expected, L"_Names", __uuidof(_Names), byLibrary);
    ExpectInterface(expected, L"__CodeClass", __uuidof(__CodeClass), byDispatch);
    ExpectInterface(expected, L"__Band", __uuidof(__Band), byDispatch);
    ExpectInterface(expected, L"__cNodes", __uuidof(__cNodes), byDispatch);
    ExpectInterface(expected, L"__Lists", __uuidof(__Lists), byDispatch);
    ExpectInterface(expected, L"__Names", __uuidof(__Names), byDispatch);
    const String library = String(L"TypeLib\\") + LibraryId + L"\\1.0";
    expected[library + L"|"] = L"Kestrel code rules 1.0";
    expected[library + L"\\FLAGS|"] = L"0";
    expected[library + L"\\HELPDIR|"] = LibraryFolder();
    expected[library + (sizeof(void*) == 8 ? L"\\0\\win64|" : L"\\0\\win32|")] = LibraryPath();
    return expected;
}

constexpr REGSAM OtherView = sizeof(void*) == 8 ? KEY_WOW64_32KEY : KEY_WOW64_64KEY;

// How registration opens and makes keys, one record per call.
struct Opening {
    HKEY parent;
    String path;
    REGSAM rights;
};
std::vector<Opening> openings; // of the one registration that a test watches
String inOtherView;            // the one key that is there in the other bitness's view

LSTATUS WINAPI WatchedCreate(HKEY parent, LPCWSTR path, DWORD reserved, LPWSTR type, DWORD options, REGSAM rights,
                             LPSECURITY_ATTRIBUTES security, PHKEY key, LPDWORD disposition) {
    openings.push_back({parent, path, rights});
    return RegCreateKeyExW(parent, path, reserved, type, options, rights, security, key, disposition);
}

LSTATUS WINAPI WatchedOpen(HKEY parent, LPCWSTR path, DWORD options, REGSAM rights, PHKEY key) {
    openings.push_back({parent, path, rights});
    if ((rights & OtherView) != 0) // roots of the test's own have no other view
        return path == inOtherView ? RegOpenKeyExW(parent, nullptr, 0, KEY_QUERY_VALUE, key) : ERROR_FILE_NOT_FOUND;
    return RegOpenKeyExW(parent, path, options, rights, key);
}

class RegistrationTest : public ComTest {
  protected:
    LoadedLibrary library{LibraryPath()};
    const RegistryContent expected = WholeRegistration(); // read before the registry is turned away
};

void ExpectSame(const RegistryContent& actual, const RegistryContent& expected) {
    for (const auto& [path, text] : expected) {
        const auto found = actual.find(path);
        EXPECT_TRUE(found != actual.end() && found->second == text) << testing::PrintToString(path);
    }
    for (const auto& [path, text] : actual)
        EXPECT_TRUE(expected.contains(path)) << "unexpected " << testing::PrintToString(path);
}

class RegistrationTestWatched : public RegistrationTest {
  protected:
    RegistrationTestWatched() {
        openings.clear();
        inOtherView.clear();
    }

    ImportHook create{library.Module(), "RegCreateKeyExW", reinterpret_cast<void*>(&WatchedCreate)};
    ImportHook open{library.Module(), "RegOpenKeyExW", reinterpret_cast<void*>(&WatchedOpen)};
};

} // namespace

TEST_F(RegistrationTest, MachineWideAndBack) {
    const EmptyRoot root(HKEY_LOCAL_MACHINE);
    ASSERT_EQ(library.Register(), S_OK);
    ExpectSame(Below(root.Key(), L"Software\\Classes"), expected);
    ASSERT_EQ(library.Register(), S_OK) << "a second time";
    ExpectSame(Below(root.Key(), L"Software\\Classes"), expected);
    ASSERT_EQ(library.Unregister(), S_OK);
    ExpectSame(Below(root.Key(), L"Software\\Classes"), {});
    EXPECT_EQ(library.Unregister(), S_OK) << "with nothing there";
}

TEST_F(RegistrationTest, ForTheUserAndBack) {
    const EmptyRoot root(HKEY_CURRENT_USER);
    ASSERT_EQ(library.Install(TRUE, L"user"), S_OK);
    ExpectSame(Below(root.Key(), L"Software\\Classes"), expected);
    ASSERT_EQ(library.Install(FALSE, L"USER"), S_OK);
    ExpectSame(Below(root.Key(), L"Software\\Classes"), {});
}

TEST_F(RegistrationTest, InstallWithoutUserIsMachineWide) {
    const EmptyRoot root(HKEY_LOCAL_MACHINE);
    for (const wchar_t* commandLine : {static_cast<const wchar_t*>(nullptr), L"", L"machine"}) {
        ASSERT_EQ(library.Install(TRUE, commandLine), S_OK);
        ExpectSame(Below(root.Key(), L"Software\\Classes"), expected);
        ASSERT_EQ(library.Install(FALSE, commandLine), S_OK);
        ExpectSame(Below(root.Key(), L"Software\\Classes"), {});
    }
}

TEST_F(RegistrationTest, LeavesTheOtherBitnessItsTypeLibrary) {
    const EmptyRoot root(HKEY_LOCAL_MACHINE);
    ASSERT_EQ(library.Register(), S_OK);
    const String other = String(L"Software\\Classes\\TypeLib\\") + LibraryId + L"\\1.0\\0\\" +
                         (sizeof(void*) == 8 ? L"win32" : L"win64");
    HKEY key = nullptr;
    const bool made = RegCreateKeyW(root.Key(), other.c_str(), &key) == ERROR_SUCCESS;
    ASSERT_TRUE(made);
    RegCloseKey(key);
    ASSERT_EQ(library.Unregister(), S_OK);
    const bool kept = RegOpenKeyExW(root.Key(), other.c_str(), 0, KEY_READ, &key) == ERROR_SUCCESS;
    EXPECT_TRUE(kept);
    RegCloseKey(key);
    const auto left = Below(root.Key(), L"Software\\Classes");
    EXPECT_EQ(left.size(), 3U) << "the library's name, FLAGS and HELPDIR";
}

TEST_F(RegistrationTestWatched, AsksForNoMoreThanWriting) {
    const EmptyRoot root(HKEY_LOCAL_MACHINE);
    ASSERT_EQ(library.Register(), S_OK);
    ASSERT_GT(openings.size(), 0U);
    for (const auto& opening : openings)
        EXPECT_EQ(opening.rights, static_cast<REGSAM>(KEY_SET_VALUE | KEY_CREATE_SUB_KEY))
            << testing::PrintToString(opening.path);
}

TEST_F(RegistrationTestWatched, AsksForNoMoreThanLookingWhenItEnds) {
    const EmptyRoot root(HKEY_LOCAL_MACHINE);
    ASSERT_EQ(library.Register(), S_OK);
    openings.clear();
    ASSERT_EQ(library.Unregister(), S_OK);
    ASSERT_GT(openings.size(), 0U);
    for (const auto& opening : openings)
        EXPECT_EQ(opening.rights & ~OtherView, static_cast<REGSAM>(KEY_QUERY_VALUE))
            << testing::PrintToString(opening.path);
}

// In a key that is open already, Windows has chosen the view.
TEST_F(RegistrationTestWatched, LooksAtTheOtherBitnessFromTheRoot) {
    const EmptyRoot root(HKEY_LOCAL_MACHINE);
    ASSERT_EQ(library.Register(), S_OK);
    openings.clear();
    ASSERT_EQ(library.Unregister(), S_OK);
    std::size_t looked = 0;
    for (const auto& opening : openings) {
        if ((opening.rights & OtherView) == 0) continue;
        ++looked;
        EXPECT_EQ(opening.parent, HKEY_LOCAL_MACHINE);
        EXPECT_TRUE(opening.path.starts_with(L"Software\\Classes\\CLSID\\{")) << testing::PrintToString(opening.path);
    }
    EXPECT_EQ(looked, 7U) << "once for each class";
}

// Both libraries go by the same program names, and the one that leaves last removes them.
TEST_F(RegistrationTestWatched, LeavesTheOtherBitnessItsNames) {
    const EmptyRoot root(HKEY_LOCAL_MACHINE);
    ASSERT_EQ(library.Register(), S_OK);
    inOtherView = L"Software\\Classes\\CLSID\\" + GuidText(__uuidof(::Band));
    ASSERT_EQ(library.Unregister(), S_OK);
    EXPECT_EQ(Below(root.Key(), L"Software\\Classes\\Kestrel.Band").size(), 3U) << "kept";
    EXPECT_EQ(Below(root.Key(), L"Software\\Classes\\Kestrel.Band.1").size(), 2U) << "kept";
    EXPECT_EQ(Below(root.Key(), L"Software\\Classes").size(), 5U) << "all else is removed";
    inOtherView.clear();
    ASSERT_EQ(library.Unregister(), S_OK);
    ExpectSame(Below(root.Key(), L"Software\\Classes"), {});
}

} // namespace kestrel::test
