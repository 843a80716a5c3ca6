// A rule's numbers, each with the code that it is stored for, by band, series and number.
#pragma once

#include <functional>
#include <vector>

#include "ledger/core/Codes.h"

namespace ledger {

struct FullNumber {
    NumberRow number;
    std::wstring code; // as the number names it
    CodeRow row;       // its own code is empty when the row is gone
};

// Reads some at a time, each piece found through the key. Members run in the caller's transaction and fail with
// DbError.
class NumberReader {
  public:
    NumberReader(Database& database, std::int64_t ruleId) : mvarDatabase(database), mvarRuleId(ruleId) {}

    void ForEach(const std::function<void(const FullNumber&)>& visit);

  private:
    [[nodiscard]] std::vector<std::wstring> Bands();
    [[nodiscard]] std::vector<FullNumber> Next(const std::wstring& band, const FullNumber* last);
    Statement& Query(const std::wstring& condition, const std::wstring& band);

    Database& mvarDatabase;
    std::int64_t mvarRuleId;
};

} // namespace ledger
