#include "ledger/core/GaplessIssuer.h"

#include <algorithm>
#include <utility>

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

std::optional<HighestNumber> GaplessIssuer::EndOf(const std::wstring& band, const std::wstring& series, bool mayGuess,
                                                  Draft& draft) {
    if (auto guess = mayGuess ? mvarEnds.Guess(band, series) : std::nullopt) {
        draft.guessed.push_back({band, series, guess->number});
        return guess;
    }
    auto end = mvarCodes.Highest(band, series);
    mvarEnds.Found(band, series, end);
    return end;
}

GaplessIssuer::Draft GaplessIssuer::MakeNext(const Request& request, bool mayGuess) {
    Heads before;
    Draft draft;
    MadeCode made = mvarWorkplace.maker.Make(request.values, [&](const NumberBand& band, const std::wstring& series) {
        if (mvarWorkplace.rule.settings.reuse)
            draft.free = mvarReuse.Lowest(band.name, series, band.start, band.highest);
        if (draft.free) return std::optional(draft.free->number);
        const auto end = EndOf(band.name, series, mayGuess, draft);
        if (!end) return std::optional<std::int64_t>();
        before.emplace_back(band.name, end->seal);
        return std::optional(end->Next(band.step));
    });
    NewCode& next = draft.code;
    next.row.code = std::move(made.code);
    next.row.ticket = request.ticket;
    next.row.definition = mvarWorkplace.rule.definition.number;
    next.row.origin = mvarClaims.Origin();
    next.row.storedAt = NowText();
    next.row.fields = request.fields;
    if (draft.free) return draft;
    for (NumberHeld& held : made.numbers)
        next.numbers.push_back({std::move(held), 0, 0, {}});
    if (next.numbers.empty()) {
        const auto end = EndOf({}, {}, mayGuess, draft);
        before.emplace_back(std::wstring(), end ? end->seal : std::wstring());
        next.numbers.push_back({{{}, {}, end ? end->number + 1 : 1}, 0, 0, {}});
    }
    SealNumbers(next, before);
    return draft;
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

bool GaplessIssuer::Store(const Draft& draft, std::wstring& tried) {
    if (!draft.free) {
        RefuseRepeated(draft.code, tried);
        tried = draft.code.row.code;
        return mvarCodes.AddIssued(draft.code, mvarWorkplace.rule.revision, draft.guessed);
    }
    Rules(mvarWorkplace.database).Enter(mvarWorkplace.rule);
    mvarClaims.Remove(draft.free->code);
    mvarReuse.Give(*draft.free, draft.code.row);
    return true;
}

NewCode GaplessIssuer::StoreNext(const Request& request, bool mayGuess, std::wstring& tried) {
    Draft draft = MakeNext(request, mayGuess);
    bool isStored = Store(draft, tried);
    if (!isStored && !draft.guessed.empty()) {
        mvarEnds.Forget();
        draft = MakeNext(request, false);
        isStored = Store(draft, tried);
    }
    if (!isStored) Rules::RefuseChanged(mvarWorkplace.rule);
    mvarClaims.Add({&draft.code, 1});
    return std::move(draft.code);
}

Outcome GaplessIssuer::IssueOne(const Request& request) {
    std::wstring tried; // by the attempt before
    bool looks = request.isGiven;
    bool mayGuess = true;
    NewCode issued;
    Outcome outcome = InTransaction(mvarWorkplace.database, mvarWorkplace.patience, OnUniqueKey::Retry, [&] {
        // The INSERT looks whether the rule has changed, where that is enough.
        if (mvarWorkplace.database.EntersByWriting()) Rules(mvarWorkplace.database).Enter(mvarWorkplace.rule);
        issued = {};
        // An attempt whose COMMIT was not answered may be stored, or another program had the same ticket.
        if (looks)
            if (const auto stored = mvarClaims.OfTicket(request.ticket))
                return OutcomeOf(*stored, request, stored->code != tried);
        looks = true;
        issued = StoreNext(request, std::exchange(mayGuess, false), tried);
        return OutcomeOf(issued, mvarWorkplace.maker);
    });
    for (const NumberRow& number : issued.numbers)
        mvarEnds.Left(issued.row.code, number);
    return outcome;
}

} // namespace ledger
