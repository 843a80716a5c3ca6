#include "dialogs/frmAddNodes.h"

#include <algorithm>
#include <array>

#include "common/Ports.h"
#include "dialogs/MenuRules.h"
#include "dialogs/RaisedFlag.h"
#include "dialogs/Texts.h"
#include "resources/dialogids.h"

namespace kestrel::dialogs {

namespace {

constexpr std::array<int, 4> relationships{tvwPrevious, tvwNext, tvwLast, tvwChild};

Error Missing(Message caption) { return Error::WithDetail(Message::InvalidParameter, TheStrings().Text(caption)); }

// The name of the band that converts in that layer; empty beyond the last.
String LayerName(const CodeClass& rule, const Band& band, int layer) {
    const bool layered = band.SwapMode() == smLayersSwap && layer >= 1 && layer <= rule.LayeredBands().Count();
    return layered ? rule.LayeredBands().Item(layer)->Name() : String();
}

} // namespace

int RelationshipOf(int position) noexcept {
    return position >= npBefore && position <= npChild ? relationships[static_cast<std::size_t>(position)] : tvwLast;
}

int PositionOf(int relationship) noexcept {
    const auto found = std::find(relationships.begin(), relationships.end(), relationship);
    return found == relationships.end() ? npAppend : static_cast<int>(found - relationships.begin());
}

int LayerOf(const Ref<cNode>& relative, int position) {
    if (!relative) return 1;
    return relative->Layer() + (position == npChild ? 2 : 1);
}

frmAddNodes::frmAddNodes(CodeClass& rule)
    : Form(IDD_frmAddNodes), cCode(&rule), txtCode(*this, ID_txtCode), txtValue(*this, ID_txtValue),
      famPosition(*this, ID_famPosition), optStyle(*this, ID_optStyle, 4), lblInfo(*this, ID_lblInfo) {
    for (int index = 0; index < optStyle.Count(); ++index)
        OnClick(ID_optStyle + index, [this] { optStyle_Click(); });
    OnClick(ID_cmdOK, [this] { cmdOK_Click(); });
}

void frmAddNodes::Form_Load() {
    const auto rule = cCode.Lock();
    mvarCodeEditor.Attach(txtCode.Window());
    mvarCodeEditor.SetUpperCased(rule && rule->CodeUCased());
    mvarValueEditor.Attach(txtValue.Window());
}

void frmAddNodes::ShowNodeEditor(const Ref<Band>& band, const String& relativeKey, int relationship, bool modify) {
    const auto tree = band ? band->Relations() : nullptr;
    if (!tree || (modify && relativeKey.empty())) throw Error(Message::InvalidParameter);
    mvarBand = band;
    mvarModify = modify;
    if (!relativeKey.empty()) {
        try {
            mvarRelative = tree->Node(relativeKey);
        } catch (const Error&) {
            throw Error(Message::InvalidParameter); // whatever the collection says about its keys
        }
    }
    Load();
    if (modify) ShowNode();
    ChoosePosition(relationship);
}

void frmAddNodes::ShowNode() {
    SetCaption(TheStrings().Text(text::ModifyRelations));
    txtCode.SetText(mvarRelative->Text());
    txtValue.SetText(mvarRelative->Tag());
}

void frmAddNodes::ChoosePosition(int relationship) {
    const auto rule = cCode.Lock();
    const bool relative = HasRelative() && !mvarModify;
    famPosition.SetEnabled(!mvarModify);
    optStyle(npBefore).SetEnabled(relative);
    optStyle(npAfter).SetEnabled(relative);
    optStyle(npAppend).SetEnabled(!mvarModify);
    optStyle(npChild).SetEnabled(relative && rule && MayHaveChild(*rule, *mvarBand, *mvarRelative));
    const int wanted = PositionOf(relationship);
    optStyle.Choose(optStyle(wanted).IsEnabled() ? wanted : static_cast<int>(npAppend));
    optStyle_Click();
}

void frmAddNodes::optStyle_Click() {
    const auto rule = cCode.Lock();
    const int layer = LayerOf(mvarRelative, mvarModify ? static_cast<int>(npAppend) : optStyle.Chosen());
    const String name = rule ? LayerName(*rule, *mvarBand, layer) : String();
    lblInfo.SetText(TheStrings().Text(text::LayerCaption) + L" " + ToText(layer) +
                    (name.empty() ? name : L" (" + name + L")"));
}

void frmAddNodes::cmdOK_Click() {
    if (mvarApplying) return; // clicked twice
    const String code = Trim(txtCode.Text());
    const String value = Trim(txtValue.Text());
    if (code.empty()) throw Missing(Message::CaptionCode);
    if (value.empty()) throw Missing(Message::CaptionValue);
    const RaisedFlag applying(mvarApplying);
    Apply(code, value);
    LetPendingMessagesRun();
    Hide();
}

void frmAddNodes::Apply(const String& code, const String& value) {
    const auto tree = mvarBand->Index() > 0 ? mvarBand->Relations() : nullptr;
    // The band, its conversion or the node has gone meanwhile.
    if (!tree || (HasRelative() && mvarRelative->Index() > tree->Count())) throw Error(Message::InvalidParameter);
    if (mvarModify) {
        mvarRelative->RefuseTaken(code, value); // before either is set: what is refused shall leave both
        mvarRelative->SetText(code);
        mvarRelative->SetTag(value);
        return;
    }
    const IndexKey relative = HasRelative() ? IndexKey(mvarRelative->Index()) : IndexKey();
    tree->Add(relative, HasRelative() ? RelationshipOf(optStyle.Chosen()) : static_cast<int>(tvwFirst), code, value);
}

void frmAddNodes::Refused(const Error& error) {
    ThePrompts().Warn(error.Description());
    const bool value = error.Number() == static_cast<int>(Message::SameValue) || !Trim(txtCode.Text()).empty();
    const bool code = error.Number() == static_cast<int>(Message::SameCode);
    const TextBox& culprit = value && !code ? txtValue : txtCode;
    culprit.SetFocus();
    culprit.SelectAll();
}

} // namespace kestrel::dialogs
