#include "ledger/core/NumberingIssuer.h"

#include <algorithm>

#include "ledger/core/NextNumber.h"

namespace ledger {

NumberingIssuer::NumberingIssuer(Database& database, Patience patience, Numbering numbering,
                                 const std::vector<StoredRule>& rules, const DateFormat& dates, bool isDry)
    : mvarDatabase(database), mvarPatience(patience), mvarNumbering(std::move(numbering)),
      mvarFit(mvarNumbering, dates), mvarIsDry(isDry) {
    mvarScope.id = mvarNumbering.id;
    for (const NumberingPart& part : mvarNumbering.parts) {
        if (std::ranges::find(mvarScope.rules, part.rule) != mvarScope.rules.end()) continue;
        const auto rule = std::ranges::find(rules, part.rule, &StoredRule::id);
        if (rule == rules.end())
            throw hosts::HostError(L"a rule of numbering \"" + mvarNumbering.name + L"\" is not there any more");
        mvarScope.rules.push_back(part.rule);
        auto station = std::make_unique<Station>();
        station->rule = *rule;
        station->maker = std::make_unique<CodeMaker>(rule->definition.text, rule->settings);
        station->maker->SetDateFormat(dates);
        mvarStations.push_back(std::move(station));
    }
    for (const auto& station : mvarStations)
        Equip(*station);
}

void NumberingIssuer::Equip(Station& station) {
    const Workplace workplace{mvarDatabase, station.rule, *station.maker, mvarPatience, &mvarScope};
    if (!mvarIsDry) {
        station.issuer = MakeIssuer(workplace);
        return;
    }
    auto dry = std::make_unique<DryIssuer>(workplace);
    station.dry = dry.get();
    station.issuer = std::move(dry);
}

// In a dry run each request sees what the one before was answered.
std::size_t NumberingIssuer::BatchSize() const noexcept {
    std::size_t size = 1;
    if (mvarIsDry) return size;
    for (const auto& station : mvarStations)
        size = std::max(size, station->issuer->BatchSize());
    return size;
}

void NumberingIssuer::Finish() {
    for (const auto& station : mvarStations)
        station->issuer->Finish();
}

NumberingIssuer::Station& NumberingIssuer::StationOf(std::size_t part) {
    const std::int64_t id = mvarNumbering.parts[part].rule;
    return **std::ranges::find_if(mvarStations, [id](const auto& station) { return station->rule.id == id; });
}

std::optional<CodeRow> NumberingIssuer::OfTicket(const std::wstring& ticket) {
    if (const auto told = mvarTold.find(ticket); told != mvarTold.end()) return told->second;
    return Claims(mvarDatabase, 0, &mvarScope).OfTicket(ticket);
}

// The same key gets the code that it has, also when another rule would fit now.
void NumberingIssuer::LookForStored(std::span<const Request> requests, std::vector<Outcome>& outcomes) {
    if (std::ranges::none_of(requests, &Request::isGiven)) return;
    outcomes = InSnapshot(mvarDatabase, mvarPatience, [&] {
        std::vector<Outcome> found(requests.size());
        for (std::size_t at = 0; at < requests.size(); ++at)
            if (const auto stored = requests[at].isGiven ? OfTicket(requests[at].ticket) : std::nullopt)
                found[at] = OutcomeOf(*stored, requests[at], true);
        return found;
    });
}

std::vector<Outcome> NumberingIssuer::Issue(std::span<const Request> requests, std::size_t toCome) {
    std::vector<Outcome> outcomes(requests.size());
    LookForStored(requests, outcomes);
    std::map<std::size_t, Places> byPart;
    for (std::size_t at = 0; at < requests.size(); ++at) {
        if (!outcomes[at].code.empty() || !outcomes[at].refusal.empty()) continue;
        const std::size_t part = mvarFit.First(requests[at].values, 0);
        if (part < mvarNumbering.parts.size())
            byPart[part].push_back(at);
        else
            outcomes[at].refusal = mvarFit.Refusal(requests[at].values);
    }
    for (const auto& [part, places] : byPart)
        Serve(part, places, requests, toCome, outcomes);
    if (mvarIsDry) Remember(requests, outcomes);
    return outcomes;
}

void NumberingIssuer::Remember(std::span<const Request> requests, const std::vector<Outcome>& outcomes) {
    for (std::size_t at = 0; at < requests.size(); ++at) {
        if (!requests[at].isGiven || outcomes[at].code.empty()) continue;
        CodeRow& told = mvarTold[requests[at].ticket];
        told.code = outcomes[at].code;
        told.fields = requests[at].fields;
    }
}

void NumberingIssuer::Serve(std::size_t part, const Places& places, std::span<const Request> requests,
                            std::size_t toCome, std::vector<Outcome>& outcomes) {
    std::vector<Request> served;
    for (const std::size_t place : places)
        served.push_back(requests[place]);
    const std::vector<Outcome> got = StationOf(part).issuer->Issue(served, toCome);
    for (std::size_t at = 0; at < places.size(); ++at) {
        Outcome& outcome = outcomes[places[at]];
        outcome = got[at];
        if (mvarNumbering.parts[part].then == Then::Stop) continue;
        const std::size_t next = mvarFit.First(served[at].values, part + 1);
        if (next == mvarNumbering.parts.size()) continue;
        outcome.rooms.clear();
        if (!outcome.full) continue;
        if (mvarNumbering.parts[part].then == Then::On) GoOn(next, served[at], outcome);
        if (mvarNumbering.parts[part].then == Then::On && !outcome.full) continue;
        Serve(next, {places[at]}, requests, toCome, outcomes);
    }
}

// Has the rule that takes over go on with the number that would have come.
void NumberingIssuer::GoOn(std::size_t part, const Request& request, Outcome& outcome) {
    Station& station = StationOf(part);
    if (station.dry != nullptr) return station.dry->GoOnWith(request.values, outcome.next);
    const Workplace workplace{mvarDatabase, station.rule, *station.maker, mvarPatience, &mvarScope};
    try {
        for (const SeriesState& state : LookAtSeries(workplace, request.values))
            if (state.next < outcome.next)
                static_cast<void>(SetNextNumber(workplace, request.values, state.band, outcome.next));
    } catch (const DbError&) {
        throw;
    } catch (const hosts::HostError& error) {
        outcome = {{}, error.Message()};
    }
}

} // namespace ledger
