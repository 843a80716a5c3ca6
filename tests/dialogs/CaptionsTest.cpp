// The texts of every dialog in both languages: that each is the right one, that none is cut off, and that no two of a
// dialog have the same access key.
#include <map>

#include "dialogs/FindingTexts.h"
#include "dialogs/FormMenu.h"
#include "dialogs/frmAddBands.h"
#include "dialogs/frmAddNodes.h"
#include "dialogs/frmAdvanceds.h"
#include "dialogs/frmDesigners.h"
#include "dialogs/frmDropFields.h"
#include "dialogs/support/Captions.h"
#include "dialogs/support/DialogTest.h"
#include "dialogs/support/TableStrings.h"
#include "engine/RuleCheck.h"

namespace kestrel::test {

namespace {

class CaptionsTest : public DialogTest, public testing::WithParamInterface<Language> {
  protected:
    CaptionsTest()
        : strings(GetParam()), mvarBefore(InstallPorts({&strings, &TheText(), &prompts, &recorded})),
          rule(InvoiceRule()), designer(*rule), band(*rule), node(*rule), modified(*rule), fields(*rule) {
        designer.Load();
        band.ShowNewBand(L"Number", 2);
        node.ShowNodeEditor(rule->Band(ibRegion), L"N1", tvwNext, false);
        modified.ShowNodeEditor(rule->Band(ibRegion), L"N1", tvwNext, true);
        fields.Load();
        options.ShowInfo(rule.Get(), L"");
    }
    ~CaptionsTest() override { InstallPorts(mvarBefore); }

    [[nodiscard]] std::vector<dialogs::Form*> Forms() {
        return {&designer, &band, &node, &modified, &fields, &options};
    }
    [[nodiscard]] Texts TextsOf(std::initializer_list<int> numbers) const {
        Texts texts;
        for (const int number : numbers)
            texts.push_back(strings.Text(number));
        return texts;
    }
    void ExpectCaptions(const dialogs::Form& form, int caption, const std::vector<Caption>& captions) const {
        EXPECT_EQ(form.Caption(), strings.Text(caption));
        for (const auto& [control, number, label] : captions) {
            const HWND window = label ? GetWindow(form.Find(control), GW_HWNDPREV) : form.Find(control);
            EXPECT_EQ(dialogs::WindowText(window), strings.Text(number) + (label ? L":" : L"")) << number;
        }
        const auto& controls = form.Controls();
        const auto tagged =
            std::count_if(controls.begin(), controls.end(), [](const auto& c) { return !c.tag.empty(); });
        EXPECT_EQ(static_cast<std::size_t>(tagged), captions.size()) << "every control with a text is in the list";
    }

    TableStrings strings;

  private:
    PortSet mvarBefore;

  protected:
    Ref<CodeClass> rule;
    dialogs::frmDesigners designer;
    dialogs::frmAddBands band;
    dialogs::frmAddNodes node;
    dialogs::frmAddNodes modified;
    dialogs::frmDropFields fields;
    dialogs::frmAdvanceds options;
};

void ExpectMenu(const TableStrings& strings, HMENU menu, std::initializer_list<int> numbers) {
    ASSERT_EQ(GetMenuItemCount(menu), static_cast<int>(numbers.size()));
    UINT place = 0;
    for (const int number : numbers) {
        wchar_t text[64] = {};
        GetMenuStringW(menu, place++, text, 64, MF_BYPOSITION);
        EXPECT_EQ(String(text), strings.Text(number)) << number;
    }
}

// --- Room ---

LONG Style(HWND control) { return GetWindowLongW(control, GWL_STYLE); }

bool HasClass(HWND control, const wchar_t* name) {
    wchar_t actual[32] = {};
    GetClassNameW(control, actual, 32);
    return lstrcmpiW(actual, name) == 0;
}

// What a button draws beside its text, at the resolution of the form.
int Decoration(HWND button, int dpi) {
    const LONG type = Style(button) & BS_TYPEMASK;
    if (type == BS_PUSHBUTTON || type == BS_DEFPUSHBUTTON) return MulDiv(12, dpi, 96);
    return MulDiv(20, dpi, 96); // the circle or box and its distance, the margins of a frame
}

SIZE SizeOf(HWND control, const String& text, UINT format, int width) {
    const dialogs::WindowContext context(control);
    const dialogs::Selected font(context.Get(), reinterpret_cast<HFONT>(SendMessageW(control, WM_GETFONT, 0, 0)));
    RECT area{0, 0, width, 0};
    DrawTextW(context.Get(), text.c_str(), -1, &area, DT_CALCRECT | format);
    return {area.right, area.bottom};
}

void ExpectButtonRoom(HWND button, int dpi) {
    RECT client{};
    GetClientRect(button, &client);
    const String text = dialogs::WindowText(button);
    EXPECT_LE(SizeOf(button, text, DT_SINGLELINE, 0).cx + Decoration(button, dpi), client.right)
        << testing::PrintToString(text) << " at " << dpi;
}

void ExpectLabelRoom(HWND label, int dpi) {
    RECT client{};
    GetClientRect(label, &client);
    const String text = dialogs::WindowText(label);
    const SIZE size = SizeOf(label, text, DT_WORDBREAK | DT_EXPANDTABS, client.right);
    EXPECT_LE(size.cx, client.right) << testing::PrintToString(text) << " at " << dpi;
    EXPECT_LE(size.cy, client.bottom) << testing::PrintToString(text) << " at " << dpi;
}

void ExpectRowRoom(HWND combo, int dpi) {
    COMBOBOXINFO parts{};
    parts.cbSize = sizeof parts;
    ASSERT_TRUE(GetComboBoxInfo(combo, &parts));
    for (LRESULT row = 0; row < SendMessageW(combo, CB_GETCOUNT, 0, 0); ++row) {
        wchar_t text[128] = {};
        SendMessageW(combo, CB_GETLBTEXT, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(text));
        EXPECT_LE(SizeOf(combo, text, DT_SINGLELINE | DT_NOPREFIX, 0).cx, parts.rcItem.right - parts.rcItem.left)
            << testing::PrintToString(String(text)) << " at " << dpi;
    }
}

void ExpectRoom(HWND control, int dpi) {
    const bool cutsItself = (Style(control) & SS_ELLIPSISMASK) != 0;
    if (HasClass(control, L"Button")) ExpectButtonRoom(control, dpi);
    if (HasClass(control, L"Static") && !cutsItself) ExpectLabelRoom(control, dpi);
    if (HasClass(control, L"ComboBox")) ExpectRowRoom(control, dpi);
}

// --- Access keys ---

String AccessKeyIn(const String& text) {
    const auto mark = text.find(L'&');
    return mark == String::npos || mark + 1 == text.size() ? String() : TheText().Upper(text.substr(mark + 1, 1));
}

String TwiceIn(const std::vector<String>& texts) {
    std::map<String, int> uses;
    for (const auto& text : texts)
        if (const String key = AccessKeyIn(text); !key.empty()) ++uses[key];
    String twice;
    for (const auto& [key, count] : uses)
        if (count > 1) twice += key;
    return twice;
}

std::vector<String> TextsIn(const dialogs::Form& form) {
    std::vector<String> texts;
    for (const auto& control : form.Controls())
        if (HasClass(control.window, L"Button")) texts.push_back(dialogs::WindowText(control.window));
    return texts;
}

std::vector<String> TextsIn(HMENU menu) {
    std::vector<String> texts;
    for (int place = 0; place < GetMenuItemCount(menu); ++place) {
        wchar_t text[64] = {};
        GetMenuStringW(menu, static_cast<UINT>(place), text, 64, MF_BYPOSITION);
        texts.emplace_back(text);
    }
    return texts;
}

} // namespace

INSTANTIATE_TEST_SUITE_P(CaptionsTest_Languages, CaptionsTest, testing::Values(Language::English, Language::German),
                         [](const auto& each) {
                             return std::string(each.param == Language::German ? "German" : "English");
                         });

TEST_P(CaptionsTest, EveryControlHasItsText) {
    ExpectCaptions(designer, 1500, designerCaptions);
    ExpectCaptions(band, 1811, bandCaptions);
    ExpectCaptions(node, 1851, nodeCaptions);
    ExpectCaptions(modified, 1865, nodeCaptions);
    ExpectCaptions(fields, 1803, fieldCaptions);
    ExpectCaptions(options, 1901, optionCaptions);
    EXPECT_EQ(Screen(node.Window()).Text(ID_lblInfo), strings.Text(1859) + L" 1 (Region)");
}

TEST_P(CaptionsTest, EveryListHasItsRows) {
    const Texts styles = TextsOf({1600, 1601, 1602, 1603, 1604});
    const Texts swaps = TextsOf({1611, 1612, 1613});
    const Texts raises = TextsOf({1621, 1622, 1623, 1624, 1625, 1626});
    for (const auto* form : std::initializer_list<dialogs::Form*>{&designer, &band}) {
        const Screen screen(form->Window());
        EXPECT_EQ(screen.Rows(ID_cboStyle), styles);
        EXPECT_EQ(screen.Rows(ID_cboSwapMode), swaps);
        EXPECT_EQ(screen.Rows(ID_cboIncrMode), raises);
        EXPECT_EQ(screen.Rows(ID_cboTrigerBand).front(), strings.Text(1701));
    }
}

TEST_P(CaptionsTest, EveryMenuItemHasItsText) {
    const dialogs::FormMenu bands(IDR_mnuBand);
    bands.Localise();
    ExpectMenu(strings, bands.Handle(), {1201, 1205, 0, 1206});
    ExpectMenu(strings, GetSubMenu(bands.Handle(), 0), {1202, 1203, 1204});
    const dialogs::FormMenu nodes(IDR_mnuNode);
    nodes.Localise();
    ExpectMenu(strings, nodes.Handle(), {1208, 1213, 1214, 0, 1215});
    ExpectMenu(strings, GetSubMenu(nodes.Handle(), 0), {1209, 1210, 1211, 1212});
}

TEST_P(CaptionsTest, ToolTipsTellWhatTheButtonsDo) {
    EXPECT_EQ(designer.Tips().Text(designer.Find(ID_imgButton)), strings.Text(1526));
    EXPECT_EQ(designer.Tips().Text(designer.Find(ID_cmdAppend)), strings.Text(1527));
    EXPECT_EQ(designer.Tips().Text(designer.Find(ID_cmdDrop)), strings.Text(1528));
}

TEST_P(CaptionsTest, NothingIsCutOffAtAnyResolution) {
    for (const int dpi : {96, 120, 144, 192}) {
        for (auto* form : Forms()) {
            RECT place{0, 0, 100, 100};
            SendMessageW(form->Window(), 0x02E0, MAKEWPARAM(dpi, dpi), reinterpret_cast<LPARAM>(&place)); // DPI changed
            for (int style = 0; form == &band && style < 5; ++style) { // each style has its hint
                Screen(band.Window()).Pick(ID_cboStyle, style);
                ExpectRoom(band.Find(ID_lblInfo), dpi);
            }
            for (int each = ibPrefix; form == &designer && each <= ibLetter; ++each) { // so has each kind of band
                designer.RefreshBands(rule.Get(), each - 1);
                ExpectRoom(designer.Find(ID_lblInfo), dpi);
                ExpectRoom(designer.Find(ID_lblInfo + 1), dpi);
            }
            for (const int hint : {1537, 1538}) { // of a rule without bands
                SetWindowTextW(designer.Find(ID_lblInfo), strings.Text(hint).c_str());
                ExpectRoom(designer.Find(ID_lblInfo), dpi);
            }
            for (const int line : {1539, 1540}) { // of the findings
                const HWND status = designer.Find(ID_lblStatus);
                RECT room{};
                GetClientRect(status, &room);
                const String text = ReplaceStar(strings.Text(line), L"888");
                EXPECT_LE(SizeOf(status, text, DT_SINGLELINE, 0).cx, room.right) << line << " at " << dpi;
            }
            for (const auto& control : form->Controls())
                ExpectRoom(control.window, dpi);
        }
    }
}

// The number put into a question may be one: the sentence reads well with any.
TEST_P(CaptionsTest, QuestionsBeforeADeletionReadWellForAnyNumber) {
    const Screen screen(designer.Window());
    designer.RefreshBands(rule.Get(), ibRegion - 1);
    prompts.answer = false;
    rule->Relations().Remove(L"N3");
    rule->Relations().Remove(L"N4");
    screen.SelectTreeItem(ID_tvwAvailable, L"01 North");
    screen.Click(ID_cmdDelete);
    screen.SelectTreeItem(ID_tvwAvailable, L"02 South");
    screen.Click(ID_cmdDelete);
    screen.Click(ID_cmdClear);
    const Texts english{L"Sure to delete the relation?\r\n1 child relation(s) included.",
                        L"Sure to delete the relation?\r\n2 child relation(s) included.",
                        L"Sure to clean all relations?(6 relation(s) included.)"};
    const Texts german{
        L"Soll die Zuordnung wirklich gelöscht werden?\r\nUntergeordnete Zuordnungen, die mit gelöscht werden: 1",
        L"Soll die Zuordnung wirklich gelöscht werden?\r\nUntergeordnete Zuordnungen, die mit gelöscht werden: 2",
        L"Sollen wirklich alle Zuordnungen gelöscht werden? (Anzahl: 6)"};
    EXPECT_EQ(prompts.asked, GetParam() == Language::German ? german : english);
}

TEST_P(CaptionsTest, FindingsAreCountedInOneAndInMany) {
    const Screen screen(designer.Window());
    const auto count = CheckRule(*rule).size();
    ASSERT_GT(count, 1U);
    EXPECT_EQ(screen.Text(ID_lblStatus), ReplaceStar(strings.Text(1540), ToText(static_cast<int>(count))));
    EXPECT_EQ(dialogs::FindingTexts({CheckRule(*rule).front()}).Count(), strings.Text(1539));
}

// In English some texts are as they have always been, with two keys of the designer given twice: they take turns.
TEST_P(CaptionsTest, AccessKeysAreGivenOnce) {
    for (auto* form : Forms()) {
        const bool given = GetParam() == Language::English && form == &designer;
        EXPECT_EQ(TwiceIn(TextsIn(*form)), given ? L"AC" : L"") << testing::PrintToString(form->Caption());
    }
    for (const int id : {IDR_mnuBand, IDR_mnuNode}) {
        const dialogs::FormMenu menu(id);
        menu.Localise();
        EXPECT_EQ(TwiceIn(TextsIn(menu.Handle())), L"");
        EXPECT_EQ(TwiceIn(TextsIn(GetSubMenu(menu.Handle(), 0))), L"");
    }
}

} // namespace kestrel::test
