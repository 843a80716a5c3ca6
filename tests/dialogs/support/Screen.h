// Works dialogs as a person does: reads what their controls show, and clicks, types and picks.
//
// A form that is not shown modally is worked directly. A modal one holds the test inside the call that shows it, so
// what is to be done in it is given before: each step runs once, in the next form of this thread that opens.
#pragma once

#include <windows.h>

#include <commctrl.h>

#include <deque>
#include <functional>
#include <vector>

#include "common/String.h"

namespace kestrel::test {

// A form on the screen.
class Screen {
  public:
    explicit Screen(HWND form) noexcept : mvarForm(form) {}

    [[nodiscard]] HWND Window() const noexcept { return mvarForm; }
    // Of the form, or of something that stands within one of its controls.
    [[nodiscard]] HWND Control(int id) const noexcept;
    [[nodiscard]] String Caption() const;
    [[nodiscard]] String Text(int id) const;
    [[nodiscard]] bool Enabled(int id) const noexcept { return IsWindowEnabled(Control(id)) != FALSE; }
    [[nodiscard]] bool Focused(int id) const noexcept { return GetFocus() == Control(id); }
    [[nodiscard]] std::vector<String> Rows(int id) const; // of a drop-down list or list box
    [[nodiscard]] int Row(int id) const;                  // the chosen one, -1 for none
    [[nodiscard]] int Checked(int id) const;

    // A click on a button, option button or check box; a disabled one fails the test.
    void Click(int id) const;
    // A menu item, whether or not the menu is open.
    void Choose(int menuId) const;
    void Pick(int id, int row) const;
    void SelectRow(int id, int row) const;
    // Types the text into the box and leaves it.
    void Type(int id, const String& text) const;
    void Focus(int id) const;
    // A key press as the message loop brings it.
    void Key(int id, unsigned key) const;
    void Character(int id, wchar_t character) const;
    // The close box.
    void Close() const { SendMessageW(mvarForm, WM_CLOSE, 0, 0); }

    // The tree view and the check list.
    [[nodiscard]] std::vector<String> TreeTexts(int id) const; // depth first, two blanks in front for each layer
    [[nodiscard]] HTREEITEM TreeItem(int id, const String& text) const;
    void SelectTreeItem(int id, const String& text) const;
    [[nodiscard]] String SelectedTreeText(int id) const;
    [[nodiscard]] std::vector<String> CheckRows(int id) const; // "+" in front of a checked one, "-" of another
    void CheckRow(int id, int row, bool checked) const;

  private:
    HWND mvarForm;
};

// Handles what waits in the message queue.
void RunPendingMessages();

// Runs the steps given to it in the modal forms that open while it lives.
class Visitor {
  public:
    using Step = std::function<void(const Screen&)>;
    Visitor();
    // The timer calls this object.
    Visitor(const Visitor&) = delete;
    Visitor& operator=(const Visitor&) = delete;
    ~Visitor();

    // For the next form that opens. It is closed after its step unless the step has closed it.
    Visitor& Then(Step step) {
        mvarSteps.push_back(std::move(step));
        return *this;
    }
    // Whether every step has run; a test ends with it.
    [[nodiscard]] bool Finished() const noexcept { return mvarSteps.empty(); }

  private:
    static void CALLBACK Tick(HWND window, UINT message, UINT_PTR timer, DWORD time);
    static BOOL CALLBACK Look(HWND window, LPARAM visitor);
    void Visit(HWND form);

    UINT_PTR mvarTimer;
    std::deque<Step> mvarSteps;
    std::vector<HWND> mvarVisited;
};

} // namespace kestrel::test
