// A picture box: a plain window that the program paints and whose mouse and keys it handles.
#pragma once

#include <functional>

#include "dialogs/Subclass.h"

namespace kestrel::dialogs {

class PictureBox final : public Subclass {
  public:
    using Paint = std::function<void(HDC, const RECT&)>;
    // A result ends the message.
    using OtherMessage = std::function<std::optional<LRESULT>(UINT, WPARAM, LPARAM)>;

    // Takes over an existing window.
    void Attach(HWND window, Paint paint, OtherMessage other = {});
    // Makes a window within another; hidden unless the style says visible.
    void Create(HWND parent, int id, DWORD style, Paint paint, OtherMessage other = {});

    void Move(const RECT& area) const noexcept;
    void Show(bool visible) const noexcept;
    void Repaint() const noexcept { InvalidateRect(Window(), nullptr, FALSE); }
    [[nodiscard]] RECT Client() const noexcept;
    using Subclass::Default;

  protected:
    std::optional<LRESULT> Handle(UINT message, WPARAM wParam, LPARAM lParam) override;

  private:
    Paint mvarPaint;
    OtherMessage mvarOther;
};

} // namespace kestrel::dialogs
