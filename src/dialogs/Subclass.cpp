#include "dialogs/Subclass.h"

#include <windows.h>

#include <commctrl.h>

#include "dialogs/Guard.h"

namespace kestrel::dialogs {

void Subclass::Attach(HWND window) noexcept {
    Detach();
    const auto self = reinterpret_cast<DWORD_PTR>(this);
    if (SetWindowSubclass(window, Procedure, self, self) != FALSE) mvarWindow = window;
}

void Subclass::Detach() noexcept {
    if (mvarWindow == nullptr) return;
    RemoveWindowSubclass(mvarWindow, Procedure, reinterpret_cast<UINT_PTR>(this));
    mvarWindow = nullptr;
}

LRESULT Subclass::Default(UINT message, WPARAM wParam, LPARAM lParam) const noexcept {
    return DefSubclassProc(mvarWindow, message, wParam, lParam);
}

LRESULT CALLBACK Subclass::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR,
                                     DWORD_PTR object) noexcept {
    auto* self = reinterpret_cast<Subclass*>(object);
    if (message == WM_NCDESTROY) {
        self->Detach();
        return DefSubclassProc(window, message, wParam, lParam);
    }
    const auto result =
        Guarded<std::optional<LRESULT>>(std::nullopt, [&] { return self->Handle(message, wParam, lParam); });
    return result ? *result : DefSubclassProc(window, message, wParam, lParam);
}

} // namespace kestrel::dialogs
