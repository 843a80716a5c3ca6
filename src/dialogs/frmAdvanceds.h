// Four settings of a rule, each changed at once: the order of its layers, how codes are applied, the simple code style,
// and upper case. What the model refuses is left as it was.
#pragma once

#include "dialogs/Form.h"
#include "engine/CodeClass.h"

namespace kestrel::dialogs {

class frmAdvanceds final : public Form {
  public:
    frmAdvanceds();

    // A title that is not blank becomes the caption; the rule, when given, is the one edited. Without any it fails
    // with 91.
    void ShowInfo(CodeClass* code, const String& title);
    // Fills the controls from the rule.
    void ShowDetail();

  protected:
    void Form_Load() override;
    // The box that was clicked shows the rule's setting again.
    void Refused(const Error&) override { ShowDetail(); }
    [[nodiscard]] bool HasEnded() const noexcept override { return !cCode.Lock(); }

  private:
    void lstLayers_Click() const;
    void MoveLayer(int step) const;
    void optApply_Click(int index) const;
    void chkStyle_Click() const;
    void chkSaveMode_Click() const { chkSaveMode.SetValue(BST_INDETERMINATE); }
    void chkUpcase_Click() const;
    void cmdClose_Click();
    void cCode_LayeredBandsChanged();

    WeakRef<CodeClass> cCode;
    Subscription mvarLayeredBandsChanged;
    ListBox lstLayers;
    CommandButton cmdUp;
    CommandButton cmdDown;
    OptionButtons optApply;
    CheckBox chkStyle;
    CheckBox chkSaveMode;
    CheckBox chkUpcase;
};

} // namespace kestrel::dialogs
