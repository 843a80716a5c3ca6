// Looks at the pop-up menu that a form opens, and closes it at once.
#pragma once

#include <windows.h>

#include <vector>

#include "common/String.h"
#include "dialogs/Subclass.h"

namespace kestrel::test {

class MenuWatcher final : public dialogs::Subclass {
  public:
    explicit MenuWatcher(HWND form) noexcept { Attach(form); }

    // What the last menu had: each item's caption, and "-" in front of a disabled one; those of a menu below follow the
    // item that opens it. Empty when none was opened.
    [[nodiscard]] const std::vector<String>& Items() const noexcept { return mvarItems; }

  private:
    std::optional<LRESULT> Handle(UINT message, WPARAM wParam, LPARAM) override {
        if (message != WM_INITMENUPOPUP) return std::nullopt;
        mvarItems.clear();
        Read(reinterpret_cast<HMENU>(wParam));
        EndMenu();
        return 0;
    }

    void Read(HMENU menu) {
        for (int place = 0; place < GetMenuItemCount(menu); ++place) {
            wchar_t text[80] = {};
            MENUITEMINFOW item{};
            item.cbSize = sizeof item;
            item.fMask = MIIM_STATE | MIIM_STRING | MIIM_SUBMENU | MIIM_FTYPE;
            item.dwTypeData = text;
            item.cch = 80;
            GetMenuItemInfoW(menu, static_cast<UINT>(place), TRUE, &item);
            if ((item.fType & MFT_SEPARATOR) != 0) continue;
            mvarItems.push_back(((item.fState & MFS_DISABLED) != 0 ? L"-" : L"") + String(text));
            if (item.hSubMenu != nullptr) Read(item.hSubMenu);
        }
    }

    std::vector<String> mvarItems;
};

} // namespace kestrel::test
