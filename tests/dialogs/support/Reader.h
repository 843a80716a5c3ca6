// Reads dialogs as a screen reader does: another process, which asks the system's accessibility library for what stands
// in a window and is told of changes.
#pragma once

#include <windows.h>

#include <oleacc.h>

#include <optional>
#include <set>
#include <vector>

#include "common/String.h"
#include "platform/ComPtr.h"

namespace kestrel::test {

// A program that shows a dialog (access/Host.cpp), ended with this object at the latest.
class DialogHost {
  public:
    // Waits until the dialog is on the screen. The folder is that of the program; empty: of this program.
    DialogHost(const String& dialog, const String& language, const String& folder = {});
    // Ends its program.
    DialogHost(const DialogHost&) = delete;
    DialogHost& operator=(const DialogHost&) = delete;
    ~DialogHost();

    // Null when the dialog did not come.
    [[nodiscard]] HWND Window() const noexcept { return mvarWindow; }
    [[nodiscard]] DWORD Process() const noexcept { return mvarProcess.dwProcessId; }
    // Closes the dialog; the exit code of the program, nothing when it does not end.
    [[nodiscard]] std::optional<DWORD> Close();

  private:
    PROCESS_INFORMATION mvarProcess{};
    HWND mvarWindow = nullptr;
};

// The state of an item of a list that is not the selected one.
inline constexpr LONG listed = STATE_SYSTEM_FOCUSABLE | STATE_SYSTEM_SELECTABLE;

[[nodiscard]] VARIANT ChildId(LONG number) noexcept;

// A place of a child on the screen.
struct Place {
    LONG left = 0;
    LONG top = 0;
    LONG width = 0;
    LONG height = 0;
};

// The object of a window's client area. What a reading member cannot get is empty or -1.
class Reading {
  public:
    explicit Reading(HWND window);

    [[nodiscard]] IAccessible* Object() const noexcept { return mvarObject.Get(); }
    [[nodiscard]] String Name(LONG child = CHILDID_SELF) const;
    [[nodiscard]] String Description() const;
    [[nodiscard]] String DefaultAction(LONG child) const;
    [[nodiscard]] LONG Role(LONG child = CHILDID_SELF) const;
    [[nodiscard]] LONG State(LONG child = CHILDID_SELF) const;
    [[nodiscard]] Place PlaceOf(LONG child = CHILDID_SELF) const;
    // The numbers of the children that have no objects of their own.
    [[nodiscard]] std::vector<LONG> Children() const;
    [[nodiscard]] LONG Focus() const;
    [[nodiscard]] LONG Selection() const;
    [[nodiscard]] LONG Navigate(LONG direction, LONG from) const;
    [[nodiscard]] LONG HitTest(LONG x, LONG y) const;

  private:
    ComPtr<IAccessible> mvarObject;
};

// What a window announced about an object in it.
struct Announcement {
    DWORD event;
    LONG child;
    friend bool operator<(const Announcement& left, const Announcement& right) noexcept {
        return left.event != right.event ? left.event < right.event : left.child < right.child;
    }
};

// Hears what the client area of one window in another process announces, from outside that process.
class Listener {
  public:
    Listener(DWORD process, HWND window);
    // The system calls this object.
    Listener(const Listener&) = delete;
    Listener& operator=(const Listener&) = delete;
    ~Listener();

    // Waits until it was announced since the last Forget.
    [[nodiscard]] bool Hears(const Announcement& wanted);
    // What was announced by now.
    [[nodiscard]] const std::set<Announcement>& Heard() const noexcept { return mvarHeard; }
    void Forget() noexcept { mvarHeard.clear(); }

  private:
    static void CALLBACK Hear(HWINEVENTHOOK hook, DWORD event, HWND window, LONG object, LONG child, DWORD thread,
                              DWORD time) noexcept;

    HWND mvarWindow;
    HWINEVENTHOOK mvarHook;
    std::set<Announcement> mvarHeard;
};

} // namespace kestrel::test
