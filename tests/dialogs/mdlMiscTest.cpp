#include "dialogs/mdlMisc.h"

#include "dialogs/Cursor.h"
#include "dialogs/FormMenu.h"
#include "dialogs/frmAdvanceds.h"
#include "dialogs/support/DialogTest.h"

namespace kestrel::test {

namespace {

class mdlMiscTest : public DialogTest {};

HWND MakeCombo(HWND parent) {
    return CreateWindowExW(0, L"ComboBox", L"", WS_CHILD | WS_VISIBLE | CBS_DROPDOWNLIST | WS_VSCROLL, 0, 0, 60, 200,
                           parent, nullptr, nullptr, nullptr);
}

void AddRow(HWND combo, const wchar_t* text) { SendMessageW(combo, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(text)); }

} // namespace

TEST_F(mdlMiscTest, ALabelsCaptionEndsInAColon) {
    EXPECT_EQ(dialogs::CaptionFor(true, L"1902"), TheStrings().Text(1902) + L":");
    EXPECT_EQ(dialogs::CaptionFor(false, L"1902"), TheStrings().Text(1902));
}

TEST_F(mdlMiscTest, ATagWithoutANumberOrStringKeepsTheCaption) {
    for (const wchar_t* tag : {L"", L"abc", L"0", L"-5", L"999999"})
        EXPECT_EQ(dialogs::CaptionFor(false, tag), std::nullopt) << tag;
}

TEST_F(mdlMiscTest, LocaliseFormSetsFontCaptionAndTexts) {
    const auto rule = InvoiceRule();
    dialogs::frmAdvanceds form;
    form.ShowInfo(rule.Get(), L"");
    const Screen screen(form.Window());
    EXPECT_EQ(screen.Caption(), L"Advanced");
    EXPECT_EQ(screen.Text(ID_lblInfo), L"Order of layers:");
    EXPECT_EQ(screen.Text(ID_cmdUp), L"&Up");
    LOGFONTW font{};
    GetObjectW(reinterpret_cast<HFONT>(SendMessageW(screen.Control(ID_cmdUp), WM_GETFONT, 0, 0)), sizeof font, &font);
    EXPECT_EQ(String(font.lfFaceName), L"Arial");
    EXPECT_EQ(font.lfHeight, -MulDiv(9, static_cast<int>(form.Layout().Dpi()), 72));
}

TEST_F(mdlMiscTest, LocaliseMenuReachesTheMenusBelow) {
    const dialogs::FormMenu menu(IDR_mnuBand);
    menu.Localise();
    wchar_t text[64] = {};
    GetMenuStringW(menu.Handle(), 0, text, 64, MF_BYPOSITION);
    EXPECT_EQ(String(text), L"Add Band(&A)");
    GetMenuStringW(GetSubMenu(menu.Handle(), 0), 2, text, 64, MF_BYPOSITION);
    EXPECT_EQ(String(text), L"A&ppend..");
    GetMenuStringW(menu.Handle(), 3, text, 64, MF_BYPOSITION);
    EXPECT_EQ(String(text), L"Remove All(&C)");
}

TEST_F(mdlMiscTest, ADropDownGrowsToItsLongestRow) {
    const auto rule = InvoiceRule();
    dialogs::frmAdvanceds form;
    form.ShowInfo(rule.Get(), L"");
    const HWND combo = MakeCombo(form.Window());
    EXPECT_EQ(dialogs::FitDropDownWidth(combo), 1) << "nothing to measure";
    AddRow(combo, L"i");
    EXPECT_EQ(dialogs::FitDropDownWidth(combo), 1) << "narrower than it is";
    AddRow(combo, L"A rather long row that does not fit into sixty pixels");
    const long width = dialogs::FitDropDownWidth(combo);
    EXPECT_GT(width, 200);
    EXPECT_EQ(SendMessageW(combo, CB_GETDROPPEDWIDTH, 0, 0), width);
    AddRow(combo, String(2000, L'W').c_str());
    dialogs::FitDropDownWidth(combo);
    EXPECT_EQ(SendMessageW(combo, CB_GETDROPPEDWIDTH, 0, 0), GetSystemMetrics(SM_CXSCREEN) - 20);
}

namespace {

std::vector<RECT> theClips;
BOOL WINAPI RecordClip(const RECT* area) {
    theClips.push_back(area != nullptr ? *area : RECT{});
    return TRUE;
}

} // namespace

TEST_F(mdlMiscTest, TheCursorIsConfinedToAControlAndFreed) {
    const auto rule = InvoiceRule();
    dialogs::frmAdvanceds form;
    form.ShowInfo(rule.Get(), L"");
    theClips.clear();
    const auto before = dialogs::UseCursorClip(RecordClip);
    dialogs::ConfineCursor(form.Find(ID_lstLayers));
    dialogs::ConfineCursor(nullptr);
    dialogs::ReleaseCursor();
    dialogs::UseCursorClip(before);
    RECT area{};
    GetWindowRect(form.Find(ID_lstLayers), &area);
    ASSERT_EQ(theClips.size(), 2U) << "without a window nothing is confined";
    EXPECT_TRUE(EqualRect(theClips.data(), &area));
    EXPECT_TRUE(IsRectEmpty(&theClips[1]));
}

} // namespace kestrel::test
