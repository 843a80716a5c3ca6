// The designer: a rule's bands as a strip of boxes, the properties of the selected band, the bands it tracks, and its
// relations. Every edit goes through the model's members, and what is shown is read back from the model; a refused
// value so reverts, and the refusal stands in the status line. The model's events redraw the form.
#pragma once

#include <array>
#include <memory>

#include "dialogs/BandStrip.h"
#include "dialogs/CheckList.h"
#include "dialogs/Form.h"
#include "dialogs/FormMenu.h"
#include "dialogs/OpenBranches.h"
#include "dialogs/PropertyProbe.h"
#include "dialogs/StatusLine.h"
#include "dialogs/TreeKeys.h"
#include "dialogs/TreeView.h"
#include "dialogs/TxtEXPs.h"
#include "engine/CodeClass.h"

namespace kestrel::dialogs {

class frmDesigners final : public Form {
  public:
    explicit frmDesigners(CodeClass& code);

    // Redraws everything from the rule. No rule fails with 91; a band index (0-based) becomes the selected one, a title
    // that is not blank the caption.
    void RefreshBands(CodeClass* code, std::optional<int> bandIndex = {}, const String& title = {});
    // 0-based.
    [[nodiscard]] int SelectedIndex() const noexcept { return mvarIndex; }

  protected:
    void Form_Load() override;
    void Form_Unload() override;
    void Form_Resize() override;
    void Form_ColoursChanged() override;
    void Refused(const Error& error) override;
    [[nodiscard]] bool HasEnded() const noexcept override { return !cCode.Lock(); }
    std::optional<LRESULT> Handle(UINT message, WPARAM wParam, LPARAM lParam) override;

  private:
    // --- The form (frmDesigners.cpp) ---
    void ConnectButtons();
    void CreateEditors();
    void SelectBand(int index);
    [[nodiscard]] Ref<Band> SelectedBand() const;
    void cCode_BandsChanged();
    void cCode_FieldsChanged();
    void cmdClose_Click();

    // --- The strip and the band menu (frmDesignersBands.cpp) ---
    [[nodiscard]] BandStrip::Actions StripActions();
    void ShowBandMenu(POINT screen) const;
    void AddBand(int position);
    void DropBand(int dragged, DropPlace place);
    void MoveBand(int step);
    void DragBand(const Ref<Band>& band, const IndexKey& before, const IndexKey& after);
    void RemoveSelected();
    void DeleteBand() const;
    void RemoveAllBands() const;

    // --- The properties (frmDesignersPanel.cpp) ---
    void ConnectPanel();
    void LoadProperties();
    void ShowProperties(Band& band, const CodeClass& code);
    void ShowBound(const Band& band);
    void ShowTracks(Band& band, const CodeClass& code);
    void ClearProperties();
    void ShowFirstStep(const CodeClass& code) const;
    void EnableProperties(Band* band);
    void EnableProperty(PropertyId property, bool enable);
    void Validate(PropertyId property, const TextBox& box);
    void Edit(const std::function<void(Band&)>& change);
    void vscRange_Change(int index, int step);
    void cboStyle_Click() const;
    void cboIncrMode_Click();
    void cboSwapMode_Click();
    void cboBound_Click();
    void cboTrigerBand_Click();
    void lstTracks_ItemCheck(int row);

    // --- The relations (frmDesignersRelations.cpp) ---
    void ConnectRelations();
    void FollowRelations(const Ref<cNodes>& tree);
    void LeaveRelations();
    void cRelations_NodesChanged(const String& hotKey);
    void LoadRelations(const String& hotKey);
    void EnableRelations(bool enable);
    [[nodiscard]] Ref<cNode> SelectedNode() const;
    bool SelectNodeAt(POINT screen);
    void ShowNodeMenu(POINT screen) const;
    void AddNode(int relationship);
    void cmdModify_Click();
    void cmdDelete_Click();
    void RemoveTreeNode(const String& key);
    void cmdClear_Click() const;
    std::optional<LRESULT> tvwAvailable_Notify(NMHDR& header);
    static constexpr UINT_PTR GrowthTimer = 1;
    void LetTreeGrow();
    [[nodiscard]] String RelationsHint() const;

    // --- The findings (frmDesignersFindings.cpp) ---
    static constexpr UINT FindingsMessage = WM_APP + 1; // posted to oneself
    void ShowFindings();
    void ShowFindingsSoon();

    WeakRef<CodeClass> cCode;
    Ref<cNodes> cRelations;
    std::vector<Subscription> mvarCodeSubscriptions;
    Subscription mvarNodesChanged;
    int mvarIndex = 0;
    bool mvarLoading = false;
    OpenBranches mvarOpenBranches;
    String mvarHotKey; // to be selected by a reload that waits
    bool mvarReloadWaits = false;
    bool mvarFindingsWait = false;
    std::vector<std::unique_ptr<TxtEXPs>> mvarEditors;
    std::array<TxtEXPs*, 2> mvarRangeEditors{};
    TreeKeys mvarTreeKeys;
    BandStrip mvarStrip;
    StatusLine mvarStatus;
    FormMenu mnuBand;
    FormMenu mnuNode;

    TextBox txtName;
    ComboBox cboStyle;
    TextBox txtDefault;
    TextBox txtFormat;
    TextBox txtLength;
    ComboBox cboBound;
    ComboBox cboIncrMode;
    std::array<TextBox, 2> txtRange;
    std::array<Control, 2> vscRange;
    ComboBox cboTrigerBand;
    ComboBox cboSwapMode;
    CheckList lstTracks;
    TreeView tvwAvailable;
    std::array<Label, 2> lblInfo; // under the tracked bands, under the relations
    CommandButton cmdAdd;
    CommandButton cmdDelete;
    CommandButton cmdModify;
    CommandButton cmdClear;
    CommandButton cmdAppend;
    CommandButton cmdDrop;
    CommandButton cmdAdvanced;
};

// The controls that a pick in the list of styles leaves enabled.
struct StyleEnabling {
    bool bound;
    bool defaultValue;
    bool format;
};
[[nodiscard]] StyleEnabling EnablingForStyle(int style) noexcept;

} // namespace kestrel::dialogs
