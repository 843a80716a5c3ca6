#include "ledger/core/Forecast.h"

#include "ledger/core/Leases.h"

namespace ledger {

namespace {

// The last code of a series as the rule's policy sees it.
std::wstring LastStored(const Workplace& workplace, const NumberBand& band, const std::wstring& series) {
    if (workplace.rule.policy == Policy::Fast) {
        Leases leases(workplace.database, workplace.rule.id);
        return CodeWithNumber(band, series, leases.FirstFree(band.name, series, band.start) - 1);
    }
    Codes codes(workplace.database, workplace.rule.id);
    const auto highest = codes.Highest(band.name, series);
    return highest ? highest->code : std::wstring();
}

} // namespace

std::wstring Forecast::LastCode(const NumberBand& band, const std::wstring& series) {
    const auto known = mvarLast.find({band.name, series});
    return known != mvarLast.end() ? known->second : LastStored(mvarWorkplace, band, series);
}

MadeCode Forecast::Next(const FieldValues& values) {
    MadeCode made = mvarWorkplace.maker.Make(
        values, [this](const NumberBand& band, const std::wstring& series) { return LastCode(band, series); });
    for (const NumberHeld& held : made.numbers)
        mvarLast[{held.band, held.series}] = made.code;
    return made;
}

} // namespace ledger
