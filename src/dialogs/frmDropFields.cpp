#include "dialogs/frmDropFields.h"

#include "common/Ports.h"
#include "dialogs/Guard.h"
#include "resources/dialogids.h"

namespace kestrel::dialogs {

namespace {

constexpr wchar_t separator = L';';

} // namespace

frmDropFields::frmDropFields(CodeClass& code) : Form(IDD_frmDropFields), cCode(&code), lstFields(*this, ID_lstFields) {
    OnClick(ID_cmdAdd, [this] { cmdAdd_Click(); });
    OnClick(ID_cmdDrop, [this] { cmdDrop_Click(); });
    mvarFieldsChanged = code.FieldsChanged.Subscribe([this] { cCode_FieldsChanged(); });
}

void frmDropFields::Form_Load() { ShowInfo({}); }

void frmDropFields::ShowInfo(const String& name) {
    const auto code = cCode.Lock();
    if (!code) return;
    std::vector<String> rows;
    for (const auto& field : code->UsrFields().Snapshot())
        rows.push_back(field->ForeignName());
    lstFields.SetRows(rows);
    const String wanted = Trim(name);
    if (!wanted.empty()) mvarSelected = code->UsrFields().FindItemPosition(wanted) - 1;
    if (mvarSelected >= 0 && mvarSelected < lstFields.Count()) lstFields.SelectRow(mvarSelected);
}

void frmDropFields::Refused(const Error& error) { ThePrompts().Warn(error.Description()); }

void frmDropFields::cmdAdd_Click() const {
    if (const auto code = cCode.Lock()) code->RaiseAddField({});
}

String frmDropFields::SelectedNames(const CodeClass& code) const {
    std::vector<String> names;
    for (const int row : lstFields.SelectedRows())
        if (row < code.UsrFields().Count()) names.push_back(code.UsrFields().Item(row + 1)->Name());
    return Join(names, String(1, separator));
}

void frmDropFields::RememberSelection() {
    const auto rows = lstFields.SelectedRows();
    mvarSelected = rows.empty() ? -1 : rows.front();
}

void frmDropFields::cmdDrop_Click() {
    const auto code = cCode.Lock();
    if (!code) return;
    const String names = SelectedNames(*code);
    if (names.empty()) throw Error(Message::SelectItemsFirst);
    if (!ThePrompts().Ask(TheStrings().Text(Message::AskDeleteFields) + String(TwoLineBreaks) + names)) return;
    RememberSelection();
    for (const auto name : Split(names, separator))
        Run([&] { code->UsrFields().Remove(String(name)); });
}

void frmDropFields::cCode_FieldsChanged() {
    Guarded(0, [this] {
        ShowInfo({});
        return 0;
    });
}

} // namespace kestrel::dialogs
