#include "ledger/core/DryIssuer.h"

#include "ledger/core/NextNumber.h"

namespace ledger {

std::vector<Outcome> DryIssuer::Issue(std::span<const Request> requests, std::size_t) {
    State after = mvarState;
    auto outcomes = InSnapshot(mvarWorkplace.database, mvarWorkplace.patience, [&] {
        after = mvarState; // the attempt before may have come some way
        mvarForecast.GoOnFrom(after.place);
        std::vector<Outcome> answers;
        for (const Request& request : requests) {
            try {
                answers.push_back(Answer(after, request));
            } catch (const hosts::RecordError& error) {
                answers.push_back(OutcomeOf(error));
            }
        }
        after.place = mvarForecast.Reached();
        return answers;
    });
    mvarState = std::move(after);
    return outcomes;
}

void DryIssuer::GoOnWith(const FieldValues& values, std::int64_t next) {
    const std::int64_t step = mvarWorkplace.rule.settings.step;
    for (const SeriesState& series : LookAtSeries(mvarWorkplace, values)) {
        const auto known = mvarState.place.find({series.band, series.series});
        const std::int64_t reached = known == mvarState.place.end() ? series.next : known->second + step;
        if (reached < next) mvarState.place[{series.band, series.series}] = next - step;
    }
}

std::optional<CodeRow> DryIssuer::OfTicket(const State& state, const Request& request) {
    if (!request.isGiven) return std::nullopt;
    const auto known = state.byTicket.find(request.ticket);
    return known != state.byTicket.end() ? known->second : mvarCodes.OfTicket(request.ticket);
}

Outcome DryIssuer::Answer(State& state, const Request& request) {
    if (const auto stored = OfTicket(state, request)) return OutcomeOf(*stored, request, true);
    const MadeCode made = mvarForecast.Next(request.values);
    RefuseRepeated(state, made.code);
    if (request.isGiven) {
        CodeRow row;
        row.code = made.code;
        row.fields = request.fields;
        state.byTicket[request.ticket] = std::move(row);
    }
    return OutcomeOf(made.code, made.numbers, mvarWorkplace.maker);
}

void DryIssuer::RefuseRepeated(State& state, const std::wstring& code) {
    const bool isNew = !mvarWorkplace.maker.NumberBands().empty() || state.made.insert(code).second;
    if (!isNew || mvarCodes.Find(code)) throw hosts::RecordError(IssuedAlready(code, mvarWorkplace.maker));
}

} // namespace ledger
