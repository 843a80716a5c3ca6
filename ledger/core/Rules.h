// The rules that a ledger keeps.
#pragma once

#include <optional>
#include <vector>

#include "ledger/db/Database.h"

namespace ledger {

enum class Policy {
    Gapless, // a code gets its number in the transaction that stores it
    Fast     // numbers are set aside in blocks, and what a program leaves of its block is a gap
};

// "gapless" and "fast".
[[nodiscard]] std::wstring NameOf(Policy policy);
[[nodiscard]] std::optional<Policy> PolicyOf(const std::wstring& name);

struct StoredRule {
    std::int64_t id = 0;
    std::wstring name;
    Policy policy = Policy::Gapless;
    std::int64_t leaseSize = 100; // how many numbers the fast policy sets aside at once
    std::int64_t codeLength = 0;
    std::int64_t revision = 1;
    std::wstring definition;
};

// Members run in the caller's transaction and fail with DbError.
class Rules {
  public:
    explicit Rules(Database& database) : mvarDatabase(database) {}

    // In the order of their names.
    [[nodiscard]] std::vector<StoredRule> All();
    [[nodiscard]] std::optional<StoredRule> Find(const std::wstring& name);
    // Stores a new rule and sets its id; two programs that do so at once collide on a key.
    void Add(StoredRule& rule);
    // Stores everything but the id and the name, and counts the revision up.
    void Replace(StoredRule& rule);
    // To be called first in a transaction that stores something made by the rule, unless what stores it looks for
    // itself (Codes::AddIssued): fails with HostError when the rule was changed since it was read. Where only one
    // transaction at a time can write, the right to write is taken too.
    void Enter(const StoredRule& rule);
    // Fails with the HostError of a rule that was changed.
    [[noreturn]] static void RefuseChanged(const StoredRule& rule);

  private:
    Database& mvarDatabase;
};

} // namespace ledger
