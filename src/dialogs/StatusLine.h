// The line at the foot of a form. A refusal stands there with the system's warning sign, in the colours of its notes,
// so that it is seen; anything else as plain text. What the line cuts off is read in its tip.
#pragma once

#include "common/Error.h"
#include "dialogs/Control.h"
#include "dialogs/PictureBox.h"

namespace kestrel::dialogs {

class StatusLine {
  public:
    // The label that becomes the line, of a form that this object does not outlive.
    StatusLine(Form& form, int id) noexcept : mvarForm(form), lblStatus(form, id) {}

    // Once, when the form is loaded.
    void Attach();
    void Refuse(const Error& error);
    // What is so when the form opens, and what becomes of it; the tip tells more than the line has room for, and screen
    // readers read it as the line's description. Once the line was cleared or something was refused it stays out.
    void Tell(const String& text, const String& tip);
    void Clear();

  private:
    void Set(const String& text, const String& tip, bool refusal);
    void Paint(HDC context, RECT area) const;

    Form& mvarForm;
    Label lblStatus;
    PictureBox mvarBox;
    bool mvarTells = true;
    bool mvarIsRefusal = false;
};

} // namespace kestrel::dialogs
