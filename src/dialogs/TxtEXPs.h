// The in-place editor: gives a text box or combo box of a form uniform keyboard behaviour. The whole text is selected
// on entry, Enter and the arrow keys move between fields, keys are filtered, and the text is tidied on leaving.
#pragma once

#include "common/String.h"
#include "dialogs/Subclass.h"

namespace kestrel::dialogs {

// --- The decisions, without a window ---

// The character that a key press types, or 0 when it types nothing.
[[nodiscard]] wchar_t FilteredCharacter(wchar_t character, bool upperCased, bool numericOnly) noexcept;

enum class FieldMove { None, Next, Previous, Refuse };
// What a key does (13 Enter, 37 left, 39 right) in a field whose selection runs from start to end; Refuse is a beep.
[[nodiscard]] FieldMove MoveFor(unsigned key, const String& text, std::size_t start, std::size_t end);

// What a field holds after it is left.
[[nodiscard]] String TidiedText(const String& text, bool trimSpaces, const String& format);

class TxtEXPs final : public Subclass {
  public:
    ~TxtEXPs() override = default;

    // Attaches to a text box or combo box, and lets go of the one before.
    void Attach(HWND control) noexcept;

    [[nodiscard]] bool UpperCased() const noexcept { return mvarUpperCased; }
    void SetUpperCased(bool value) noexcept { mvarUpperCased = value; }
    [[nodiscard]] bool NumericOnly() const noexcept { return mvarNumericOnly; }
    void SetNumericOnly(bool value) noexcept { mvarNumericOnly = value; }
    // Applied on leaving; empty for none.
    [[nodiscard]] const String& Format() const noexcept { return mvarFormat; }
    void SetFormat(const String& value) { mvarFormat = value; }
    [[nodiscard]] bool TrimSpaces() const noexcept { return mvarTrimSpaces; }
    void SetTrimSpaces(bool value) noexcept { mvarTrimSpaces = value; }
    [[nodiscard]] bool EnterAsTab() const noexcept { return mvarEnterAsTab; }
    void SetEnterAsTab(bool value) noexcept { mvarEnterAsTab = value; }

    // For the form; the keys and the tidying do not ask for them. Whether the field holds a part of a code:
    [[nodiscard]] bool HoldsCode() const noexcept { return mvarHoldsCode; }
    void SetHoldsCode(bool value) noexcept { mvarHoldsCode = value; }
    // and anything that the form wants to remember with the field.
    [[nodiscard]] const String& Tag() const noexcept { return mvarTag; }
    void SetTag(const String& value) { mvarTag = value; }

  protected:
    std::optional<LRESULT> Handle(UINT message, WPARAM wParam, LPARAM lParam) override;

  private:
    [[nodiscard]] std::optional<LRESULT> DialogCode(LPARAM lParam) const;
    void Entered() const noexcept;
    // Whether the key was used.
    [[nodiscard]] bool KeyDown(unsigned key) const;
    [[nodiscard]] std::optional<LRESULT> KeyPress(WPARAM character, LPARAM lParam) const noexcept;
    void Left() const;
    [[nodiscard]] FieldMove MoveOf(unsigned key) const;
    void MoveFocus(bool back) const noexcept;

    bool mvarUpperCased = false;
    bool mvarNumericOnly = false;
    String mvarFormat;
    bool mvarTrimSpaces = false;
    bool mvarEnterAsTab = false;
    bool mvarHoldsCode = false;
    String mvarTag;
    bool mvarIsList = false; // a drop-down list: its text cannot be typed and has no caret
};

} // namespace kestrel::dialogs
