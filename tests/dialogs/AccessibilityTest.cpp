// What screen readers find in the dialogs. Most tests read a host in another process, with nothing but the system's
// accessibility library in between.
#include <map>

#include "automation/support/Com.h"
#include "dialogs/Control.h"
#include "dialogs/ControlNames.h"
#include "dialogs/support/Captions.h"
#include "dialogs/support/RemoteDesigner.h"
#include "dialogs/support/TableStrings.h"

namespace kestrel::test {

namespace {

constexpr LONG listedAndSelected = listed | STATE_SYSTEM_SELECTED;
// Whether the host has the keyboard depends on the programs beside it.
constexpr LONG anyFocus = ~STATE_SYSTEM_FOCUSED;

class AccessibilityTest : public ComTest, public testing::WithParamInterface<Language> {
  protected:
    AccessibilityTest() : strings(GetParam()) {}
    [[nodiscard]] static String LanguageName() { return GetParam() == Language::German ? L"German" : L"English"; }
    [[nodiscard]] String Named(int number) const { return dialogs::WithoutAccessKey(strings.Text(number)); }
    // The names of a dialog's controls, by their identifiers.
    using Names = std::map<int, String>;
    [[nodiscard]] Names NamesOf(const std::vector<Caption>& captions) const {
        Names names;
        for (const auto& [control, number, label] : captions)
            names[control] = Named(number) + (label ? L":" : L"");
        return names;
    }
    void ExpectNames(const wchar_t* dialog, int caption, const Names& names) const {
        const DialogHost host(dialog, LanguageName());
        ASSERT_NE(host.Window(), nullptr) << testing::PrintToString(String(dialog));
        EXPECT_EQ(Reading(host.Window()).Name(), Named(caption));
        std::size_t found = 0;
        ExpectNamesWithin(host.Window(), names, found);
        EXPECT_EQ(found, names.size()) << testing::PrintToString(String(dialog));
    }

    TableStrings strings;

  private:
    static bool IsText(HWND window) {
        wchar_t name[16] = {};
        GetClassNameW(window, name, 16);
        return lstrcmpiW(name, L"Static") == 0;
    }
    // Every control that can be seen has its name; what is a text is its own.
    static void ExpectNamesWithin(HWND window, const Names& names, std::size_t& found) {
        for (HWND child = GetWindow(window, GW_CHILD); child != nullptr; child = GetWindow(child, GW_HWNDNEXT)) {
            if (IsWindowVisible(child) == FALSE) continue;
            const int id = GetDlgCtrlID(child);
            const auto named = names.find(id);
            ASSERT_TRUE(named != names.end() || IsText(child)) << "no name is known for " << id;
            const String name = Reading(child).Name();
            EXPECT_EQ(name, named != names.end() ? named->second : dialogs::WindowText(child)) << id;
            if (named != names.end()) ++found;
            ExpectNamesWithin(child, names, found);
        }
    }
};

INSTANTIATE_TEST_SUITE_P(AccessibilityTest_Languages, AccessibilityTest,
                         testing::Values(Language::English, Language::German), [](const auto& each) {
                             return std::string(each.param == Language::German ? "German" : "English");
                         });

} // namespace

// --- Names ---

TEST_P(AccessibilityTest, ControlsOfTheDesignerHaveTheirLabels) {
    Names names = NamesOf(designerCaptions);
    names[ID_picBand] = Named(1541);
    names[ID_imgButton] = Named(1526);
    names[ID_vscRange] = names[ID_txtRange];
    names[ID_vscRange + 1] = names[ID_txtRange + 1];
    names[ID_tvwAvailable] = names[ID_famRelation];
    ExpectNames(L"designer", 1500, names);
}

TEST_P(AccessibilityTest, ControlsOfTheNewBandHaveTheirLabels) { ExpectNames(L"band", 1811, NamesOf(bandCaptions)); }

TEST_P(AccessibilityTest, ControlsOfTheRelationHaveTheirLabels) {
    ExpectNames(L"relation", 1851, NamesOf(nodeCaptions));
    ExpectNames(L"modify", 1865, NamesOf(nodeCaptions));
}

TEST_P(AccessibilityTest, ControlsOfTheUserFieldsHaveTheirLabels) {
    Names names = NamesOf(fieldCaptions);
    names[ID_lstFields] = Named(1803);
    ExpectNames(L"fields", 1803, names);
}

TEST_P(AccessibilityTest, ControlsOfTheOptionsHaveTheirLabels) {
    ExpectNames(L"options", 1901, NamesOf(optionCaptions));
}

// What is found about the whole rule stands at no band.
TEST_P(AccessibilityTest, TheStatusLineHasTheFindingsAsItsDescription) {
    const DialogHost host(L"designer", LanguageName());
    const Reading line(GetDlgItem(host.Window(), ID_lblStatus));
    ASSERT_TRUE(line.Object());
    EXPECT_EQ(line.Name(), dialogs::WindowText(GetDlgItem(host.Window(), ID_lblStatus)));
    EXPECT_NE(line.Description().find(L"[Letter] "), String::npos) << testing::PrintToString(line.Description());
}

// --- The strip ---

TEST_P(AccessibilityTest, TheStripIsAListOfTheBands) {
    const RemoteDesigner designer(LanguageName());
    const Reading& strip = designer.strip;
    EXPECT_EQ(strip.Role(), ROLE_SYSTEM_LIST);
    EXPECT_EQ(strip.State() & anyFocus, STATE_SYSTEM_FOCUSABLE);
    EXPECT_EQ(strip.Children(), (std::vector<LONG>{1, 2, 3, 4, 5, 6}));
    const String fixed = L", " + Named(1600) + L", ";
    const String bound = L", " + Named(1602) + L", ";
    EXPECT_EQ(WithoutFindings(strip.Name(ibPrefix)), L"Prefix" + fixed + L"INV");
    EXPECT_EQ(WithoutFindings(strip.Name(ibYear)), L"Year, " + Named(1601) + L", XXXX");
    EXPECT_EQ(WithoutFindings(strip.Name(ibRegion)), L"Region" + bound + L"XX");
    EXPECT_EQ(WithoutFindings(strip.Name(ibBranch)), L"Branch" + bound + L"X");
    EXPECT_EQ(WithoutFindings(strip.Name(ibNumber)), L"Number, " + Named(1603) + L", 00001");
    EXPECT_EQ(WithoutFindings(strip.Name(ibLetter)), L"Letter, " + Named(1604) + L", A");
    EXPECT_NE(strip.Name(ibLetter).find(L", [Letter] "), String::npos) << "what is found about a letter";
    for (LONG item = ibPrefix; item <= ibLetter; ++item) {
        EXPECT_EQ(strip.Role(item), ROLE_SYSTEM_LISTITEM);
        EXPECT_EQ(strip.State(item) & anyFocus, item == ibPrefix ? listedAndSelected : listed) << item;
        EXPECT_EQ(strip.DefaultAction(item), Named(1542));
    }
}

TEST_P(AccessibilityTest, TheDefaultActionSelectsABand) {
    const RemoteDesigner designer(LanguageName());
    ASSERT_TRUE(designer.strip.Object());
    EXPECT_EQ(designer.strip.Object()->accDoDefaultAction(ChildId(ibNumber)), S_OK);
    EXPECT_EQ(designer.Text(ID_txtName), L"Number");
    EXPECT_EQ(designer.strip.State(ibNumber) & anyFocus, listedAndSelected);
    EXPECT_EQ(designer.strip.State(ibPrefix), listed);
    EXPECT_EQ(designer.strip.Selection(), ibNumber);
}

} // namespace kestrel::test
