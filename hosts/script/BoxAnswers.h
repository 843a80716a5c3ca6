// Answers the message boxes that open on this thread while it exists, and closes the dialogs, so that a script can run
// with nobody at the screen. Each is a line on standard output: the answer and the text of the box, or the caption of
// the dialog.
#pragma once

#include <windows.h>

#include <string>

namespace hosts::script {

enum class Answer { Yes, No };

class BoxAnswers {
  public:
    // Questions get the answer; boxes that only tell something are closed. One object per thread at a time.
    explicit BoxAnswers(Answer answer);
    ~BoxAnswers();
    BoxAnswers(const BoxAnswers&) = delete; // the timer knows the object by its address
    BoxAnswers& operator=(const BoxAnswers&) = delete;

  private:
    static void CALLBACK OnTimer(HWND window, UINT message, UINT_PTR timer, DWORD time) noexcept;
    static BOOL CALLBACK OnWindow(HWND window, LPARAM answers) noexcept;

    void Reply(HWND box);
    void Close(HWND dialog);

    Answer mvarAnswer;
    HWND mvarAnswered = nullptr; // on its way out
    UINT_PTR mvarTimer;
};

} // namespace hosts::script
