#include "ledger/core/AuditNumberings.h"

#include "ledger/core/Codes.h"
#include "ledger/core/Journal.h"

namespace ledger {

namespace {

struct StoredText {
    std::int64_t id = 0;
    std::wstring name;
    std::wstring told; // what its last act says
};

std::vector<StoredText> All(Database& database) {
    return database.Prepare(L"SELECT id, name, revision, text FROM kestrel_numberings ORDER BY id")
        .Rows([](const Statement& row) {
            StoredText stored{row.Number(1), row.Text(2), {}};
            const std::wstring revision = std::to_wstring(row.Number(3));
            stored.told = L"revision " + revision + L", " + row.Text(4);
            return stored;
        });
}

bool IsAsTold(Database& database, const StoredText& numbering) {
    std::wstring before;
    std::int64_t next = 1;
    const std::vector<Act> acts = Journal(database, numbering.id).All();
    for (const Act& act : acts) {
        if (act.number != next++ || act.seal != SealOf(numbering.id, act, before)) return false;
        before = act.seal;
    }
    return !acts.empty() && acts.back().subject == numbering.name && acts.back().detail == numbering.told;
}

std::vector<std::wstring> Texts(Database& database, const std::wstring& sql) {
    return database.Prepare(sql).Rows([](const Statement& row) { return row.Text(1); });
}

} // namespace

std::vector<Finding> AuditNumberings(Database& database) {
    std::vector<Finding> findings;
    for (const StoredText& numbering : All(database))
        if (!IsAsTold(database, numbering))
            findings.push_back({FindingKind::Changed,
                                L"numbering " + numbering.name + L" is not as its journal says",
                                {{L"numbering", numbering.name}}});
    for (const std::wstring& id : Texts(database, L"SELECT DISTINCT j.rule_id FROM kestrel_journal j WHERE j.rule_id "
                                                  L"< 0 AND j.rule_id NOT IN (SELECT id FROM kestrel_numberings)"))
        findings.push_back({FindingKind::Orphan, L"numbering " + id + L" is gone", {{L"numbering", id}}});
    for (const std::wstring& code :
         Texts(database, L"SELECT k.code FROM kestrel_claims k WHERE NOT EXISTS (SELECT 1 FROM kestrel_codes c WHERE "
                         L"c.rule_id = k.rule_id AND c.code = k.code AND c.ticket = k.ticket AND c.origin = "
                         L"'numbered') OR k.numbering_id NOT IN (SELECT id FROM kestrel_numberings)"))
        findings.push_back(
            {FindingKind::Changed, L"the claim of code " + code + L" is not as it was stored", {{L"code", code}}});
    for (const std::wstring& code : Texts(
             database, L"SELECT c.code FROM kestrel_codes c WHERE c.origin = 'numbered' AND NOT EXISTS (SELECT 1 FROM "
                       L"kestrel_numberings n JOIN kestrel_claims k ON k.numbering_id = n.id WHERE k.ticket = "
                       L"c.ticket AND k.rule_id = c.rule_id AND k.code = c.code)"))
        findings.push_back({FindingKind::Changed, L"the claim of code " + code + L" is gone", {{L"code", code}}});
    return findings;
}

} // namespace ledger
