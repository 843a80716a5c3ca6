// The codes that a rule has issued, and the numbers that they hold.
#pragma once

#include <map>
#include <optional>
#include <span>
#include <utility>
#include <vector>

#include "ledger/core/Seal.h"
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

// A number as it is stored.
struct NumberRow {
    NumberHeld held;
    std::int64_t lease = 0; // the first number of the lease that it came from
    std::int64_t act = 0;   // the act that brought it
    std::wstring seal;
};

// The origin of a code that was issued by a numbering, which has a claim for it.
inline constexpr const wchar_t* Numbered = L"numbered";

// A code as it is stored.
struct CodeRow {
    std::wstring code;
    std::wstring ticket;
    std::int64_t definition = 0; // the one that made it; 0 for one that was not kept
    std::wstring origin;         // issued, adopted, or Numbered
    std::int64_t voidAct = 0;    // the act that made it void
    std::wstring storedAt;       // UTC
    std::wstring fields;         // the field values as a JSON object
    std::int64_t reuseAct = 0;   // the act that gave the number of the void code away; it is in kestrel_reused then

    [[nodiscard]] std::wstring State() const { return voidAct > 0 ? L"void" : origin == Numbered ? L"issued" : origin; }
};

struct NewCode {
    CodeRow row;
    std::vector<NumberRow> numbers; // unsealed; each act or lease as it is to be stored
};

struct HighestNumber {
    std::int64_t number = 0;
    std::wstring code; // empty for one that was left out
    std::wstring seal;

    // The number that comes behind it: right behind one that was left out, for what follows those was named.
    [[nodiscard]] std::int64_t Next(std::int64_t step) const noexcept { return number + (code.empty() ? 1 : step); }
};

// The seal of a number that follows one with the seal `before`; it covers the code as well.
[[nodiscard]] std::wstring SealOf(std::int64_t ruleId, const CodeRow& code, const NumberRow& number,
                                  const std::wstring& before);

// What Highest asks, so that its plan can be looked at: rule, band and series, and the same again.
extern const wchar_t* const HighestNumberQuery;
// And NumbersBetween: the rule twice, and the codes.
extern const wchar_t* const NumbersBetweenQuery;

// Members run in the caller's transaction and fail with DbError.
class Codes {
  public:
    Codes(Database& database, std::int64_t ruleId) : mvarDatabase(database), mvarRuleId(ruleId) {}

    // Fails with Fault::UniqueKey when a code, its ticket or one of its numbers is taken. Numbers are sealed already.
    void Add(std::span<const NewCode> codes);
    // Adds a code as Add does, if the rule still has that revision and no series has a number behind its end as it was
    // guessed; false, and nothing is added, if not. The checks go with the code, without a way of their own to the
    // server.
    [[nodiscard]] bool AddIssued(const NewCode& code, std::int64_t revision, std::span<const NumberHeld> guessedEnds);
    void AddNumbers(const std::wstring& code, std::span<const NumberRow> numbers);

    [[nodiscard]] std::optional<CodeRow> Find(const std::wstring& code);
    // What the caller's transaction tells of it holds once its COMMIT is answered, and not before.
    // Also when the code's number was given away.
    [[nodiscard]] std::optional<CodeRow> OfTicket(const std::wstring& ticket);
    // The highest of the series that a code has; the end of the series can be a number that was left out.
    [[nodiscard]] std::optional<HighestNumber> HighestIssued(const std::wstring& band, const std::wstring& series);
    // All numbers of a code.
    [[nodiscard]] std::vector<NumberHeld> NumbersOf(const std::wstring& code);
    // The end of the series in its index.
    [[nodiscard]] std::optional<HighestNumber> Highest(const std::wstring& band, const std::wstring& series);
    // The seal that the next number of a lease continues; nothing when none of its numbers is stored.
    [[nodiscard]] std::optional<std::wstring> HeadOfLease(const std::wstring& band, const std::wstring& series,
                                                          std::int64_t lease);
    // The code that holds the number; nothing when it is free.
    [[nodiscard]] std::optional<std::wstring> Holder(const NumberHeld& number);
    // Every number that is held.
    [[nodiscard]] std::vector<NumberHeld> AllNumbers();
    // Marks a code as void by an act; false when it is void already.
    [[nodiscard]] bool Void(const std::wstring& code, std::int64_t act);
    [[nodiscard]] std::int64_t Count();
    // Up to `count` codes after that one, in the order of the codes; "" begins.
    [[nodiscard]] std::vector<CodeRow> After(const std::wstring& code, std::size_t count);
    // How many numbers each of the codes behind the first up to the last has; those that have none are left out.
    [[nodiscard]] std::map<std::wstring, std::int64_t> NumbersBetween(const std::wstring& first,
                                                                      const std::wstring& last);

  private:
    Database& mvarDatabase;
    std::int64_t mvarRuleId;
};

// The ids of the rules that have the code.
[[nodiscard]] std::vector<std::int64_t> RulesOfCode(Database& database, const std::wstring& code);

// The columns of kestrel_codes as `c` that ReadCode reads, beginning with that column of the row.
extern const wchar_t* const CodeColumns;
inline constexpr unsigned CodeColumnCount = 7;
[[nodiscard]] CodeRow ReadCode(const Statement& row, unsigned first);

} // namespace ledger
