#include "ledger/core/Preview.h"

#include "ledger/core/Forecast.h"

namespace ledger {

std::vector<std::wstring> PreviewCodes(const Workplace& workplace, const FieldValues& values, std::size_t count) {
    return InSnapshot(workplace.database, workplace.patience, [&] {
        Forecast forecast(workplace);
        std::vector<std::wstring> codes;
        while (codes.size() < count) {
            MadeCode made = forecast.Next(values);
            if (!codes.empty() && codes.back() == made.code) break;
            codes.push_back(std::move(made.code));
        }
        return codes;
    });
}

} // namespace ledger
