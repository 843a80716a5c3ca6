#include "ledger/core/FastIssuer.h"

#include <algorithm>
#include <set>

#include "ledger/core/Stamp.h"

namespace ledger {

namespace {

// Codes that are stored in one transaction; they are handed out when all of them are.
constexpr std::size_t LargestBatch = 200;

} // namespace

std::size_t FastIssuer::BatchSize() const noexcept {
    return std::min(static_cast<std::size_t>(std::max<std::int64_t>(mvarWorkplace.rule.leaseSize, 1)), LargestBatch);
}

std::vector<Outcome> FastIssuer::Issue(std::span<const Request> requests, std::size_t toCome) {
    mvarToCome = requests.size() + toCome;
    std::vector<Outcome> outcomes(requests.size());
    LookForStored(requests, outcomes);
    if (mvarWorkplace.rule.settings.reuse) GiveAgain(requests, outcomes);
    StoreAll(MakeAll(requests, outcomes), requests, outcomes);
    return outcomes;
}

Outcome FastIssuer::GiveOne(const Request& request) {
    Rules rules(mvarWorkplace.database);
    return InTransaction(mvarWorkplace.database, mvarWorkplace.patience, OnUniqueKey::Retry, [&] {
        rules.Enter(mvarWorkplace.rule);
        if (const auto stored = mvarClaims.OfTicket(request.ticket)) return OutcomeOf(*stored, request, false);
        std::optional<FreeNumber> free;
        NewCode next;
        MadeCode made =
            mvarWorkplace.maker.Make(request.values, [&](const NumberBand& band, const std::wstring& series) {
                free = mvarReuse.Lowest(band.name, series, band.start, band.highest);
                return free ? std::optional(free->number) : std::nullopt;
            });
        if (!free) return Outcome{};
        next.row = {std::move(made.code),
                    request.ticket,
                    mvarWorkplace.rule.definition.number,
                    mvarClaims.Origin(),
                    0,
                    NowText(),
                    request.fields};
        mvarClaims.Remove(free->code);
        mvarReuse.Give(*free, next.row);
        mvarClaims.Add({&next, 1});
        return Outcome{next.row.code};
    });
}

void FastIssuer::GiveAgain(std::span<const Request> requests, std::vector<Outcome>& outcomes) {
    const auto look = [this] { return mvarReuse.HasAny(); };
    for (std::size_t at = 0; at < requests.size(); ++at) {
        if (!outcomes[at].code.empty() || !outcomes[at].refusal.empty()) continue;
        if (!InSnapshot(mvarWorkplace.database, mvarWorkplace.patience, look)) return;
        try {
            outcomes[at] = GiveOne(requests[at]);
        } catch (const hosts::RecordError& error) {
            outcomes[at] = OutcomeOf(error);
        }
    }
}

// Requests whose key was given may have their code already.
void FastIssuer::LookForStored(std::span<const Request> requests, std::vector<Outcome>& outcomes) {
    if (std::ranges::none_of(requests, &Request::isGiven)) return;
    outcomes = InSnapshot(mvarWorkplace.database, mvarWorkplace.patience, [&] {
        std::vector<Outcome> found(requests.size());
        for (std::size_t at = 0; at < requests.size(); ++at)
            if (const auto stored = requests[at].isGiven ? mvarClaims.OfTicket(requests[at].ticket) : std::nullopt)
                found[at] = OutcomeOf(*stored, requests[at], true);
        return found;
    });
}

// One code per request that has no outcome yet and no ticket that stands in this batch before; empty for the others.
std::vector<NewCode> FastIssuer::MakeAll(std::span<const Request> requests, std::vector<Outcome>& outcomes) {
    std::vector<NewCode> codes(requests.size());
    std::set<std::wstring> tickets;
    for (std::size_t at = 0; at < requests.size(); ++at, --mvarToCome) {
        if (!outcomes[at].code.empty() || !outcomes[at].refusal.empty()) continue;
        if (!tickets.insert(requests[at].ticket).second) continue;
        try {
            codes[at] = MakeNext(requests[at]);
        } catch (const hosts::RecordError& error) {
            outcomes[at] = OutcomeOf(error);
        } catch (const DbError& error) {
            if (error.Kind() != Fault::Text) throw;
            outcomes[at].refusal = error.Message();
        }
    }
    return codes;
}

NewCode FastIssuer::MakeNext(const Request& request) {
    MadeCode made =
        mvarWorkplace.maker.Make(request.values, [this](const NumberBand& band, const std::wstring& series) {
            return NextNumber(band, series);
        });
    NewCode next;
    next.numbers = UseNumbers(std::move(made.numbers));
    next.row.code = std::move(made.code);
    next.row.ticket = request.ticket;
    next.row.definition = mvarWorkplace.rule.definition.number;
    next.row.origin = mvarClaims.Origin();
    next.row.storedAt = NowText();
    next.row.fields = request.fields;
    return next;
}

std::int64_t FastIssuer::NextNumber(const NumberBand& band, const std::wstring& series) {
    Block& block = mvarBlocks[{band.name, series}];
    if (block.next > block.lease.last || block.lease.band.empty()) TakeBlock(block, band, series);
    return block.next;
}

void FastIssuer::TakeBlock(Block& block, const NumberBand& band, const std::wstring& series) {
    Rules rules(mvarWorkplace.database);
    const auto wanted = std::min<std::int64_t>(mvarWorkplace.rule.leaseSize, static_cast<std::int64_t>(mvarToCome));
    if (!block.lease.band.empty()) mvarUsedUp.push_back(block.lease);
    block = {};
    const std::wstring ticket = NewTicket();
    bool tried = false; // by an attempt whose COMMIT was not answered
    const auto take = [&] {
        rules.Enter(mvarWorkplace.rule);
        if (tried)
            if (auto taken = mvarLeases.OfTicket(band, series, ticket)) return *std::move(taken);
        tried = true;
        return mvarLeases.Take(band, series, std::max<std::int64_t>(wanted, 1), ticket);
    };
    const Lease lease = InTransaction(mvarWorkplace.database, mvarWorkplace.patience, OnUniqueKey::Retry, take);
    block.next = lease.first;
    // With no room left nothing was set aside; whoever makes the code says so.
    if (lease.first > band.highest) return;
    block.lease = lease;
    mvarHeads[{lease.band, lease.series, lease.first}] = lease.seal;
}

std::vector<NumberRow> FastIssuer::UseNumbers(std::vector<NumberHeld>&& numbers) {
    for (const NumberHeld& held : numbers) {
        const auto block = mvarBlocks.find({held.band, held.series});
        if (block == mvarBlocks.end() || block->second.next != held.number || block->second.lease.band.empty())
            throw hosts::RecordError(L"the rule gives number " + std::to_wstring(held.number) + L" in band " +
                                     held.band + L", which was not set aside");
    }
    std::vector<NumberRow> rows;
    for (NumberHeld& held : numbers) {
        Block& block = mvarBlocks[{held.band, held.series}];
        block.next += mvarWorkplace.rule.settings.step;
        rows.push_back({std::move(held), block.lease.first, 0, {}});
    }
    return rows;
}

void FastIssuer::SealNumbers(NewCode& code, std::map<LeaseKey, std::wstring>& heads) const {
    for (NumberRow& row : code.numbers) {
        std::wstring& head = heads[{row.held.band, row.held.series, row.lease}];
        row.seal = SealOf(mvarWorkplace.rule.id, code.row, row, head);
        head = row.seal;
    }
}

// Whether all are stored; false when a key of one of them is taken, and then perhaps all of them by an attempt whose
// COMMIT came late.
bool FastIssuer::StoreTogether(std::vector<NewCode>& codes) {
    if (codes.empty()) return true;
    Rules rules(mvarWorkplace.database);
    std::map<LeaseKey, std::wstring> heads = mvarHeads;
    for (NewCode& code : codes)
        SealNumbers(code, heads);
    std::vector<Lease> wasted;
    bool tried = false;
    try {
        InTransaction(mvarWorkplace.database, mvarWorkplace.patience, OnUniqueKey::Fail, [&] {
            rules.Enter(mvarWorkplace.rule);
            const auto stored = tried ? mvarClaims.OfTicket(codes.front().row.ticket) : std::nullopt;
            if (stored && stored->code == codes.front().row.code) return true;
            tried = true;
            mvarCodes.Add(codes);
            mvarClaims.Add(codes);
            wasted = MarkUsedUp();
            return true;
        });
    } catch (const DbError& error) {
        if (error.Kind() != Fault::UniqueKey && error.Kind() != Fault::Text) throw;
        return false;
    }
    mvarHeads = std::move(heads);
    for (const Lease& lease : mvarUsedUp)
        mvarHeads.erase({lease.band, lease.series, lease.first});
    mvarUsedUp = std::move(wasted);
    return true;
}

std::vector<Lease> FastIssuer::MarkUsedUp() {
    std::vector<Lease> wasted;
    std::ranges::copy_if(mvarUsedUp, std::back_inserter(wasted), [this](const Lease& lease) {
        return !mvarLeases.MarkUsed(lease, mvarWorkplace.rule.settings.step);
    });
    return wasted;
}

void FastIssuer::StoreAll(std::vector<NewCode> codes, std::span<const Request> requests,
                          std::vector<Outcome>& outcomes) {
    std::vector<NewCode> made;
    std::ranges::copy_if(codes, std::back_inserter(made), [](const NewCode& code) { return !code.row.code.empty(); });
    const bool together = StoreTogether(made);
    std::map<std::wstring, std::size_t> first; // by ticket
    for (std::size_t at = 0; at < codes.size(); ++at) {
        try {
            if (codes[at].row.code.empty()) continue;
            first[requests[at].ticket] = at;
            if (together)
                outcomes[at] = OutcomeOf(codes[at], mvarWorkplace.maker);
            else
                outcomes[at] = StoreAlone(std::move(codes[at]), requests[at]);
        } catch (const hosts::RecordError& error) {
            outcomes[at] = OutcomeOf(error);
        }
    }
    for (std::size_t at = 0; at < codes.size(); ++at) {
        if (!outcomes[at].code.empty() || !outcomes[at].refusal.empty()) continue;
        const std::size_t same = first[requests[at].ticket];
        CodeRow stored;
        stored.code = outcomes[same].code;
        stored.fields = requests[same].fields;
        outcomes[at] = stored.code.empty() ? outcomes[same] : OutcomeOf(stored, requests[at], true);
    }
}

// The newest seals of the code's leases as they are stored: another attempt may have come before this one after all.
std::map<FastIssuer::LeaseKey, std::wstring> FastIssuer::StoredHeads(const NewCode& code) {
    std::map<LeaseKey, std::wstring> heads;
    for (const NumberRow& row : code.numbers) {
        const LeaseKey key{row.held.band, row.held.series, row.lease};
        const auto stored = mvarCodes.HeadOfLease(key.band, key.series, key.number);
        const auto known = mvarHeads.find(key);
        heads[key] = stored ? *stored : known != mvarHeads.end() ? known->second : std::wstring();
    }
    return heads;
}

// Whether another number, or the code that the ticket has, is the way out of a key that is taken.
bool FastIssuer::IsTaken(const NewCode& code) {
    return InSnapshot(mvarWorkplace.database, mvarWorkplace.patience, [&] {
        const auto isHeld = [this](const NumberRow& row) { return mvarCodes.Holder(row.held).has_value(); };
        return mvarCodes.Find(code.row.code) || mvarCodes.OfTicket(code.row.ticket) ||
               std::ranges::any_of(code.numbers, isHeld);
    });
}

Outcome FastIssuer::StoreAlone(NewCode code, const Request& request) {
    Rules rules(mvarWorkplace.database);
    for (;;) {
        const std::wstring made = code.row.code;
        try {
            return InTransaction(mvarWorkplace.database, mvarWorkplace.patience, OnUniqueKey::Fail, [&] {
                rules.Enter(mvarWorkplace.rule);
                std::map<LeaseKey, std::wstring> heads = StoredHeads(code);
                const auto stored = mvarClaims.OfTicket(request.ticket);
                if (!stored) {
                    if (!mvarWorkplace.rule.settings.series.empty() && mvarCodes.Find(made))
                        RefuseSharedBetweenSeries(mvarWorkplace.rule, made);
                    SealNumbers(code, heads);
                    mvarCodes.Add({&code, 1});
                    mvarClaims.Add({&code, 1});
                }
                for (const auto& [key, head] : heads)
                    mvarHeads[key] = head;
                if (stored) return OutcomeOf(*stored, request, stored->code != made);
                return OutcomeOf(code, mvarWorkplace.maker);
            });
        } catch (const DbError& error) {
            if (error.Kind() == Fault::Text) throw hosts::RecordError(error.Message());
            if (error.Kind() != Fault::UniqueKey || !IsTaken(code)) throw;
        }
        code = MakeNext(request);
    }
}

void FastIssuer::Finish() {
    InTransaction(mvarWorkplace.database, mvarWorkplace.patience, OnUniqueKey::Retry, [this] {
        const std::int64_t step = mvarWorkplace.rule.settings.step;
        for (const Lease& lease : mvarUsedUp)
            mvarLeases.Close(lease, lease.grantedTo + 1, step);
        for (const auto& [key, block] : mvarBlocks)
            if (!block.lease.band.empty()) mvarLeases.Close(block.lease, block.next, step);
        return true;
    });
    mvarUsedUp.clear();
    mvarBlocks.clear();
}

} // namespace ledger
