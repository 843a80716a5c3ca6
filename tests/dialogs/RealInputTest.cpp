// The designer worked with the mouse and the keyboard of the system, from another thread, as a person works it.
#include <thread>

#include "dialogs/support/DialogTest.h"
#include "dialogs/support/Person.h"
#include "support/Rules.h"

namespace kestrel::test {

namespace {

class RealInputTest : public DialogTest {
  protected:
    RealInputTest() : rule(InvoiceRule()) { UseRealDialogs(); }
    // Shows the designer while the person works it, and closes it with Escape at the end.
    void Work(const std::function<void(Person&)>& actions) {
        std::thread person([&] {
            Person worker;
            EXPECT_TRUE(worker.Sees(L"Designer"));
            actions(worker);
            Person::Press(VK_ESCAPE);
            if (!Person::Waits([] { return FindWindowW(L"#32770", L"Designer") == nullptr; })) {
                ADD_FAILURE() << "Escape does not close the designer";
                PostMessageW(worker.Form().Window(), WM_CLOSE, 0, 0);
            }
        });
        rule->ShowDesigner();
        person.join();
    }
    Ref<CodeClass> rule;
};

bool Shows(const Screen& screen, int id, const String& text) {
    return Person::Waits([&] { return screen.Text(id) == text; });
}

} // namespace

TEST_F(RealInputTest, TheMouseSelectsAndDragsBands) {
    Work([](Person& person) {
        Person::Point(person.In(ID_picBand, -30));
        Person::Button(MOUSEEVENTF_LEFTDOWN);
        EXPECT_TRUE(Shows(person.Form(), ID_txtName, L"Letter"));
        EXPECT_TRUE(IsWindowVisible(person.Form().Control(ID_picMove)));
        Person::Point(person.In(ID_picBand, 200));
        Person::Point(person.In(ID_picBand, 20));
        EXPECT_TRUE(IsWindowVisible(person.Form().Control(ID_imgPos)));
        Person::Button(MOUSEEVENTF_LEFTUP);
        EXPECT_TRUE(Person::Waits([&] { return !IsWindowVisible(person.Form().Control(ID_picMove)); }));
    });
    EXPECT_EQ(BandsOf(*rule), L"Letter Prefix Year Region Branch Number");
}

TEST_F(RealInputTest, TheRightButtonOpensTheBandMenu) {
    Work([](Person& person) {
        Person::Point(person.In(ID_picBand, -30));
        Person::Button(MOUSEEVENTF_RIGHTDOWN);
        Person::Button(MOUSEEVENTF_RIGHTUP);
        EXPECT_TRUE(Person::Waits([] { return FindWindowW(L"#32768", nullptr) != nullptr; }));
        Person::Press('R'); // Remove Band(&R)
        EXPECT_TRUE(Shows(person.Form(), ID_txtName, L"Number"));
    });
    ASSERT_FALSE(prompts.asked.empty());
    EXPECT_EQ(prompts.asked.front(), L"Are you sure to delete the following Band?\r\n\r\n[Letter]");
    EXPECT_EQ(rule->Count(), 5);
}

TEST_F(RealInputTest, KeysWorkTheStripAndItsMenu) {
    Work([this](Person& person) {
        Person::Press(VK_RIGHT); // the strip has the focus at first
        EXPECT_TRUE(Shows(person.Form(), ID_txtName, L"Year"));
        Person::Hold(VK_CONTROL);
        for (const int place : {ibRegion, ibBranch}) {
            Person::Press(VK_RIGHT);
            EXPECT_TRUE(Person::Waits([&] { return rule->Band(L"Year")->Index() == place; }));
        }
        Person::Release(VK_CONTROL);
        Person::Press(VK_APPS);
        EXPECT_TRUE(Person::Waits([] { return FindWindowW(L"#32768", nullptr) != nullptr; }));
        Person::Press(VK_ESCAPE); // the menu, not the dialog
        EXPECT_TRUE(Person::Waits([] { return FindWindowW(L"#32768", nullptr) == nullptr; }));
    });
    EXPECT_EQ(BandsOf(*rule), L"Prefix Region Branch Year Number Letter");
}

TEST_F(RealInputTest, TypingTabsAndAccessKeys) {
    Work([this](Person& person) {
        Person::Press(VK_TAB); // past the append button
        Person::Press(VK_TAB);
        for (const WORD key : std::initializer_list<WORD>{'B', 'I', 'L'})
            Person::Press(key);
        Person::Press(VK_RETURN); // on to the next field
        EXPECT_TRUE(Person::Waits([this] { return rule->Band(ibPrefix)->Default() == L"bil"; }));
        Person::Hold(VK_MENU);
        Person::Press('S');
        EXPECT_TRUE(Shows(person.Form(), ID_lblStatus, L"Save failure."));
        Person::Release(VK_MENU);
    });
    EXPECT_EQ(prompts.asked.size(), 2U) << "once for Save, once on closing";
}

TEST_F(RealInputTest, TheRightButtonOpensTheRelationMenu) {
    Work([](Person& person) {
        Person::Press(VK_RIGHT);
        Person::Press(VK_RIGHT);
        EXPECT_TRUE(Shows(person.Form(), ID_txtName, L"Region"));
        Person::Point(person.In(ID_tvwAvailable, 40)); // the first node
        Person::Button(MOUSEEVENTF_RIGHTDOWN);
        Person::Button(MOUSEEVENTF_RIGHTUP);
        EXPECT_TRUE(Person::Waits([] { return FindWindowW(L"#32768", nullptr) != nullptr; }));
        Person::Press('R'); // Remove Node(&R)
        EXPECT_TRUE(Person::Waits([&] { return person.Form().TreeItem(ID_tvwAvailable, L"01 North") == nullptr; }));
    });
    ASSERT_FALSE(prompts.asked.empty());
    EXPECT_EQ(prompts.asked.front(), L"Sure to delete the relation?\r\n3 child relation(s) included.");
    EXPECT_EQ(rule->Relations().Count(), 4);
}

TEST_F(RealInputTest, KeysAndTheMouseWorkTheTree) {
    const auto opensAndCloses = [](const Person& person) {
        Person inDialog;
        EXPECT_TRUE(inDialog.Sees(L"Modify Relations"));
        EXPECT_EQ(inDialog.Form().Text(ID_txtCode), L"02");
        Person::Press(VK_ESCAPE);
        EXPECT_TRUE(Person::Waits([] { return FindWindowW(L"#32770", L"Modify Relations") == nullptr; }));
        Person back = person;
        EXPECT_TRUE(back.Sees(L"Designer"));
    };
    const auto menuOpens = [] {
        EXPECT_TRUE(Person::Waits([] { return FindWindowW(L"#32768", nullptr) != nullptr; }));
        Person::Press(VK_ESCAPE);
        EXPECT_TRUE(Person::Waits([] { return FindWindowW(L"#32768", nullptr) == nullptr; }));
    };
    Work([&](Person& person) {
        Person::Press(VK_RIGHT);
        Person::Press(VK_RIGHT);
        EXPECT_TRUE(Shows(person.Form(), ID_txtName, L"Region"));
        Person::Point(person.In(ID_tvwAvailable, 40)); // the first node
        Person::Button(MOUSEEVENTF_LEFTDOWN);
        Person::Button(MOUSEEVENTF_LEFTUP);
        Person::Press(VK_DOWN);
        EXPECT_TRUE(Person::Waits([&] { return person.Form().SelectedTreeText(ID_tvwAvailable) == L"02 South"; }));
        Person::Press(VK_RETURN);
        opensAndCloses(person);
        Person::Hold(VK_SHIFT);
        Person::Press(VK_F10);
        Person::Release(VK_SHIFT);
        menuOpens();
        Person::Press(VK_APPS);
        menuOpens();
        EXPECT_EQ(person.Form().SelectedTreeText(ID_tvwAvailable), L"02 South");
        POINT second = person.In(ID_tvwAvailable, 40);
        second.y += static_cast<LONG>(SendMessageW(person.Form().Control(ID_tvwAvailable), TVM_GETITEMHEIGHT, 0, 0));
        Person::Point(second);
        for (int click = 0; click < 2; ++click) {
            Person::Button(MOUSEEVENTF_LEFTDOWN);
            Person::Button(MOUSEEVENTF_LEFTUP);
        }
        opensAndCloses(person);
    });
    EXPECT_EQ(rule->Relations().Count(), 8);
}

} // namespace kestrel::test
