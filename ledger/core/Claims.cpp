#include "ledger/core/Claims.h"

namespace ledger {

const wchar_t* const RemoveClaimQuery =
    L"DELETE FROM kestrel_claims WHERE numbering_id = ? AND code = ? AND rule_id = ?";

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

// One numbering after the other: there are few of them, and the key begins with theirs.
void Claims::Remove(const std::wstring& code) {
    const auto numberings = mvarDatabase.Prepare(L"SELECT id FROM kestrel_numberings").Rows([](const Statement& row) {
        return row.Number(1);
    });
    for (const std::int64_t numbering : numberings)
        mvarDatabase.Prepare(RemoveClaimQuery).Set(numbering).Set(code).Set(mvarRuleId).Execute();
}

} // namespace ledger
