#include "ledger/core/Audit.h"

#include <algorithm>

#include "ledger/core/AuditCodes.h"
#include "ledger/core/AuditNumberings.h"
#include "ledger/core/AuditNumbers.h"
#include "ledger/core/Numberings.h"

namespace ledger {

AuditReport AuditRuleNow(Database& database, const StoredRule& rule, const AuditRequest& request) {
    AuditReport report;
    report.rule = rule;
    JournalAudit journal(database, report);
    const DefinitionAudit definitions(database, journal, report);
    const ReuseAudit reuse(database, journal, report);
    CodeAudit codes(database, definitions, journal, reuse, report);
    codes.CheckEach(request.advance);
    journal.CheckMarks();
    const LeaseAudit leases(database, journal, report);
    HeadAudit heads(request.against);
    NumberAudit numbers(leases, journal, reuse, heads, report);
    numbers.CheckEach(database);
    leases.CheckUsedUp(database, journal.LongestStep());
    journal.CheckSums();
    numbers.CheckSeries(IsFollowed(database, rule.id) ? 0 : request.warnPercent);
    codes.CheckLetterCase();
    heads.Check(journal, report);
    return report;
}

std::vector<Finding> FindOrphans(Database& database) {
    std::vector<Finding> findings;
    for (const wchar_t* table : {L"kestrel_definitions", L"kestrel_codes", L"kestrel_numbers", L"kestrel_leases",
                                 L"kestrel_journal", L"kestrel_reused", L"kestrel_free", L"kestrel_claims"}) {
        const auto rules = database
                               .Prepare(std::wstring(L"SELECT DISTINCT rule_id FROM ") + table +
                                        L" WHERE rule_id > 0 AND rule_id NOT IN (SELECT r.id FROM kestrel_rules r JOIN "
                                        L"kestrel_definitions d ON "
                                        L"d.rule_id = r.id AND d.number = r.definition)")
                               .Rows([](const Statement& row) { return row.Number(1); });
        for (const std::int64_t rule : rules)
            findings.push_back(
                {FindingKind::Orphan,
                 std::wstring(table) + L" has rows of rule " + std::to_wstring(rule) + L", which is not there",
                 {{L"table", std::wstring(table)}, {L"rule", rule}}});
    }
    std::ranges::move(AuditNumberings(database), std::back_inserter(findings));
    return findings;
}

} // namespace ledger
