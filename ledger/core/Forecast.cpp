#include "ledger/core/Forecast.h"

#include "ledger/core/Leases.h"
#include "ledger/core/Reuse.h"

namespace ledger {

namespace {

// What a series goes on with as the rule's policy sees it.
std::optional<std::int64_t> NextStored(const Workplace& workplace, const NumberBand& band, const std::wstring& series) {
    if (workplace.rule.policy == Policy::Fast)
        return Leases(workplace.database, workplace.rule.id).FirstFree(band, series);
    const auto highest = Codes(workplace.database, workplace.rule.id).Highest(band.name, series);
    return highest ? std::optional(highest->Next(band.step)) : std::nullopt;
}

} // namespace

std::optional<std::int64_t> Forecast::NextWaiting(const NumberBand& band, const std::wstring& series) {
    if (!mvarWorkplace.rule.settings.reuse) return std::nullopt;
    const auto given = mvarGiven.find({band.name, series});
    const std::int64_t start = given == mvarGiven.end() ? band.start : given->second + 1;
    const auto free =
        Reuse(mvarWorkplace.database, mvarWorkplace.rule.id).Lowest(band.name, series, start, band.highest);
    return free ? std::optional(free->number) : std::nullopt;
}

std::optional<std::int64_t> Forecast::NextNumber(const NumberBand& band, const std::wstring& series) {
    const auto known = mvarLast.find({band.name, series});
    return known != mvarLast.end() ? std::optional(known->second + band.step) : NextStored(mvarWorkplace, band, series);
}

MadeCode Forecast::Next(const FieldValues& values) {
    bool waits = false;
    MadeCode made = mvarWorkplace.maker.Make(values, [&](const NumberBand& band, const std::wstring& series) {
        const auto waiting = NextWaiting(band, series);
        waits = waiting.has_value();
        return waits ? waiting : NextNumber(band, series);
    });
    for (const NumberHeld& held : made.numbers)
        (waits ? mvarGiven : mvarLast)[{held.band, held.series}] = held.number;
    return made;
}

} // namespace ledger
