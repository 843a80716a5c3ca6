// Works a dialog with the mouse and the keyboard of the system, from a thread of its own, as a person works it. The
// display belongs to the person alone: a test with one runs while no other program shows windows.
#pragma once

#include <windows.h>

#include "dialogs/support/Screen.h"

namespace kestrel::test {

// What a person does; each action waits until the program had time to follow.
class Person {
  public:
    // Waits until the form with that caption is in front and takes keys.
    bool Sees(const wchar_t* caption) {
        const bool sees = Waits([&] {
            mvarForm = FindWindowW(L"#32770", caption);
            return mvarForm != nullptr && IsWindowVisible(mvarForm) != FALSE && GetForegroundWindow() == mvarForm &&
                   HasFocus(mvarForm);
        });
        Sleep(60); // the form finds its place in the loop that brings the keys
        return sees;
    }
    // Waits until a message box with that text is in front.
    static bool SeesBox(const String& text) {
        return Waits([&] {
            const HWND box = GetForegroundWindow();
            return GetDlgItem(box, 0xFFFF) != nullptr && Screen(box).Text(0xFFFF) == text;
        });
    }
    template <class Condition>
    static bool Waits(Condition condition) {
        for (int turn = 0; turn < 200; ++turn, Sleep(25))
            if (condition()) return true;
        return false;
    }
    [[nodiscard]] Screen Form() const { return Screen(mvarForm); }
    static void Press(WORD key) {
        Send(key, 0);
        Send(key, KEYEVENTF_KEYUP);
        Sleep(60);
    }
    // Until the effect is seen: a program that lags behind asks for the keys held when it gets there.
    static void Hold(WORD key) { Send(key, 0); }
    static void Release(WORD key) { Send(key, KEYEVENTF_KEYUP); }
    static void Point(POINT screen) {
        SetCursorPos(screen.x, screen.y);
        INPUT input{};
        input.type = INPUT_MOUSE;
        input.mi.dwFlags = MOUSEEVENTF_MOVE;
        SendInput(1, &input, sizeof input);
        Sleep(60);
    }
    static void Button(DWORD change) {
        INPUT input{};
        input.type = INPUT_MOUSE;
        input.mi.dwFlags = change;
        SendInput(1, &input, sizeof input);
        Sleep(80);
    }
    // A place in a control, from its left edge or, when negative, from its right one.
    [[nodiscard]] POINT In(int id, int x) const {
        RECT area{};
        GetWindowRect(Form().Control(id), &area);
        return {x >= 0 ? area.left + x : area.right + x, area.top + 10};
    }

  private:
    // Whether a control of the form has the keyboard; in front, it has none for a moment.
    static bool HasFocus(HWND form) {
        GUITHREADINFO state{};
        state.cbSize = sizeof state;
        return GetGUIThreadInfo(GetWindowThreadProcessId(form, nullptr), &state) != FALSE &&
               IsChild(form, state.hwndFocus) != FALSE;
    }
    static void Send(WORD key, DWORD flags) {
        INPUT input{};
        input.type = INPUT_KEYBOARD;
        input.ki.wVk = key;
        input.ki.dwFlags = flags;
        SendInput(1, &input, sizeof input);
        Sleep(20);
    }
    HWND mvarForm = nullptr;
};

} // namespace kestrel::test
