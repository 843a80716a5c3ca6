#include "dialogs/TreeKeys.h"

#include <utility>

namespace kestrel::dialogs {

void TreeKeys::Attach(HWND tree, std::function<bool()> wantsEnter) {
    mvarWantsEnter = std::move(wantsEnter);
    Subclass::Attach(tree);
}

std::optional<LRESULT> TreeKeys::Handle(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case WM_GETDLGCODE: return DialogCode(wParam, lParam);
    case WM_CHAR: // the tree would look for an item of that name
        if (wParam == VK_RETURN) return 0;
        return std::nullopt;
    case WM_SYSKEYDOWN:
        if (wParam != VK_F10 || GetKeyState(VK_SHIFT) >= 0) return std::nullopt;
        SendMessageW(Window(), WM_CONTEXTMENU, reinterpret_cast<WPARAM>(Window()), -1);
        return 0; // a version that hands it on would do so once more
    default: return std::nullopt;
    }
}

LRESULT TreeKeys::DialogCode(WPARAM wParam, LPARAM lParam) const {
    const LRESULT code = Default(WM_GETDLGCODE, wParam, lParam);
    const auto* asked = reinterpret_cast<const MSG*>(lParam);
    const bool enter = asked != nullptr && asked->message == WM_KEYDOWN && asked->wParam == VK_RETURN;
    return enter && mvarWantsEnter() ? code | DLGC_WANTMESSAGE : code;
}

} // namespace kestrel::dialogs
