// How the forms stand on screens of every resolution: sizes by the window's own, rows in line, room on small screens.
#include "dialogs/FormLayout.h"

#include <algorithm>

#include "dialogs/Monitor.h"
#include "dialogs/Subclass.h"
#include "dialogs/frmAddBands.h"
#include "dialogs/support/DesignerTest.h"

namespace kestrel::test {

namespace {

using dialogs::MonitorFunctions;

constexpr UINT dpiChanged = 0x02E0;
constexpr int resolutions[] = {96, 120, 144, 192};

void ChangeDpi(HWND form, int dpi) {
    RECT place{0, 0, 100, 100};
    SendMessageW(form, dpiChanged, MAKEWPARAM(dpi, dpi), reinterpret_cast<LPARAM>(&place));
}

RECT AreaOf(HWND window) {
    RECT area{};
    GetWindowRect(window, &area);
    return area;
}

SIZE InnerSize(HWND window) {
    RECT area{};
    GetClientRect(window, &area);
    return {area.right, area.bottom};
}

// What the system was asked, and the answers of a system that has screens of different resolution.
struct Asked {
    std::vector<std::pair<int, UINT>> metrics;
    UINT frame = 0; // the last one
    std::vector<std::pair<HWND, int>> behaviours;
    RECT work{0, 0, 1280, 1024};
};
Asked theAsked;

UINT WINAPI AnswerDpi(HWND) { return 120; }
int WINAPI AnswerMetric(int metric, UINT dpi) {
    theAsked.metrics.emplace_back(metric, dpi);
    return MulDiv(17, static_cast<int>(dpi), 96);
}
BOOL WINAPI AnswerFrame(RECT* area, DWORD style, BOOL menu, DWORD extendedStyle, UINT dpi) {
    theAsked.frame = dpi;
    return AdjustWindowRectEx(area, style, menu, extendedStyle);
}
// Less than the window really has.
BOOL WINAPI AnswerNarrowFrame(RECT* area, DWORD, BOOL, DWORD, UINT) {
    InflateRect(area, 1, 1);
    return TRUE;
}
BOOL WINAPI AnswerBehaviour(HWND dialog, int mask, int values) {
    theAsked.behaviours.emplace_back(dialog, mask & values);
    return TRUE;
}
BOOL WINAPI AnswerMonitor(HMONITOR, MONITORINFO* info) {
    info->rcMonitor = info->rcWork = theAsked.work;
    return TRUE;
}

// A designer on such a system.
class FormLayoutTest : public DialogTest {
  protected:
    FormLayoutTest() : rule(InvoiceRule()) { theAsked = {}; }
    ~FormLayoutTest() override { dialogs::UseMonitorFunctions(mvarBefore); }
    void Open() {
        form.emplace(*rule);
        form->Load();
    }
    [[nodiscard]] RECT Area(int id) const { return AreaOf(form->Find(id)); }

    Ref<CodeClass> rule;
    std::optional<dialogs::frmDesigners> form;

  private:
    MonitorFunctions mvarBefore =
        dialogs::UseMonitorFunctions({AnswerDpi, AnswerMetric, AnswerFrame, AnswerBehaviour, AnswerMonitor});
};

// Writes down whether the font that a control has when it gets another is still one.
class FontWatch final : public dialogs::Subclass {
  public:
    explicit FontWatch(HWND control) noexcept { Attach(control); }
    int given = 0;
    int dead = 0;

  private:
    std::optional<LRESULT> Handle(UINT message, WPARAM, LPARAM) override {
        if (message != WM_SETFONT) return std::nullopt;
        ++given;
        const auto before = reinterpret_cast<HGDIOBJ>(Default(WM_GETFONT, 0, 0));
        if (GetObjectType(before) != OBJ_FONT) ++dead;
        return std::nullopt;
    }
};

void ExpectRowInLine(const dialogs::Form& form, int left, int right, int dpi) {
    const RECT first = AreaOf(form.Find(left));
    const RECT second = AreaOf(form.Find(right));
    EXPECT_EQ(first.top, second.top) << left << " and " << right << " at " << dpi;
    EXPECT_EQ(first.bottom, second.bottom) << left << " and " << right << " at " << dpi;
}

} // namespace

TEST_F(FormLayoutTest, SizesComeFromTheWindowsOwnResolution) {
    Open();
    EXPECT_EQ(form->Layout().Dpi(), 120U);
    EXPECT_EQ(theAsked.frame, 120U);
    ChangeDpi(form->Window(), 192);
    EXPECT_EQ(theAsked.frame, 192U);
    const auto scrollBar = std::pair<int, UINT>(SM_CXVSCROLL, 192);
    EXPECT_NE(std::find(theAsked.metrics.begin(), theAsked.metrics.end(), scrollBar), theAsked.metrics.end());
    const HWND list = form->Find(ID_lstTracks);
    EXPECT_EQ(SendMessageW(list, LVM_GETCOLUMNWIDTH, 0, 0), InnerSize(list).cx - 34);
}

TEST_F(FormLayoutTest, TheSystemLeavesTheRescalingToTheForm) {
    Open();
    EXPECT_EQ(theAsked.behaviours, (std::vector<std::pair<HWND, int>>{{form->Window(), 1}}));
}

TEST_F(FormLayoutTest, AnOldSystemHasOneResolution) {
    MonitorFunctions old;
    old.monitorInfo = AnswerMonitor;
    dialogs::UseMonitorFunctions(old);
    Open();
    const dialogs::WindowContext screen(nullptr);
    EXPECT_EQ(form->Layout().Dpi(), static_cast<UINT>(GetDeviceCaps(screen.Get(), LOGPIXELSY)));
    const HWND list = form->Find(ID_lstTracks);
    EXPECT_EQ(SendMessageW(list, LVM_GETCOLUMNWIDTH, 0, 0), InnerSize(list).cx - GetSystemMetrics(SM_CXVSCROLL));
}

TEST_F(FormLayoutTest, AFrameThatDoesNotFollowTheScreenCutsNothingOff) {
    dialogs::UseMonitorFunctions({AnswerDpi, AnswerMetric, AnswerNarrowFrame, AnswerBehaviour, AnswerMonitor});
    Open();
    const RECT close = Area(ID_cmdClose);
    POINT corner{close.right, close.bottom};
    ScreenToClient(form->Window(), &corner);
    EXPECT_LT(corner.x, InnerSize(form->Window()).cx);
    EXPECT_LT(corner.y, InnerSize(form->Window()).cy);
}

TEST_F(FormLayoutTest, AFontGoesOnlyWhenEveryControlHasAnother) {
    Open();
    for (const int id : {ID_txtName, ID_cboStyle, ID_lstTracks, ID_imgButton, ID_cmdClose}) {
        const FontWatch watch(form->Find(id));
        ChangeDpi(form->Window(), 144);
        ChangeDpi(form->Window(), 96);
        EXPECT_GE(watch.given, 2) << id;
        EXPECT_EQ(watch.dead, 0) << id;
    }
}

TEST_F(FormLayoutTest, BoxesOfARowAreEquallyHigh) {
    Open();
    dialogs::frmAddBands band(*rule);
    band.ShowNewBand(L"Number", 2);
    for (const int dpi : resolutions) {
        ChangeDpi(form->Window(), dpi);
        ExpectRowInLine(*form, ID_txtName, ID_cboStyle, dpi);
        ExpectRowInLine(*form, ID_txtFormat, ID_cboSwapMode, dpi);
        ExpectRowInLine(*form, ID_cboIncrMode, ID_cboTrigerBand, dpi);
        ChangeDpi(band.Window(), dpi);
        const RECT text = AreaOf(band.Find(ID_txtName));
        const RECT list = AreaOf(band.Find(ID_cboStyle));
        EXPECT_NEAR(list.bottom - list.top, text.bottom - text.top, 1) << dpi;
        EXPECT_GT(SendMessageW(band.Find(ID_cboStyle), CB_SHOWDROPDOWN, TRUE, 0), 0);
        RECT dropped{};
        SendMessageW(band.Find(ID_cboStyle), CB_GETDROPPEDCONTROLRECT, 0, reinterpret_cast<LPARAM>(&dropped));
        EXPECT_GT(dropped.bottom - dropped.top, 3 * (list.bottom - list.top)) << "the list still drops";
        SendMessageW(band.Find(ID_cboStyle), CB_SHOWDROPDOWN, FALSE, 0);
    }
}

TEST_F(FormLayoutTest, SpinBarsStandFlushWithTheColumn) {
    Open();
    for (const int dpi : resolutions) {
        ChangeDpi(form->Window(), dpi);
        for (const auto& [column, index] : {std::pair(ID_txtName, 0), {ID_txtLength, 1}}) {
            const RECT box = Area(ID_txtRange + index);
            const RECT spin = Area(ID_vscRange + index);
            EXPECT_EQ(box.left, Area(column).left) << dpi;
            EXPECT_EQ(box.right, spin.left) << "nothing lies over the border of the box, at " << dpi;
            EXPECT_EQ(spin.right, Area(column).right) << dpi;
            EXPECT_EQ(spin.top, box.top) << dpi;
            EXPECT_EQ(spin.bottom, box.bottom) << dpi;
            EXPECT_NEAR(spin.right - spin.left, 17.5 * dpi / 96, 2.0) << "it grows with the form";
        }
    }
}

TEST_F(FormLayoutTest, NothingLiesOverAnotherControl) {
    Open();
    for (const int dpi : resolutions) {
        ChangeDpi(form->Window(), dpi);
        for (const auto& one : form->Controls()) {
            for (const auto& other : form->Controls()) {
                const RECT first = AreaOf(one.window);
                const RECT second = AreaOf(other.window);
                const int frames[] = {ID_famPropertiy, ID_famRelation};
                const auto isFrame = [&](HWND window) {
                    return std::find(std::begin(frames), std::end(frames), GetDlgCtrlID(window)) != std::end(frames);
                };
                RECT both{};
                if (one.window == other.window || isFrame(one.window) || isFrame(other.window)) continue;
                EXPECT_FALSE(IntersectRect(&both, &first, &second))
                    << GetDlgCtrlID(one.window) << " and " << GetDlgCtrlID(other.window) << " at " << dpi;
            }
        }
    }
}

TEST_F(FormLayoutTest, TheDesignerFitsASmallScreen) {
    Open();
    ChangeDpi(form->Window(), 144);
    const RECT roomy = Area(ID_lstTracks);
    theAsked.work = {0, 0, 1280, 720};
    SendMessageW(form->Window(), WM_SETTINGCHANGE, SPI_SETWORKAREA, 0);
    const RECT outer = AreaOf(form->Window());
    EXPECT_LE(outer.right - outer.left, 1280);
    EXPECT_LE(outer.bottom - outer.top, 720);
    EXPECT_LT(Area(ID_cmdClose).bottom, outer.bottom);
    const RECT list = Area(ID_lstTracks);
    EXPECT_LT(list.bottom - list.top, roomy.bottom - roomy.top) << "the lists give the room";
    EXPECT_GT(list.bottom - list.top, 70) << "and keep some rows";
    EXPECT_LE(list.bottom, Area(ID_lblInfo).top);
    EXPECT_LE(Area(ID_tvwAvailable).bottom, Area(ID_cmdAdd).top);
    EXPECT_LE(Area(ID_famPropertiy).bottom, Area(ID_cmdSave).top);
    theAsked.work = {0, 0, 1920, 1080};
    SendMessageW(form->Window(), WM_SETTINGCHANGE, SPI_SETWORKAREA, 0);
    EXPECT_EQ(Area(ID_lstTracks).bottom - Area(ID_lstTracks).top, roomy.bottom - roomy.top) << "it grows again";
}

} // namespace kestrel::test
