// Names over one or several rules, for what one rule cannot say: which rule a record gets its code by, and what happens
// when one of them is full.
#pragma once

#include <optional>
#include <vector>

#include "ledger/core/FieldValues.h"
#include "ledger/core/Rules.h"
#include "ledger/db/Transaction.h"

namespace ledger {

enum class Then {
    Stop, // a record whose series is full is refused
    Anew, // the next rule that fits takes over and begins where it begins
    On    // the next rule that fits takes over and goes on counting
};

// "stop", "anew" and "on".
[[nodiscard]] std::wstring NameOf(Then then);
[[nodiscard]] std::optional<Then> ThenOf(const std::wstring& name);

struct NumberingPart {
    std::int64_t rule = 0;
    std::wstring date;  // the field with the record's date; empty: the part is for any time
    std::wstring from;  // the first day, ISO 8601; empty: from ever
    std::wstring until; // the last one; empty: for ever
    FieldValues when;   // what fields must be
    Then then = Then::Stop;
};

struct Numbering {
    std::int64_t id = 0; // below 0
    std::wstring name;
    std::int64_t revision = 0;
    std::vector<std::wstring> fields; // of records, beside those that the rules have
    std::vector<NumberingPart> parts; // the first that fits is taken; none: it was removed

    // Whether it issues by the rule.
    [[nodiscard]] bool Names(std::int64_t rule) const;
};

// Members run in the caller's transaction and fail with DbError.
class Numberings {
  public:
    explicit Numberings(Database& database) : mvarDatabase(database) {}

    // In the order of their names, removed ones too.
    [[nodiscard]] std::vector<Numbering> All();
    // Nothing when there is none of that name, or it was removed.
    [[nodiscard]] std::optional<Numbering> Find(const std::wstring& name);

  private:
    Database& mvarDatabase;
};

// Stores the numbering as it is now, if nobody has changed it since it was read (revision 0: there was none); the act
// stands in a journal of its own. Fails with HostError, and changes nothing, with the reason why it makes no sense.
void StoreNumbering(Database& database, Patience patience, const Numbering& numbering);

// The same within the caller's transaction, which keeps the ticket when it is repeated.
void StoreNumberingWithin(Database& database, const Numbering& numbering, const std::wstring& ticket);

// Whether another rule takes over when this one is full, in every numbering that issues by it; not for a rule of none.
[[nodiscard]] bool IsFollowed(Database& database, std::int64_t rule);

// How the table and the journal keep the numbering.
[[nodiscard]] std::wstring TextOf(const Numbering& numbering);

} // namespace ledger
