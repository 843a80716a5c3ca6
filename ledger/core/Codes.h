// The codes that a rule has issued, and the numbers that they hold.
#pragma once

#include <functional>
#include <optional>
#include <span>
#include <utility>
#include <vector>

#include "ledger/db/Database.h"

namespace ledger {

// A number that a code holds in a series of a band.
struct NumberHeld {
    std::wstring band;
    std::wstring series;
    std::int64_t number = 0;

    // By band, series and number.
    friend auto operator<=>(const NumberHeld&,
                            const NumberHeld&) = default; // NOLINT(modernize-use-nullptr): there is no null
};

struct NewCode {
    std::wstring code;
    std::wstring ticket; // tells this storing from every other one of the same code
    std::wstring fields; // the field values as a JSON object
    std::vector<NumberHeld> numbers;
};

struct StoredCode {
    std::wstring code;
    std::wstring state; // issued, adopted or void
    std::wstring ticket;
    std::wstring storedAt; // UTC
    std::wstring fields;
    std::wstring reason; // why it is void
};

struct HighestNumber {
    std::int64_t number = 0;
    std::wstring code;
};

// What Highest asks, so that its plan can be looked at: rule, band and series, and the same again.
extern const wchar_t* const HighestNumberQuery;

// Members run in the caller's transaction and fail with DbError.
class Codes {
  public:
    Codes(Database& database, std::int64_t ruleId) : mvarDatabase(database), mvarRuleId(ruleId) {}

    // Fails with Fault::UniqueKey when a code or one of its numbers is taken.
    void Add(std::span<const NewCode> codes, const std::wstring& state);
    // Adds an issued code as Add does, if the rule still has that revision; false, and nothing is added, if not. The
    // check goes with the code, without a way of its own to the server.
    [[nodiscard]] bool AddIssued(const NewCode& code, std::int64_t revision);
    void AddNumbers(const std::wstring& code, std::span<const NumberHeld> numbers);
    void RemoveAllNumbers();
    // Each number with its code.
    [[nodiscard]] std::vector<std::pair<std::wstring, NumberHeld>> AllNumbers();

    [[nodiscard]] std::optional<StoredCode> Find(const std::wstring& code);
    // The end of the series in its index.
    [[nodiscard]] std::optional<HighestNumber> Highest(const std::wstring& band, const std::wstring& series);
    // The code that holds the number; nothing when it is free.
    [[nodiscard]] std::optional<std::wstring> Holder(const NumberHeld& number);
    // Marks a code as void.
    void Void(const std::wstring& code, const std::wstring& reason);
    [[nodiscard]] std::int64_t Count();
    // Codes that hold fewer than `bands` numbers: some of theirs are held by others, or an older definition made them.
    [[nodiscard]] std::vector<std::wstring> Uncounted(std::size_t bands);
    // Every code in the order of the codes, void ones included.
    void ForEach(const std::function<void(const std::wstring& code)>& visit);

  private:
    void AddRows(std::span<const NewCode> codes, const std::wstring& state, const std::wstring& now);

    Database& mvarDatabase;
    std::int64_t mvarRuleId;
};

// The ids of the rules that have the code.
[[nodiscard]] std::vector<std::int64_t> RulesOfCode(Database& database, const std::wstring& code);

// The time in UTC as "2024-05-06T07:08:09Z".
[[nodiscard]] std::wstring NowText();

} // namespace ledger
