// Rules to show and to edit.
#pragma once

#include "engine/CodeClass.h"

namespace kestrel::test {

// The numbers of invoices: "INV", the year, region and branch from the record's fields in two layers, a number that
// starts anew for each of them, and a letter. Everything is allowed.
[[nodiscard]] Ref<CodeClass> InvoiceRule();

// A field with a tree of its own (01 North, 02 South, 03 East) beside one with the tree of the layers (AA Europe with
// DE and FR, BB Asia with JP). Both trees number their keys from N1 on, as every tree does.
[[nodiscard]] Ref<CodeClass> TwoTreesRule();

// The positions of the bands of the rule with two trees.
enum TwoTreesBand : int { tbPlain = 1, tbLayered };

// A fixed text, the year, and a number that starts anew each year: a rule in which nothing is wrong.
[[nodiscard]] Ref<CodeClass> GoodRule();

// The positions of the bands of the good rule.
enum GoodBand : int { gbPrefix = 1, gbYear, gbNumber };
// Appends so many numbers, called Counter 1 and so on.
void AddCounters(CodeClass& rule, int count);

// A rule without bands, with everything allowed.
[[nodiscard]] Ref<CodeClass> EmptyRule();

// The positions of the bands of the invoice rule.
enum InvoiceBand : int { ibPrefix = 1, ibYear, ibRegion, ibBranch, ibNumber, ibLetter };

} // namespace kestrel::test
