// What was done to a rule: an act for each import, change of settings, void code, adoption, closing of a lease, repair.
//
// Acts are numbered from 1 and sealed in one chain. An act that brought rows tells their number and the sum of their
// seals, so that none can go or come.
#pragma once

#include <vector>

#include "ledger/core/RuleSettings.h"
#include "ledger/db/Database.h"

namespace ledger {

struct Act {
    std::int64_t number = 0;
    std::wstring kind;
    std::wstring subject; // what it was done to: a code, the number of a definition, ...
    std::wstring detail;
    std::wstring at; // UTC
    std::wstring by;
    std::wstring ticket; // of the request; no two acts of a rule have the same
    std::wstring seal;
};

namespace acts {
inline constexpr const wchar_t* Import = L"import";     // subject: number of the definition
inline constexpr const wchar_t* Settings = L"settings"; // subject: number of the definition
inline constexpr const wchar_t* Void = L"void";         // subject: code; detail: why
inline constexpr const wchar_t* Adopt = L"adopt";       // detail: sum of the rows
inline constexpr const wchar_t* Lease = L"lease"; // subject: band, series and first number; detail: last number used
inline constexpr const wchar_t* Next = L"next";   // detail: sum of the row, and what was the last number before
inline constexpr const wchar_t* Reuse = L"reuse"; // subject: void code; detail: its void act, seals, the code after it
inline constexpr const wchar_t* Repair = L"repair";   // subject: what was put right
inline constexpr const wchar_t* Upgrade = L"upgrade"; // detail: sum of the rows
} // namespace acts

// The seal of an act that follows one with the seal `before`.
[[nodiscard]] std::wstring SealOf(std::int64_t ruleId, const Act& act, const std::wstring& before);

// Whether the act tells the rule's settings at its end, see SettingsText; and a definition beside them.
[[nodiscard]] bool BringsSettings(const Act& act);
[[nodiscard]] bool BringsDefinition(const Act& act);
// What stands in the act's detail behind a word that names it, up to the next part; empty when the word is not there.
[[nodiscard]] std::wstring PartOf(const Act& act, const std::wstring& word);
// The rule's settings as the act left them; as they are anyway for an act that tells none.
[[nodiscard]] RuleSettings SettingsIn(const Act& act);

// Members run in the caller's transaction and fail with DbError.
class Journal {
  public:
    Journal(Database& database, std::int64_t ruleId) : mvarDatabase(database), mvarRuleId(ruleId) {}

    // The number that the next act will have.
    [[nodiscard]] std::int64_t NextNumber();
    // Appends an act of now and of this user; returns its number. Two programs that do so at once collide on a key.
    std::int64_t Write(const std::wstring& kind, const std::wstring& subject, const std::wstring& detail,
                       const std::wstring& ticket);
    // The act of that request, if it was stored; certain once the COMMIT of the caller's transaction is answered.
    [[nodiscard]] std::optional<Act> OfTicket(const std::wstring& ticket);
    [[nodiscard]] std::optional<Act> At(std::int64_t number);
    // All in their order.
    [[nodiscard]] std::vector<Act> All();

  private:
    [[nodiscard]] std::optional<Act> Newest();

    Database& mvarDatabase;
    std::int64_t mvarRuleId;
};

} // namespace ledger
