#include "ledger/core/Issuer.h"

#include <algorithm>

#include "ledger/core/FastIssuer.h"
#include "ledger/core/GaplessIssuer.h"
#include "ledger/core/Json.h"

namespace ledger {

std::unique_ptr<Issuer> MakeIssuer(const Workplace& workplace) {
    RefuseRetired(workplace.rule.settings, workplace.rule.name);
    if (workplace.rule.policy == Policy::Fast && !workplace.maker.NumberBands().empty())
        return std::make_unique<FastIssuer>(workplace);
    return std::make_unique<GaplessIssuer>(workplace);
}

Outcome OutcomeOf(const CodeRow& stored, const Request& request, bool before) {
    FieldValues then = FieldsOf(stored.fields);
    FieldValues now = FieldsOf(request.fields);
    std::ranges::sort(then);
    std::ranges::sort(now);
    if (then == now) return {stored.code, {}, before};
    return {{},
            L"key \"" + request.ticket + L"\" has code " + stored.code + L" for " + stored.fields +
                L", and this record is " + request.fields + L"; give it a key of its own",
            false};
}

std::wstring IssuedAlready(const std::wstring& code, const CodeMaker& maker) {
    return L"code " + code + L" is issued already" +
           (maker.NumberBands().empty() ? L", and no band of the rule numbers it on"
                                        : L", though not counted in its series; see kledger audit");
}

} // namespace ledger
