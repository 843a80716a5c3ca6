#include "ledger/core/GaplessIssuer.h"

#include "ledger/core/Ticket.h"

namespace ledger {

std::vector<Outcome> GaplessIssuer::Issue(std::span<const Request> requests, std::size_t) {
    std::vector<Outcome> outcomes;
    for (const Request& request : requests) {
        try {
            outcomes.push_back({IssueOne(request), {}});
        } catch (const hosts::RecordError& error) {
            outcomes.push_back({{}, error.Message()});
        }
    }
    return outcomes;
}

NewCode GaplessIssuer::MakeNext(const Request& request) {
    MadeCode made =
        mvarWorkplace.maker.Make(request.values, [this](const NumberBand& band, const std::wstring& series) {
            const auto highest = mvarCodes.Highest(band.name, series);
            return highest ? highest->code : std::wstring();
        });
    return {std::move(made.code), {}, request.fields, std::move(made.numbers)};
}

// The same code twice in a row, though the first attempt lost to whoever has it: no number leads on from it.
void GaplessIssuer::RefuseRepeated(const NewCode& code, const NewCode& before) {
    if (code.code != before.code || !mvarCodes.Find(code.code)) return;
    throw hosts::RecordError(L"code " + code.code + L" is issued already" +
                             (code.numbers.empty() ? L", and no band of the rule numbers it on"
                                                   : L", though not counted in its series; import the rule again"));
}

std::wstring GaplessIssuer::IssueOne(const Request& request) {
    Rules rules(mvarWorkplace.database);
    const std::wstring ticket = NewTicket();
    NewCode tried; // by the attempt before
    return InTransaction(mvarWorkplace.database, mvarWorkplace.patience, OnUniqueKey::Retry, [&] {
        // The INSERT looks whether the rule has changed; only the right to write must be taken before anything is read.
        if (mvarWorkplace.database.EntersByWriting()) rules.Enter(mvarWorkplace.rule);
        if (WasStored(tried)) return tried.code;
        NewCode next = MakeNext(request);
        next.ticket = ticket;
        RefuseRepeated(next, tried);
        tried = next;
        if (!mvarCodes.AddIssued(next, mvarWorkplace.rule.revision)) Rules::RefuseChanged(mvarWorkplace.rule);
        return next.code;
    });
}

// A connection that breaks while it commits leaves open whether it did.
bool GaplessIssuer::WasStored(const NewCode& tried) {
    if (tried.code.empty()) return false;
    const auto stored = mvarCodes.Find(tried.code);
    return stored && stored->ticket == tried.ticket;
}

} // namespace ledger
