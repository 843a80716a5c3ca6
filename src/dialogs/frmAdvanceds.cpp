#include "dialogs/frmAdvanceds.h"

#include <algorithm>

#include "dialogs/Guard.h"
#include "dialogs/Waiting.h"
#include "resources/dialogids.h"

namespace kestrel::dialogs {

namespace {

std::vector<String> NamesOf(const Lists& layers) {
    std::vector<String> names;
    for (const auto& layer : layers.Snapshot())
        names.push_back(layer->Name());
    return names;
}

} // namespace

frmAdvanceds::frmAdvanceds()
    : Form(IDD_frmAdvanceds), lstLayers(*this, ID_lstLayers), cmdUp(*this, ID_cmdUp), cmdDown(*this, ID_cmdDown),
      optApply(*this, ID_optApply, 2), chkStyle(*this, ID_chkStyle), chkSaveMode(*this, ID_chkSaveMode),
      chkUpcase(*this, ID_chkUpcase) {
    On(ID_lstLayers, LBN_SELCHANGE, [this] { lstLayers_Click(); });
    OnClick(ID_cmdUp, [this] { MoveLayer(-1); });
    OnClick(ID_cmdDown, [this] { MoveLayer(1); });
    for (int index = 0; index < optApply.Count(); ++index)
        OnClick(ID_optApply + index, [this, index] { optApply_Click(index); });
    OnClick(ID_chkStyle, [this] { chkStyle_Click(); });
    OnClick(ID_chkSaveMode, [this] { chkSaveMode_Click(); });
    OnClick(ID_chkUpcase, [this] { chkUpcase_Click(); });
    OnClick(ID_cmdClose, [this] { cmdClose_Click(); });
}

void frmAdvanceds::Form_Load() {
    if (cCode.Lock()) ShowDetail();
}

void frmAdvanceds::ShowInfo(CodeClass* code, const String& title) {
    if (code != nullptr) {
        cCode = WeakRef<CodeClass>(code);
        mvarLayeredBandsChanged = code->LayeredBandsChanged.Subscribe([this] { cCode_LayeredBandsChanged(); });
    }
    if (!cCode.Lock()) throw Error(Message::ObjectNotSet);
    Load();
    const String caption = Trim(title);
    if (!caption.empty()) SetCaption(caption);
    ShowDetail();
}

void frmAdvanceds::ShowDetail() {
    const auto code = cCode.Lock();
    if (!code) return;
    const auto names = NamesOf(code->LayeredBands());
    const String selected = lstLayers.Row(lstLayers.ListIndex());
    lstLayers.SetRows(names);
    const auto again = std::find(names.begin(), names.end(), selected);
    lstLayers.SetListIndex(again == names.end() ? -1 : static_cast<int>(again - names.begin()));
    lstLayers_Click();
    chkStyle.SetValue(code->Style() == csSimple ? BST_CHECKED : BST_UNCHECKED);
    optApply.Choose(code->ApplyMode());
    chkUpcase.SetValue(code->CodeUCased() ? BST_CHECKED : BST_UNCHECKED);
    chkStyle.SetEnabled(code->AllowSimpleStyle());
}

void frmAdvanceds::lstLayers_Click() const {
    const int selected = lstLayers.ListIndex();
    const bool any = lstLayers.Count() > 0 && selected >= 0;
    cmdUp.SetEnabled(any && selected > 0);
    cmdDown.SetEnabled(any && selected < lstLayers.Count() - 1);
}

void frmAdvanceds::MoveLayer(int step) const {
    const auto code = cCode.Lock();
    const int selected = lstLayers.ListIndex();
    const int target = selected + step;
    if (!code || selected < 0 || target < 0 || target >= lstLayers.Count()) return;
    const IndexKey place(target + 1);
    code->LayeredBands().MoveItem(selected + 1, step < 0 ? place : IndexKey(), step < 0 ? IndexKey() : place);
}

void frmAdvanceds::optApply_Click(int index) const {
    if (const auto code = cCode.Lock()) code->SetApplyMode(index);
}

void frmAdvanceds::chkStyle_Click() const {
    if (const auto code = cCode.Lock()) code->SetStyle(chkStyle.Value() >= BST_CHECKED ? csSimple : csNormal);
}

void frmAdvanceds::chkUpcase_Click() const {
    const WaitCursor wait; // every code of the tree is written anew
    if (const auto code = cCode.Lock()) code->SetCodeUCased(chkUpcase.Value() == BST_CHECKED);
}

void frmAdvanceds::cmdClose_Click() {
    Hide();
    LetPendingMessagesRun();
}

void frmAdvanceds::cCode_LayeredBandsChanged() {
    Guarded(0, [this] {
        ShowDetail();
        return 0;
    });
}

} // namespace kestrel::dialogs
