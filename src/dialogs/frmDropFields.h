// The user fields of a rule: the user asks the host for a new one or removes those selected.
#pragma once

#include "dialogs/Form.h"
#include "engine/CodeClass.h"

namespace kestrel::dialogs {

class frmDropFields final : public Form {
  public:
    explicit frmDropFields(CodeClass& code);

    // Fills the list from the rule's user fields and selects the row that was remembered. A field's name, when given,
    // is the row to select.
    void ShowInfo(const String& name);

  protected:
    void Form_Load() override;
    void Refused(const Error& error) override;
    [[nodiscard]] bool HasEnded() const noexcept override { return !cCode.Lock(); }

  private:
    void cmdAdd_Click() const;
    void cmdDrop_Click();
    void cCode_FieldsChanged();
    // The names of the selected fields, joined with ";".
    [[nodiscard]] String SelectedNames(const CodeClass& code) const;
    void RememberSelection();

    WeakRef<CodeClass> cCode;
    Subscription mvarFieldsChanged;
    int mvarSelected = -1; // the row to select after a reload, -1 for none
    ListBox lstFields;
};

} // namespace kestrel::dialogs
