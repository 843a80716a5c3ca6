#include "dialogs/PictureBox.h"

#include "dialogs/Handles.h"
#include "platform/Module.h"

namespace kestrel::dialogs {

void PictureBox::Attach(HWND window, Paint paint, OtherMessage other) {
    mvarPaint = std::move(paint);
    mvarOther = std::move(other);
    Subclass::Attach(window);
}

void PictureBox::Create(HWND parent, int id, DWORD style, Paint paint, OtherMessage other) {
    const HWND window = CreateWindowExW(0, L"Static", nullptr, WS_CHILD | WS_CLIPSIBLINGS | style, 0, 0, 0, 0, parent,
                                        reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), ThisModule(), nullptr);
    Attach(window, std::move(paint), std::move(other));
}

void PictureBox::Move(const RECT& area) const noexcept {
    SetWindowPos(Window(), nullptr, area.left, area.top, area.right - area.left, area.bottom - area.top,
                 SWP_NOZORDER | SWP_NOACTIVATE);
}

void PictureBox::Show(bool visible) const noexcept {
    SetWindowPos(Window(), HWND_TOP, 0, 0, 0, 0,
                 SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE | (visible ? SWP_SHOWWINDOW : SWP_HIDEWINDOW));
}

RECT PictureBox::Client() const noexcept {
    RECT area{};
    GetClientRect(Window(), &area);
    return area;
}

std::optional<LRESULT> PictureBox::Handle(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case WM_PAINT: {
        const BufferedPaint paint(Window());
        mvarPaint(paint.Context(), Client());
        return 0;
    }
    case WM_ERASEBKGND: return 1; // everything is painted at once
    default: return mvarOther ? mvarOther(message, wParam, lParam) : std::nullopt;
    }
}

} // namespace kestrel::dialogs
