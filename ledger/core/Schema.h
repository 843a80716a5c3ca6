// The ledger's tables.
//
//   kestrel_schema   the version of all of these, in one row
//   kestrel_rules    one row per rule; revision counts the changes of its definition
//   kestrel_codes    one row per code ever issued or taken over, void ones included; never deleted
//   kestrel_numbers  one row per number band of a code that numbers a series. A series is the pattern by which the
//                    component asks for the last code: all codes with the same series are numbered together. The key
//                    decides who gets a number, and its end is the highest one
//   kestrel_leases   blocks of numbers that one program has set aside for itself
#pragma once

#include "ledger/db/Transaction.h"

namespace ledger {

// Makes the tables in an empty database; fails with HostError on those of a newer version.
void PrepareSchema(Database& database, Patience patience);

} // namespace ledger
