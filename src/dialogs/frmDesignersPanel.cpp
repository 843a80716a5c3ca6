// The properties of the selected band and the bands that it tracks.

#include <algorithm>

#include "common/CaseFolding.h"
#include "common/Numbers.h"
#include "common/Ports.h"
#include "dialogs/ListRows.h"
#include "dialogs/RaisedFlag.h"
#include "dialogs/RangeStep.h"
#include "dialogs/Texts.h"
#include "dialogs/Waiting.h"
#include "dialogs/frmDesigners.h"
#include "resources/dialogids.h"

namespace kestrel::dialogs {

namespace {

constexpr PropertyId allProperties[] = {idName,    idStyle,      idSwapMode,     idDefault,  idFormate,
                                        idLength,  idBound,      idFieldButtons, idIncrMode, idInitStart,
                                        idInitEnd, idTrigerBand, idTracks,       idRelations};

std::int32_t LengthIn(const String& text) { return ToInteger(LeadingNumber(text).value_or(0)).value_or(0); }

String ValueOf(const Band& band, PropertyId property) {
    switch (property) {
    case idName: return band.Name();
    case idDefault: return band.Default();
    case idFormate: return band.Formate();
    case idInitStart: return band.InitStart();
    case idInitEnd: return band.InitEnd();
    default: return ToText(band.Length());
    }
}

void Assign(Band& band, PropertyId property, const String& value) {
    switch (property) {
    case idName: return band.SetName(value);
    case idDefault: return band.SetDefault(value);
    case idFormate: return band.SetFormate(value);
    case idInitStart: return band.SetInitStart(value);
    case idInitEnd: return band.SetInitEnd(value);
    default: return band.SetLength(LengthIn(value));
    }
}

bool Differs(const Band& band, PropertyId property, const String& typed) {
    return property == idLength ? LengthIn(typed) != band.Length() : typed != ValueOf(band, property);
}

bool Tracks(const Names& names, const String& name) {
    const auto all = names.Snapshot();
    return std::any_of(all.begin(), all.end(), [&](const String& each) { return SameFolded(each, name); });
}

void StopTracking(Names& names, const String& name) {
    for (auto position = names.Count(); position >= 1; --position)
        if (SameFolded(names.Item(position), name)) names.Remove(position);
}

} // namespace

StyleEnabling EnablingForStyle(int style) noexcept {
    switch (style) {
    case bsUsrMacro: return {true, false, true};
    case bsUsrField: return {true, false, false};
    case bsIncreaseNumber: return {false, true, true};
    case bsFixed:
    case bsIncreaseAlpha: return {false, true, false};
    default: return {false, false, false};
    }
}

void frmDesigners::ConnectPanel() {
    On(ID_txtName, EN_KILLFOCUS, [this] { Validate(idName, txtName); });
    On(ID_txtDefault, EN_KILLFOCUS, [this] { Validate(idDefault, txtDefault); });
    On(ID_txtFormat, EN_KILLFOCUS, [this] { Validate(idFormate, txtFormat); });
    On(ID_txtLength, EN_KILLFOCUS, [this] { Validate(idLength, txtLength); });
    On(ID_txtRange, EN_KILLFOCUS, [this] { Validate(idInitStart, txtRange[0]); });
    On(ID_txtRange + 1, EN_KILLFOCUS, [this] { Validate(idInitEnd, txtRange[1]); });
    On(ID_cboStyle, CBN_SELCHANGE, [this] { cboStyle_Click(); });
    On(ID_cboIncrMode, CBN_SELCHANGE, [this] { cboIncrMode_Click(); });
    On(ID_cboSwapMode, CBN_SELCHANGE, [this] { cboSwapMode_Click(); });
    On(ID_cboBound, CBN_SELCHANGE, [this] { cboBound_Click(); });
    On(ID_cboTrigerBand, CBN_SELCHANGE, [this] { cboTrigerBand_Click(); });
    for (int index = 0; index < 2; ++index)
        OnNotify(ID_vscRange + index, [this, index](const NMHDR& header) -> std::optional<LRESULT> {
            if (header.code != static_cast<UINT>(UDN_DELTAPOS)) return std::nullopt;
            vscRange_Change(index, reinterpret_cast<const NMUPDOWN&>(header).iDelta);
            return TRUE; // the bar itself stays in its middle
        });
    OnNotify(ID_lstTracks, [this](const NMHDR& header) -> std::optional<LRESULT> {
        int row = -1;
        if (!mvarLoading && CheckList::IsCheckChange(header, row)) lstTracks_ItemCheck(row);
        return std::nullopt;
    });
}

void frmDesigners::LoadProperties() {
    const auto code = cCode.Lock();
    if (!code || Window() == nullptr) return;
    const FrozenDrawing frozen(Window());
    const RaisedFlag loading(mvarLoading);
    const auto band = SelectedBand();
    if (band)
        ShowProperties(*band, *code);
    else
        ClearProperties();
    EnableProperties(band.Get());
    if (!band) ShowFirstStep(*code);
}

// A hint of the rule and of no property, so that it can be read though the properties are disabled.
void frmDesigners::ShowFirstStep(const CodeClass& code) const {
    lblInfo[0].SetText(TheStrings().Text(code.AllowAddBand() ? text::FirstBandHint : text::NoBandsHint));
    lblInfo[0].SetEnabled(true);
}

void frmDesigners::ShowBound(const Band& band) {
    cboBound.SetRows(BoundRows(band));
    cboBound.SetListIndex(BoundRow(band));
    Tips().Set(cboBound.Window(), BoundDescription(band));
}

void frmDesigners::ShowProperties(Band& band, const CodeClass& code) {
    txtName.SetText(band.Name());
    cboStyle.SetRows(StyleRows());
    cboStyle.SetListIndex(band.Style());
    txtDefault.SetText(band.Default());
    txtFormat.SetText(band.Formate());
    txtLength.SetText(ToText(band.Length()));
    ShowBound(band);
    cboIncrMode.SetRows(IncrRows());
    cboIncrMode.SetListIndex(band.IncrMode());
    txtRange[0].SetText(band.InitStart());
    txtRange[1].SetText(band.InitEnd());
    for (auto* editor : mvarRangeEditors)
        if (editor != nullptr) editor->SetNumericOnly(band.Style() == bsIncreaseNumber);
    cboTrigerBand.SetRows(TriggerRows(code, &band));
    cboTrigerBand.SetListIndex(TriggerRow(code, band, &band));
    cboSwapMode.SetRows(SwapRows());
    cboSwapMode.SetListIndex(band.SwapMode());
    ShowTracks(band, code);
    FollowRelations(band.Relations());
    LoadRelations({});
}

void frmDesigners::ShowTracks(Band& band, const CodeClass& code) {
    const auto names = band.TrackBands();
    std::vector<CheckList::Row> rows;
    for (const auto& other : code.Bands())
        if (names && !(other == &band)) rows.push_back({other->Name(), Tracks(*names, other->Name())});
    lstTracks.SetRows(rows);
    lblInfo[0].SetText(TheStrings().Text(names ? text::TracksHint : text::NoTracksHint));
}

void frmDesigners::ClearProperties() {
    for (const auto* box : {&txtName, &txtDefault, &txtFormat, &txtLength, &txtRange.front(), &txtRange.back()})
        box->SetText({});
    for (const auto* combo : {&cboStyle, &cboBound, &cboIncrMode, &cboTrigerBand, &cboSwapMode})
        combo->SetListIndex(-1);
    Tips().Set(cboBound.Window(), {});
    lstTracks.SetRows({});
    FollowRelations(nullptr);
    LoadRelations({});
}

void frmDesigners::EnableProperties(Band* band) {
    for (const PropertyId property : allProperties)
        EnableProperty(property, band != nullptr && IsEditable(*band, property));
}

void frmDesigners::EnableProperty(PropertyId property, bool enable) {
    const auto code = cCode.Lock();
    const auto band = SelectedBand();
    if (code && band) enable = enable && band->AllowModified();
    switch (property) {
    case idName: return txtName.SetEnabled(enable);
    case idStyle: return cboStyle.SetEnabled(enable);
    case idSwapMode: return cboSwapMode.SetEnabled(enable);
    case idDefault: return txtDefault.SetEnabled(enable);
    case idFormate: return txtFormat.SetEnabled(enable);
    case idLength: return txtLength.SetEnabled(enable);
    case idBound: return cboBound.SetEnabled(enable);
    case idFieldButtons:
        cmdAppend.SetEnabled(enable && code && code->AllowFieldManage());
        return cmdDrop.SetEnabled(enable && code && code->AllowFieldManage());
    case idIncrMode: return cboIncrMode.SetEnabled(enable);
    case idInitStart:
    case idInitEnd: {
        const std::size_t index = property == idInitStart ? 0 : 1;
        txtRange[index].SetEnabled(enable);
        return vscRange[index].SetEnabled(enable);
    }
    case idTrigerBand: return cboTrigerBand.SetEnabled(enable);
    case idRange: txtRange[0].SetEnabled(enable); return txtRange[1].SetEnabled(enable);
    case idTracks: lstTracks.SetEnabled(enable); return lblInfo[0].SetEnabled(enable);
    case idRelations: return EnableRelations(enable);
    }
}

// A refused value shows what the band holds again; the status line says why.
void frmDesigners::Edit(const std::function<void(Band&)>& change) {
    const auto band = SelectedBand();
    if (!band || mvarLoading) return;
    mvarStatus.Clear();
    Run([&] { change(*band); });
    if (const auto code = cCode.Lock()) RefreshBands(code.Get());
}

void frmDesigners::Validate(PropertyId property, const TextBox& box) {
    const auto band = SelectedBand();
    if (!band || mvarLoading) return;
    const String typed = box.Text();
    if (Differs(*band, property, typed)) Edit([&](Band& edited) { Assign(edited, property, typed); });
}

void frmDesigners::vscRange_Change(int index, int step) {
    const auto place = static_cast<std::size_t>(index);
    const PropertyId property = index == 0 ? idInitStart : idInitEnd;
    const auto band = SelectedBand();
    if (!band || !txtRange[place].IsEnabled()) return;
    // One unit, though a bar that is held down asks for more and more.
    const String stepped = SteppedText(band->Style(), txtRange[place].Text(), step > 0 ? 1 : -1);
    if (Differs(*band, property, stepped)) Edit([&](Band& edited) { Assign(edited, property, stepped); });
}

// Writes nothing: a band's style is given when the band is added.
void frmDesigners::cboStyle_Click() const {
    const auto enabling = EnablingForStyle(cboStyle.ListIndex());
    cboBound.SetEnabled(enabling.bound);
    txtDefault.SetEnabled(enabling.defaultValue);
    txtFormat.SetEnabled(enabling.format);
}

void frmDesigners::cboIncrMode_Click() {
    const int row = cboIncrMode.ListIndex();
    Edit([row](Band& band) {
        if (row != band.IncrMode()) band.SetIncrMode(row);
    });
}

void frmDesigners::cboSwapMode_Click() {
    const int row = cboSwapMode.ListIndex();
    Edit([row](Band& band) {
        if (row != band.SwapMode()) band.SetSwapMode(row);
    });
}

void frmDesigners::cboBound_Click() {
    const int row = cboBound.ListIndex();
    Edit([row](Band& band) {
        const auto field = BoundItem(band, row);
        if (!(field == band.BoundField())) band.SetDataField(field);
    });
}

void frmDesigners::cboTrigerBand_Click() {
    const int row = cboTrigerBand.ListIndex();
    const auto code = cCode.Lock();
    Edit([&](Band& band) {
        const auto trigger = TriggerBand(*code, &band, row);
        if (!(trigger == band.TrigerBand())) band.SetTrigerBand(trigger);
    });
}

void frmDesigners::lstTracks_ItemCheck(int row) {
    const auto item = lstTracks.At(row);
    Edit([&item](Band& band) {
        const auto names = band.TrackBands();
        if (!names || Tracks(*names, item.text) == item.checked) return;
        if (item.checked)
            names->Add(item.text);
        else
            StopTracking(*names, item.text);
    });
}

} // namespace kestrel::dialogs
