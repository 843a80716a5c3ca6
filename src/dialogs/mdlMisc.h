// What all forms share: texts and font from the string table, and drop-down lists wide enough for their rows.
#pragma once

#include <windows.h>

#include <optional>

#include "common/String.h"

namespace kestrel::dialogs {

class Form;

[[nodiscard]] bool IsLabel(HWND control);

// The caption of a control whose Tag holds a string's number: for a label with a colon after it. Nothing when the Tag
// holds no number above 0 or there is no such string; the control keeps its caption then.
[[nodiscard]] std::optional<String> CaptionFor(bool isLabel, const String& tag);

// Gives the form the font of strings 20 (name) and 21 (size in points), and its caption, its controls' captions, the
// items that they hold and their tool tips the strings that their numbers name.
void LocaliseForm(Form& form);

// Gives each item of the menu, and of the menus below it, the string whose number its caption holds.
void LocaliseMenu(HMENU menu);

// Widens the drop-down list to its longest row, up to the width of the screen less 20 pixels. Returns the result of the
// width message, or 1 when nothing had to change.
long FitDropDownWidth(HWND combo);

} // namespace kestrel::dialogs
