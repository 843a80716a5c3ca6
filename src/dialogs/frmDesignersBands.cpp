// The strip of bands and its menu.

#include <algorithm>

#include "common/Ports.h"
#include "dialogs/Guard.h"
#include "dialogs/MenuRules.h"
#include "dialogs/frmDesigners.h"
#include "resources/dialogids.h"

namespace kestrel::dialogs {

BandStrip::Actions frmDesigners::StripActions() {
    BandStrip::Actions actions;
    actions.select = [this](int box) { Run([&] { SelectBand(box); }); };
    actions.menu = [this](POINT screen) { ShowBandMenu(screen); };
    actions.drop = [this](int box, DropPlace place) { Run([&] { DropBand(box, place); }); };
    actions.move = [this](int step) { Run([&] { MoveBand(step); }); };
    actions.remove = [this] { Run([&] { RemoveSelected(); }); };
    return actions;
}

void frmDesigners::ShowBandMenu(POINT screen) const {
    const auto code = cCode.Lock();
    if (!code) return;
    const auto rules = BandMenuFor(*code, mvarIndex);
    mnuBand.SetEnabled(ID_mnuBandAdd, rules.add);
    mnuBand.SetEnabled(ID_mnuSubBandAdd, rules.beforeAndAfter);
    mnuBand.SetEnabled(ID_mnuSubBandAdd + 1, rules.beforeAndAfter);
    mnuBand.SetEnabled(ID_mnuSubBandAdd + 2, rules.add);
    mnuBand.SetEnabled(ID_mnuBandRemove, rules.remove);
    mnuBand.SetEnabled(ID_mnuBandRemoveAll, rules.removeAll);
    mnuBand.PopUp(Window(), screen);
}

void frmDesigners::AddBand(int position) {
    const auto code = cCode.Lock();
    if (!code || !code->AllowAddBand()) return;
    const auto before = code->Bands();
    const auto selected = SelectedBand();
    code->ShowAddBand(selected ? selected->Name() : String(), position);
    for (const auto& band : code->Bands())
        if (std::find(before.begin(), before.end(), band) == before.end()) return SelectBand(band->Index() - 1);
}

// A drop on the box's own place changes nothing, and the model says so; the user sees it without being told.
void frmDesigners::DropBand(int dragged, DropPlace place) {
    const auto code = cCode.Lock();
    if (!code || !IsBandIndex(*code, dragged) || !IsBandIndex(*code, place.target)) return;
    const IndexKey target(String(code->Band(place.target + 1)->Name()));
    const auto band = code->Band(dragged + 1);
    const auto refusal =
        Trapped([&] { DragBand(band, place.after ? IndexKey() : target, place.after ? target : IndexKey()); });
    if (refusal && refusal->Number() != static_cast<int>(Message::NoDragNeeded)) throw Error(*refusal);
}

void frmDesigners::MoveBand(int step) {
    const auto code = cCode.Lock();
    const int target = mvarIndex + step;
    if (!code || !IsBandIndex(*code, mvarIndex) || !IsBandIndex(*code, target)) return;
    const IndexKey place(String(code->Band(target + 1)->Name()));
    DragBand(code->Band(mvarIndex + 1), step < 0 ? place : IndexKey(), step < 0 ? IndexKey() : place);
}

// The band that was moved stays the selected one.
void frmDesigners::DragBand(const Ref<Band>& band, const IndexKey& before, const IndexKey& after) {
    const auto code = cCode.Lock();
    code->Drag(String(band->Name()), before, after);
    SelectBand(band->Index() - 1);
}

void frmDesigners::RemoveSelected() {
    const auto code = cCode.Lock();
    if (code && BandMenuFor(*code, mvarIndex).remove) DeleteBand();
}

void frmDesigners::DeleteBand() const {
    const auto code = cCode.Lock();
    if (!code || !IsBandIndex(*code, mvarIndex)) return;
    const auto band = SelectedBand();
    const String name = band->Name();
    if (!band->AllowDroped()) return;
    const String question = TheStrings().Text(Message::AskDeleteBand) + String(TwoLineBreaks) + L"[" + name + L"]";
    if (ThePrompts().Ask(question) && SelectedBand() == band) code->Remove(mvarIndex + 1);
}

void frmDesigners::RemoveAllBands() const {
    const auto code = cCode.Lock();
    if (code && ThePrompts().Ask(TheStrings().Text(Message::AskClearBands))) code->Cls();
}

} // namespace kestrel::dialogs
