// A list whose rows have check boxes.
#pragma once

#include <windows.h>

#include <commctrl.h>

#include "dialogs/Control.h"

namespace kestrel::dialogs {

class CheckList : public Control {
  public:
    using Control::Control;
    struct Row {
        String text;
        bool checked = false;
        friend bool operator==(const Row& left, const Row& right) {
            return left.text == right.text && left.checked == right.checked;
        }
    };
    // Gives the list its look; once, when the form is loaded.
    void Prepare() const noexcept;
    // A disabled list looks it.
    void SetEnabled(bool enabled) const noexcept;
    // Follows a change of the system's colours.
    void ShowColours() const noexcept;
    // Replaces all rows; those it already has stay, and with them the place that the list was scrolled to.
    void SetRows(const std::vector<Row>& rows) const;
    [[nodiscard]] int Count() const noexcept { return static_cast<int>(Send(LVM_GETITEMCOUNT)); }
    [[nodiscard]] Row At(int index) const { return RowAt(Itself(), index); }
    [[nodiscard]] bool IsChecked(int index) const noexcept { return IsChecked(Itself(), index); }
    void Check(int index, bool checked) const noexcept { Check(Itself(), index, checked); }
    // Makes the one column as wide as the list.
    void FitColumn() const noexcept;

    // Whether the notification tells that the user has checked or unchecked a row, and which.
    [[nodiscard]] static bool IsCheckChange(const NMHDR& header, int& row) noexcept;

  private:
    [[nodiscard]] static Row RowAt(const ControlItself& itself, int index);
    [[nodiscard]] static bool IsChecked(const ControlItself& itself, int index) noexcept;
    static void Check(const ControlItself& itself, int index, bool checked) noexcept;
};

} // namespace kestrel::dialogs
