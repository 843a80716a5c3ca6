// The ledger's tables.
//
//   kestrel_schema       the version of all of these, in one row
//   kestrel_rules        one row per rule; revision counts its changes, definition is the number of the newest one.
//   turn
//                        means nothing: it is counted up where an engine must see a write to keep transactions apart
//   kestrel_definitions  every definition that a rule has had, numbered from 1; never changed
//   kestrel_codes        one row per code ever issued or taken over; never deleted. The key on the ticket lets no
//   request
//                        have two codes. definition is the one that made the code (0: one that was not kept); void_act
//                        is the act in the journal that made the code void, or 0
//   kestrel_numbers      one row per number band of a code that numbers a series. A series is the pattern by which the
//                        component asks for the last code: all codes with the same series are numbered together. The
//                        key decides who gets a number, and its end is the highest one. A code without number bands is
//                        counted in the series of no name. lease is the first number of the lease that it came from,
//                        act the act in the journal that brought the row, or 0; seal continues the chain of the series
//                        or the lease
//   kestrel_leases       blocks of numbers that one program has set aside for itself
//   kestrel_journal      what was done to a rule, see Journal.h
#pragma once

#include "ledger/db/Transaction.h"

namespace ledger {

// Makes the tables in an empty database; fails with HostError, and changes nothing, on those of another version and on
// a file of something else.
void PrepareSchema(Database& database, Patience patience);

// Within the caller's transaction: makes the tables, and tells the version of those that there are (0: none).
void MakeTables(Database& database);
[[nodiscard]] std::int64_t StoredVersion(Database& database);

// The version that MakeTables makes.
inline constexpr std::int64_t SchemaVersion = 2;

} // namespace ledger
