#include "dialogs/mdlExtend.h"

#include "dialogs/support/DialogTest.h"

namespace kestrel::test {

namespace {

class mdlExtendTest : public DialogTest {
  protected:
    mdlExtendTest() {
        INITCOMMONCONTROLSEX classes{sizeof(INITCOMMONCONTROLSEX),
                                     ICC_TAB_CLASSES | ICC_BAR_CLASSES | ICC_LISTVIEW_CLASSES};
        InitCommonControlsEx(&classes);
    }
    ~mdlExtendTest() override { DestroyWindow(mvarParent); }
    [[nodiscard]] HWND Make(const wchar_t* className, DWORD style) const {
        return CreateWindowExW(0, className, L"1500", WS_CHILD | style, 0, 0, 300, 100, mvarParent, nullptr, nullptr,
                               nullptr);
    }

  private:
    HWND mvarParent =
        CreateWindowExW(0, L"Static", L"", WS_OVERLAPPEDWINDOW, 0, 0, 400, 300, nullptr, nullptr, nullptr, nullptr);
};

template <class Structure>
LRESULT Send(HWND control, UINT message, int place, Structure& structure) {
    return SendMessageW(control, message, static_cast<WPARAM>(place), reinterpret_cast<LPARAM>(&structure));
}

// A copy that controls may write to.
class Buffer {
  public:
    explicit Buffer(const wchar_t* text = L"") { lstrcpynW(mvarText, text, 64); }
    wchar_t* Get() { return mvarText; }

  private:
    wchar_t mvarText[64] = {};
};

TTTOOLINFOW TipOf(HWND tabs, int place, wchar_t* text) {
    TTTOOLINFOW tool{};
    tool.cbSize = TTTOOLINFOW_V2_SIZE;
    tool.hwnd = tabs;
    tool.uId = static_cast<UINT_PTR>(place);
    tool.lpszText = text;
    return tool;
}

void AddTab(HWND tabs, int place, const wchar_t* caption, const wchar_t* tip) {
    Buffer text(caption);
    TCITEMW item{};
    item.mask = TCIF_TEXT;
    item.pszText = text.Get();
    Send(tabs, TCM_INSERTITEMW, place, item);
    Buffer tipText(tip);
    auto tool = TipOf(tabs, place, tipText.Get());
    const auto tips = reinterpret_cast<HWND>(SendMessageW(tabs, TCM_GETTOOLTIPS, 0, 0));
    auto known = TipOf(tabs, place, nullptr); // not every version of the controls makes a tip with the tab
    Send(tips, Send(tips, TTM_GETTOOLINFOW, 0, known) != 0 ? TTM_UPDATETIPTEXTW : TTM_ADDTOOLW, 0, tool);
}

String TabText(HWND tabs, int place) {
    Buffer text;
    TCITEMW item{};
    item.mask = TCIF_TEXT;
    item.pszText = text.Get();
    item.cchTextMax = 64;
    Send(tabs, TCM_GETITEMW, place, item);
    return text.Get();
}

String TabTip(HWND tabs, int place) {
    Buffer text;
    auto tool = TipOf(tabs, place, text.Get());
    Send(reinterpret_cast<HWND>(SendMessageW(tabs, TCM_GETTOOLTIPS, 0, 0)), TTM_GETTEXTW, 64, tool);
    return text.Get();
}

} // namespace

TEST_F(mdlExtendTest, TabsGetTheirCaptionsAndTips) {
    const HWND tabs = Make(WC_TABCONTROLW, TCS_TOOLTIPS);
    AddTab(tabs, 0, L"1511", L"1527");
    AddTab(tabs, 1, L"Other", L"as it is");
    EXPECT_TRUE(dialogs::LocaliseItems(tabs));
    EXPECT_EQ(TabText(tabs, 0), L"Properties");
    EXPECT_EQ(TabTip(tabs, 0), L"Ask the application for a new user field");
    EXPECT_EQ(TabText(tabs, 1), L"Other");
    EXPECT_EQ(TabTip(tabs, 1), L"as it is");
}

TEST_F(mdlExtendTest, TabsWithoutTipsGetTheirCaptions) {
    const HWND tabs = Make(WC_TABCONTROLW, 0);
    AddTab(tabs, 0, L"1507", L"");
    EXPECT_TRUE(dialogs::LocaliseItems(tabs));
    EXPECT_EQ(TabText(tabs, 0), L"Relation");
}

TEST_F(mdlExtendTest, ButtonsOfAToolbarGetTheirTips) {
    const HWND toolbar = Make(TOOLBARCLASSNAMEW, TBSTYLE_TOOLTIPS | TBSTYLE_LIST | CCS_NORESIZE);
    SendMessageW(toolbar, TB_BUTTONSTRUCTSIZE, sizeof(TBBUTTON), 0);
    const wchar_t* texts[] = {L"1526", L"Plain", L"999999"};
    for (int place = 0; place < 3; ++place) {
        TBBUTTON button{};
        button.idCommand = 100 + place;
        button.fsState = TBSTATE_ENABLED;
        button.iString = reinterpret_cast<INT_PTR>(texts[place]);
        Send(toolbar, TB_ADDBUTTONSW, 1, button);
    }
    EXPECT_TRUE(dialogs::LocaliseItems(toolbar));
    const auto textOf = [toolbar](int command) {
        wchar_t text[128] = {};
        SendMessageW(toolbar, TB_GETBUTTONTEXTW, static_cast<WPARAM>(command), reinterpret_cast<LPARAM>(text));
        return String(text);
    };
    EXPECT_EQ(textOf(100), L"Add a band at the end");
    EXPECT_EQ(textOf(101), L"Plain");
    EXPECT_EQ(textOf(102), L"999999") << "there is no such string";
}

TEST_F(mdlExtendTest, ColumnsGetTheirHeadings) {
    const HWND list = Make(WC_LISTVIEWW, LVS_REPORT);
    const wchar_t* texts[] = {L"1852", L"1853", L"Mine"};
    for (int place = 0; place < 3; ++place) {
        Buffer text(texts[place]);
        LVCOLUMNW column{};
        column.mask = LVCF_TEXT | LVCF_WIDTH;
        column.cx = 80;
        column.pszText = text.Get();
        Send(list, LVM_INSERTCOLUMNW, place, column);
    }
    EXPECT_TRUE(dialogs::LocaliseItems(list));
    const Texts expected{L"Code", L"Value", L"Mine"};
    for (int place = 0; place < 3; ++place) {
        Buffer text;
        LVCOLUMNW column{};
        column.mask = LVCF_TEXT;
        column.pszText = text.Get();
        column.cchTextMax = 64;
        Send(list, LVM_GETCOLUMNW, place, column);
        EXPECT_EQ(String(text.Get()), expected[static_cast<std::size_t>(place)]);
    }
}

TEST_F(mdlExtendTest, OtherControlsHaveNoItems) {
    const HWND button = Make(L"Button", 0);
    EXPECT_FALSE(dialogs::LocaliseItems(button));
    EXPECT_FALSE(dialogs::LocaliseItems(nullptr));
}

} // namespace kestrel::test
