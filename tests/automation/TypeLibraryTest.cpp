// The type library is what every host was compiled against: it never changes, except by additions at the ends.
#include <fstream>
#include <sstream>

#include "automation/support/Library.h"
#include "automation/support/TypeLibraryDump.h"

namespace kestrel::test {

namespace {

class TypeLibraryTest : public ComTest {
  protected:
    static ComPtr<ITypeLib> Library() {
        ComPtr<ITypeLib> library;
        Must(LoadTypeLibEx(LibraryPath().c_str(), REGKIND_NONE, library.Out()));
        return library;
    }
};

std::string FileContent(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    std::ostringstream content;
    content << file.rdbuf();
    return content.str();
}

} // namespace

TEST_F(TypeLibraryTest, IsWhatWasPublished) {
    const std::string published = FileContent(KESTREL_TEST_FOLDER "/Kestrel.typelib.txt");
    const std::string built = Dump(*Library().Get());
    ASSERT_FALSE(published.empty());
    std::istringstream publishedLines(published);
    std::istringstream builtLines(built);
    std::string expected;
    std::string actual;
    for (int line = 1; std::getline(publishedLines, expected); ++line) {
        ASSERT_TRUE(std::getline(builtLines, actual)) << "ends before line " << line;
        ASSERT_EQ(actual, expected) << "line " << line;
    }
    EXPECT_FALSE(std::getline(builtLines, actual)) << "has more: " << actual;
}

// Prints the library as the published file holds it: run it with --gtest_also_run_disabled_tests after an addition.
TEST_F(TypeLibraryTest, DISABLED_Print) { EXPECT_GE(std::fputs(Dump(*Library().Get()).c_str(), stdout), 0); }

TEST_F(TypeLibraryTest, IsTheOneThatTheRegistryNames) {
    ComPtr<ITypeLib> registered;
    TLIBATTR* attributes = nullptr;
    Must(Library()->GetLibAttr(&attributes));
    EXPECT_EQ(LoadRegTypeLib(attributes->guid, 1, 0, LOCALE_NEUTRAL, registered.Out()), S_OK);
    Library()->ReleaseTLibAttr(attributes);
    ASSERT_TRUE(registered);
    EXPECT_EQ(Dump(*registered.Get()), Dump(*Library().Get()));
}

} // namespace kestrel::test
