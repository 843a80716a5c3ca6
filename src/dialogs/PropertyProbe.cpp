#include "dialogs/PropertyProbe.h"

#include "dialogs/Guard.h"

namespace kestrel::dialogs {

namespace {

void AssignSame(Band& band, PropertyId property) {
    switch (property) {
    case idName: return band.SetName(String(band.Name()));
    case idStyle: return band.SetStyle(band.Style());
    case idSwapMode: return band.SetSwapMode(band.SwapMode());
    case idDefault: return band.SetDefault(String(band.Default()));
    case idFormate: return band.SetFormate(String(band.Formate()));
    case idLength: return band.SetLength(band.Length());
    case idIncrMode: return band.SetIncrMode(band.IncrMode());
    case idInitStart: return band.SetInitStart(String(band.InitStart()));
    case idInitEnd: return band.SetInitEnd(String(band.InitEnd()));
    default: throw Error(Message::ReadOnly);
    }
}

} // namespace

bool IsEditable(Band& band, PropertyId property) {
    switch (property) {
    case idBound:
    case idFieldButtons: return static_cast<bool>(band.DataFields());
    case idTrigerBand: return TriggerApplies(band);
    case idRange: return IsEditable(band, idInitStart) && IsEditable(band, idInitEnd);
    case idTracks: return static_cast<bool>(band.TrackBands());
    case idRelations: return static_cast<bool>(band.Relations());
    default: return !Trapped([&] { AssignSame(band, property); });
    }
}

bool TriggerApplies(const Band& band) {
    return band.IsIncreased() && (band.IncrMode() == imTrigered || band.TrigerBand());
}

} // namespace kestrel::dialogs
