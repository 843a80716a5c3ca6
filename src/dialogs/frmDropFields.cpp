#include "dialogs/frmDropFields.h"

#include <algorithm>

#include "common/Ports.h"
#include "dialogs/Guard.h"
#include "dialogs/RaisedFlag.h"
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
    const String wanted = Trim(name);
    auto selected = wanted.empty() ? SelectedNames() : std::vector<String>{wanted};
    if (mvarDropping) selected.clear(); // what is left was not chosen for whatever comes next
    std::vector<String> rows;
    mvarNames.clear();
    for (const auto& field : code->UsrFields().Snapshot()) {
        rows.push_back(field->ForeignName());
        mvarNames.push_back(field->Name());
    }
    lstFields.SetRows(rows);
    Select(selected);
}

void frmDropFields::Select(const std::vector<String>& names) const {
    for (std::size_t row = 0; row < mvarNames.size(); ++row)
        if (std::find(names.begin(), names.end(), mvarNames[row]) != names.end())
            lstFields.SelectRow(static_cast<int>(row));
}

void frmDropFields::Refused(const Error& error) { ThePrompts().Warn(error.Description()); }

void frmDropFields::cmdAdd_Click() const {
    if (const auto code = cCode.Lock()) code->RaiseAddField({});
}

std::vector<String> frmDropFields::SelectedNames() const {
    std::vector<String> names;
    for (const int row : lstFields.SelectedRows())
        names.push_back(mvarNames[static_cast<std::size_t>(row)]);
    return names;
}

void frmDropFields::cmdDrop_Click() {
    const auto code = cCode.Lock();
    if (!code) return;
    const String names = Join(SelectedNames(), String(1, separator));
    if (names.empty()) throw Error(Message::SelectItemsFirst);
    if (!ThePrompts().Ask(TheStrings().Text(Message::AskDeleteFields) + String(TwoLineBreaks) + names)) return;
    const RaisedFlag dropping(mvarDropping);
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
