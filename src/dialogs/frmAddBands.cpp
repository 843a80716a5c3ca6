#include "dialogs/frmAddBands.h"

#include <memory>

#include "common/Numbers.h"
#include "common/Ports.h"
#include "dialogs/Guard.h"
#include "dialogs/ListRows.h"
#include "dialogs/PropertyProbe.h"
#include "dialogs/RaisedFlag.h"
#include "dialogs/Texts.h"
#include "resources/dialogids.h"

namespace kestrel::dialogs {

int CulpritOf(int errorNumber, const String& name, const Band& band) {
    const bool nameTaken = errorNumber == static_cast<int>(Message::BandNameExists);
    if (nameTaken || Trim(name).empty()) return ID_txtName;
    if (band.Style() == bsUndefined) return ID_cboStyle;
    if (errorNumber == static_cast<int>(Message::IncorrectReferBand)) return ID_optPosition;
    return band.IsBound() ? ID_cboBound : ID_txtDefault;
}

frmAddBands::frmAddBands(CodeClass& rule)
    : Form(IDD_frmAddBands), cCode(&rule), txtName(*this, ID_txtName), cboStyle(*this, ID_cboStyle),
      txtDefault(*this, ID_txtDefault), txtFormat(*this, ID_txtFormat), txtLength(*this, ID_txtLength),
      cboBound(*this, ID_cboBound), cboIncrMode(*this, ID_cboIncrMode), cboTrigerBand(*this, ID_cboTrigerBand),
      cboSwapMode(*this, ID_cboSwapMode), optPosition(*this, ID_optPosition, 3), lblInfo(*this, ID_lblInfo) {
    for (const int combo : {ID_cboStyle, ID_cboBound, ID_cboIncrMode, ID_cboTrigerBand, ID_cboSwapMode})
        On(combo, CBN_SELCHANGE, [this] { ApplyToTemplate(); });
    for (const auto* box : {&txtDefault, &txtFormat, &txtLength})
        On(box->Id(), EN_KILLFOCUS, [this, box] { ValidateText(*box); });
    OnClick(ID_cmdOK, [this] { cmdOK_Click(); });
    RenewTemplate(bsUndefined);
}

void frmAddBands::Form_Load() {
    const auto attach = [this](const Control& control) -> TxtEXPs& {
        mvarEditors.push_back(std::make_unique<TxtEXPs>());
        mvarEditors.back()->Attach(control.Window());
        return *mvarEditors.back();
    };
    attach(txtName).SetTrimSpaces(true);
    attach(txtDefault).SetHoldsCode(true);
    attach(txtFormat);
    attach(txtLength).SetNumericOnly(true);
    cboStyle.SetRows(StyleRows());
    LoadTemplate();
}

void frmAddBands::ShowNewBand(const String& relativeName, int position) {
    if (position < 1 || position > optPosition.Count()) throw Error(Message::InvalidParameter);
    mvarRelativeName = relativeName;
    Load();
    const bool relative = !relativeName.empty();
    optPosition(0).SetEnabled(relative);
    optPosition(1).SetEnabled(relative);
    optPosition.Choose(relative ? position - 1 : optPosition.Count() - 1);
    ShowHint();
    const auto rule = cCode.Lock();
    for (const auto& editor : mvarEditors)
        editor->SetUpperCased(editor->HoldsCode() && rule && rule->CodeUCased());
}

void frmAddBands::LoadTemplate() {
    const auto rule = cCode.Lock();
    if (!rule) return;
    const RaisedFlag loading(mvarLoading);
    ClearFields();
    LoadCombos(*rule);
    txtDefault.SetText(mvarTemplate->Default());
    txtFormat.SetText(mvarTemplate->Formate());
    txtLength.SetText(ToText(mvarTemplate->Length()));
    EnableControls();
    ShowHint();
}

void frmAddBands::ClearFields() {
    for (const auto* box : {&txtDefault, &txtFormat, &txtLength})
        box->SetText({});
    for (const auto* combo : {&cboBound, &cboTrigerBand, &cboIncrMode, &cboSwapMode})
        combo->SetListIndex(-1);
}

void frmAddBands::LoadCombos(const CodeClass& rule) {
    cboStyle.SetListIndex(mvarTemplate->Style());
    cboSwapMode.SetRows(SwapRows());
    cboSwapMode.SetListIndex(mvarTemplate->SwapMode());
    cboIncrMode.SetRows(IncrRows());
    cboIncrMode.SetListIndex(mvarTemplate->IncrMode());
    cboBound.SetRows(BoundRows(*mvarTemplate));
    cboBound.SetListIndex(BoundRow(*mvarTemplate));
    cboTrigerBand.SetRows(TriggerRows(rule, nullptr));
    cboTrigerBand.SetListIndex(TriggerRow(rule, *mvarTemplate, nullptr));
}

// The name and the style are the user's to give; both are set on the new band, not on the template.
void frmAddBands::EnableControls() {
    Band& band = *mvarTemplate;
    cboSwapMode.SetEnabled(IsEditable(band, idSwapMode));
    txtDefault.SetEnabled(IsEditable(band, idDefault));
    txtFormat.SetEnabled(IsEditable(band, idFormate));
    txtLength.SetEnabled(IsEditable(band, idLength));
    cboBound.SetEnabled(IsEditable(band, idBound));
    cboIncrMode.SetEnabled(IsEditable(band, idIncrMode));
    cboTrigerBand.SetEnabled(IsEditable(band, idTrigerBand));
}

void frmAddBands::ShowHint() const {
    const String hint = TheStrings().Text(text::ChooseStyleHint + 1 + static_cast<int>(mvarTemplate->Style()));
    const String reference = mvarRelativeName.empty()
                                 ? String()
                                 : String(TwoLineBreaks) + ReplaceStar(TheStrings().Text(text::ReferenceBand),
                                                                       L"[" + mvarRelativeName + L"]");
    lblInfo.SetText(hint + reference);
}

// A band's style is set once: for another style the template is made anew, and the other controls fill it again.
void frmAddBands::RenewTemplate(int style) {
    mvarTemplate = Make<Band>();
    mvarTemplate->SetParentRule(cCode.Lock().Get());
    if (style != bsUndefined) mvarTemplate->SetStyle(style);
}

void frmAddBands::ApplyToTemplate() {
    const auto rule = cCode.Lock();
    if (mvarLoading || !rule) return;
    WriteTemplate(*rule);
    LoadTemplate();
}

void frmAddBands::WriteTemplate(const CodeClass& rule) {
    const auto bound = BoundItem(*mvarTemplate, cboBound.ListIndex());
    const auto trigger = TriggerBand(rule, nullptr, cboTrigerBand.ListIndex());
    const int style = cboStyle.ListIndex();
    if (style != mvarTemplate->Style()) RenewTemplate(style);
    Band& band = *mvarTemplate;
    Trapped([&] { band.SetSwapMode(cboSwapMode.ListIndex()); });
    Trapped([&] { band.SetDefault(txtDefault.Text()); });
    Trapped([&] { band.SetFormate(txtFormat.Text()); });
    Trapped([&] { band.SetLength(ToInteger(LeadingNumber(txtLength.Text()).value_or(0)).value_or(0)); });
    Trapped([&] { band.SetDataField(bound); });
    Trapped([&] { band.SetIncrMode(cboIncrMode.ListIndex()); });
    Trapped([&] { band.SetTrigerBand(trigger); });
}

void frmAddBands::ValidateText(const TextBox& box) {
    if (mvarLoading) return;
    Trapped([&] { WriteText(box); });
    LoadTemplate(); // what was refused shows the template's value again
}

void frmAddBands::WriteText(const TextBox& box) {
    Band& band = *mvarTemplate;
    const String typed = box.Text();
    if (box.Id() == ID_txtDefault && typed != band.Default()) band.SetDefault(typed);
    if (box.Id() == ID_txtFormat && typed != band.Formate()) band.SetFormate(typed);
    const auto length = ToInteger(LeadingNumber(typed).value_or(0)).value_or(0);
    if (box.Id() == ID_txtLength && length != band.Length()) band.SetLength(length);
}

// Enter presses the button while a box still has the focus: what stands there counts, or is refused there.
void frmAddBands::WriteTextInFocus() {
    for (const auto* box : {&txtDefault, &txtFormat, &txtLength}) {
        if (!box->HasFocus()) continue;
        mvarCulprit = box->Id();
        WriteText(*box);
        mvarCulprit = 0;
    }
}

NewBand frmAddBands::Description() const {
    NewBand description;
    description.name = txtName.Text();
    description.style = mvarTemplate->Style();
    description.swapMode = mvarTemplate->SwapMode();
    description.defaultValue = mvarTemplate->Default();
    description.dataField = mvarTemplate->BoundField();
    description.length = mvarTemplate->Length();
    description.formate = mvarTemplate->Formate();
    if (optPosition.Chosen() == 0) description.before = mvarRelativeName;
    if (optPosition.Chosen() == 1) description.after = mvarRelativeName;
    return description;
}

void frmAddBands::cmdOK_Click() {
    const auto rule = cCode.Lock();
    if (!rule) return;
    mvarCulprit = 0;
    WriteTextInFocus();
    if (!Trim(txtName.Text()).empty() && mvarTemplate->Style() == bsUndefined) throw Error(Message::StyleNotDefined);
    const auto added = rule->Add(Description());
    CopyRest(*added);
    Hide();
}

// What the new band's style does not have, it refuses.
void frmAddBands::CopyRest(Band& added) const {
    Trapped([&] { added.SetIncrMode(mvarTemplate->IncrMode()); });
    Trapped([&] { added.SetTrigerBand(mvarTemplate->TrigerBand()); });
}

void frmAddBands::Refused(const Error& error) {
    const int culprit = mvarCulprit != 0 ? mvarCulprit : CulpritOf(error.Number(), txtName.Text(), *mvarTemplate);
    ThePrompts().Warn(error.Description());
    Control(*this, culprit).SetFocus();
}

} // namespace kestrel::dialogs
