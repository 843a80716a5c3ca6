// What a tree knows by its indexes is what one pass over its list says, as the user's locale compares. Runs in three
// languages: see CMakeLists.txt.
#include "support/RandomTrees.h"

#include "platform/WindowsText.h"
#include "support/StandIns.h"

namespace kestrel::test {

class TreeIndexesTest : public testing::Test {
  protected:
    TreeIndexesTest() : mvarBefore(InstallPorts({&mvarStrings, &mvarText, nullptr, nullptr})) {}
    ~TreeIndexesTest() override { InstallPorts(mvarBefore); }

    // Letters that some locale takes for others or for nothing: case, width, kana, accents, ligatures, contractions,
    // soft hyphens, digits of other scripts.
    const std::vector<String> mvarLetters{L"a",      L"A",      L"aa",     L"i",      L"I",      L"ss",     L"\u00DF",
                                          L"\u00E4", L"\u00C4", L"\u00E5", L"\u0130", L"\u0131", L"\uFF21", L"\uFF41",
                                          L"\u30A2", L"\u3042", L"\uFF71", L"\u00AD", L"-",      L"\u0308", L"\u0E01",
                                          L"\u0660", L"\u00B2", L"\uFB01", L"fi",     L"\u01C4", L""};

  private:
    StandInStrings mvarStrings;
    WindowsText mvarText;
    PortSet mvarBefore;
};

TEST_F(TreeIndexesTest, SayWhatAPassSaysInThisLocale) {
    int found = 0;
    for (unsigned seed = 1; seed <= 6; ++seed) {
        RandomTree tree(seed, mvarLetters);
        tree.Run(300);
        found += tree.Found();
    }
    EXPECT_GT(found, 500);
}

// What the index of texts that are not plain stands on, and the check of what conversion would find.
TEST_F(TreeIndexesTest, SortKeysAreTheSameWhereTextsAre) {
    const auto& port = TheText();
    int same = 0;
    for (const String& left : mvarLetters)
        for (const String& right : mvarLetters)
            for (const wchar_t* around : {L"", L"a", L"\u0308", L"a-", L"a b", L"A_B", L"A\u00AD"}) {
                const String text = around + left;
                const String other = around + right;
                EXPECT_EQ(port.SortKey(text) == port.SortKey(other), port.SameText(text, other))
                    << testing::PrintToString(text) << " and " << testing::PrintToString(other);
                same += text != other && port.SameText(text, other) ? 1 : 0;
            }
    EXPECT_GT(same, 10);
}

} // namespace kestrel::test
