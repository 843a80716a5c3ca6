// The ledger's tables.
//
//   kestrel_schema       the version of all of these, in one row
//   kestrel_rules        one row per rule; revision counts its changes, definition is the number of the newest one,
//                        settings what RuleSettings.h says. turn means nothing: it is counted up where an engine must
//                        see a write to keep transactions apart
//   kestrel_definitions  every definition that a rule has had, numbered from 1; never changed
//   kestrel_codes        one row per code ever issued or taken over; it leaves the table only for kestrel_reused. The
//                        key on the ticket lets no request have two codes. definition is the one that made the code (0:
//                        one that was not kept); void_act is the act in the journal that made the code void, or 0
//   kestrel_numbers      one row per number band of a code that numbers a series. A series is the pattern by which the
//                        component asks for the last code: all codes with the same series are numbered together. The
//                        key decides who gets a number, and its end is the highest one. A code without number bands is
//                        counted in the series of no name. lease is the first number of the lease that it came from,
//                        act the act in the journal that brought the row, or 0; seal continues the chain of the series
//                        or the lease
//   kestrel_leases       blocks of numbers that one program has set aside for itself
//   kestrel_journal      what was done to a rule or a numbering, see Journal.h
//   kestrel_reused       void codes whose number was given again, as they were: by the act that did so
//   kestrel_free         the numbers of void codes that wait to be given again
//   kestrel_numberings   names over several rules, see Numberings.h; their ids are below 0, so that no rule has them
//   kestrel_claims       one row per code issued by a numbering. Its keys let no request and no code come twice,
//   whichever
//                        rules the numbering has
#pragma once

#include "ledger/db/Open.h"

namespace ledger {

// Makes the tables in an empty database, if it may; fails with HostError, and changes nothing, if not, on those of
// another version and on a file of something else.
void PrepareSchema(Database& database, Patience patience, IfNone ifNone = IfNone::Make);

// Within the caller's transaction: makes the tables, and tells the version of those that there are (0: none).
void MakeTables(Database& database);
[[nodiscard]] std::int64_t StoredVersion(Database& database);

// The version that MakeTables makes.
inline constexpr std::int64_t SchemaVersion = 3;

} // namespace ledger
