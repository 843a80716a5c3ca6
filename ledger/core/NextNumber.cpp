#include "ledger/core/NextNumber.h"

#include <algorithm>

#include "ledger/core/Journal.h"
#include "ledger/core/Leases.h"
#include "ledger/core/Reuse.h"
#include "ledger/core/Stamp.h"

namespace ledger {

namespace {

using hosts::HostError;

struct Place {
    NumberBand band;
    std::wstring series;
};

// As if every series began: so a full one is found as well.
std::vector<Place> PlacesOf(CodeMaker& maker, const FieldValues& values) {
    std::vector<Place> places;
    static_cast<void>(maker.Make(values, [&places](const NumberBand& band, const std::wstring& series) {
        places.push_back({band, series});
        return std::optional<std::int64_t>();
    }));
    return places;
}

class SettingNext {
  public:
    SettingNext(const Workplace& workplace, const Place& place, std::int64_t next, const std::wstring& ticket)
        : mvarWorkplace(workplace), mvarPlace(place), mvarNext(next), mvarTicket(ticket),
          mvarJournal(workplace.database, workplace.rule.id) {}

    bool Run() {
        Rules(mvarWorkplace.database).Enter(mvarWorkplace.rule);
        if (mvarJournal.OfTicket(mvarTicket)) return true; // by an attempt whose COMMIT was not answered
        const NumberBand& band = mvarPlace.band;
        const std::int64_t now =
            Leases(mvarWorkplace.database, mvarWorkplace.rule.id).FirstFree(band, mvarPlace.series);
        if (mvarNext == now) return false;
        if (now > band.highest)
            throw HostError(L"series " + mvarPlace.series + L": full, " + std::to_wstring(band.highest) +
                            L" was the last number");
        if (mvarNext < now)
            throw HostError(L"series " + mvarPlace.series + L": " + std::to_wstring(mvarNext) +
                            L" is not beyond what is used or set aside; the next number is " + std::to_wstring(now));
        LeaveOut();
        return true;
    }

  private:
    void LeaveOut() {
        Codes codes(mvarWorkplace.database, mvarWorkplace.rule.id);
        const NumberBand& band = mvarPlace.band;
        const auto last = codes.Highest(band.name, mvarPlace.series);
        NumberRow row{{band.name, mvarPlace.series, mvarNext - 1}, 0, mvarJournal.NextNumber(), {}};
        row.seal = SealOf(mvarWorkplace.rule.id, CodeRow{}, row, {});
        SealSum sum;
        sum.Add(row.seal);
        codes.AddNumbers({}, {&row, 1});
        mvarJournal.Write(acts::Next, std::to_wstring(mvarNext) + L" in " + mvarPlace.series + L" of " + band.name,
                          sum.Text() + L", after " +
                              (last ? std::to_wstring(last->number) + L" " + last->seal : std::wstring(L"none")),
                          mvarTicket);
    }

    const Workplace& mvarWorkplace;
    const Place& mvarPlace;
    std::int64_t mvarNext;
    const std::wstring& mvarTicket;
    Journal mvarJournal;
};

// The lowest number of a void code that waits, or else the end of the series.
std::int64_t NextOf(const Workplace& workplace, const Place& place, Leases& leases) {
    const NumberBand& band = place.band;
    if (workplace.rule.settings.reuse)
        if (const auto free =
                Reuse(workplace.database, workplace.rule.id).Lowest(band.name, place.series, band.start, band.highest))
            return free->number;
    return leases.FirstFree(band, place.series);
}

} // namespace

std::vector<SeriesState> LookAtSeries(const Workplace& workplace, const FieldValues& values) {
    const std::vector<Place> places = PlacesOf(workplace.maker, values);
    return InSnapshot(workplace.database, workplace.patience, [&] {
        Codes codes(workplace.database, workplace.rule.id);
        Leases leases(workplace.database, workplace.rule.id);
        std::vector<SeriesState> states;
        for (const Place& place : places) {
            const std::int64_t next = NextOf(workplace, place, leases);
            states.push_back({place.band.name, place.series, next, next > place.band.highest,
                              codes.HighestIssued(place.band.name, place.series)});
        }
        return states;
    });
}

bool SetNextNumber(const Workplace& workplace, const FieldValues& values, const std::wstring& band, std::int64_t next) {
    const std::vector<Place> places = PlacesOf(workplace.maker, values);
    if (band.empty() && places.size() != 1)
        throw HostError(L"the rule has " + std::to_wstring(places.size()) +
                        L" number bands; name the one whose number is set with --band");
    const auto place =
        std::ranges::find_if(places, [&band](const Place& one) { return band.empty() || one.band.name == band; });
    if (place == places.end()) throw HostError(L"the rule has no number band \"" + band + L"\"");
    if (next < place->band.start || next > place->band.highest)
        throw HostError(L"band " + place->band.name + L": " + std::to_wstring(next) + L" is not from " +
                        std::to_wstring(place->band.start) + L" to " + std::to_wstring(place->band.highest));
    const std::wstring ticket = NewTicket();
    return InTransaction(workplace.database, workplace.patience, OnUniqueKey::Retry,
                         [&] { return SettingNext(workplace, *place, next, ticket).Run(); });
}

} // namespace ledger
