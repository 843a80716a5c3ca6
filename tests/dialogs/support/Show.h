// A form shown without a modal loop, to be worked directly.
#pragma once

#include <windows.h>

#include "dialogs/support/Screen.h"

namespace kestrel::test {

template <class Form>
Screen Show(Form& form) {
    form.Load();
    ShowWindow(form.Window(), SW_SHOW);
    SetForegroundWindow(form.Window());
    SetActiveWindow(form.Window());
    RunPendingMessages();
    return Screen(form.Window());
}

} // namespace kestrel::test
