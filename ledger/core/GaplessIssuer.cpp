#include "ledger/core/GaplessIssuer.h"

#include <algorithm>

#include "ledger/core/Stamp.h"

namespace ledger {

std::vector<Outcome> GaplessIssuer::Issue(std::span<const Request> requests, std::size_t) {
    std::vector<Outcome> outcomes;
    for (const Request& request : requests) {
        try {
            outcomes.push_back(IssueOne(request));
        } catch (const hosts::RecordError& error) {
            outcomes.push_back(OutcomeOf(error));
        } catch (const DbError& error) {
            if (error.Kind() != Fault::Text) throw;
            outcomes.push_back({{}, error.Message()});
        }
    }
    return outcomes;
}

NewCode GaplessIssuer::MakeNext(const Request& request, std::optional<FreeNumber>& free) {
    Heads before;
    MadeCode made = mvarWorkplace.maker.Make(request.values, [&](const NumberBand& band, const std::wstring& series) {
        if (mvarWorkplace.rule.settings.reuse) free = mvarReuse.Lowest(band.name, series, band.start, band.highest);
        if (free) return std::optional(free->number);
        const auto highest = mvarCodes.Highest(band.name, series);
        if (!highest) return std::optional<std::int64_t>();
        before.emplace_back(band.name, highest->seal);
        return std::optional(highest->number + band.step);
    });
    NewCode next;
    next.row.code = std::move(made.code);
    next.row.ticket = request.ticket;
    next.row.definition = mvarWorkplace.rule.definition.number;
    next.row.origin = mvarClaims.Origin();
    next.row.storedAt = NowText();
    next.row.fields = request.fields;
    if (free) return next; // its number has a place and a seal
    for (NumberHeld& held : made.numbers)
        next.numbers.push_back({std::move(held), 0, 0, {}});
    if (next.numbers.empty()) {
        const auto highest = mvarCodes.Highest({}, {});
        before.emplace_back(std::wstring(), highest ? highest->seal : std::wstring());
        next.numbers.push_back({{{}, {}, highest ? highest->number + 1 : 1}, 0, 0, {}});
    }
    SealNumbers(next, before);
    return next;
}

void GaplessIssuer::SealNumbers(NewCode& code, const Heads& before) const {
    for (NumberRow& number : code.numbers) {
        const auto head = std::ranges::find(before, number.held.band, &Heads::value_type::first);
        number.seal =
            SealOf(mvarWorkplace.rule.id, code.row, number, head == before.end() ? std::wstring() : head->second);
    }
}

// The same code twice in a row, and somebody has it: no number leads on from it, unless it counts where the series was
// read, and was stored only after that.
void GaplessIssuer::RefuseRepeated(const NewCode& code, const std::wstring& before) {
    if (code.row.code != before || !mvarCodes.Find(code.row.code)) return;
    const std::vector<NumberHeld> counted = mvarCodes.NumbersOf(code.row.code);
    const auto isCounted = [&](const NumberRow& row) { return std::ranges::find(counted, row.held) != counted.end(); };
    if (std::ranges::any_of(code.numbers, isCounted)) return; // the INSERT fails, and the next attempt reads it
    RefuseSharedBetweenSeries(mvarWorkplace.rule, code.row.code);
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
            if (const auto stored = mvarClaims.OfTicket(request.ticket))
                return OutcomeOf(*stored, request, stored->code != tried);
        looks = true;
        std::optional<FreeNumber> free;
        const NewCode next = MakeNext(request, free);
        if (free) {
            rules.Enter(mvarWorkplace.rule);
            mvarClaims.Remove(free->code);
            mvarReuse.Give(*free, next.row);
        } else {
            RefuseRepeated(next, tried);
            tried = next.row.code;
            if (!mvarCodes.AddIssued(next, mvarWorkplace.rule.revision)) Rules::RefuseChanged(mvarWorkplace.rule);
        }
        mvarClaims.Add({&next, 1});
        return OutcomeOf(next, mvarWorkplace.maker);
    });
}

} // namespace ledger
