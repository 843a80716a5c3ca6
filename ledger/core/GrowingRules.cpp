#include "ledger/core/GrowingRules.h"

#include "ledger/core/Stamp.h"

namespace ledger {

std::vector<ChangeReport> StoreGrowingRules(Database& database, Patience patience, const std::wstring& name,
                                            const std::vector<std::unique_ptr<GrowingRule>>& rules) {
    const std::wstring ticket = NewTicket();
    return InTransaction(database, patience, OnUniqueKey::Retry, [&] {
        std::vector<ChangeReport> reports;
        Numbering numbering;
        numbering.name = name;
        for (const auto& rule : rules) {
            reports.push_back(ChangeRuleWithin(database, rule->change, rule->maker, ticket));
            NumberingPart part;
            part.rule = reports.back().rule.id;
            part.then = rule == rules.back() ? Then::Stop : Then::On;
            numbering.parts.push_back(part);
        }
        StoreNumberingWithin(database, numbering, ticket);
        return reports;
    });
}

} // namespace ledger
