#include "ledger/core/GaplessIssuer.h"

#include "ledger/core/Stamp.h"

namespace ledger {

std::vector<Outcome> GaplessIssuer::Issue(std::span<const Request> requests, std::size_t) {
    std::vector<Outcome> outcomes;
    for (const Request& request : requests) {
        try {
            outcomes.push_back(IssueOne(request));
        } catch (const hosts::RecordError& error) {
            outcomes.push_back({{}, error.Message(), false});
        } catch (const DbError& error) {
            if (error.Kind() != Fault::Text) throw;
            outcomes.push_back({{}, error.Message(), false});
        }
    }
    return outcomes;
}

NewCode GaplessIssuer::MakeNext(const Request& request) {
    std::vector<std::wstring> before; // the seals that the numbers' seals continue, in the order of the bands
    MadeCode made =
        mvarWorkplace.maker.Make(request.values, [this, &before](const NumberBand& band, const std::wstring& series) {
            const auto highest = mvarCodes.Highest(band.name, series);
            before.push_back(highest ? highest->seal : std::wstring());
            return highest ? highest->code : std::wstring();
        });
    NewCode next;
    next.row.code = std::move(made.code);
    next.row.ticket = request.ticket;
    next.row.definition = mvarWorkplace.rule.definition.number;
    next.row.origin = L"issued";
    next.row.storedAt = NowText();
    next.row.fields = request.fields;
    for (NumberHeld& held : made.numbers)
        next.numbers.push_back({std::move(held), 0, 0, {}});
    if (next.numbers.empty()) {
        const auto highest = mvarCodes.Highest({}, {});
        before.push_back(highest ? highest->seal : std::wstring());
        next.numbers.push_back({{{}, {}, highest ? highest->number + 1 : 1}, 0, 0, {}});
    }
    SealNumbers(next, before);
    return next;
}

void GaplessIssuer::SealNumbers(NewCode& code, const std::vector<std::wstring>& before) const {
    for (std::size_t at = 0; at < code.numbers.size(); ++at)
        code.numbers[at].seal =
            SealOf(mvarWorkplace.rule.id, code.row, code.numbers[at], at < before.size() ? before[at] : std::wstring());
}

// The same code twice in a row, though the first attempt lost to whoever has it: no number leads on from it.
void GaplessIssuer::RefuseRepeated(const NewCode& code, const std::wstring& before) {
    if (code.row.code != before || !mvarCodes.Find(code.row.code)) return;
    throw hosts::RecordError(IssuedAlready(code.row.code, mvarWorkplace.maker));
}

Outcome GaplessIssuer::IssueOne(const Request& request) {
    Rules rules(mvarWorkplace.database);
    std::wstring tried; // by the attempt before
    bool looks = request.isGiven;
    return InTransaction(mvarWorkplace.database, mvarWorkplace.patience, OnUniqueKey::Retry, [&] {
        // The INSERT looks whether the rule has changed, where that is enough.
        if (mvarWorkplace.database.EntersByWriting()) rules.Enter(mvarWorkplace.rule);
        // An attempt whose COMMIT was not answered may be stored, or another program had the same ticket.
        if (looks)
            if (const auto stored = mvarCodes.OfTicket(request.ticket))
                return OutcomeOf(*stored, request, stored->code != tried);
        looks = true;
        const NewCode next = MakeNext(request);
        RefuseRepeated(next, tried);
        tried = next.row.code;
        if (!mvarCodes.AddIssued(next, mvarWorkplace.rule.revision)) Rules::RefuseChanged(mvarWorkplace.rule);
        return Outcome{next.row.code, {}, false};
    });
}

} // namespace ledger
