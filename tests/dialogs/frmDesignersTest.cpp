// The designer: strip, menus, panel and relations, each user action by itself.
#include "dialogs/frmDesigners.h"

#include <utility>

#include "dialogs/Cursor.h"
#include "dialogs/support/DialogTest.h"

namespace kestrel::test {

namespace {

class frmDesignersTest : public DialogTest {
  protected:
    frmDesignersTest() : rule(InvoiceRule()) { Open(); }
    void Open() {
        form.emplace(*rule);
        screen.emplace(Show(*form));
    }
    void Reopen(const Ref<CodeClass>& other) {
        form.reset();
        rule = other;
        Open();
    }
    void Select(int band) { form->RefreshBands(rule.Get(), band - 1); }
    [[nodiscard]] Texts Names() const {
        Texts names;
        for (const auto& band : rule->Bands())
            names.push_back(band->Name());
        return names;
    }
    Ref<CodeClass> rule;
    std::optional<dialogs::frmDesigners> form;
    std::optional<Screen> screen;
};

// The middle of a box in the strip, found by walking its selection with the keyboard.
class frmDesignersStripTest : public frmDesignersTest {
  protected:
    frmDesignersStripTest() = default;
    ~frmDesignersStripTest() override { dialogs::UseCursorClip(mvarClip); }
    static BOOL WINAPI RecordClip(const RECT* area) {
        confined = area != nullptr;
        return TRUE;
    }
    [[nodiscard]] HWND Strip() const { return screen->Control(ID_picBand); }
    void Mouse(UINT message, int x) const {
        const WPARAM keys = message == WM_MOUSEMOVE || message == WM_LBUTTONDOWN ? MK_LBUTTON : 0;
        SendMessageW(Strip(), message, keys, MAKELPARAM(x, 10));
    }
    // Clicks along the strip until the band is selected; returns the x of the click.
    [[nodiscard]] int MiddleOf(int band) const {
        RECT area{};
        GetClientRect(Strip(), &area);
        int first = -1;
        int last = -1;
        for (int x = 0; x < area.right; x += 20) {
            Mouse(WM_LBUTTONDOWN, x);
            SendMessageW(Strip(), WM_CAPTURECHANGED, 0, 0); // no drop
            if (form->SelectedIndex() == band - 1) {
                first = first < 0 ? x : first;
                last = x;
            }
        }
        return (first + last) / 2;
    }
    [[nodiscard]] bool Shown(int id) const { return IsWindowVisible(screen->Control(id)) != FALSE; }

    static inline bool confined = false;

  private:
    dialogs::CursorClip mvarClip = dialogs::UseCursorClip(RecordClip);
};

class frmDesignersPanelTest : public frmDesignersTest {};
class frmDesignersRelationsTest : public frmDesignersTest {
  protected:
    frmDesignersRelationsTest() { Select(ibRegion); }
};

} // namespace

TEST_F(frmDesignersTest, OpensOnTheFirstBand) {
    EXPECT_EQ(screen->Caption(), L"Designer");
    EXPECT_EQ(screen->Text(ID_txtName), L"Prefix");
    form->RefreshBands(rule.Get(), 2, L" Invoice numbers ");
    EXPECT_EQ(screen->Caption(), L"Invoice numbers");
    EXPECT_EQ(screen->Text(ID_txtName), L"Region");
}

TEST_F(frmDesignersTest, WithoutARuleARedrawFails) {
    try {
        form->RefreshBands(nullptr);
        FAIL() << "redrawn";
    } catch (const Error& error) {
        EXPECT_EQ(error.Number(), 91);
    }
}

TEST_F(frmDesignersTest, AdvancedNeedsSetup) {
    EXPECT_TRUE(screen->Enabled(ID_cmdAdvanced));
    rule->SetAllowSetup(false);
    form->RefreshBands(rule.Get());
    EXPECT_FALSE(screen->Enabled(ID_cmdAdvanced));
}

TEST_F(frmDesignersTest, ButtonsOpenTheOtherDialogs) {
    screen->Click(ID_cmdAdvanced);
    Select(ibRegion);
    screen->Click(ID_cmdDrop);
    EXPECT_EQ(recorded.calls, (Texts{L"Options ", L"FieldManage "}));
}

TEST_F(frmDesignersTest, AddFieldAsksTheHostAndTheListFollows) {
    Select(ibRegion);
    Texts asked;
    const auto host = rule->AddField.Subscribe([&](String& name) {
        asked.push_back(L"<" + name + L">");
        rule->UsrFields().Add(L"Agent");
    });
    screen->Click(ID_cmdAppend);
    EXPECT_EQ(asked, (Texts{L"<>"}));
    EXPECT_EQ(screen->Rows(ID_cboBound), (Texts{L"(None)", L"Region", L"Branch", L"Customer", L"Agent"}));
    EXPECT_EQ(screen->Row(ID_cboBound), 1);
}

TEST_F(frmDesignersTest, FieldButtonsNeedFieldManagement) {
    Select(ibRegion);
    EXPECT_TRUE(screen->Enabled(ID_cmdAppend));
    rule->SetAllowFieldManage(false);
    Select(ibRegion);
    EXPECT_FALSE(screen->Enabled(ID_cmdAppend));
    EXPECT_FALSE(screen->Enabled(ID_cmdDrop));
    EXPECT_TRUE(screen->Enabled(ID_cboBound));
}

TEST_F(frmDesignersTest, SaveAsksAndHandsOver) {
    String saved;
    const auto host = rule->SaveRequested.Subscribe([&](String& value, bool& achieved) {
        saved = value;
        achieved = true;
    });
    prompts.answer = false;
    screen->Click(ID_cmdSave);
    EXPECT_EQ(prompts.asked, (Texts{L"Do you want to save change(s)?"}));
    EXPECT_EQ(saved, L"");
    prompts.answer = true;
    screen->Click(ID_cmdSave);
    EXPECT_EQ(saved, rule->Definition());
    EXPECT_EQ(screen->Text(ID_lblStatus), L"");
}

TEST_F(frmDesignersTest, AFailedSaveStandsInTheStatusLine) {
    screen->Click(ID_cmdSave);
    EXPECT_TRUE(prompts.warned.empty());
    EXPECT_EQ(screen->Text(ID_lblStatus), L"Save failure.");
}

TEST_F(frmDesignersTest, ApplyHasNoActionOfItsOwn) {
    const String before = rule->Definition();
    screen->Click(ID_cmdApply);
    EXPECT_EQ(rule->Definition(), before);
    EXPECT_TRUE(prompts.asked.empty());
    EXPECT_FALSE(form->IsHidden());
}

TEST_F(frmDesignersTest, BandsAreAddedAtTheSelectedOne) {
    Select(ibYear);
    screen->Choose(ID_mnuSubBandAdd);
    screen->Choose(ID_mnuSubBandAdd + 1);
    screen->Choose(ID_mnuSubBandAdd + 2);
    screen->Click(ID_imgButton);
    EXPECT_EQ(recorded.calls, (Texts{L"AddBand Year 1", L"AddBand Year 2", L"AddBand Year 3", L"AddBand Year 3"}));
}

TEST_F(frmDesignersTest, NothingIsAddedWhenNotAllowed) {
    rule->SetAllowAddBand(false);
    form->RefreshBands(rule.Get());
    EXPECT_FALSE(screen->Enabled(ID_imgButton));
    screen->Choose(ID_mnuSubBandAdd + 2);
    EXPECT_TRUE(recorded.calls.empty());
}

TEST_F(frmDesignersTest, AnEmptyRuleOffersOnlyToAppend) {
    Reopen(EmptyRule());
    EXPECT_TRUE(screen->Enabled(ID_imgButton));
    for (const int id :
         {ID_txtName,  ID_cboStyle,     ID_txtDefault, ID_txtFormat,     ID_txtLength,   ID_cboBound,  ID_cboIncrMode,
          ID_txtRange, ID_txtRange + 1, ID_vscRange,   ID_cboTrigerBand, ID_cboSwapMode, ID_lstTracks, ID_tvwAvailable,
          ID_cmdAdd,   ID_cmdDelete,    ID_cmdModify,  ID_cmdClear,      ID_cmdAppend,   ID_cmdDrop})
        EXPECT_FALSE(screen->Enabled(id)) << id;
    screen->Click(ID_imgButton);
    EXPECT_EQ(recorded.calls, (Texts{L"AddBand  3"}));
    screen->Choose(ID_mnuBandRemove);
    EXPECT_TRUE(prompts.asked.empty());
}

TEST_F(frmDesignersTest, RemoveAsksWithTheBandsName) {
    Select(ibLetter);
    prompts.answer = false;
    screen->Choose(ID_mnuBandRemove);
    EXPECT_EQ(prompts.asked, (Texts{L"Are you sure to delete the following Band?\r\n\r\n[Letter]"}));
    EXPECT_EQ(rule->Count(), 6);
    prompts.answer = true;
    screen->Choose(ID_mnuBandRemove);
    EXPECT_EQ(rule->Count(), 5);
    EXPECT_EQ(screen->Text(ID_txtName), L"Number") << "the last band is selected now";
}

TEST_F(frmDesignersTest, ABandThatMayNotBeDroppedStays) {
    rule->Band(ibLetter)->SetAllowDroped(false);
    Select(ibLetter);
    screen->Choose(ID_mnuBandRemove);
    EXPECT_TRUE(prompts.asked.empty());
    EXPECT_EQ(rule->Count(), 6);
}

TEST_F(frmDesignersTest, ARefusedRemovalStandsInTheStatusLine) {
    rule->Band(ibNumber)->SetIncrMode(imTrigered);
    rule->Band(ibNumber)->SetTrigerBand(rule->Band(ibPrefix));
    Select(ibPrefix);
    screen->Choose(ID_mnuBandRemove);
    EXPECT_EQ(rule->Count(), 6);
    EXPECT_EQ(screen->Text(ID_lblStatus).substr(0, 28), L"The band can't be Deleted,ca");
    EXPECT_TRUE(prompts.warned.empty());
}

TEST_F(frmDesignersTest, RemoveAllAsksFirst) {
    prompts.answer = false;
    screen->Choose(ID_mnuBandRemoveAll);
    EXPECT_EQ(prompts.asked, (Texts{L"Are you sure to clear all band(s)?"}));
    EXPECT_EQ(rule->Count(), 6);
    prompts.answer = true;
    screen->Choose(ID_mnuBandRemoveAll);
    EXPECT_EQ(rule->Count(), 0);
    EXPECT_EQ(screen->Text(ID_txtName), L"");
    EXPECT_FALSE(screen->Enabled(ID_txtDefault));
}

TEST_F(frmDesignersTest, FollowsTheRulesBands) {
    Select(ibYear);
    rule->Remove(ibPrefix);
    EXPECT_EQ(screen->Text(ID_txtName), L"Region") << "the index is kept";
    rule->Cls();
    EXPECT_EQ(screen->Text(ID_txtName), L"");
}

// --- The strip ---

TEST_F(frmDesignersStripTest, AClickSelects) {
    const int x = MiddleOf(ibBranch);
    Mouse(WM_LBUTTONDOWN, MiddleOf(ibPrefix));
    Mouse(WM_LBUTTONUP, MiddleOf(ibPrefix));
    Mouse(WM_LBUTTONDOWN, x);
    EXPECT_EQ(screen->Text(ID_txtName), L"Branch");
    EXPECT_TRUE(confined);
    EXPECT_TRUE(Shown(ID_picMove));
    Mouse(WM_LBUTTONUP, x);
    EXPECT_FALSE(confined);
    EXPECT_FALSE(Shown(ID_picMove));
    EXPECT_EQ(Names(), (Texts{L"Prefix", L"Year", L"Region", L"Branch", L"Number", L"Letter"}));
    EXPECT_EQ(screen->Text(ID_lblStatus), L"") << "no complaint about a drag that was none";
}

TEST_F(frmDesignersStripTest, ADropMovesTheBandBeforeTheBoxUnderTheMouse) {
    const int from = MiddleOf(ibLetter);
    const int to = MiddleOf(ibYear);
    Mouse(WM_LBUTTONDOWN, from);
    Mouse(WM_MOUSEMOVE, to);
    EXPECT_TRUE(Shown(ID_imgPos));
    RECT marker{};
    RECT strip{};
    GetWindowRect(screen->Control(ID_imgPos), &marker);
    GetWindowRect(Strip(), &strip);
    EXPECT_LT(marker.right - strip.left, to) << "in the gap before the box";
    Mouse(WM_LBUTTONUP, to);
    EXPECT_EQ(Names(), (Texts{L"Prefix", L"Letter", L"Year", L"Region", L"Branch", L"Number"}));
    EXPECT_FALSE(Shown(ID_imgPos));
    EXPECT_FALSE(Shown(ID_picMove));
    EXPECT_EQ(screen->Text(ID_txtName), L"Letter") << "the moved band stays selected";
}

TEST_F(frmDesignersStripTest, ADropPastTheLastBoxMovesTheBandToTheEnd) {
    const int from = MiddleOf(ibPrefix);
    RECT strip{};
    GetClientRect(Strip(), &strip);
    Mouse(WM_LBUTTONDOWN, from);
    Mouse(WM_MOUSEMOVE, strip.right + 20);
    Mouse(WM_LBUTTONUP, strip.right + 20);
    EXPECT_EQ(Names(), (Texts{L"Year", L"Region", L"Branch", L"Number", L"Letter", L"Prefix"}));
}

TEST_F(frmDesignersStripTest, EscapeEndsADragWithoutEffect) {
    const int from = MiddleOf(ibPrefix);
    const int to = MiddleOf(ibBranch);
    Mouse(WM_LBUTTONDOWN, from);
    Mouse(WM_MOUSEMOVE, to);
    screen->Key(ID_picBand, VK_ESCAPE);
    EXPECT_FALSE(confined);
    EXPECT_FALSE(form->IsHidden()) << "the dialog stays";
    Mouse(WM_LBUTTONUP, to);
    EXPECT_EQ(Names().front(), L"Prefix");
}

TEST_F(frmDesignersStripTest, ARuleThatChangesEndsADrag) {
    Mouse(WM_LBUTTONDOWN, MiddleOf(ibPrefix));
    rule->Remove(ibLetter);
    EXPECT_FALSE(confined);
    EXPECT_FALSE(Shown(ID_picMove));
    Mouse(WM_LBUTTONUP, 5);
    EXPECT_EQ(Names(), (Texts{L"Prefix", L"Year", L"Region", L"Branch", L"Number"}));
}

TEST_F(frmDesignersStripTest, TheStripScrollsUnderADragAtItsEnds) {
    for (int more = 1; more <= 10; ++more)
        rule->Add({.name = L"Counter " + ToText(more), .style = bsIncreaseNumber, .defaultValue = L"1"});
    const auto offset = [this] {
        SCROLLINFO info{};
        info.cbSize = sizeof info;
        info.fMask = SIF_POS;
        GetScrollInfo(screen->Control(ID_picBkg), SB_HORZ, &info);
        return info.nPos;
    };
    const auto wait = [](const auto& condition) {
        for (int turn = 0; turn < 400 && !condition(); ++turn, Sleep(10))
            RunPendingMessages(); // the strip moves by its timer
        return condition();
    };
    screen->Key(ID_picBand, VK_HOME);
    RECT strip{};
    GetClientRect(Strip(), &strip);
    Mouse(WM_LBUTTONDOWN, 20);
    Mouse(WM_MOUSEMOVE, strip.right / 2);
    Sleep(150);
    RunPendingMessages();
    EXPECT_EQ(offset(), 0) << "in the middle nothing moves";
    Mouse(WM_MOUSEMOVE, strip.right - 5);
    EXPECT_TRUE(wait([&] { return offset() > 400; }));
    EXPECT_TRUE(Shown(ID_imgPos));
    EXPECT_TRUE(Shown(ID_picMove));
    Mouse(WM_MOUSEMOVE, 5);
    EXPECT_TRUE(wait([&] { return offset() == 0; })) << "back to the beginning";
    Mouse(WM_MOUSEMOVE, strip.right - 5);
    int last = -1;
    EXPECT_TRUE(wait([&] { return std::exchange(last, offset()) == offset() && last > 400; })) << "up to the end";
    GetClientRect(Strip(), &strip);
    Mouse(WM_LBUTTONUP, strip.right + 5);
    EXPECT_EQ(Names().back(), L"Prefix");
    EXPECT_EQ(screen->Text(ID_txtName), L"Prefix");
}

TEST_F(frmDesignersStripTest, TheScrollBarAndTheWheelMoveTheStrip) {
    for (int more = 1; more <= 10; ++more)
        rule->Add({.name = L"Counter " + ToText(more), .style = bsIncreaseNumber, .defaultValue = L"1"});
    const HWND view = screen->Control(ID_picBkg);
    const auto first = [this] { return MiddleOf(ibPrefix); };
    screen->Key(ID_picBand, VK_HOME);
    EXPECT_GT(first(), 0);
    screen->Key(ID_picBand, VK_HOME);
    SendMessageW(view, WM_HSCROLL, SB_RIGHT, 0);
    EXPECT_LT(first(), 0) << "out of sight";
    SendMessageW(view, WM_HSCROLL, SB_LEFT, 0);
    SendMessageW(view, WM_HSCROLL, SB_PAGERIGHT, 0);
    SendMessageW(view, WM_HSCROLL, SB_PAGELEFT, 0);
    SendMessageW(view, WM_HSCROLL, SB_LINERIGHT, 0);
    SendMessageW(view, WM_HSCROLL, SB_LINELEFT, 0);
    EXPECT_GT(first(), 0);
    screen->Key(ID_picBand, VK_HOME);
    for (int turn = 0; turn < 30; ++turn)
        SendMessageW(view, WM_MOUSEWHEEL, MAKEWPARAM(0, static_cast<WORD>(-WHEEL_DELTA)), 0);
    EXPECT_LT(first(), 0);
}

TEST_F(frmDesignersStripTest, ABoxThatIsCutOffIsReadInATip) {
    const String name = L"The region that sells, or the one that has sold before";
    rule->Add({.name = name, .style = bsFixed, .defaultValue = L"R"});
    const auto tipAt = [this](int x) {
        Mouse(WM_MOUSEMOVE, x);
        return form->Tips().Text(Strip());
    };
    const int prefix = MiddleOf(ibPrefix);
    EXPECT_EQ(tipAt(prefix), L"") << "nothing is cut off here";
    screen->Key(ID_picBand, VK_END);
    const int longOne = MiddleOf(rule->Count());
    screen->Key(ID_picBand, VK_END);
    EXPECT_EQ(tipAt(longOne), name + L"\r\nFixed\r\nR");
    EXPECT_EQ(tipAt(longOne - 170), L"") << "its neighbour needs none";
}

TEST_F(frmDesignersStripTest, KeysSelectAndRemove) {
    screen->Focus(ID_picBand);
    screen->Key(ID_picBand, VK_RIGHT);
    EXPECT_EQ(screen->Text(ID_txtName), L"Year");
    screen->Key(ID_picBand, VK_END);
    EXPECT_EQ(screen->Text(ID_txtName), L"Letter");
    screen->Key(ID_picBand, VK_RIGHT);
    EXPECT_EQ(screen->Text(ID_txtName), L"Letter");
    screen->Key(ID_picBand, VK_DELETE);
    EXPECT_EQ(rule->Count(), 5);
    screen->Key(ID_picBand, VK_HOME);
    EXPECT_EQ(screen->Text(ID_txtName), L"Prefix");
    rule->SetAllowDropBand(false);
    screen->Key(ID_picBand, VK_DELETE);
    EXPECT_EQ(rule->Count(), 5);
}

// --- The panel ---

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

TEST_F(frmDesignersPanelTest, ABandThatMayNotBeModifiedIsOnlyShown) {
    rule->Band(ibNumber)->SetAllowModified(false);
    Select(ibNumber);
    EXPECT_EQ(screen->Text(ID_txtFormat), L"00000");
    for (const int id : {ID_txtDefault, ID_txtFormat, ID_txtLength, ID_cboIncrMode, ID_txtRange, ID_txtRange + 1,
                         ID_vscRange, ID_vscRange + 1, ID_lstTracks})
        EXPECT_FALSE(screen->Enabled(id)) << id;
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
}

TEST_F(frmDesignersPanelTest, EnterMovesThroughTheFields) {
    screen->Focus(ID_txtDefault);
    SetWindowTextW(screen->Control(ID_txtDefault), L" RE ");
    screen->Key(ID_txtDefault, VK_RETURN);
    EXPECT_EQ(rule->Band(ibPrefix)->Default(), L"RE");
    EXPECT_FALSE(screen->Focused(ID_txtDefault));
}

// --- The relations ---

TEST_F(frmDesignersRelationsTest, ShowsTheTree) {
    EXPECT_EQ(screen->TreeTexts(ID_tvwAvailable), (Texts{L"01 North", L"  1 Hamburg", L"  2 Bremen", L"  3 Kiel",
                                                         L"02 South", L"  1 Munich", L"  2 Stuttgart", L"03 West"}));
}

TEST_F(frmDesignersRelationsTest, ButtonsFollowTheSelection) {
    EXPECT_TRUE(screen->Enabled(ID_cmdAdd));
    EXPECT_FALSE(screen->Enabled(ID_cmdDelete));
    EXPECT_FALSE(screen->Enabled(ID_cmdModify));
    EXPECT_TRUE(screen->Enabled(ID_cmdClear));
    screen->SelectTreeItem(ID_tvwAvailable, L"02 South");
    EXPECT_TRUE(screen->Enabled(ID_cmdDelete));
    EXPECT_TRUE(screen->Enabled(ID_cmdModify));
    rule->Relations().Cls();
    EXPECT_FALSE(screen->Enabled(ID_cmdClear));
    EXPECT_FALSE(screen->Enabled(ID_cmdDelete));
}

TEST_F(frmDesignersRelationsTest, AddAndModifyOpenTheNodeDialog) {
    screen->Click(ID_cmdAdd);
    screen->SelectTreeItem(ID_tvwAvailable, L"2 Bremen");
    screen->Click(ID_cmdAdd);
    for (int item = 0; item < 4; ++item)
        screen->Choose(ID_mnuSubNodeAdd + item);
    screen->Click(ID_cmdModify);
    screen->Choose(ID_mnuNodeEdit);
    EXPECT_EQ(recorded.calls, (Texts{L"AddRelation 3  1", L"AddRelation 3 N4 1", L"AddRelation 3 N4 3",
                                     L"AddRelation 3 N4 2", L"AddRelation 3 N4 1", L"AddRelation 3 N4 4",
                                     L"AddRelation 3 N4 modify", L"AddRelation 3 N4 modify"}));
}

TEST_F(frmDesignersRelationsTest, DeleteAsksAndCountsWhatIsBelow) {
    rule->Relations().Add(L"N3", tvwChild, L"9", L"Altona"); // below Hamburg
    screen->SelectTreeItem(ID_tvwAvailable, L"2 Bremen");
    prompts.answer = false;
    screen->Click(ID_cmdDelete);
    screen->SelectTreeItem(ID_tvwAvailable, L"01 North");
    screen->Choose(ID_mnuNodeRemove);
    EXPECT_EQ(prompts.asked, (Texts{L"Sure to delete the relation?",
                                    L"Sure to delete the relation?\r\n4 child relation(s) included."}));
    EXPECT_EQ(rule->Relations().Count(), 9);
    prompts.answer = true;
    screen->Click(ID_cmdDelete);
    EXPECT_EQ(screen->TreeTexts(ID_tvwAvailable), (Texts{L"02 South", L"  1 Munich", L"  2 Stuttgart", L"03 West"}));
}

TEST_F(frmDesignersRelationsTest, DeletingANodeWithThreeBelowAsksWithThree) {
    screen->SelectTreeItem(ID_tvwAvailable, L"01 North");
    screen->Click(ID_cmdDelete);
    EXPECT_EQ(prompts.asked, (Texts{L"Sure to delete the relation?\r\n3 child relation(s) included."}));
    EXPECT_EQ(rule->Relations().Count(), 4);
}

TEST_F(frmDesignersRelationsTest, DeletingLeavesTheRestOfTheTreeAsItIs) {
    const HTREEITEM south = screen->TreeItem(ID_tvwAvailable, L"02 South");
    SendMessageW(screen->Control(ID_tvwAvailable), TVM_EXPAND, TVE_EXPAND, reinterpret_cast<LPARAM>(south));
    screen->SelectTreeItem(ID_tvwAvailable, L"01 North");
    screen->Click(ID_cmdDelete);
    EXPECT_EQ(screen->TreeItem(ID_tvwAvailable, L"02 South"), south) << "the item has not been made anew";
    EXPECT_EQ(screen->SelectedTreeText(ID_tvwAvailable), L"02 South") << "the one that takes its place";
    EXPECT_TRUE(screen->Enabled(ID_cmdDelete));
    screen->SelectTreeItem(ID_tvwAvailable, L"1 Munich");
    screen->Click(ID_cmdDelete);
    rule->Relations().Add(L"N2", tvwChild, L"5", L"Ulm");
    EXPECT_EQ(screen->TreeTexts(ID_tvwAvailable), (Texts{L"02 South", L"  2 Stuttgart", L"  5 Ulm", L"03 West"}));
    EXPECT_EQ(screen->TreeTexts(ID_tvwAvailable).size(), static_cast<std::size_t>(rule->Relations().Count()));
}

TEST_F(frmDesignersRelationsTest, ANodeThatGoesWhileTheQuestionIsOpenIsReported) {
    screen->SelectTreeItem(ID_tvwAvailable, L"01 North");
    prompts.whileAsking = [this] { rule->Relations().Remove(L"N1"); };
    screen->Click(ID_cmdDelete);
    EXPECT_EQ(screen->TreeTexts(ID_tvwAvailable), (Texts{L"02 South", L"  1 Munich", L"  2 Stuttgart", L"03 West"}));
    EXPECT_NE(screen->Text(ID_lblStatus), L"");
}

TEST_F(frmDesignersRelationsTest, DeletingShowsTheHourglass) {
    std::vector<HCURSOR> cursors;
    const auto host =
        rule->Relations().NodesChanged.Subscribe([&](const String&, const String&) { cursors.push_back(GetCursor()); });
    screen->SelectTreeItem(ID_tvwAvailable, L"03 West");
    screen->Click(ID_cmdDelete);
    EXPECT_EQ(cursors, std::vector<HCURSOR>{LoadCursorW(nullptr, IDC_WAIT)});
    EXPECT_NE(GetCursor(), LoadCursorW(nullptr, IDC_WAIT)) << "no longer than it takes";
}

TEST_F(frmDesignersRelationsTest, ClearingATreeOfFiveAsksWithFive) {
    rule->Relations().Remove(L"N2");
    screen->Click(ID_cmdClear);
    EXPECT_EQ(prompts.asked, (Texts{L"Sure to clean all relations?(5 relation(s) included.)"}));
    EXPECT_EQ(rule->Relations().Count(), 0);
}

TEST_F(frmDesignersRelationsTest, ClearAsksWithTheCount) {
    prompts.answer = false;
    screen->Click(ID_cmdClear);
    EXPECT_EQ(prompts.asked, (Texts{L"Sure to clean all relations?(8 relation(s) included.)"}));
    EXPECT_EQ(rule->Relations().Count(), 8);
    prompts.answer = true;
    screen->Choose(ID_mnuNodeRemoveAll);
    EXPECT_EQ(rule->Relations().Count(), 0);
    EXPECT_TRUE(screen->TreeTexts(ID_tvwAvailable).empty());
}

TEST_F(frmDesignersRelationsTest, AChangeSelectsItsNode) {
    rule->Relations().Add(L"N5", tvwChild, L"9", L"Leer");
    EXPECT_EQ(screen->SelectedTreeText(ID_tvwAvailable), L"9 Leer");
    rule->Relations().Node(L"N8")->SetTag(L"Far West");
    EXPECT_EQ(screen->SelectedTreeText(ID_tvwAvailable), L"03 Far West");
}

TEST_F(frmDesignersRelationsTest, WhatWasExpandedStaysSo) {
    const HWND tree = screen->Control(ID_tvwAvailable);
    SendMessageW(tree, TVM_EXPAND, TVE_EXPAND,
                 reinterpret_cast<LPARAM>(screen->TreeItem(ID_tvwAvailable, L"02 South")));
    rule->Relations().Node(L"N8")->SetText(L"04");
    const auto south = reinterpret_cast<WPARAM>(screen->TreeItem(ID_tvwAvailable, L"02 South"));
    EXPECT_NE(SendMessageW(tree, TVM_GETITEMSTATE, south, TVIS_EXPANDED) & TVIS_EXPANDED, 0);
}

TEST_F(frmDesignersRelationsTest, KeysWorkTheTree) {
    const auto press = [this](WORD key) {
        NMTVKEYDOWN pressed{};
        pressed.hdr = {screen->Control(ID_tvwAvailable), ID_tvwAvailable, static_cast<UINT>(TVN_KEYDOWN)};
        pressed.wVKey = key;
        SendMessageW(screen->Window(), WM_NOTIFY, ID_tvwAvailable, reinterpret_cast<LPARAM>(&pressed));
    };
    press(VK_DELETE);
    EXPECT_TRUE(prompts.asked.empty()) << "nothing is selected";
    screen->SelectTreeItem(ID_tvwAvailable, L"03 West");
    press(VK_F2);
    press(VK_INSERT);
    EXPECT_EQ(recorded.calls, (Texts{L"AddRelation 3 N8 modify", L"AddRelation 3 N8 1"}));
    press(VK_DELETE);
    EXPECT_EQ(rule->Relations().Count(), 7);
}

TEST_F(frmDesignersRelationsTest, ALargeTreeIsReadAgainOnce) {
    auto& tree = rule->Relations();
    for (int code = 100; code < 400; ++code)
        tree.Add({}, tvwFirst, ToText(code), L"Place " + ToText(code));
    RunPendingMessages();
    EXPECT_EQ(screen->TreeTexts(ID_tvwAvailable).size(), 308U);
    EXPECT_EQ(screen->SelectedTreeText(ID_tvwAvailable), L"399 Place 399");
}

} // namespace kestrel::test
