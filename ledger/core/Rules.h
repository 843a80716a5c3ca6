// The rules that a ledger keeps, and the definitions that each of them has had.
#pragma once

#include <optional>
#include <vector>

#include "ledger/core/RuleSettings.h"
#include "ledger/db/Database.h"

namespace ledger {

enum class Policy {
    Gapless, // a code gets its number in the transaction that stores it
    Fast     // numbers are set aside in blocks, and what a program leaves of its block is a gap
};

// "gapless" and "fast".
[[nodiscard]] std::wstring NameOf(Policy policy);
[[nodiscard]] std::optional<Policy> PolicyOf(const std::wstring& name);

struct Definition {
    std::int64_t number = 0; // from 1
    std::int64_t codeLength = 0;
    std::wstring storedAt; // UTC
    std::wstring storedBy;
    std::wstring text;
};

struct StoredRule {
    std::int64_t id = 0;
    std::wstring name;
    Policy policy = Policy::Gapless;
    std::int64_t leaseSize = 100; // how many numbers the fast policy sets aside at once
    RuleSettings settings;
    std::int64_t revision = 1; // counts the changes of anything here
    Definition definition;     // the newest one
};

// What an import or a change of settings writes into the journal: everything of a rule that can be changed, so that an
// audit can tell what it must be.
[[nodiscard]] std::wstring SettingsText(const StoredRule& rule);

// Members run in the caller's transaction and fail with DbError.
class Rules {
  public:
    explicit Rules(Database& database) : mvarDatabase(database) {}

    // In the order of their names.
    [[nodiscard]] std::vector<StoredRule> All();
    [[nodiscard]] std::optional<StoredRule> Find(const std::wstring& name);
    // Stores a new rule without a definition and sets its id; two programs that do so at once collide on a key.
    void Add(StoredRule& rule);
    void AddDefinition(std::int64_t ruleId, const Definition& definition);
    // Stores the name, the settings and the number of the newest definition, if the rule still has the revision, and
    // counts that up; fails with HostError if not.
    void Replace(StoredRule& rule);
    // In the order of their numbers.
    [[nodiscard]] std::vector<Definition> Definitions(std::int64_t ruleId);
    // To be called first in a transaction that stores something made by the rule, unless what stores it looks for
    // itself (Codes::AddIssued): fails with HostError when the rule was changed since it was read.
    void Enter(const StoredRule& rule);
    // Fails with the HostError of a rule that was changed.
    [[noreturn]] static void RefuseChanged(const StoredRule& rule);

  private:
    Database& mvarDatabase;
};

} // namespace ledger
