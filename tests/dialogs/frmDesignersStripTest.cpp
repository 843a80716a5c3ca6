// The strip of bands in the designer: clicks, drags, scrolling, tips and keys.
#include <utility>

#include "dialogs/Cursor.h"
#include "dialogs/Handles.h"
#include "dialogs/support/DesignerTest.h"
#include "dialogs/support/MenuWatcher.h"
#include "support/Rules.h"

namespace kestrel::test {

namespace {

class frmDesignersStripTest : public DesignerTest {
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
    // Clicks on one box after the other until the band is selected; returns where its box stands in the strip, nothing
    // when it is out of sight. The copy that a press lets float shows where a box is.
    [[nodiscard]] std::optional<RECT> PlaceOf(int band) const {
        RECT area{};
        GetClientRect(Strip(), &area);
        RECT box{};
        for (int x = 0; x < area.right; x = box.right) {
            Mouse(WM_LBUTTONDOWN, x);
            GetWindowRect(screen->Control(ID_picMove), &box);
            MapWindowPoints(nullptr, Strip(), reinterpret_cast<POINT*>(&box), 2);
            SendMessageW(Strip(), WM_CAPTURECHANGED, 0, 0); // no drop
            if (form->SelectedIndex() == band - 1) return box;
        }
        return std::nullopt;
    }
    // The middle of its box, or -1.
    [[nodiscard]] int MiddleOf(int band) const {
        const auto box = PlaceOf(band);
        return box ? (box->left + box->right) / 2 : -1;
    }
    // The colour in the corner of a box where its mark would be.
    [[nodiscard]] COLORREF CornerOf(const RECT& box) const {
        UpdateWindow(Strip());
        const dialogs::WindowContext context(Strip());
        return GetPixel(context.Get(), box.right - 5, box.top + 3);
    }
    // The one colour of the row of pixels of a box's mark where the frame of the focus would run.
    [[nodiscard]] COLORREF MarkIn(const RECT& box) const {
        UpdateWindow(Strip());
        const dialogs::WindowContext context(Strip());
        const COLORREF first = GetPixel(context.Get(), box.right - 5, box.top + 2);
        for (int x = box.right - 8; x < box.right - 3; ++x)
            if (GetPixel(context.Get(), x, box.top + 2) != first) return CLR_INVALID;
        return first;
    }
    [[nodiscard]] String TipAt(int x) {
        Mouse(WM_MOUSEMOVE, x);
        return form->Tips().Text(Strip());
    }
    // The left edge of the band's box.
    [[nodiscard]] int LeftOf(int band) const {
        EXPECT_GE(MiddleOf(band), 0) << "out of sight";
        POINT corner = CornerOf(ID_picMove);
        ScreenToClient(Strip(), &corner);
        return corner.x;
    }
    [[nodiscard]] POINT CornerOf(int id) const {
        RECT area{};
        GetWindowRect(screen->Control(id), &area);
        return {area.left, area.top};
    }
    [[nodiscard]] bool Shown(int id) const { return IsWindowVisible(screen->Control(id)) != FALSE; }

    static inline bool confined = false;

  private:
    dialogs::CursorClip mvarClip = dialogs::UseCursorClip(RecordClip);
};

} // namespace

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
    EXPECT_EQ(BandsOf(*rule), L"Prefix Year Region Branch Number Letter");
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
    EXPECT_EQ(BandsOf(*rule), L"Prefix Letter Year Region Branch Number");
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
    EXPECT_EQ(BandsOf(*rule), L"Year Region Branch Number Letter Prefix");
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
    EXPECT_EQ(BandsOf(*rule).substr(0, 6), L"Prefix");
}

TEST_F(frmDesignersStripTest, ADragThatFindsTheButtonUpEnds) {
    const int from = MiddleOf(ibPrefix);
    const int to = MiddleOf(ibBranch);
    Mouse(WM_LBUTTONDOWN, from);
    EXPECT_TRUE(confined);
    SendMessageW(Strip(), WM_MOUSEMOVE, 0, MAKELPARAM(to, 10)); // it came up over a box of the host
    EXPECT_FALSE(confined);
    EXPECT_FALSE(Shown(ID_picMove));
    EXPECT_FALSE(Shown(ID_imgPos));
    EXPECT_NE(GetCapture(), Strip());
    Mouse(WM_LBUTTONUP, to);
    EXPECT_EQ(BandsOf(*rule), L"Prefix Year Region Branch Number Letter");
}

TEST_F(frmDesignersStripTest, WhatOpensOverTheFormEndsADrag) {
    for (const HWND window : {Strip(), form->Window()}) {
        Mouse(WM_LBUTTONDOWN, MiddleOf(ibPrefix));
        EXPECT_TRUE(confined);
        SendMessageW(window, WM_CANCELMODE, 0, 0);
        EXPECT_FALSE(confined);
        EXPECT_FALSE(Shown(ID_picMove));
    }
}

TEST_F(frmDesignersStripTest, AHandThatShakesMovesNothing) {
    const int left = LeftOf(ibYear);
    const int shake = GetSystemMetrics(SM_CXDRAG);
    Mouse(WM_LBUTTONDOWN, left + 1);
    Mouse(WM_MOUSEMOVE, left + 1 - shake); // already over the box before
    POINT copy = CornerOf(ID_picMove);
    ScreenToClient(Strip(), &copy);
    EXPECT_EQ(copy.y, 0) << "still at the place of its box";
    POINT marker = CornerOf(ID_imgPos);
    ScreenToClient(Strip(), &marker);
    EXPECT_NEAR(marker.x, left, 4) << "at the band's own place";
    Mouse(WM_LBUTTONUP, left + 1 - shake);
    EXPECT_EQ(BandsOf(*rule), L"Prefix Year Region Branch Number Letter");
    Mouse(WM_LBUTTONDOWN, left + 1);
    Mouse(WM_LBUTTONUP, left - shake); // one pixel more
    EXPECT_EQ(BandsOf(*rule), L"Year Prefix Region Branch Number Letter");
}

TEST_F(frmDesignersStripTest, TheFloatingCopyHidesNeitherNamesNorTheMarker) {
    const int from = MiddleOf(ibLetter);
    const int to = MiddleOf(ibYear);
    Mouse(WM_LBUTTONDOWN, from);
    EXPECT_EQ(CornerOf(ID_picMove).y, CornerOf(ID_picBand).y) << "at the place of its box";
    Mouse(WM_MOUSEMOVE, to);
    TEXTMETRICW font{};
    {
        const dialogs::WindowContext context(Strip());
        const dialogs::Selected selected(context.Get(), form->Layout().Font());
        GetTextMetricsW(context.Get(), &font);
    }
    EXPECT_GE(CornerOf(ID_picMove).y, CornerOf(ID_picBand).y + form->Layout().Scaled(6) + font.tmHeight);
    HWND above = GetWindow(screen->Control(ID_picBkg), GW_CHILD);
    while (above != screen->Control(ID_imgPos) && above != screen->Control(ID_picMove))
        above = GetWindow(above, GW_HWNDNEXT);
    EXPECT_EQ(above, screen->Control(ID_imgPos));
    Mouse(WM_LBUTTONUP, to);
}

TEST_F(frmDesignersStripTest, TheFloatingCopyEndsWithTheStrip) {
    for (int more = 1; more <= 4; ++more) // so that there is a scroll bar
        rule->Add({.name = L"Counter " + ToText(more), .style = bsIncreaseNumber, .defaultValue = L"1"});
    screen->Key(ID_picBand, VK_HOME);
    const int from = MiddleOf(ibPrefix);
    const int to = MiddleOf(ibRegion);
    Mouse(WM_LBUTTONDOWN, from);
    Mouse(WM_MOUSEMOVE, to);
    RECT view{};
    RECT copy{};
    GetClientRect(screen->Control(ID_picBkg), &view);
    GetWindowRect(screen->Control(ID_picMove), &copy);
    MapWindowPoints(nullptr, screen->Control(ID_picBkg), reinterpret_cast<POINT*>(&copy), 2);
    EXPECT_LE(copy.bottom, view.bottom);
    EXPECT_GT(copy.bottom - copy.top, form->Layout().Scaled(20));
    RunPendingMessages();
    UpdateWindow(screen->Control(ID_picMove));
    const dialogs::WindowContext context(screen->Control(ID_picMove));
    EXPECT_EQ(GetPixel(context.Get(), (copy.right - copy.left) / 2, copy.bottom - copy.top - 1),
              GetSysColor(COLOR_WINDOWTEXT))
        << "its frame is whole";
    SendMessageW(Strip(), WM_CAPTURECHANGED, 0, 0);
}

// A drop that a handler of the host or the rule refuses for another reason than that nothing moves is told.
TEST_F(frmDesignersStripTest, ADropThatFailsIsTold) {
    const int from = MiddleOf(ibPrefix);
    const int to = MiddleOf(ibBranch);
    Mouse(WM_LBUTTONDOWN, from);
    Mouse(WM_MOUSEMOVE, to);
    const auto host = rule->BandsChanged.Subscribe([] { throw Error(Message::InvalidCall); });
    Mouse(WM_LBUTTONUP, to);
    EXPECT_EQ(screen->Text(ID_lblStatus), Error(Message::InvalidCall).Description());
}

TEST_F(frmDesignersStripTest, APressNearTheEndDoesNotScrollTheStrip) {
    for (int more = 1; more <= 4; ++more)
        rule->Add({.name = L"Counter " + ToText(more), .style = bsIncreaseNumber, .defaultValue = L"1"});
    screen->Key(ID_picBand, VK_HOME);
    RECT strip{};
    GetClientRect(Strip(), &strip);
    Mouse(WM_LBUTTONDOWN, strip.right - 5);
    const int offset = GetScrollPos(screen->Control(ID_picBkg), SB_HORZ);
    for (int turn = 0; turn < 20; ++turn, Sleep(10))
        RunPendingMessages();
    EXPECT_EQ(GetScrollPos(screen->Control(ID_picBkg), SB_HORZ), offset);
    EXPECT_TRUE(Shown(ID_picMove)) << "the button is still down";
    SendMessageW(Strip(), WM_CAPTURECHANGED, 0, 0);
}

TEST_F(frmDesignersStripTest, ARuleThatChangesEndsADrag) {
    Mouse(WM_LBUTTONDOWN, MiddleOf(ibPrefix));
    rule->Remove(ibLetter);
    EXPECT_FALSE(confined);
    EXPECT_FALSE(Shown(ID_picMove));
    Mouse(WM_LBUTTONUP, 5);
    EXPECT_EQ(BandsOf(*rule), L"Prefix Year Region Branch Number");
}

TEST_F(frmDesignersStripTest, TheStripScrollsUnderADragAtItsEnds) {
    AddCounters(*rule, 4);
    const auto bar = [this] {
        SCROLLINFO info{};
        info.cbSize = sizeof info;
        info.fMask = SIF_POS | SIF_RANGE | SIF_PAGE;
        GetScrollInfo(screen->Control(ID_picBkg), SB_HORZ, &info);
        return info;
    };
    const auto offset = [&bar] { return bar().nPos; };
    const auto largest = [&bar] { return bar().nMax + 1 - static_cast<int>(bar().nPage); };
    // The strip moves by its timer while the hand rests; the display's own mouse may have a word meanwhile.
    const auto holdsAt = [this](int x, const auto& condition) {
        for (int turn = 0; turn < 1000 && !condition(); ++turn, Sleep(10)) {
            Mouse(WM_MOUSEMOVE, x);
            RunPendingMessages();
        }
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
    EXPECT_GT(largest(), 200);
    EXPECT_TRUE(holdsAt(strip.right - 5, [&] { return offset() > 200; }));
    EXPECT_TRUE(Shown(ID_imgPos));
    EXPECT_TRUE(Shown(ID_picMove));
    EXPECT_TRUE(holdsAt(5, [&] { return offset() == 0; })) << "back to the beginning";
    EXPECT_TRUE(holdsAt(strip.right - 5, [&] { return offset() == largest(); })) << "up to the end";
    GetClientRect(Strip(), &strip);
    Mouse(WM_LBUTTONUP, strip.right + 5);
    EXPECT_EQ(rule->Band(rule->Count())->Name(), L"Prefix");
    EXPECT_EQ(screen->Text(ID_txtName), L"Prefix");
}

TEST_F(frmDesignersStripTest, TheScrollBarAndTheWheelMoveTheStrip) {
    AddCounters(*rule, 4);
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
    const int prefix = MiddleOf(ibPrefix);
    EXPECT_EQ(TipAt(prefix), L"") << "nothing is cut off here";
    screen->Key(ID_picBand, VK_END);
    const int longOne = MiddleOf(rule->Count());
    screen->Key(ID_picBand, VK_END);
    EXPECT_EQ(TipAt(longOne), name + L"\r\nFixed\r\nR");
    EXPECT_EQ(TipAt(longOne - 170).substr(0, 8), L"[Letter]") << "of its neighbour only what was found";
}

TEST_F(frmDesignersStripTest, ABandWithFindingsHasAMarkAndItsTipTellsThem) {
    Reopen(GoodRule());
    const auto prefix = PlaceOf(gbPrefix);
    const auto number = PlaceOf(gbNumber);
    ASSERT_TRUE(prefix && number);
    EXPECT_EQ(CornerOf(*prefix), GetSysColor(COLOR_BTNFACE));
    EXPECT_EQ(CornerOf(*number), GetSysColor(COLOR_HIGHLIGHT)) << "the selected box, without a mark";
    EXPECT_EQ(TipAt(number->left + 5), L"");
    screen->Type(ID_txtLength, L"7");
    EXPECT_EQ(CornerOf(*number), GetSysColor(COLOR_HIGHLIGHTTEXT));
    SetFocus(Strip());
    EXPECT_EQ(MarkIn(*number), GetSysColor(COLOR_HIGHLIGHTTEXT)) << "the frame of the focus does not run through it";
    const String first = L"[Number] The first number 1 is written as '00001', which does not have 7 character(s).";
    EXPECT_EQ(TipAt(number->left + 5).substr(0, first.size()), first);
    Select(gbPrefix);
    EXPECT_EQ(CornerOf(*number), GetSysColor(COLOR_HIGHLIGHT));
    EXPECT_EQ(CornerOf(*prefix), GetSysColor(COLOR_HIGHLIGHT)) << "the selected box, without a mark";
    Select(gbNumber);
    screen->Type(ID_txtLength, L"5");
    EXPECT_EQ(CornerOf(*number), GetSysColor(COLOR_HIGHLIGHT)) << "mended";
    EXPECT_EQ(TipAt(number->left + 5), L"");
}

TEST_F(frmDesignersStripTest, TheRightButtonSelectsAndOpensTheMenu) {
    const MenuWatcher menu(form->Window());
    SendMessageW(Strip(), WM_RBUTTONDOWN, MK_RBUTTON, MAKELPARAM(MiddleOf(ibBranch), 10));
    EXPECT_EQ(screen->Text(ID_txtName), L"Branch");
    EXPECT_EQ(menu.Items(), (Texts{L"Add Band(&A)", L"Add &Before..", L"Add &After..", L"A&ppend..", L"Remove Band(&R)",
                                   L"Remove All(&C)"}));
    rule->Band(ibBranch)->SetAllowDroped(false);
    SendMessageW(Strip(), WM_RBUTTONDOWN, MK_RBUTTON, MAKELPARAM(MiddleOf(ibBranch), 10));
    EXPECT_EQ(menu.Items()[4], L"-Remove Band(&R)");
    rule->SetAllowAddBand(false);
    rule->SetAllowDropBand(false);
    SendMessageW(Strip(), WM_RBUTTONDOWN, MK_RBUTTON, MAKELPARAM(MiddleOf(ibYear), 10));
    EXPECT_EQ(menu.Items(), (Texts{L"-Add Band(&A)", L"-Add &Before..", L"-Add &After..", L"-A&ppend..",
                                   L"-Remove Band(&R)", L"-Remove All(&C)"}));
}

TEST_F(frmDesignersStripTest, TheRightButtonBesideTheBoxesOpensTheMenuOfTheSelectedBand) {
    Select(ibYear);
    const MenuWatcher menu(form->Window());
    RECT view{};
    GetClientRect(screen->Control(ID_picBkg), &view);
    SendMessageW(screen->Control(ID_picBkg), WM_RBUTTONDOWN, MK_RBUTTON, MAKELPARAM(view.right - 2, 2));
    EXPECT_EQ(menu.Items().size(), 6U);
    EXPECT_EQ(screen->Text(ID_txtName), L"Year");
}

TEST_F(frmDesignersStripTest, AnEmptyRuleShowsOnlyTheButtonAndAMenuToAppend) {
    Reopen(EmptyRule());
    RECT boxes{};
    GetClientRect(Strip(), &boxes);
    EXPECT_EQ(boxes.right, 0);
    EXPECT_TRUE(Shown(ID_imgButton));
    const MenuWatcher menu(form->Window());
    SendMessageW(screen->Control(ID_picBkg), WM_RBUTTONDOWN, MK_RBUTTON, MAKELPARAM(40, 10));
    EXPECT_EQ(menu.Items(), (Texts{L"Add Band(&A)", L"-Add &Before..", L"-Add &After..", L"A&ppend..",
                                   L"-Remove Band(&R)", L"-Remove All(&C)"}));
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

} // namespace kestrel::test
