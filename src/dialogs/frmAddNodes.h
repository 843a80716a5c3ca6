// Adds a relation (a code and its value) to a band's tree, or changes one. What is refused is shown, and the dialog
// stays open with the focus on the box that is to blame.
#pragma once

#include "dialogs/Form.h"
#include "dialogs/TxtEXPs.h"
#include "engine/CodeClass.h"

namespace kestrel::dialogs {

// Where a new node goes, in the order of the option buttons.
enum NodePosition : int { npBefore = 0, npAfter = 1, npAppend = 2, npChild = 3 };
// The relationship of a position to the relative node.
[[nodiscard]] int RelationshipOf(int position) noexcept;
// The position of a relationship; the end for any other.
[[nodiscard]] int PositionOf(int relationship) noexcept;
// The 1-based layer that a new node takes.
[[nodiscard]] int LayerOf(const Ref<cNode>& relative, int position);

class frmAddNodes final : public Form {
  public:
    explicit frmAddNodes(CodeClass& rule);

    // Makes the form ready for ShowModal. No band, a band without a tree or a key that names no node of it fail with
    // 2003; the key is empty when no node is selected. To modify, there must be one.
    void ShowNodeEditor(const Ref<Band>& band, const String& relativeKey, int relationship, bool modify);

  protected:
    void Form_Load() override;
    void Refused(const Error& error) override;
    [[nodiscard]] bool HasEnded() const noexcept override { return !cCode.Lock(); }

  private:
    void ShowNode();
    void ChoosePosition(int relationship);
    void optStyle_Click();
    void cmdOK_Click();
    void Apply(const String& code, const String& value);
    [[nodiscard]] bool HasRelative() const { return static_cast<bool>(mvarRelative); }

    WeakRef<CodeClass> cCode;
    Ref<Band> mvarBand;
    Ref<cNode> mvarRelative;
    bool mvarModify = false;
    bool mvarApplying = false;
    TxtEXPs mvarCodeEditor;
    TxtEXPs mvarValueEditor;
    TextBox txtCode;
    TextBox txtValue;
    Frame famPosition;
    OptionButtons optStyle;
    Label lblInfo;
};

} // namespace kestrel::dialogs
