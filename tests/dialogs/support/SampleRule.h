// Rules to show and to edit.
#pragma once

#include "engine/CodeClass.h"

namespace kestrel::test {

// The numbers of invoices: "INV", the year, region and branch from the record's fields in two layers, a number that
// starts anew for each of them, and a letter. Everything is allowed.
[[nodiscard]] Ref<CodeClass> InvoiceRule();

// A rule without bands, with everything allowed.
[[nodiscard]] Ref<CodeClass> EmptyRule();

// The positions of the bands of the invoice rule.
enum InvoiceBand : int { ibPrefix = 1, ibYear, ibRegion, ibBranch, ibNumber, ibLetter };

} // namespace kestrel::test
