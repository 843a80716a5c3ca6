// A pop-up menu of a form, made from a menu template whose captions hold string numbers.
#pragma once

#include <windows.h>

namespace kestrel::dialogs {

class FormMenu {
  public:
    explicit FormMenu(int templateId) noexcept;
    // Destroyed once.
    FormMenu(const FormMenu&) = delete;
    FormMenu& operator=(const FormMenu&) = delete;
    ~FormMenu() {
        if (mvarMenu != nullptr) DestroyMenu(mvarMenu);
    }

    void Localise() const;
    // An item or, by the item before which its menu opens, a menu below.
    void SetEnabled(int id, bool enabled) const noexcept;
    [[nodiscard]] bool IsEnabled(int id) const noexcept;
    // Opens at a point of the screen; the choice arrives as a click of the item at the form.
    void PopUp(HWND form, POINT screen) const noexcept;
    [[nodiscard]] HMENU Handle() const noexcept { return GetSubMenu(mvarMenu, 0); }

  private:
    HMENU mvarMenu; // a bar with the one menu in it
};

} // namespace kestrel::dialogs
