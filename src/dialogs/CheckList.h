// A list whose rows have check boxes.
#pragma once

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
    [[nodiscard]] int Count() const noexcept;
    [[nodiscard]] Row At(int index) const;
    [[nodiscard]] bool IsChecked(int index) const noexcept;
    void Check(int index, bool checked) const noexcept;
    // Makes the one column as wide as the list.
    void FitColumn() const noexcept;

    // Whether the notification tells that the user has checked or unchecked a row, and which.
    [[nodiscard]] static bool IsCheckChange(const NMHDR& header, int& row) noexcept;
};

} // namespace kestrel::dialogs
