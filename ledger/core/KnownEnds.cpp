#include "ledger/core/KnownEnds.h"

namespace ledger {

std::optional<HighestNumber> KnownEnds::Guess(const std::wstring& band, const std::wstring& series) const {
    const auto end = mvarEnds.find({band, series});
    if (end == mvarEnds.end() || !end->second.isOurs) return std::nullopt;
    return end->second.end;
}

void KnownEnds::Found(const std::wstring& band, const std::wstring& series, const std::optional<HighestNumber>& end) {
    const auto known = mvarEnds.find({band, series});
    if (known != mvarEnds.end()) known->second.isOurs = end && end->seal == known->second.end.seal;
}

void KnownEnds::Left(const std::wstring& code, const NumberRow& number) {
    const std::pair place(number.held.band, number.held.series);
    if (mvarEnds.size() >= Most && !mvarEnds.contains(place)) mvarEnds.clear();
    mvarEnds[place].end = {number.held.number, code, number.seal};
}

} // namespace ledger
