#include "ledger/core/Preview.h"

#include <map>

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

std::vector<std::wstring> PreviewCodes(const Workplace& workplace, const FieldValues& values, std::size_t count) {
    return InSnapshot(workplace.database, workplace.patience, [&] {
        std::map<std::pair<std::wstring, std::wstring>, std::wstring> last; // by band and series
        const LastCodeSource source = [&](const NumberBand& band, const std::wstring& series) {
            const auto known = last.find({band.name, series});
            return known != last.end() ? known->second : LastStored(workplace, band, series);
        };
        std::vector<std::wstring> codes;
        while (codes.size() < count) {
            const MadeCode made = workplace.maker.Make(values, source);
            if (!codes.empty() && codes.back() == made.code) break;
            codes.push_back(made.code);
            for (const NumberHeld& held : made.numbers)
                last[{held.band, held.series}] = made.code;
        }
        return codes;
    });
}

} // namespace ledger
