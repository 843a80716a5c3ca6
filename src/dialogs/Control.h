// The controls of a form by their names: each is its form and its identifier, so that it is found anew whenever it is
// used and cannot outlive its window. Without a window every member does nothing or returns an empty value.
#pragma once

#include <windows.h>

#include <array>
#include <vector>

#include "common/String.h"

namespace kestrel::dialogs {

class Form;

// The whole text of a window.
[[nodiscard]] String WindowText(HWND window);

// What a list's text and background are painted with.
struct TextColours {
    COLORREF text;
    COLORREF background;
};
// The system's own: those of a window, or grey on the colour of the form.
[[nodiscard]] TextColours ListColours(bool enabled) noexcept;

// A control past whatever its window is subclassed with: for what is sent by the thousand and concerns the control
// alone. Everyone who is called in between costs time, on some systems more than the control.
class ControlItself {
  public:
    explicit ControlItself(HWND window) noexcept
        : mvarWindow(window), mvarProcedure(reinterpret_cast<WNDPROC>(GetClassLongPtrW(window, GCLP_WNDPROC))) {}

    LRESULT Send(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const noexcept {
        return mvarProcedure != nullptr ? CallWindowProcW(mvarProcedure, mvarWindow, message, wParam, lParam) : 0;
    }

  private:
    HWND mvarWindow;
    WNDPROC mvarProcedure;
};

class Control {
  public:
    Control(const Form& form, int id) noexcept : mvarForm(&form), mvarId(id) {}

    [[nodiscard]] HWND Window() const noexcept;
    [[nodiscard]] int Id() const noexcept { return mvarId; }
    [[nodiscard]] String Text() const { return WindowText(Window()); }
    // The same text again does nothing, so that nothing flickers and no change is reported.
    void SetText(const String& text) const;
    [[nodiscard]] bool IsEnabled() const noexcept { return IsWindowEnabled(Window()) != FALSE; }
    // A control that has the focus passes it on before it is disabled, or the keyboard would be lost.
    void SetEnabled(bool enabled) const noexcept;
    void SetVisible(bool visible) const noexcept { ShowWindow(Window(), visible ? SW_SHOWNA : SW_HIDE); }
    void SetFocus() const noexcept;
    [[nodiscard]] bool HasFocus() const noexcept { return ::GetFocus() == Window() && Window() != nullptr; }

  protected:
    LRESULT Send(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const noexcept {
        return SendMessageW(Window(), message, wParam, lParam);
    }
    [[nodiscard]] ControlItself Itself() const noexcept { return ControlItself(Window()); }
    [[nodiscard]] const Form& Owner() const noexcept { return *mvarForm; }

  private:
    const Form* mvarForm;
    int mvarId;
};

using Label = Control;
using CommandButton = Control;
using Frame = Control;

class TextBox : public Control {
  public:
    using Control::Control;
    void SelectAll() const noexcept { Send(EM_SETSEL, 0, -1); }
};

// An option button or check box.
class CheckBox : public Control {
  public:
    using Control::Control;
    // 0 unchecked, 1 checked, 2 grayed
    [[nodiscard]] int Value() const noexcept { return static_cast<int>(Send(BM_GETCHECK)); }
    void SetValue(int value) const noexcept { Send(BM_SETCHECK, static_cast<WPARAM>(value)); }
};

// Option buttons of which one is chosen; their identifiers follow each other.
class OptionButtons {
  public:
    OptionButtons(const Form& form, int firstId, int count) : mvarForm(&form), mvarFirstId(firstId), mvarCount(count) {}
    [[nodiscard]] int Count() const noexcept { return mvarCount; }
    [[nodiscard]] CheckBox operator()(int index) const noexcept { return {*mvarForm, mvarFirstId + index}; }
    // -1 when none is chosen.
    [[nodiscard]] int Chosen() const noexcept;
    void Choose(int index) const noexcept;

  private:
    const Form* mvarForm;
    int mvarFirstId;
    int mvarCount;
};

// A drop-down list of rows.
class ComboBox : public Control {
  public:
    using Control::Control;
    // Replaces all rows, none chosen; the list becomes wide enough for the longest. The rows it already has stay.
    void SetRows(const std::vector<String>& rows) const;
    [[nodiscard]] std::vector<String> Rows() const;
    // -1 when none is chosen.
    [[nodiscard]] int ListIndex() const noexcept { return static_cast<int>(Send(CB_GETCURSEL)); }
    void SetListIndex(int index) const noexcept { Send(CB_SETCURSEL, static_cast<WPARAM>(index)); }
    [[nodiscard]] String Row(int index) const { return RowOf(Itself(), index); }

  private:
    [[nodiscard]] static String RowOf(const ControlItself& itself, int index);
};

// A list of rows of which one or (as its style says) several are selected.
class ListBox : public Control {
  public:
    using Control::Control;
    void SetRows(const std::vector<String>& rows) const;
    [[nodiscard]] int Count() const noexcept { return static_cast<int>(Send(LB_GETCOUNT)); }
    [[nodiscard]] String Row(int index) const;
    // -1 when none is selected; only for lists of which one row is selected.
    [[nodiscard]] int ListIndex() const noexcept { return static_cast<int>(Send(LB_GETCURSEL)); }
    void SetListIndex(int index) const noexcept { Send(LB_SETCURSEL, static_cast<WPARAM>(index)); }
    // Only for lists of which several rows may be selected.
    [[nodiscard]] std::vector<int> SelectedRows() const;
    void SelectRow(int index) const noexcept { Send(LB_SETSEL, TRUE, index); }
};

} // namespace kestrel::dialogs
