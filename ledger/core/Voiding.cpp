#include "ledger/core/Voiding.h"

#include "ledger/core/Codes.h"
#include "ledger/core/Journal.h"
#include "ledger/core/Reuse.h"
#include "ledger/core/Stamp.h"

namespace ledger {

namespace {

void RefuseVoid(Journal& journal, const CodeRow& code) {
    const auto act = journal.At(code.voidAct);
    throw hosts::HostError(L"code " + code.code + L" is void already" +
                           (act ? L": " + act->detail + L" (" + act->by + L", " + act->at + L")" : std::wstring()));
}

} // namespace

void VoidCodeOf(Database& database, Patience patience, const StoredRule& rule, const std::wstring& code,
                const std::wstring& reason) {
    if (reason.find_first_not_of(L" \t\r\n") == std::wstring::npos)
        throw hosts::HostError(L"the reason is empty; say with --reason why the code is void");
    const std::wstring ticket = NewTicket();
    InTransaction(database, patience, OnUniqueKey::Retry, [&] {
        Codes codes(database, rule.id);
        Journal journal(database, rule.id);
        if (journal.OfTicket(ticket)) return true; // by an attempt whose COMMIT was not answered
        const auto stored = codes.Find(code);
        if (!stored) throw hosts::HostError(L"code " + code + L" is not in the ledger of rule " + rule.name);
        if (stored->voidAct > 0) RefuseVoid(journal, *stored);
        const std::int64_t act = journal.Write(acts::Void, code, reason, ticket);
        const auto now = Rules(database).Find(rule.name);
        if (now && now->id == rule.id && now->settings.reuse) Reuse(database, rule.id).Free(code);
        if (!codes.Void(code, act)) throw DbError(Fault::Conflict, L"the code was made void meanwhile");
        return true;
    });
}

} // namespace ledger
