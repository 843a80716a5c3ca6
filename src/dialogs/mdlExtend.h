// The texts of controls that hold captioned items: the tabs of a tab strip, the buttons of a toolbar, the columns of a
// list view. Each item's design-time text is the number of its string; an item without a number keeps its text.
#pragma once

#include <windows.h>

namespace kestrel::dialogs {

// Gives each item the string that its number names. For a tab that is its caption and its tool tip, for a button its
// text, which a toolbar shows as the tool tip, for a column its heading. False for a control that holds no such items;
// nothing was done then.
bool LocaliseItems(HWND control);

} // namespace kestrel::dialogs
