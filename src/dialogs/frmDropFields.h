// The user fields of a rule: the user asks the host for a new one or removes those selected.
#pragma once

#include "dialogs/Form.h"
#include "engine/CodeClass.h"

namespace kestrel::dialogs {

class frmDropFields final : public Form {
  public:
    explicit frmDropFields(CodeClass& code);

    // Fills the list from the rule's user fields; the rows of the fields that were selected stay so, wherever they are
    // now. A field's name, when given, is the row to select.
    void ShowInfo(const String& name);

  protected:
    void Form_Load() override;
    void Refused(const Error& error) override;
    [[nodiscard]] bool HasEnded() const noexcept override { return !cCode.Lock(); }

  private:
    void cmdAdd_Click() const;
    void cmdDrop_Click();
    void cCode_FieldsChanged();
    // The names of the selected fields, in the order of the rows.
    [[nodiscard]] std::vector<String> SelectedNames() const;
    void Select(const std::vector<String>& names) const;

    WeakRef<CodeClass> cCode;
    Subscription mvarFieldsChanged;
    std::vector<String> mvarNames; // of the fields, for each row
    bool mvarDropping = false;
    ListBox lstFields;
};

} // namespace kestrel::dialogs
