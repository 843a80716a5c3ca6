#include "dialogs/WindowsDialogs.h"

#include "dialogs/frmAddBands.h"
#include "dialogs/frmAddNodes.h"
#include "dialogs/frmAdvanceds.h"
#include "dialogs/frmDesigners.h"
#include "dialogs/frmDropFields.h"

namespace kestrel::dialogs {

void WindowsDialogs::ShowDesigner(CodeClass& rule, const String& title) {
    frmDesigners form(rule);
    form.Load();
    const String caption = Trim(title);
    if (!caption.empty()) form.SetCaption(caption);
    form.ShowModal();
}

void WindowsDialogs::ShowFieldManage(CodeClass& rule, const String& title) {
    frmDropFields form(rule);
    form.Load();
    const String caption = Trim(title);
    if (!caption.empty()) form.SetCaption(caption);
    form.ShowModal();
}

void WindowsDialogs::ShowOptions(CodeClass& rule, const String& title) {
    frmAdvanceds form;
    form.ShowInfo(&rule, title);
    form.ShowModal();
}

void WindowsDialogs::ShowAddBand(CodeClass& rule, const String& relativeName, int position) {
    frmAddBands form(rule);
    form.ShowNewBand(relativeName, position);
    form.ShowModal();
}

void WindowsDialogs::ShowAddRelation(CodeClass& rule, std::int32_t bandIndex, const String& relativeKey,
                                     int relationship, bool modify) {
    if (bandIndex < 1 || bandIndex > rule.Count()) throw Error(Message::InvalidParameter);
    frmAddNodes form(rule);
    form.ShowNodeEditor(rule.Band(bandIndex), relativeKey, relationship, modify);
    form.ShowModal();
}

} // namespace kestrel::dialogs
