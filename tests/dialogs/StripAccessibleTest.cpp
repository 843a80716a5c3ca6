// The band strip as screen readers see and work it: from another process, through the system's accessibility library,
// and from within, where a reader may ask for what is not there.
#include "dialogs/StripAccessible.h"
#include "automation/support/Late.h"
#include "automation/support/Library.h"
#include "automation/support/Sink.h"
#include "dialogs/BandBox.h"
#include "dialogs/support/DesignerTest.h"
#include "dialogs/support/Person.h"
#include "dialogs/support/RemoteDesigner.h"
#include "platform/Module.h"

namespace kestrel::test {

namespace {

using dialogs::EventsBetween;
using dialogs::ItemEvent;

class StripAccessibleTest : public ComTest {};

// The designer of this program, for what a reader within it may do.
class StripAccessibleTest_Within : public DesignerTest {
  protected:
    static void SetUpTestSuite() { ASSERT_TRUE(SUCCEEDED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED))); }
    static void TearDownTestSuite() { CoUninitialize(); }
    [[nodiscard]] Reading Strip() const { return Reading(screen->Control(ID_picBand)); }
};

// What every member answers, given a child and places for the results.
std::vector<HRESULT> AskAll(IAccessible& object, VARIANT child) {
    std::vector<HRESULT> results;
    for (const auto text :
         {&IAccessible::get_accName, &IAccessible::get_accValue, &IAccessible::get_accDescription,
          &IAccessible::get_accHelp, &IAccessible::get_accKeyboardShortcut, &IAccessible::get_accDefaultAction}) {
        Bstr result;
        results.push_back((object.*text)(child, result.Out()));
    }
    for (const auto value : {&IAccessible::get_accRole, &IAccessible::get_accState}) {
        VARIANT result{};
        results.push_back((object.*value)(child, &result));
    }
    VARIANT end{};
    LONG place = 0;
    ComPtr<IDispatch> found;
    results.push_back(object.get_accChild(child, found.Out()));
    results.push_back(object.accLocation(&place, &place, &place, &place, child));
    results.push_back(object.accNavigate(NAVDIR_FIRSTCHILD, child, &end));
    results.push_back(object.accSelect(SELFLAG_TAKEFOCUS, child));
    results.push_back(object.accDoDefaultAction(child));
    const Bstr text(L"A");
    results.push_back(object.put_accName(child, text.Get()));
    results.push_back(object.put_accValue(child, text.Get()));
    return results;
}

std::vector<HRESULT> AskAllOfTheWhole(IAccessible& object) {
    LONG count = 0;
    VARIANT child{};
    ComPtr<IDispatch> parent;
    return {object.get_accChildCount(&count), object.get_accFocus(&child), object.get_accSelection(&child),
            object.accHitTest(1, 1, &child), object.get_accParent(parent.Out())};
}

void ExpectAll(const std::vector<HRESULT>& results, HRESULT expected) {
    EXPECT_EQ(results, std::vector<HRESULT>(results.size(), expected));
}

} // namespace

// --- From another process ---

TEST_F(StripAccessibleTest, ItemsStandSideBySideInTheStrip) {
    const RemoteDesigner designer(L"English");
    RECT window{};
    GetWindowRect(designer.screen.Control(ID_picBand), &window);
    LONG left = window.left;
    for (LONG item = ibPrefix; item <= ibLetter; ++item) {
        const Place place = designer.strip.PlaceOf(item);
        EXPECT_EQ(place.left, left) << item;
        EXPECT_EQ(place.top, window.top);
        EXPECT_EQ(place.height, window.bottom - window.top);
        EXPECT_GT(place.width, 20);
        left += place.width;
        EXPECT_EQ(designer.strip.HitTest(place.left + place.width / 2, place.top + place.height / 2), item);
    }
    EXPECT_EQ(left, window.right);
    const Place whole = designer.strip.PlaceOf();
    EXPECT_EQ(whole.left, window.left);
    EXPECT_EQ(whole.width, window.right - window.left);
    EXPECT_EQ(designer.strip.HitTest(window.left - 10, window.top + 5), -1) << "beside the strip";
}

TEST_F(StripAccessibleTest, ReadersWalkFromItemToItem) {
    const RemoteDesigner designer(L"English");
    const Reading& strip = designer.strip;
    EXPECT_EQ(strip.Navigate(NAVDIR_FIRSTCHILD, CHILDID_SELF), ibPrefix);
    EXPECT_EQ(strip.Navigate(NAVDIR_LASTCHILD, CHILDID_SELF), ibLetter);
    EXPECT_EQ(strip.Navigate(NAVDIR_NEXT, ibPrefix), ibYear);
    EXPECT_EQ(strip.Navigate(NAVDIR_RIGHT, ibYear), ibRegion);
    EXPECT_EQ(strip.Navigate(NAVDIR_PREVIOUS, ibRegion), ibYear);
    EXPECT_EQ(strip.Navigate(NAVDIR_LEFT, ibYear), ibPrefix);
    EXPECT_EQ(strip.Navigate(NAVDIR_NEXT, ibLetter), -1);
    EXPECT_EQ(strip.Navigate(NAVDIR_PREVIOUS, ibPrefix), -1);
    EXPECT_EQ(strip.Navigate(NAVDIR_DOWN, ibPrefix), -1);
    EXPECT_EQ(strip.Navigate(NAVDIR_FIRSTCHILD, ibPrefix), -1) << "items have no children";
}

TEST_F(StripAccessibleTest, ReadersSelectAndFocusAnItem) {
    const RemoteDesigner designer(L"English");
    const auto select = [&](LONG flags, LONG child) {
        return designer.strip.Object()->accSelect(flags, ChildId(child));
    };
    EXPECT_EQ(select(SELFLAG_TAKESELECTION, ibRegion), S_OK);
    EXPECT_EQ(designer.strip.Selection(), ibRegion);
    EXPECT_EQ(select(SELFLAG_TAKEFOCUS, ibBranch), S_OK);
    EXPECT_EQ(designer.strip.Focus(), ibBranch);
    EXPECT_EQ(designer.Text(ID_txtName), L"Branch");
    EXPECT_EQ(select(SELFLAG_TAKEFOCUS, CHILDID_SELF), S_OK);
    EXPECT_EQ(select(SELFLAG_TAKESELECTION, CHILDID_SELF), E_INVALIDARG);
    EXPECT_EQ(select(SELFLAG_ADDSELECTION, ibYear), E_INVALIDARG) << "one at a time";
    EXPECT_EQ(select(SELFLAG_NONE, ibYear), E_INVALIDARG);
    EXPECT_EQ(designer.strip.Selection(), ibBranch);
}

TEST_F(StripAccessibleTest, ItemsThatAreScrolledAwayAreOffscreen) {
    const RemoteDesigner designer(L"English", L"strip");
    const LONG last = static_cast<LONG>(designer.strip.Children().size());
    ASSERT_EQ(last, 12);
    EXPECT_EQ(designer.strip.State(1) & STATE_SYSTEM_OFFSCREEN, 0);
    EXPECT_EQ(designer.strip.State(last), listed | STATE_SYSTEM_OFFSCREEN);
    const Place whole = designer.strip.PlaceOf();
    EXPECT_GT(designer.strip.PlaceOf(last).left, whole.left + whole.width) << "where it would stand";
    designer.Key(VK_END);
    EXPECT_EQ(designer.strip.State(1), listed | STATE_SYSTEM_OFFSCREEN);
    EXPECT_EQ(designer.strip.State(last), listed | STATE_SYSTEM_SELECTED | STATE_SYSTEM_FOCUSED);
    EXPECT_EQ(designer.strip.State(last) & STATE_SYSTEM_OFFSCREEN, 0);
}

TEST_F(StripAccessibleTest, ReadersHearWhatIsSelected) {
    const RemoteDesigner designer(L"English");
    Listener listener(designer.host.Process(), designer.Strip());
    designer.Key(VK_RIGHT);
    EXPECT_TRUE(listener.Hears({EVENT_OBJECT_SELECTION, ibYear}));
    EXPECT_TRUE(listener.Hears({EVENT_OBJECT_FOCUS, ibYear}));
    designer.strip.Object()->accDoDefaultAction(ChildId(ibLetter));
    EXPECT_TRUE(listener.Hears({EVENT_OBJECT_SELECTION, ibLetter}));
    EXPECT_TRUE(listener.Hears({EVENT_OBJECT_FOCUS, ibLetter}));
}

TEST_F(StripAccessibleTest, ReadersHearThatTheKeyboardComesBack) {
    const RemoteDesigner designer(L"English");
    const auto focus = [&](int id) {
        SendMessageW(designer.screen.Window(), WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(designer.screen.Control(id)),
                     TRUE);
    };
    designer.Key(VK_RIGHT);
    focus(ID_txtFormat);
    EXPECT_EQ(designer.strip.Focus(), -1);
    EXPECT_EQ(designer.strip.State(ibYear), listed | STATE_SYSTEM_SELECTED) << "selected without the keyboard";
    Listener listener(designer.host.Process(), designer.Strip());
    focus(ID_picBand);
    EXPECT_TRUE(listener.Hears({EVENT_OBJECT_FOCUS, ibYear}));
    EXPECT_EQ(designer.strip.Focus(), ibYear);
}

TEST_F(StripAccessibleTest, ReadersHearWhenTheBandsChange) {
    const RemoteDesigner designer(L"English");
    Listener listener(designer.host.Process(), designer.Strip());
    designer.Edit(ID_txtDefault, L"BILL");
    EXPECT_TRUE(listener.Hears({EVENT_OBJECT_NAMECHANGE, ibPrefix}));
    EXPECT_EQ(listener.Heard().count({EVENT_OBJECT_REORDER, CHILDID_SELF}), 0U) << "the others stay";
    EXPECT_EQ(designer.strip.Name(ibPrefix), L"Prefix, Fixed, BILL");
    listener.Forget();
    // With the mouse of the system: a drag ends where that has its button up.
    const Place last = designer.strip.PlaceOf(ibLetter);
    const Place strip = designer.strip.PlaceOf();
    Person::Point({last.left + last.width / 2, last.top + 10});
    Person::Button(MOUSEEVENTF_LEFTDOWN);
    Person::Point({strip.left + 5, strip.top + 10});
    Person::Button(MOUSEEVENTF_LEFTUP);
    EXPECT_TRUE(listener.Hears({EVENT_OBJECT_REORDER, CHILDID_SELF}));
    EXPECT_TRUE(listener.Hears({EVENT_OBJECT_SELECTION, 1}));
    EXPECT_EQ(WithoutFindings(designer.strip.Name(1)), L"Letter, Autoincreased Alphabet, A");
    listener.Forget();
    designer.Key(VK_DELETE);
    EXPECT_TRUE(listener.Hears({EVENT_OBJECT_DESTROY, 6}));
    EXPECT_TRUE(listener.Hears({EVENT_OBJECT_REORDER, CHILDID_SELF}));
    EXPECT_TRUE(listener.Hears({EVENT_OBJECT_SELECTION, 1})) << "another band in the selected place";
    EXPECT_EQ(designer.strip.Children().size(), 5U);
}

TEST_F(StripAccessibleTest, ReadersOfTheOtherBitnessSeeTheSame) {
    const String own = ModulePath(nullptr);
    const String build = own.substr(0, own.rfind(L'\\', own.rfind(L'\\') - 1));
    const String other = build + (sizeof(void*) == 4 ? L"\\x64" : L"\\x86");
    if (GetFileAttributesW((other + L"\\dialog_host.exe").c_str()) == INVALID_FILE_ATTRIBUTES)
        GTEST_SKIP() << "the other bitness is not built";
    const RemoteDesigner designer(L"English", L"designer", other);
    ASSERT_NE(designer.host.Window(), nullptr);
    EXPECT_EQ(designer.strip.Children().size(), 6U);
    EXPECT_EQ(designer.strip.Name(ibNumber), L"Number, Autoincreased Number, 00001");
    EXPECT_EQ(designer.strip.Object()->accDoDefaultAction(ChildId(ibNumber)), S_OK);
    EXPECT_EQ(designer.strip.Selection(), ibNumber);
    EXPECT_EQ(Reading(designer.screen.Control(ID_cboStyle)).Name(), L"Style:");
}

TEST_F(StripAccessibleTest, AHostEndsWhileItIsRead) {
    RemoteDesigner designer(L"English");
    const Reading style(designer.screen.Control(ID_cboStyle));
    EXPECT_EQ(designer.host.Close(), std::optional<DWORD>(0));
    LONG count = 0;
    EXPECT_TRUE(FAILED(designer.strip.Object()->get_accChildCount(&count)));
    EXPECT_EQ(style.Name(), L"");
}

// --- From within ---

TEST_F(StripAccessibleTest_Within, AReaderMayOutliveTheDesigner) {
    const Reading strip = Strip();
    const Reading style(screen->Control(ID_cboStyle));
    EXPECT_EQ(strip.Name(ibPrefix), L"Prefix, Fixed, INV");
    form.reset();
    for (const auto* reading : {&strip, &style}) {
        ExpectAll(AskAll(*reading->Object(), ChildId(CHILDID_SELF)), CO_E_OBJNOTCONNECTED);
        ExpectAll(AskAll(*reading->Object(), ChildId(ibPrefix)), CO_E_OBJNOTCONNECTED);
        ExpectAll(AskAllOfTheWhole(*reading->Object()), CO_E_OBJNOTCONNECTED);
        HWND window = nullptr;
        EXPECT_EQ(ComPtr<IAccessible>(reading->Object()).As<IOleWindow>()->GetWindow(&window), CO_E_OBJNOTCONNECTED);
    }
}

TEST_F(StripAccessibleTest_Within, WhatIsNoChildIsRefused) {
    const Reading strip = Strip();
    VARIANT text{};
    V_VT(&text) = VT_BSTR;
    VARIANT nothing{};
    for (const auto& child : {ChildId(-1), ChildId(ibLetter + 1), text, nothing})
        ExpectAll(AskAll(*strip.Object(), child), E_INVALIDARG);
    EXPECT_EQ(screen->Text(ID_txtName), L"Prefix") << "nothing was selected";
}

TEST_F(StripAccessibleTest_Within, ResultsNeedAPlace) {
    IAccessible& strip = *Strip().Object();
    const Reading held = Strip();
    const VARIANT item = ChildId(ibPrefix);
    LONG number = 0;
    ExpectAll({strip.get_accName(item, nullptr), strip.get_accValue(item, nullptr),
               strip.get_accDescription(item, nullptr), strip.get_accHelp(item, nullptr),
               strip.get_accKeyboardShortcut(item, nullptr), strip.get_accDefaultAction(item, nullptr),
               strip.get_accRole(item, nullptr), strip.get_accState(item, nullptr), strip.get_accChild(item, nullptr),
               strip.get_accChildCount(nullptr), strip.get_accFocus(nullptr), strip.get_accSelection(nullptr),
               strip.accNavigate(NAVDIR_NEXT, item, nullptr), strip.accHitTest(1, 1, nullptr),
               strip.accLocation(&number, &number, &number, nullptr, item)},
              E_INVALIDARG);
}

TEST_F(StripAccessibleTest_Within, ABandIsNotRenamedByReaders) {
    const Bstr name(L"Other");
    EXPECT_EQ(Strip().Object()->put_accName(ChildId(ibPrefix), name.Get()), DISP_E_MEMBERNOTFOUND);
    EXPECT_EQ(rule->Band(ibPrefix)->Name(), L"Prefix");
}

TEST_F(StripAccessibleTest_Within, AnEmptyStripIsAnEmptyList) {
    Reopen(EmptyRule());
    const Reading strip = Strip();
    EXPECT_EQ(strip.Name(), L"Bands");
    EXPECT_EQ(strip.Children(), std::vector<LONG>());
    EXPECT_EQ(strip.Selection(), -1);
    EXPECT_EQ(strip.Navigate(NAVDIR_FIRSTCHILD, CHILDID_SELF), -1);
    screen->Focus(ID_picBand);
    EXPECT_EQ(strip.Focus(), CHILDID_SELF);
}

TEST_F(StripAccessibleTest_Within, NothingIsSelectedBehindAnotherDialog) {
    EnableWindow(form->Window(), FALSE); // as a dialog in front does
    const Reading strip = Strip();
    EXPECT_EQ(strip.State(ibYear) & (listed | STATE_SYSTEM_UNAVAILABLE),
              STATE_SYSTEM_SELECTABLE | STATE_SYSTEM_UNAVAILABLE);
    EXPECT_EQ(strip.Object()->accDoDefaultAction(ChildId(ibYear)), E_ACCESSDENIED);
    EXPECT_EQ(screen->Text(ID_txtName), L"Prefix");
}

TEST_F(StripAccessibleTest_Within, WhatIsTypedIsAppliedBeforeAnotherBandIsSelected) {
    screen->Focus(ID_txtDefault);
    SetWindowTextW(screen->Control(ID_txtDefault), L"BILL");
    EXPECT_EQ(Strip().Object()->accDoDefaultAction(ChildId(ibYear)), S_OK);
    EXPECT_EQ(rule->Band(ibPrefix)->Default(), L"BILL");
    EXPECT_EQ(screen->Text(ID_txtName), L"Year");
}

TEST_F(StripAccessibleTest_Within, ItIsTheSameObjectUnderEachOfItsInterfaces) {
    const ComPtr<IAccessible> strip(Strip().Object());
    const auto window = strip.As<IOleWindow>();
    ASSERT_TRUE(window && strip.As<IDispatch>());
    EXPECT_TRUE(Same(strip.Get(), window.Get()));
    EXPECT_TRUE(Same(strip.Get(), strip.As<IDispatch>().Get()));
    EXPECT_TRUE(Same(strip.Get(), Strip().Object())) << "as long as the window lives";
    EXPECT_FALSE(strip.As<IEnumVARIANT>()) << "readers count the items";
    HWND found = nullptr;
    EXPECT_EQ(window->GetWindow(&found), S_OK);
    EXPECT_EQ(found, screen->Control(ID_picBand));
}

TEST_F(StripAccessibleTest_Within, ReadersMayCallLateBound) {
    const ComPtr<IAccessible> strip(Strip().Object());
    UINT count = 0;
    EXPECT_EQ(strip->GetTypeInfoCount(&count), S_OK);
    EXPECT_EQ(count, 1U);
    ComPtr<ITypeInfo> info;
    EXPECT_EQ(strip->GetTypeInfo(1, 0, info.Out()), DISP_E_BADINDEX);
    EXPECT_EQ(strip->GetTypeInfo(0, 0, info.Out()), S_OK);
    EXPECT_EQ(TextIn(Call(strip.Get(), L"accName", {Number(ibPrefix)})), L"Prefix, Fixed, INV");
}

// --- What is told ---

TEST(StripAccessibleTest_Told, EverythingThatTheBoxShowsAndWhatIsWrongWithIt) {
    EXPECT_EQ(dialogs::SpokenText({L"Year", L"Macro", L"", L""}), L"Year, Macro");
    EXPECT_EQ(dialogs::SpokenText({L"Year", L"Macro", L"24", L"Bound to nothing.\r\nTracks nothing."}),
              L"Year, Macro, 24, Bound to nothing. Tracks nothing.");
}

TEST(StripAccessibleTest_Told, OnlyWhatHasChanged) {
    using Events = std::vector<ItemEvent>;
    const ItemEvent reordered{EVENT_OBJECT_REORDER, CHILDID_SELF};
    EXPECT_EQ(EventsBetween({L"A", L"B"}, {L"A", L"B"}), Events());
    EXPECT_EQ(EventsBetween({L"A", L"B"}, {L"A", L"C"}), (Events{{EVENT_OBJECT_NAMECHANGE, 2}}));
    EXPECT_EQ(EventsBetween({L"A", L"B"}, {L"B", L"A"}), (Events{reordered}));
    EXPECT_EQ(EventsBetween({L"A"}, {L"B", L"A"}), (Events{{EVENT_OBJECT_CREATE, 2}, reordered}));
    EXPECT_EQ(EventsBetween({L"A", L"B"}, {}),
              (Events{{EVENT_OBJECT_DESTROY, 1}, {EVENT_OBJECT_DESTROY, 2}, reordered}));
}

// --- The registered component ---

TEST_F(StripAccessibleTest, TheComponentStaysLoadedWhileAReaderHoldsTheStrip) {
    const LoadedLibrary library(LibraryPath());
    std::optional<Reading> strip;
    {
        const auto rule = NewRule();
        const Advised sink(rule.Get(), __uuidof(__CodeClass), [&rule](const EventCall& call) {
            constexpr DISPID settingsEvent = 12; // the host holds what the rule is: closing asks nothing
            if (call.Id() == settingsEvent) call.SetText(1, Text(rule, &_CodeClass::get_Definition));
            return S_OK;
        });
        Visitor visitor;
        visitor.Then([&strip](const Screen& designer) {
            strip.emplace(designer.Control(ID_picBand));
            EXPECT_EQ(strip->Role(), ROLE_SYSTEM_LIST);
        });
        EXPECT_DONE(rule->ShowDesigner(nullptr, Missing()));
        EXPECT_TRUE(visitor.Finished());
    }
    EXPECT_EQ(library.CanUnloadNow(), S_FALSE);
    LONG count = 0;
    EXPECT_EQ(strip->Object()->get_accChildCount(&count), CO_E_OBJNOTCONNECTED);
    strip.reset();
    EXPECT_EQ(library.CanUnloadNow(), S_OK);
}

} // namespace kestrel::test
