#include "dialogs/FormMenu.h"

#include "dialogs/mdlMisc.h"
#include "platform/Module.h"

namespace kestrel::dialogs {

FormMenu::FormMenu(int templateId) noexcept : mvarMenu(LoadMenuW(ThisModule(), MAKEINTRESOURCEW(templateId))) {}

void FormMenu::Localise() const { LocaliseMenu(Handle()); }

void FormMenu::SetEnabled(int id, bool enabled) const noexcept {
    MENUITEMINFOW item{};
    item.cbSize = sizeof item;
    item.fMask = MIIM_STATE;
    item.fState = enabled ? MFS_ENABLED : MFS_DISABLED;
    SetMenuItemInfoW(Handle(), static_cast<UINT>(id), FALSE, &item);
}

bool FormMenu::IsEnabled(int id) const noexcept {
    MENUITEMINFOW item{};
    item.cbSize = sizeof item;
    item.fMask = MIIM_STATE;
    return GetMenuItemInfoW(Handle(), static_cast<UINT>(id), FALSE, &item) != FALSE &&
           (item.fState & MFS_DISABLED) == 0;
}

void FormMenu::PopUp(HWND form, POINT screen) const noexcept {
    TrackPopupMenuEx(Handle(), TPM_LEFTALIGN | TPM_RIGHTBUTTON, screen.x, screen.y, form, nullptr);
}

} // namespace kestrel::dialogs
