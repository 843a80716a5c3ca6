#include "ledger/core/FastIssuer.h"

#include <algorithm>

#include "ledger/core/Ticket.h"

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
    StoreAll(MakeAll(requests, outcomes), requests, outcomes);
    return outcomes;
}

// One code per request; empty for those refused.
std::vector<NewCode> FastIssuer::MakeAll(std::span<const Request> requests, std::vector<Outcome>& outcomes) {
    std::vector<NewCode> codes(requests.size());
    for (std::size_t at = 0; at < requests.size(); ++at, --mvarToCome) {
        try {
            codes[at] = MakeNext(requests[at]);
        } catch (const hosts::RecordError& error) {
            outcomes[at].refusal = error.Message();
        }
    }
    return codes;
}

NewCode FastIssuer::MakeNext(const Request& request) {
    MadeCode made = mvarWorkplace.maker.Make(
        request.values, [this](const NumberBand& band, const std::wstring& series) { return LastCode(band, series); });
    UseNumbers(made.numbers);
    return {std::move(made.code), NewTicket(), request.fields, std::move(made.numbers)};
}

std::wstring FastIssuer::LastCode(const NumberBand& band, const std::wstring& series) {
    Block& block = mvarBlocks[{band.name, series}];
    if (block.next > block.lease.last || block.lease.band.empty()) TakeBlock(block, band, series);
    return CodeWithNumber(band, series, block.next - 1);
}

void FastIssuer::TakeBlock(Block& block, const NumberBand& band, const std::wstring& series) {
    Rules rules(mvarWorkplace.database);
    const auto wanted = std::min<std::int64_t>(mvarWorkplace.rule.leaseSize, static_cast<std::int64_t>(mvarToCome));
    if (!block.lease.band.empty()) mvarUsedUp.push_back(block.lease);
    block = {};
    const auto take = [&] {
        rules.Enter(mvarWorkplace.rule);
        return mvarLeases.Take(band.name, series, std::max<std::int64_t>(wanted, 1), band.start, band.highest);
    };
    const Lease lease = InTransaction(mvarWorkplace.database, mvarWorkplace.patience, OnUniqueKey::Retry, take);
    block.next = lease.first;
    // With no room left nothing was set aside; the component says so itself when it makes the number.
    if (lease.first <= band.highest) block.lease = lease;
}

void FastIssuer::UseNumbers(const std::vector<NumberHeld>& numbers) {
    for (const NumberHeld& held : numbers) {
        const auto block = mvarBlocks.find({held.band, held.series});
        if (block == mvarBlocks.end() || block->second.next != held.number || block->second.lease.band.empty())
            throw hosts::RecordError(L"the rule gives number " + std::to_wstring(held.number) + L" in band " +
                                     held.band + L", which was not set aside");
    }
    for (const NumberHeld& held : numbers)
        ++mvarBlocks[{held.band, held.series}].next;
}

void FastIssuer::Store(std::span<const NewCode> codes) {
    if (codes.empty()) return;
    Rules rules(mvarWorkplace.database);
    bool tried = false;
    InTransaction(mvarWorkplace.database, mvarWorkplace.patience, OnUniqueKey::Fail, [&] {
        rules.Enter(mvarWorkplace.rule);
        // A connection that breaks while it commits leaves open whether it did.
        const auto stored = tried ? mvarCodes.Find(codes.front().code) : std::nullopt;
        if (stored && stored->ticket == codes.front().ticket) return true;
        tried = true;
        mvarCodes.Add(codes, L"issued");
        CloseUsedUp();
        return true;
    });
    mvarUsedUp.clear();
}

void FastIssuer::CloseUsedUp() {
    for (const Lease& lease : mvarUsedUp)
        mvarLeases.Close(lease, lease.last + 1);
}

void FastIssuer::StoreAll(std::vector<NewCode> codes, std::span<const Request> requests,
                          std::vector<Outcome>& outcomes) {
    std::vector<NewCode> made;
    std::ranges::copy_if(codes, std::back_inserter(made), [](const NewCode& code) { return !code.code.empty(); });
    try {
        Store(made);
        for (std::size_t at = 0; at < codes.size(); ++at)
            outcomes[at].code = codes[at].code;
        return;
    } catch (const DbError& error) {
        if (error.Kind() != Fault::UniqueKey) throw;
    }
    // Somebody else has one of them, so each goes by itself.
    for (std::size_t at = 0; at < codes.size(); ++at) {
        try {
            if (!codes[at].code.empty()) outcomes[at].code = StoreAlone(std::move(codes[at]), requests[at]);
        } catch (const hosts::RecordError& error) {
            outcomes[at].refusal = error.Message();
        }
    }
}

std::wstring FastIssuer::StoreAlone(NewCode code, const Request& request) {
    for (;;) {
        try {
            Store({&code, 1});
            return code.code;
        } catch (const DbError& error) {
            if (error.Kind() != Fault::UniqueKey) throw;
        }
        if (code.numbers.empty())
            throw hosts::RecordError(L"code " + code.code +
                                     L" is issued already, and no band of the rule numbers it on");
        code = MakeNext(request);
    }
}

void FastIssuer::Finish() {
    InTransaction(mvarWorkplace.database, mvarWorkplace.patience, OnUniqueKey::Fail, [this] {
        CloseUsedUp();
        for (const auto& [key, block] : mvarBlocks)
            if (!block.lease.band.empty()) mvarLeases.Close(block.lease, block.next);
        return true;
    });
    mvarUsedUp.clear();
    mvarBlocks.clear();
}

} // namespace ledger
