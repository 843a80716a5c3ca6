// Describes a new band and adds it to a rule. The user edits a template, a band of no rule; each edit passes through
// the band's own rules, so that the dialog always shows what a band accepts. What is refused on OK is shown, and the
// dialog stays open with the focus on the control that is to blame.
#pragma once

#include <memory>

#include "dialogs/Form.h"
#include "dialogs/TxtEXPs.h"
#include "engine/CodeClass.h"

namespace kestrel::dialogs {

// The control that an addition refused with that number speaks of.
[[nodiscard]] int CulpritOf(int errorNumber, const String& name, const Band& band);

class frmAddBands final : public Form {
  public:
    explicit frmAddBands(CodeClass& rule);

    // Makes the form ready for ShowModal. Position 1 is before the relative band, 2 after it, 3 at the end; any other
    // fails with 2003. Without a relative name only the end can be chosen.
    void ShowNewBand(const String& relativeName, int position);

  protected:
    void Form_Load() override;
    void Refused(const Error& error) override;
    [[nodiscard]] bool HasEnded() const noexcept override { return !cCode.Lock(); }

  private:
    void LoadTemplate();
    void LoadCombos(const CodeClass& rule);
    void EnableControls();
    void ClearFields();
    void ApplyToTemplate();
    void WriteTemplate(const CodeClass& rule);
    void RenewTemplate(int style);
    void ValidateText(const TextBox& box);
    void WriteText(const TextBox& box);
    void WriteTextInFocus();
    void ShowHint() const;
    void cmdOK_Click();
    [[nodiscard]] NewBand Description() const;
    void CopyRest(Band& added) const;

    WeakRef<CodeClass> cCode;
    String mvarRelativeName;
    Ref<Band> mvarTemplate;
    bool mvarLoading = false;
    int mvarCulprit = 0; // the box whose text is being written on OK, 0 for none
    std::vector<std::unique_ptr<TxtEXPs>> mvarEditors;
    TextBox txtName;
    ComboBox cboStyle;
    TextBox txtDefault;
    TextBox txtFormat;
    TextBox txtLength;
    ComboBox cboBound;
    ComboBox cboIncrMode;
    ComboBox cboTrigerBand;
    ComboBox cboSwapMode;
    OptionButtons optPosition;
    Label lblInfo;
};

} // namespace kestrel::dialogs
