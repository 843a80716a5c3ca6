// The panel of the designer: what it shows of a band, and what typing and picking there does.
#include "dialogs/support/DesignerTest.h"

namespace kestrel::test {

namespace {

class frmDesignersPanelTest : public DesignerTest {};

} // namespace

TEST_F(frmDesignersPanelTest, ShowsAFixedBand) {
    EXPECT_EQ(screen->Text(ID_txtDefault), L"INV");
    EXPECT_EQ(screen->Text(ID_txtLength), L"3");
    EXPECT_EQ(screen->Row(ID_cboStyle), bsFixed);
    EXPECT_TRUE(screen->Enabled(ID_txtDefault));
    for (const int id : {ID_txtName, ID_cboStyle, ID_txtFormat, ID_txtLength, ID_cboBound, ID_cboIncrMode, ID_txtRange,
                         ID_cboTrigerBand, ID_cboSwapMode, ID_lstTracks, ID_tvwAvailable})
        EXPECT_FALSE(screen->Enabled(id)) << id;
}

TEST_F(frmDesignersPanelTest, ShowsANumberWithTheBandsItTracks) {
    Select(ibNumber);
    EXPECT_EQ(screen->Text(ID_txtFormat), L"00000");
    EXPECT_EQ(screen->Text(ID_txtRange), L"1");
    EXPECT_EQ(screen->Row(ID_cboIncrMode), imIncrAuto);
    EXPECT_EQ(screen->CheckRows(ID_lstTracks), (Texts{L"-Prefix", L"+Year", L"+Region", L"-Branch", L"-Letter"}));
    EXPECT_FALSE(screen->Enabled(ID_cboTrigerBand));
}

TEST_F(frmDesignersPanelTest, TheTipOfTheFieldIsItsDescription) {
    const auto tip = [this] { return form->Tips().Text(form->Find(ID_cboBound)); };
    Select(ibRegion);
    EXPECT_EQ(tip(), L"");
    rule->Band(ibRegion)->BoundField()->SetDescription(Make<TextValue>(L"=left(Town 3)"));
    Select(ibRegion);
    EXPECT_EQ(tip(), L"=left(Town 3)");
    Select(ibNumber);
    EXPECT_EQ(tip(), L"") << "bound to nothing";
    Select(ibRegion);
    rule->Cls();
    EXPECT_EQ(tip(), L"");
}

TEST_F(frmDesignersPanelTest, ABandThatMayNotBeModifiedIsOnlyShown) {
    rule->Band(ibNumber)->SetAllowModified(false);
    Select(ibNumber);
    EXPECT_EQ(screen->Text(ID_txtFormat), L"00000");
    for (const int id : {ID_txtDefault, ID_txtFormat, ID_txtLength, ID_cboIncrMode, ID_txtRange, ID_txtRange + 1,
                         ID_vscRange, ID_vscRange + 1, ID_lstTracks})
        EXPECT_FALSE(screen->Enabled(id)) << id;
}

TEST_F(frmDesignersPanelTest, AFieldBandThatMayNotBeModifiedIsOnlyShown) {
    rule->Band(ibRegion)->SetAllowModified(false);
    Select(ibRegion);
    EXPECT_EQ(screen->Row(ID_cboSwapMode), smLayersSwap);
    EXPECT_FALSE(screen->TreeTexts(ID_tvwAvailable).empty());
    for (const int id : {ID_txtName,     ID_cboStyle,  ID_txtDefault,   ID_txtFormat, ID_txtLength,    ID_cboBound,
                         ID_cboIncrMode, ID_txtRange,  ID_txtRange + 1, ID_vscRange,  ID_vscRange + 1, ID_cboTrigerBand,
                         ID_cboSwapMode, ID_lstTracks, ID_tvwAvailable, ID_cmdAdd,    ID_cmdDelete,    ID_cmdModify,
                         ID_cmdClear,    ID_cmdAppend, ID_cmdDrop,      ID_lblInfo,   ID_lblInfo + 1})
        EXPECT_FALSE(screen->Enabled(id)) << id;
}

TEST_F(frmDesignersPanelTest, ATriggeredBandThatMayNotBeModifiedIsOnlyShown) {
    rule->Band(ibNumber)->SetIncrMode(imTrigered);
    Select(ibNumber);
    EXPECT_TRUE(screen->Enabled(ID_cboTrigerBand));
    rule->Band(ibNumber)->SetAllowModified(false);
    Select(ibNumber);
    EXPECT_FALSE(screen->Enabled(ID_cboTrigerBand));
}

TEST_F(frmDesignersPanelTest, AChangeOfTheFieldsLeavesWhatIsBeingTyped) {
    Select(ibRegion);
    screen->Focus(ID_txtFormat);
    SetWindowTextW(screen->Control(ID_txtFormat), L"!!");
    rule->UsrFields().Add(L"Agent");
    EXPECT_EQ(screen->Rows(ID_cboBound).back(), L"Agent");
    EXPECT_EQ(screen->Text(ID_txtFormat), L"!!");
}

TEST_F(frmDesignersPanelTest, TypedValuesAreAppliedOnLeaving) {
    screen->Type(ID_txtDefault, L"BILL");
    EXPECT_EQ(rule->Band(ibPrefix)->Default(), L"BILL");
    EXPECT_EQ(screen->Text(ID_txtLength), L"4");
    Select(ibNumber);
    screen->Type(ID_txtDefault, L"007");
    EXPECT_EQ(rule->Band(ibNumber)->Default(), L"7");
    EXPECT_EQ(screen->Text(ID_txtDefault), L"7") << "as the band keeps it";
    screen->Type(ID_txtFormat, L"0000000");
    EXPECT_EQ(rule->Band(ibNumber)->Formate(), L"0000000");
    screen->Type(ID_txtLength, L"7");
    EXPECT_EQ(rule->Band(ibNumber)->Length(), 7);
    screen->Type(ID_txtRange, L"10");
    EXPECT_EQ(rule->Band(ibNumber)->InitStart(), L"10");
    screen->Type(ID_txtRange + 1, L"0099");
    EXPECT_EQ(rule->Band(ibNumber)->InitEnd(), L"0099");
}

TEST_F(frmDesignersPanelTest, ARefusedValueRevertsAndTheStatusLineSaysWhy) {
    Select(ibNumber);
    screen->Type(ID_txtLength, L"0");
    EXPECT_EQ(screen->Text(ID_txtLength), L"5");
    EXPECT_EQ(rule->Band(ibNumber)->Length(), 5);
    EXPECT_EQ(screen->Text(ID_lblStatus).substr(0, 30), L"Invalid parametre(s) or value.");
    EXPECT_TRUE(prompts.warned.empty());
    screen->Type(ID_txtDefault, L"abc");
    EXPECT_EQ(screen->Text(ID_txtDefault), L"1");
    screen->Type(ID_txtLength, L"6");
    EXPECT_EQ(screen->Text(ID_lblStatus), L"");
}

TEST_F(frmDesignersPanelTest, AnInvalidLengthLeavesTheRuleUnchanged) {
    Select(ibNumber);
    const String before = rule->Definition();
    for (const wchar_t* refused : {L"0", L"", L"-3", L"many"}) {
        screen->Type(ID_txtLength, refused);
        EXPECT_EQ(screen->Text(ID_txtLength), L"5") << testing::PrintToString(String(refused));
        EXPECT_EQ(rule->Definition(), before);
    }
}

TEST_F(frmDesignersPanelTest, TheRaiseModeDecidesAboutTheTrigger) {
    Select(ibNumber);
    screen->Pick(ID_cboIncrMode, imTrigered);
    EXPECT_EQ(rule->Band(ibNumber)->IncrMode(), imTrigered);
    EXPECT_EQ(screen->Rows(ID_cboTrigerBand), (Texts{L"(None)", L"Prefix", L"Year", L"Region", L"Branch", L"Letter"}));
    screen->Pick(ID_cboTrigerBand, 3);
    EXPECT_EQ(rule->Band(ibNumber)->TrigerBand(), rule->Band(ibRegion));
    screen->Pick(ID_cboTrigerBand, 0);
    EXPECT_FALSE(rule->Band(ibNumber)->TrigerBand());
    for (const int refused : std::initializer_list<int>{imNever, 3, 4, 5}) {
        screen->Pick(ID_cboIncrMode, refused);
        EXPECT_EQ(screen->Row(ID_cboIncrMode), imTrigered) << "what the band holds";
    }
}

TEST_F(frmDesignersPanelTest, TheSwapModeMakesAndDropsLayers) {
    Select(ibYear);
    EXPECT_FALSE(screen->Enabled(ID_tvwAvailable));
    screen->Pick(ID_cboSwapMode, smSimpleSwap);
    EXPECT_EQ(rule->Band(ibYear)->SwapMode(), smSimpleSwap);
    EXPECT_TRUE(screen->Enabled(ID_tvwAvailable));
    EXPECT_TRUE(screen->TreeTexts(ID_tvwAvailable).empty());
    screen->Pick(ID_cboSwapMode, smLayersSwap);
    EXPECT_EQ(rule->LayeredBands().Count(), 3);
    EXPECT_EQ(prompts.informed, (Texts{L"Layered relations affected,please setup it again."}));
}

TEST_F(frmDesignersPanelTest, AFieldIsBoundByItsRow) {
    Select(ibRegion);
    EXPECT_EQ(screen->Rows(ID_cboBound), (Texts{L"(None)", L"Region", L"Branch", L"Customer"}));
    screen->Pick(ID_cboBound, 3);
    EXPECT_EQ(rule->Band(ibRegion)->BoundField(), rule->UsrFields().Item(L"Customer"));
    screen->Pick(ID_cboBound, 0);
    EXPECT_EQ(screen->Row(ID_cboBound), 3) << "a field band needs a field";
    Select(ibYear);
    EXPECT_EQ(screen->Rows(ID_cboBound), (Texts{L"(None)", L"Year"}));
}

TEST_F(frmDesignersPanelTest, TicksAddAndRemoveTrackedBands) {
    Select(ibNumber);
    screen->CheckRow(ID_lstTracks, 0, true);
    EXPECT_EQ(rule->Band(ibNumber)->TrackBands()->NamesText(), L"Year,Region,Prefix");
    screen->CheckRow(ID_lstTracks, 1, false);
    EXPECT_EQ(rule->Band(ibNumber)->TrackBands()->NamesText(), L"Region,Prefix");
    EXPECT_EQ(screen->CheckRows(ID_lstTracks), (Texts{L"+Prefix", L"-Year", L"+Region", L"-Branch", L"-Letter"}));
}

TEST_F(frmDesignersPanelTest, SpinBarsStepTheRange) {
    const auto spin = [this](int index, int step) {
        NMUPDOWN change{};
        change.hdr.hwndFrom = screen->Control(ID_vscRange + index);
        change.hdr.idFrom = static_cast<UINT_PTR>(ID_vscRange + index);
        change.hdr.code = static_cast<UINT>(UDN_DELTAPOS);
        change.iDelta = step;
        SendMessageW(screen->Window(), WM_NOTIFY, change.hdr.idFrom, reinterpret_cast<LPARAM>(&change));
    };
    Select(ibNumber);
    spin(0, 1);
    EXPECT_EQ(rule->Band(ibNumber)->InitStart(), L"2");
    EXPECT_EQ(screen->Text(ID_txtRange), L"2");
    spin(1, 1);
    EXPECT_EQ(rule->Band(ibNumber)->InitEnd(), L"1");
    Select(ibLetter);
    spin(0, 1);
    EXPECT_EQ(screen->Text(ID_txtRange), L"B");
    spin(1, -1);
    EXPECT_EQ(rule->Band(ibLetter)->InitEnd(), L"Y");
    spin(1, 5);
    EXPECT_EQ(rule->Band(ibLetter)->InitEnd(), L"Z") << "one unit, however long the bar is held down";
}

TEST_F(frmDesignersPanelTest, EnterMovesThroughTheFields) {
    screen->Focus(ID_txtDefault);
    SetWindowTextW(screen->Control(ID_txtDefault), L" RE ");
    screen->Key(ID_txtDefault, VK_RETURN);
    EXPECT_EQ(rule->Band(ibPrefix)->Default(), L"RE");
    EXPECT_FALSE(screen->Focused(ID_txtDefault));
}

} // namespace kestrel::test
