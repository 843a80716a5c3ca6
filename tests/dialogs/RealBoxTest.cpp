// The questions of the dialogs as real message boxes, answered with the keyboard: each with No and with Yes.
#include <array>
#include <thread>

#include "dialogs/support/DialogTest.h"
#include "dialogs/support/Person.h"
#include "platform/MessagePrompts.h"

namespace kestrel::test {

namespace {

constexpr std::array<WORD, 2> answers{'N', 'Y'};

class RealBoxTest : public DialogTest {
  protected:
    RealBoxTest() : rule(InvoiceRule()) {
        InstallPorts({&TheStrings(), &TheText(), &mvarBoxes, &mvarDialogs}); // the base puts those before back
    }
    // Shows the dialog while the person works it; Escape closes it at the end.
    static void Work(const wchar_t* caption, const std::function<void()>& show,
                     const std::function<void(Person&)>& actions) {
        std::thread worker([&] {
            Person person;
            EXPECT_TRUE(person.Sees(caption));
            actions(person);
            Person::Press(VK_ESCAPE);
            const auto closed = [caption] { return FindWindowW(L"#32770", caption) == nullptr; };
            if (Person::Waits(closed)) return;
            ADD_FAILURE() << "Escape does not close the dialog";
            PostMessageW(person.Form().Window(), WM_CLOSE, 0, 0);
        });
        show();
        worker.join();
    }
    // In the designer, with a host that holds what the rule is: closing asks nothing.
    void WorkDesigner(const std::function<void(Person&)>& actions) {
        const auto host = rule->GetSettings.Subscribe([this](String&, String& value) { value = rule->Definition(); });
        Work(
            L"Designer", [this] { rule->ShowDesigner(); }, actions);
    }
    // The box with that text, and the key that answers it.
    static void Answers(const String& text, WORD key) {
        EXPECT_TRUE(Person::SeesBox(text)) << testing::PrintToString(text);
        Person::Press(key);
    }
    static bool Becomes(const std::function<bool()>& state) { return Person::Waits(state); }

    Ref<CodeClass> rule;

  private:
    MessagePrompts mvarBoxes;
    dialogs::WindowsDialogs mvarDialogs;
};

} // namespace

TEST_F(RealBoxTest, RemovingABand) {
    const String question = L"Are you sure to delete the following Band?\r\n\r\n[Letter]";
    WorkDesigner([&](Person& person) {
        Person::Press(VK_END);
        Person::Press(VK_DELETE);
        Answers(question, 'N');
        EXPECT_TRUE(person.Sees(L"Designer"));
        EXPECT_EQ(person.Form().Text(ID_txtName), L"Letter");
        Person::Press(VK_DELETE);
        Answers(question, 'Y');
        EXPECT_TRUE(Becomes([&] { return person.Form().Text(ID_txtName) == L"Number"; }));
    });
    EXPECT_EQ(rule->Count(), 5);
}

TEST_F(RealBoxTest, RemovingAllBands) {
    WorkDesigner([&](Person& person) {
        for (const WORD answer : answers) {
            EXPECT_TRUE(person.Sees(L"Designer"));
            Person::Press(VK_APPS);
            EXPECT_TRUE(Person::Waits([] { return FindWindowW(L"#32768", nullptr) != nullptr; }));
            Person::Press('C'); // Remove All(&C)
            Answers(L"Are you sure to clear all band(s)?", answer);
        }
        EXPECT_TRUE(Becomes([&] { return person.Form().Text(ID_txtName).empty(); }));
    });
    EXPECT_EQ(rule->Count(), 0);
}

TEST_F(RealBoxTest, DeletingARelation) {
    const String question = L"Sure to delete the relation?\r\n3 child relation(s) included.";
    WorkDesigner([&](Person& person) {
        Person::Press(VK_RIGHT);
        Person::Press(VK_RIGHT); // the band with the tree
        PostMessageW(person.Form().Window(), WM_NEXTDLGCTL,
                     reinterpret_cast<WPARAM>(person.Form().Control(ID_tvwAvailable)), TRUE);
        Person::Press(VK_HOME);
        for (const WORD answer : answers) {
            EXPECT_TRUE(person.Sees(L"Designer"));
            EXPECT_TRUE(Becomes([&] { return person.Form().SelectedTreeText(ID_tvwAvailable) == L"01 North"; }));
            Person::Press(VK_DELETE);
            Answers(question, answer);
        }
        EXPECT_TRUE(Becomes([&] { return person.Form().SelectedTreeText(ID_tvwAvailable) == L"02 South"; }));
    });
    EXPECT_EQ(rule->Relations().Count(), 4);
}

TEST_F(RealBoxTest, ClearingRelationsIsDeclinedByEnter) {
    const String question = L"Sure to clean all relations?(8 relation(s) included.)";
    WorkDesigner([&](Person& person) {
        Person::Press(VK_RIGHT);
        Person::Press(VK_RIGHT);
        const auto press = [&] { PostMessageW(person.Form().Control(ID_cmdClear), BM_CLICK, 0, 0); };
        press();
        Answers(question, VK_RETURN); // No is the button that Enter presses
        EXPECT_TRUE(person.Sees(L"Designer"));
        EXPECT_TRUE(person.Form().Enabled(ID_cmdClear));
        press();
        Answers(question, 'Y');
        EXPECT_TRUE(Becomes([&] { return !person.Form().Enabled(ID_cmdClear); }));
    });
    EXPECT_EQ(rule->Relations().Count(), 0);
}

TEST_F(RealBoxTest, DroppingAField) {
    const String question = L"Do you want to delete the selected field(s)?\r\n\r\nCustomer";
    Work(
        L"User fields", [this] { rule->ShowFieldManage(); },
        [&](Person& person) {
            Person::Press(VK_END); // the list has the focus
            for (const WORD answer : answers) {
                EXPECT_TRUE(person.Sees(L"User fields"));
                PostMessageW(person.Form().Control(ID_cmdDrop), BM_CLICK, 0, 0);
                Answers(question, answer);
            }
            EXPECT_TRUE(Becomes([&] { return person.Form().Rows(ID_lstFields).size() == 2; }));
        });
    EXPECT_EQ(rule->UsrFields().Count(), 2);
}

TEST_F(RealBoxTest, SavingOnClosing) {
    for (const bool yes : {false, true}) {
        bool saved = false;
        const auto host = rule->SaveRequested.Subscribe([&](String&, bool& achieved) { saved = achieved = true; });
        std::thread person([yes] {
            EXPECT_TRUE(Person().Sees(L"Designer"));
            Person::Press(VK_ESCAPE);
            Answers(L"Do you want to save change(s)?", yes ? 'Y' : 'N');
        });
        rule->ShowDesigner();
        person.join();
        EXPECT_EQ(saved, yes);
    }
}

} // namespace kestrel::test
