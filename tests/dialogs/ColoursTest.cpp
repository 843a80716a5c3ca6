// The designer follows the colours and the measures of the system, as somebody who sees badly has set them.
#include <array>

#include "dialogs/Handles.h"
#include "dialogs/frmAddBands.h"
#include "dialogs/frmAddNodes.h"
#include "dialogs/frmAdvanceds.h"
#include "dialogs/frmDropFields.h"
#include "dialogs/support/DesignerTest.h"

namespace kestrel::test {

namespace {

// The colours of a scheme with white text on black; each that the dialogs paint with is another.
constexpr std::array<int, 12> parts{COLOR_WINDOW,    COLOR_WINDOWTEXT, COLOR_BTNFACE,       COLOR_BTNTEXT,
                                    COLOR_BTNSHADOW, COLOR_HIGHLIGHT,  COLOR_HIGHLIGHTTEXT, COLOR_GRAYTEXT,
                                    COLOR_MENU,      COLOR_MENUTEXT,   COLOR_INFOBK,        COLOR_INFOTEXT};
constexpr std::array<COLORREF, 12> contrast{RGB(0, 0, 0),     RGB(255, 255, 255), RGB(0, 0, 64),      RGB(255, 255, 0),
                                            RGB(192, 0, 192), RGB(0, 128, 0),     RGB(255, 240, 240), RGB(0, 255, 0),
                                            RGB(0, 0, 0),     RGB(255, 255, 255), RGB(64, 0, 0),      RGB(0, 255, 255)};

// In force while it lives.
class Contrast {
  public:
    Contrast() noexcept {
        for (std::size_t index = 0; index < parts.size(); ++index)
            mvarBefore.at(index) = GetSysColor(parts.at(index));
        SetSysColors(static_cast<int>(parts.size()), parts.data(), contrast.data());
    }
    // Taken back once.
    Contrast(const Contrast&) = delete;
    Contrast& operator=(const Contrast&) = delete;
    ~Contrast() { SetSysColors(static_cast<int>(parts.size()), parts.data(), mvarBefore.data()); }

  private:
    std::array<COLORREF, contrast.size()> mvarBefore{};
};

// A taller caption, wider scroll bars, and every font of the system twice as high, while it lives.
class LargeMeasures {
  public:
    LargeMeasures() noexcept {
        mvarBefore.cbSize = sizeof mvarBefore;
        SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof mvarBefore, &mvarBefore, 0);
        NONCLIENTMETRICSW large = mvarBefore;
        large.iCaptionHeight += 22;
        large.iScrollWidth = large.iScrollHeight = 28;
        for (LOGFONTW* font : {&large.lfCaptionFont, &large.lfSmCaptionFont, &large.lfMenuFont, &large.lfStatusFont,
                               &large.lfMessageFont})
            font->lfHeight *= 2;
        SystemParametersInfoW(SPI_SETNONCLIENTMETRICS, sizeof large, &large, 0);
    }
    // Taken back once.
    LargeMeasures(const LargeMeasures&) = delete;
    LargeMeasures& operator=(const LargeMeasures&) = delete;
    ~LargeMeasures() { SystemParametersInfoW(SPI_SETNONCLIENTMETRICS, sizeof mvarBefore, &mvarBefore, 0); }

  private:
    NONCLIENTMETRICSW mvarBefore{};
};

class ColoursTest : public DesignerTest {
  protected:
    void ColoursHaveChanged() const {
        SendMessageW(form->Window(), WM_SYSCOLORCHANGE, 0, 0);
        RedrawWindow(form->Window(), nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN | RDW_UPDATENOW);
        RunPendingMessages();
    }
    // How many of the control's pixels on the screen have that colour of the system.
    [[nodiscard]] int Pixels(int id, int part) const { return PixelsOf(screen->Control(id), GetSysColor(part)); }
    [[nodiscard]] static int PixelsOf(HWND control, COLORREF colour) {
        RECT area{};
        GetClientRect(control, &area);
        const dialogs::WindowContext context(control);
        int count = 0;
        for (int y = 0; y < area.bottom; ++y)
            for (int x = 0; x < area.right; ++x)
                if (GetPixel(context.Get(), x, y) == colour) ++count;
        return count;
    }
    [[nodiscard]] int Area(int id) const {
        RECT area{};
        GetClientRect(screen->Control(id), &area);
        return static_cast<int>(area.right * area.bottom);
    }
    // The colours that the tree and the list say they paint with: text, then background.
    [[nodiscard]] std::vector<COLORREF> TreeColours() const {
        const HWND tree = screen->Control(ID_tvwAvailable);
        return {static_cast<COLORREF>(SendMessageW(tree, TVM_GETTEXTCOLOR, 0, 0)),
                static_cast<COLORREF>(SendMessageW(tree, TVM_GETBKCOLOR, 0, 0))};
    }
    [[nodiscard]] std::vector<COLORREF> ListColours() const {
        const HWND list = screen->Control(ID_lstTracks);
        return {static_cast<COLORREF>(SendMessageW(list, LVM_GETTEXTCOLOR, 0, 0)),
                static_cast<COLORREF>(SendMessageW(list, LVM_GETBKCOLOR, 0, 0))};
    }
    // Where a window stands within another.
    [[nodiscard]] static RECT PlaceIn(HWND parent, HWND window) {
        RECT area{};
        GetWindowRect(window, &area);
        MapWindowPoints(nullptr, parent, reinterpret_cast<POINT*>(&area), 2);
        return area;
    }
    // What each control of the form is drawn with, and where.
    [[nodiscard]] std::vector<std::pair<LONG, RECT>> FontsAndPlaces() const {
        std::vector<std::pair<LONG, RECT>> result;
        for (HWND child = GetWindow(form->Window(), GW_CHILD); child != nullptr;
             child = GetWindow(child, GW_HWNDNEXT)) {
            LOGFONTW font{};
            GetObjectW(reinterpret_cast<HFONT>(SendMessageW(child, WM_GETFONT, 0, 0)), sizeof font, &font);
            result.emplace_back(font.lfHeight, PlaceIn(form->Window(), child));
        }
        return result;
    }
    // The form's font is its own, so that the system's makes nothing wider than its place.
    void ExpectTheFormsOwnFontEverywhere(const std::vector<std::pair<LONG, RECT>>& before) const {
        const auto now = FontsAndPlaces();
        ASSERT_EQ(now.size(), before.size());
        for (std::size_t index = 0; index < now.size(); ++index) {
            EXPECT_EQ(now[index].first, before[index].first) << index;
            EXPECT_TRUE(EqualRect(&now[index].second, &before[index].second)) << index;
        }
    }
    // The height of the letters in the system's message boxes.
    [[nodiscard]] static LONG MessageHeight() {
        NONCLIENTMETRICSW metrics{};
        metrics.cbSize = sizeof metrics;
        SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0);
        return std::abs(metrics.lfMessageFont.lfHeight);
    }
    [[nodiscard]] static std::vector<COLORREF> System(int text, int background) {
        return {GetSysColor(text), GetSysColor(background)};
    }
};

} // namespace

TEST_F(ColoursTest, ADisabledTreeAndListLookIt) {
    Select(ibNumber); // tracks, has no relations
    EXPECT_EQ(TreeColours(), System(COLOR_GRAYTEXT, COLOR_BTNFACE));
    EXPECT_EQ(ListColours(), System(COLOR_WINDOWTEXT, COLOR_WINDOW));
    RunPendingMessages();
    EXPECT_GT(Pixels(ID_tvwAvailable, COLOR_BTNFACE), Area(ID_tvwAvailable) * 9 / 10);
    Select(ibRegion); // the other way round
    EXPECT_EQ(TreeColours(), System(COLOR_WINDOWTEXT, COLOR_WINDOW));
    EXPECT_EQ(ListColours(), System(COLOR_GRAYTEXT, COLOR_BTNFACE));
    rule->Band(ibRegion)->SetAllowModified(false);
    Select(ibRegion);
    screen->SelectTreeItem(ID_tvwAvailable, L"02 South");
    RunPendingMessages();
    EXPECT_EQ(TreeColours(), System(COLOR_GRAYTEXT, COLOR_BTNFACE));
    EXPECT_EQ(Pixels(ID_tvwAvailable, COLOR_HIGHLIGHT), 0) << "not marked as if it could be used";
    Reopen(EmptyRule());
    EXPECT_EQ(TreeColours(), System(COLOR_GRAYTEXT, COLOR_BTNFACE));
    EXPECT_EQ(ListColours(), System(COLOR_GRAYTEXT, COLOR_BTNFACE));
}

TEST_F(ColoursTest, EverythingIsPaintedInTheColoursOfTheSystem) {
    const Contrast scheme;
    Select(ibRegion);
    screen->SelectTreeItem(ID_tvwAvailable, L"02 South");
    screen->Focus(ID_txtFormat);
    ColoursHaveChanged();
    EXPECT_EQ(TreeColours(), System(COLOR_WINDOWTEXT, COLOR_WINDOW));
    EXPECT_EQ(ListColours(), System(COLOR_GRAYTEXT, COLOR_BTNFACE));
    for (const int part : {COLOR_WINDOW, COLOR_BTNFACE, COLOR_BTNTEXT, COLOR_BTNSHADOW, COLOR_HIGHLIGHT,
                           COLOR_HIGHLIGHTTEXT, COLOR_WINDOWTEXT})
        EXPECT_GT(Pixels(ID_picBand, part), 0) << part;
    EXPECT_GT(Pixels(ID_picBkg, COLOR_WINDOW), Area(ID_picBkg) / 20);
    EXPECT_GT(Pixels(ID_tvwAvailable, COLOR_HIGHLIGHT), 200) << "the selected node, also without the focus";
    EXPECT_GT(Pixels(ID_tvwAvailable, COLOR_WINDOW), Area(ID_tvwAvailable) / 2);
    EXPECT_GT(Pixels(ID_lstTracks, COLOR_BTNFACE), Area(ID_lstTracks) / 2);
}

TEST_F(ColoursTest, ARefusalIsPaintedInTheColoursOfNotes) {
    const Contrast scheme;
    Select(ibNumber);
    screen->Type(ID_txtLength, L"0");
    ASSERT_NE(screen->Text(ID_lblStatus), L"");
    ColoursHaveChanged();
    EXPECT_GT(Pixels(ID_lblStatus, COLOR_INFOBK), Area(ID_lblStatus) / 2);
    EXPECT_GT(Pixels(ID_lblStatus, COLOR_INFOTEXT), 20);
    EXPECT_EQ(Pixels(ID_lblStatus, COLOR_BTNFACE), 0);
}

// The other four. What is painted otherwise would keep the grey of usual dialogs.
TEST_F(ColoursTest, EveryDialogIsPaintedInTheColoursOfTheSystem) {
    const COLORREF usualFace = GetSysColor(COLOR_BTNFACE);
    form.reset();
    const Contrast scheme;
    dialogs::frmAddBands band(*rule);
    band.ShowNewBand(L"Number", 2);
    dialogs::frmAddNodes node(*rule);
    node.ShowNodeEditor(rule->Band(ibRegion), L"N1", tvwNext, false);
    dialogs::frmDropFields fields(*rule);
    fields.Load();
    dialogs::frmAdvanceds options;
    options.ShowInfo(rule.Get(), L"");
    for (dialogs::Form* each : std::initializer_list<dialogs::Form*>{&band, &node, &fields, &options}) {
        ShowWindow(each->Window(), SW_SHOWNA);
        SetWindowPos(each->Window(), HWND_TOP, 0, 0, 0, 0, SWP_NOSIZE | SWP_NOACTIVATE);
        RedrawWindow(each->Window(), nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN | RDW_UPDATENOW);
        RunPendingMessages();
        RECT area{};
        GetClientRect(each->Window(), &area);
        EXPECT_GT(PixelsOf(each->Window(), GetSysColor(COLOR_BTNFACE)), area.right * area.bottom / 4)
            << testing::PrintToString(each->Caption());
        EXPECT_GT(PixelsOf(each->Window(), GetSysColor(COLOR_WINDOWTEXT)), 20)
            << testing::PrintToString(each->Caption());
        EXPECT_LT(PixelsOf(each->Window(), usualFace), area.right * area.bottom / 20)
            << testing::PrintToString(each->Caption()) << " more than the edges of controls";
        ShowWindow(each->Window(), SW_HIDE);
    }
}

TEST_F(ColoursTest, LargeMeasuresCutNothingOff) {
    for (int more = 1; more <= 4; ++more) // the strip scrolls
        rule->Add({.name = L"Counter " + ToText(more), .style = bsIncreaseNumber, .defaultValue = L"1"});
    RECT before{};
    RECT outerBefore{};
    GetClientRect(form->Window(), &before);
    GetWindowRect(form->Window(), &outerBefore);
    const auto controlsBefore = FontsAndPlaces();
    const LONG usual = MessageHeight();
    const LargeMeasures large;
    ASSERT_EQ(MessageHeight(), 2 * usual);
    SendMessageW(form->Window(), WM_SETTINGCHANGE, SPI_SETNONCLIENTMETRICS, 0);
    RECT after{};
    RECT outerAfter{};
    GetClientRect(form->Window(), &after);
    GetWindowRect(form->Window(), &outerAfter);
    EXPECT_EQ(after.bottom, before.bottom);
    EXPECT_EQ(after.right, before.right);
    EXPECT_EQ(outerAfter.bottom - outerAfter.top, outerBefore.bottom - outerBefore.top + 22);
    ExpectTheFormsOwnFontEverywhere(controlsBefore);
    RECT view{};
    GetClientRect(screen->Control(ID_picBkg), &view);
    const RECT boxes = PlaceIn(screen->Control(ID_picBkg), screen->Control(ID_picBand));
    EXPECT_LE(boxes.bottom, view.bottom) << "the scroll bar leaves the boxes whole";
    const HWND list = screen->Control(ID_lstTracks);
    RECT rows{};
    GetClientRect(list, &rows);
    EXPECT_LE(SendMessageW(list, LVM_GETCOLUMNWIDTH, 0, 0), rows.right);
}

} // namespace kestrel::test
