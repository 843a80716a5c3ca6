#include "dialogs/frmDesigners.h"

#include <algorithm>
#include <utility>

#include "common/Ports.h"
#include "dialogs/Cursor.h"
#include "dialogs/FindingTexts.h"
#include "dialogs/Guard.h"
#include "dialogs/Texts.h"
#include "dialogs/Waiting.h"
#include "engine/RuleCheck.h"
#include "resources/dialogids.h"

namespace kestrel::dialogs {

frmDesigners::frmDesigners(CodeClass& code)
    : Form(IDD_frmDesigners), cCode(&code), mvarStrip(*this), mvarStatus(*this, ID_lblStatus), mnuBand(IDR_mnuBand),
      mnuNode(IDR_mnuNode), txtName(*this, ID_txtName), cboStyle(*this, ID_cboStyle), txtDefault(*this, ID_txtDefault),
      txtFormat(*this, ID_txtFormat), txtLength(*this, ID_txtLength), cboBound(*this, ID_cboBound),
      cboIncrMode(*this, ID_cboIncrMode), txtRange{TextBox(*this, ID_txtRange), TextBox(*this, ID_txtRange + 1)},
      vscRange{Control(*this, ID_vscRange), Control(*this, ID_vscRange + 1)}, cboTrigerBand(*this, ID_cboTrigerBand),
      cboSwapMode(*this, ID_cboSwapMode), lstTracks(*this, ID_lstTracks),
      tvwAvailable(*this, ID_tvwAvailable), lblInfo{Label(*this, ID_lblInfo), Label(*this, ID_lblInfo + 1)},
      cmdAdd(*this, ID_cmdAdd), cmdDelete(*this, ID_cmdDelete), cmdModify(*this, ID_cmdModify),
      cmdClear(*this, ID_cmdClear), cmdAppend(*this, ID_cmdAppend), cmdDrop(*this, ID_cmdDrop),
      cmdAdvanced(*this, ID_cmdAdvanced) {
    MayGiveWay(ID_tvwAvailable, 52); // the tree and the bands tracked
    SetToolTipTag(ID_cmdAppend, text::AddFieldTip);
    SetToolTipTag(ID_cmdDrop, text::DropFieldTip);
    ConnectButtons();
    ConnectPanel();
    ConnectRelations();
    mvarCodeSubscriptions.push_back(code.BandsChanged.Subscribe([this] { cCode_BandsChanged(); }));
    mvarCodeSubscriptions.push_back(code.FieldsChanged.Subscribe([this] { cCode_FieldsChanged(); }));
}

void frmDesigners::ConnectButtons() {
    OnClick(ID_imgButton, [this] { AddBand(3); });
    for (int position = 1; position <= 3; ++position)
        OnClick(ID_mnuSubBandAdd + position - 1, [this, position] { AddBand(position); });
    OnClick(ID_mnuBandRemove, [this] { DeleteBand(); });
    OnClick(ID_mnuBandRemoveAll, [this] { RemoveAllBands(); });
    OnClick(ID_cmdAppend, [this] {
        if (const auto code = cCode.Lock()) code->RaiseAddField({});
    });
    OnClick(ID_cmdDrop, [this] {
        if (const auto code = cCode.Lock()) code->ShowFieldManage();
    });
    OnClick(ID_cmdAdvanced, [this] {
        if (const auto code = cCode.Lock()) code->ShowOptions();
        ShowFindings(); // some of the options are announced by nothing
    });
    OnClick(ID_cmdSave, [this] {
        mvarStatus.Clear();
        if (const auto code = cCode.Lock()) code->Save(soDefault);
    });
    OnClick(ID_cmdClose, [this] { cmdClose_Click(); });
}

void frmDesigners::Form_Load() {
    const WaitCursor wait;
    mnuBand.Localise();
    mnuNode.Localise();
    lstTracks.Prepare();
    mvarStatus.Attach();
    mvarTreeKeys.Attach(tvwAvailable.Window(), [this] { return cmdModify.IsEnabled(); });
    for (std::size_t index = 0; index < vscRange.size(); ++index) {
        SendMessageW(vscRange[index].Window(), UDM_SETRANGE32, static_cast<WPARAM>(-1), 1);
        SendMessageW(vscRange[index].Window(), UDM_SETBUDDY, reinterpret_cast<WPARAM>(txtRange[index].Window()), 0);
    }
    CreateEditors();
    mvarStrip.Attach(StripActions(), TheStrings().Text(text::AppendTip));
    const auto code = cCode.Lock();
    RefreshBands(code.Get(), 0);
}

void frmDesigners::CreateEditors() {
    const auto attach = [this](const Control& control) {
        mvarEditors.push_back(std::make_unique<TxtEXPs>());
        TxtEXPs* editor = mvarEditors.back().get();
        editor->Attach(control.Window());
        editor->SetEnterAsTab(true);
        return editor;
    };
    attach(txtName)->SetTrimSpaces(true);
    attach(txtDefault);
    attach(txtFormat);
    attach(txtLength)->SetNumericOnly(true);
    for (std::size_t index = 0; index < txtRange.size(); ++index) {
        mvarRangeEditors[index] = attach(txtRange[index]);
        mvarRangeEditors[index]->SetTrimSpaces(true);
    }
    for (const auto* combo : {&cboStyle, &cboBound, &cboIncrMode, &cboTrigerBand, &cboSwapMode})
        attach(*combo);
}

void frmDesigners::Form_Unload() {
    mvarStrip.CancelDrag();
    ReleaseCursor();
    mvarEditors.clear();
    const auto code = cCode.Lock();
    if (!code) return;
    // The form is off the screen and cannot tell it.
    if (const auto refusal = Trapped([&] { code->Save(soDefault); })) ThePrompts().Warn(refusal->Description());
}

void frmDesigners::Form_Resize() {
    mvarStrip.Resize();
    lstTracks.FitColumn();
}

void frmDesigners::Form_ColoursChanged() {
    lstTracks.ShowColours();
    tvwAvailable.ShowColours();
}

void frmDesigners::Refused(const Error& error) { mvarStatus.Refuse(error); }

std::optional<LRESULT> frmDesigners::Handle(UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_CANCELMODE) mvarStrip.CancelDrag(); // something opens over the form
    // From the keyboard: it has no place on the screen.
    if (message == WM_CONTEXTMENU && reinterpret_cast<HWND>(wParam) == tvwAvailable.Window() &&
        static_cast<int>(lParam) == -1) {
        ShowNodeMenu(tvwAvailable.MenuPoint());
        return 0;
    }
    if (message == WM_TIMER && wParam == GrowthTimer) {
        tvwAvailable.InsertMore();
        LetTreeGrow();
        return 0;
    }
    if (message == FindingsMessage && std::exchange(mvarFindingsWait, false)) {
        ShowFindings();
        return 0;
    }
    if (message != WM_APP || !mvarReloadWaits) return Form::Handle(message, wParam, lParam);
    mvarReloadWaits = false;
    LoadRelations(mvarHotKey);
    return 0;
}

void frmDesigners::RefreshBands(CodeClass* code, std::optional<int> bandIndex, const String& title) {
    if (code == nullptr) throw Error(Message::ObjectNotSet);
    const Ref<CodeClass> alive(code);
    const FrozenDrawing frozen(Window());
    const String caption = Trim(title);
    if (!caption.empty()) SetCaption(caption);
    cmdAdvanced.SetEnabled(code->AllowSetup());
    mvarStrip.EnableAppend(code->AllowAddBand());
    mvarIndex = std::clamp(bandIndex.value_or(mvarIndex), 0, std::max(0, code->Count() - 1));
    const FindingTexts texts(CheckRule(*code));
    std::vector<BandBox> boxes;
    for (const auto& band : code->Bands()) {
        boxes.push_back(BoxOf(*band));
        boxes.back().findings = texts.Of(*band); // at once: to a screen reader they are a part of the name
    }
    mvarStrip.SetBoxes(std::move(boxes), mvarIndex);
    mvarStatus.Tell(texts.Count(), texts.All());
    LoadProperties();
}

void frmDesigners::SelectBand(int index) {
    const auto code = cCode.Lock();
    if (!code || index < 0 || index >= code->Count()) return;
    mvarStatus.Clear();
    mvarIndex = index;
    mvarStrip.Select(index);
    LoadProperties();
}

Ref<Band> frmDesigners::SelectedBand() const {
    const auto code = cCode.Lock();
    return code && mvarIndex >= 0 && mvarIndex < code->Count() ? code->Band(mvarIndex + 1) : nullptr;
}

void frmDesigners::cCode_BandsChanged() {
    Guarded(0, [this] {
        if (Window() != nullptr) RefreshBands(cCode.Lock().Get());
        return 0;
    });
}

void frmDesigners::cCode_FieldsChanged() {
    Guarded(0, [this] {
        const auto band = SelectedBand();
        if (band && Window() != nullptr) ShowBound(*band);
        ShowFindingsSoon();
        return 0;
    });
}

void frmDesigners::cmdClose_Click() {
    Hide();
    LetPendingMessagesRun();
}

} // namespace kestrel::dialogs
