#include "ledger/core/KnownEnds.h"

namespace ledger {

std::optional<HighestNumber> KnownEnds::Guess(const std::wstring& band, const std::wstring& series) const {
    const auto end = mvarEnds.find({band, series});
    if (end == mvarEnds.end() || !end->second.isOurs) return std::nullopt;
    return HighestNumber{end->second.number, {}, end->second.seal};
}

void KnownEnds::Found(const std::wstring& band, const std::wstring& series, const std::optional<HighestNumber>& end) {
    const auto known = mvarEnds.find({band, series});
    if (known != mvarEnds.end()) known->second.isOurs = end && end->seal == known->second.seal;
}

void KnownEnds::Left(const NumberRow& number) {
    const std::pair place(number.held.band, number.held.series);
    if (mvarEnds.size() >= Most && !mvarEnds.contains(place)) mvarEnds.clear();
    End& end = mvarEnds[place];
    end.number = number.held.number;
    end.seal = number.seal;
}

} // namespace ledger
