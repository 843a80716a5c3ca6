#include "ledger/core/Claims.h"

namespace ledger {

std::optional<CodeRow> Claims::OfTicket(const std::wstring& ticket) {
    if (mvarScope == nullptr) return Codes(mvarDatabase, mvarRuleId).OfTicket(ticket);
    for (const std::int64_t rule : mvarScope->rules)
        if (auto stored = Codes(mvarDatabase, rule).OfTicket(ticket)) return stored;
    return std::nullopt;
}

void Claims::Add(std::span<const NewCode> codes) {
    if (mvarScope == nullptr) return;
    Statement& insert =
        mvarDatabase.Prepare(L"INSERT INTO kestrel_claims (numbering_id, ticket, rule_id, code) VALUES (?, ?, ?, ?)");
    for (const NewCode& code : codes)
        insert.Set(mvarScope->id).Set(code.row.ticket).Set(mvarRuleId).Set(code.row.code).Execute();
}

void Claims::Remove(const std::wstring& code) {
    if (mvarScope == nullptr) return;
    mvarDatabase.Prepare(L"DELETE FROM kestrel_claims WHERE numbering_id = ? AND code = ?")
        .Set(mvarScope->id)
        .Set(code)
        .Execute();
}

} // namespace ledger
