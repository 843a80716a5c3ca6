#include "dialogs/TxtEXPs.h"

#include "dialogs/frmAddNodes.h"
#include "dialogs/support/DialogTest.h"

namespace kestrel::test {

namespace {

using dialogs::FieldMove;
using dialogs::FilteredCharacter;
using dialogs::MoveFor;
using dialogs::TidiedText;
using dialogs::TxtEXPs;

// A form whose code box is worked through an editor of the test.
class TxtEXPsTest : public DialogTest {
  protected:
    TxtEXPsTest() : rule(InvoiceRule()), form(*rule) {
        form.ShowNodeEditor(rule->Band(ibRegion), L"", tvwLast, false);
        screen.emplace(Show(form));
        editor.Attach(screen->Control(ID_txtValue));
        editor.SetEnterAsTab(true);
        screen->Focus(ID_txtValue);
    }
    void Put(const String& text) { SetWindowTextW(screen->Control(ID_txtValue), text.c_str()); }
    void Caret(int start, int end) {
        SendMessageW(screen->Control(ID_txtValue), EM_SETSEL, static_cast<WPARAM>(start), end);
    }

    Ref<CodeClass> rule;
    dialogs::frmAddNodes form;
    std::optional<Screen> screen;
    TxtEXPs editor;
};

} // namespace

TEST(TxtEXPsTest_Decision, UpperCaseRaisesLettersOnly) {
    EXPECT_EQ(FilteredCharacter(L'a', true, false), L'A');
    EXPECT_EQ(FilteredCharacter(L'z', true, false), L'Z');
    EXPECT_EQ(FilteredCharacter(L'ä', true, false), L'ä');
    EXPECT_EQ(FilteredCharacter(L'a', false, false), L'a');
}

TEST(TxtEXPsTest_Decision, EnterIsAlwaysSwallowed) { EXPECT_EQ(FilteredCharacter(L'\r', false, false), 0); }

TEST(TxtEXPsTest_Decision, NumericOnlyLetsDigitsSeparatorsAndBackspaceThrough) {
    for (const wchar_t allowed : String(L"0123456789,.\b"))
        EXPECT_EQ(FilteredCharacter(allowed, false, true), allowed) << static_cast<int>(allowed);
    for (const wchar_t refused : String(L"-+aZ ()/"))
        EXPECT_EQ(FilteredCharacter(refused, false, true), 0) << static_cast<int>(refused);
}

TEST(TxtEXPsTest_Decision, KeysMoveBetweenFields) {
    EXPECT_EQ(MoveFor(VK_RETURN, L"12", 0, 2), FieldMove::Next);
    EXPECT_EQ(MoveFor(VK_RETURN, L"", 0, 0), FieldMove::Refuse);
    EXPECT_EQ(MoveFor(VK_RETURN, L"  ", 0, 0), FieldMove::Refuse);
    EXPECT_EQ(MoveFor(VK_LEFT, L"12", 0, 0), FieldMove::Previous);
    EXPECT_EQ(MoveFor(VK_LEFT, L"12", 1, 1), FieldMove::None);
    EXPECT_EQ(MoveFor(VK_LEFT, L"12", 0, 2), FieldMove::None) << "a selection is collapsed first";
    EXPECT_EQ(MoveFor(VK_RIGHT, L"12", 2, 2), FieldMove::Next);
    EXPECT_EQ(MoveFor(VK_RIGHT, L"12", 1, 1), FieldMove::None);
    EXPECT_EQ(MoveFor(VK_RIGHT, L"12", 0, 2), FieldMove::None);
    EXPECT_EQ(MoveFor(VK_UP, L"12", 0, 0), FieldMove::None);
}

TEST_F(TxtEXPsTest, TidiesByTrimmingAndFormatting) {
    EXPECT_EQ(TidiedText(L" 12 ", false, L""), L" 12 ");
    EXPECT_EQ(TidiedText(L" 12 ", true, L""), L"12");
    EXPECT_EQ(TidiedText(L" 12 ", true, L"0000"), L"0012");
}

TEST_F(TxtEXPsTest, SelectsTheWholeTextOnEntry) {
    Put(L"North");
    screen->Focus(ID_txtCode);
    screen->Focus(ID_txtValue);
    DWORD start = 9;
    DWORD end = 0;
    SendMessageW(screen->Control(ID_txtValue), EM_GETSEL, reinterpret_cast<WPARAM>(&start),
                 reinterpret_cast<LPARAM>(&end));
    EXPECT_EQ(start, 0U);
    EXPECT_EQ(end, 5U);
}

TEST_F(TxtEXPsTest, EnterTrimsAndMovesOn) {
    Put(L" 12 ");
    screen->Key(ID_txtValue, VK_RETURN);
    EXPECT_EQ(screen->Text(ID_txtValue), L"12");
    EXPECT_FALSE(screen->Focused(ID_txtValue));
    EXPECT_TRUE(screen->Focused(ID_optStyle + 2)) << "the next field, not the default button";
}

TEST_F(TxtEXPsTest, EnterInAnEmptyFieldStays) {
    Put(L"  ");
    screen->Key(ID_txtValue, VK_RETURN);
    EXPECT_TRUE(screen->Focused(ID_txtValue));
    EXPECT_EQ(screen->Text(ID_txtValue), L"");
}

TEST_F(TxtEXPsTest, ArrowsAtTheEndsMoveToTheNeighbours) {
    Put(L"12");
    Caret(1, 1);
    screen->Key(ID_txtValue, VK_LEFT);
    EXPECT_TRUE(screen->Focused(ID_txtValue));
    Caret(0, 0);
    screen->Key(ID_txtValue, VK_LEFT);
    EXPECT_TRUE(screen->Focused(ID_txtCode));
    screen->Focus(ID_txtValue);
    Caret(2, 2);
    screen->Key(ID_txtValue, VK_RIGHT);
    EXPECT_TRUE(screen->Focused(ID_optStyle + 2));
}

TEST_F(TxtEXPsTest, WithoutEnterAsTabEnterIsTheFormsOwn) {
    editor.SetEnterAsTab(false);
    Put(L"12");
    screen->Key(ID_txtValue, VK_RIGHT);
    EXPECT_TRUE(screen->Focused(ID_txtValue));
}

TEST_F(TxtEXPsTest, FiltersWhatIsTyped) {
    editor.SetNumericOnly(true);
    Put(L"");
    for (const wchar_t each : String(L"1-a2,.x3"))
        screen->Character(ID_txtValue, each);
    EXPECT_EQ(screen->Text(ID_txtValue), L"12,.3");
    editor.SetNumericOnly(false);
    editor.SetUpperCased(true);
    Put(L"");
    for (const wchar_t each : String(L"aBz"))
        screen->Character(ID_txtValue, each);
    EXPECT_EQ(screen->Text(ID_txtValue), L"ABZ");
}

TEST_F(TxtEXPsTest, TidiesWhenTheFieldIsLeft) {
    editor.SetTrimSpaces(true);
    editor.SetFormat(L"0000");
    Put(L" 7 ");
    screen->Focus(ID_txtCode);
    EXPECT_EQ(screen->Text(ID_txtValue), L"0007");
}

TEST_F(TxtEXPsTest, KeepsWhatItIsTold) {
    EXPECT_FALSE(editor.HoldsCode());
    EXPECT_EQ(editor.Tag(), L"");
    editor.SetHoldsCode(true);
    editor.SetTag(L"1853");
    EXPECT_TRUE(editor.HoldsCode());
    EXPECT_EQ(editor.Tag(), L"1853");
    Put(L" ");
    screen->Character(ID_txtValue, L'a');
    screen->Focus(ID_txtCode);
    EXPECT_EQ(screen->Text(ID_txtValue), L"a ") << "neither changes what the field does";
}

TEST_F(TxtEXPsTest, TheFormMayEndBeforeTheEditor) {
    form.Hide();
    DestroyWindow(form.Window());
    EXPECT_EQ(editor.Window(), nullptr);
}

} // namespace kestrel::test
