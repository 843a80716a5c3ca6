// Owners of the system's handles: each ends its handle exactly once.
#pragma once

#include <windows.h>

#include <utility>

namespace kestrel::dialogs {

// A font, brush, pen or bitmap.
template <class Handle>
class GdiObject {
  public:
    GdiObject() noexcept = default;
    explicit GdiObject(Handle handle) noexcept : mvarHandle(handle) {}
    GdiObject(GdiObject&& other) noexcept : mvarHandle(std::exchange(other.mvarHandle, nullptr)) {}
    GdiObject& operator=(GdiObject&& other) noexcept {
        std::swap(mvarHandle, other.mvarHandle);
        return *this;
    }
    // A handle has one owner: a copy would delete it twice.
    GdiObject(const GdiObject&) = delete;
    GdiObject& operator=(const GdiObject&) = delete;
    ~GdiObject() {
        if (mvarHandle != nullptr) DeleteObject(mvarHandle);
    }
    [[nodiscard]] Handle Get() const noexcept { return mvarHandle; }

  private:
    Handle mvarHandle = nullptr;
};

// Puts an object into a device context and the one before back.
class Selected {
  public:
    Selected(HDC context, HGDIOBJ object) noexcept : mvarContext(context), mvarBefore(SelectObject(context, object)) {}
    // Undone once.
    Selected(const Selected&) = delete;
    Selected& operator=(const Selected&) = delete;
    ~Selected() { SelectObject(mvarContext, mvarBefore); }

  private:
    HDC mvarContext;
    HGDIOBJ mvarBefore;
};

// The device context of a window, for measuring.
class WindowContext {
  public:
    explicit WindowContext(HWND window) noexcept : mvarWindow(window), mvarContext(GetDC(window)) {}
    // Released once.
    WindowContext(const WindowContext&) = delete;
    WindowContext& operator=(const WindowContext&) = delete;
    ~WindowContext() {
        if (mvarContext != nullptr) ReleaseDC(mvarWindow, mvarContext);
    }
    [[nodiscard]] HDC Get() const noexcept { return mvarContext; }

  private:
    HWND mvarWindow;
    HDC mvarContext;
};

// Paints a window through a bitmap, so that nobody sees half a picture.
class BufferedPaint {
  public:
    explicit BufferedPaint(HWND window) noexcept
        : mvarWindow(window), mvarTarget(BeginPaint(window, &mvarPaint)), mvarContext(CreateCompatibleDC(mvarTarget)),
          mvarBitmap(CreateCompatibleBitmap(mvarTarget, Width(), Height())),
          mvarBefore(SelectObject(mvarContext, mvarBitmap.Get())) {
        SetViewportOrgEx(mvarContext, -mvarPaint.rcPaint.left, -mvarPaint.rcPaint.top, nullptr);
    }
    // Painted once.
    BufferedPaint(const BufferedPaint&) = delete;
    BufferedPaint& operator=(const BufferedPaint&) = delete;
    ~BufferedPaint() {
        const RECT& area = mvarPaint.rcPaint;
        BitBlt(mvarTarget, area.left, area.top, Width(), Height(), mvarContext, area.left, area.top, SRCCOPY);
        SelectObject(mvarContext, mvarBefore);
        DeleteDC(mvarContext);
        EndPaint(mvarWindow, &mvarPaint);
    }
    [[nodiscard]] HDC Context() const noexcept { return mvarContext; }
    // What is to be painted, in the window's coordinates.
    [[nodiscard]] const RECT& Area() const noexcept { return mvarPaint.rcPaint; }

  private:
    [[nodiscard]] int Width() const noexcept { return mvarPaint.rcPaint.right - mvarPaint.rcPaint.left; }
    [[nodiscard]] int Height() const noexcept { return mvarPaint.rcPaint.bottom - mvarPaint.rcPaint.top; }

    HWND mvarWindow;
    PAINTSTRUCT mvarPaint{};
    HDC mvarTarget;
    HDC mvarContext;
    GdiObject<HBITMAP> mvarBitmap;
    HGDIOBJ mvarBefore;
};

} // namespace kestrel::dialogs
