// The check of a whole rule before its first code is issued: what cannot be issued, taken apart or stored, what runs
// out early, and which settings do nothing.
//
// It reads the rule and nothing else: it makes nothing on first use, asks nobody and raises no event. Its time grows
// with the size of the rule.
#pragma once

#include "engine/CodeClass.h"
#include "engine/Findings.h"

namespace kestrel {

// The findings in the order of the bands, those of the whole rule last; none when all is well. A rule without bands is
// not begun yet, so that nothing is said about what it lacks.
[[nodiscard]] std::vector<Finding> CheckRule(const CodeClass& rule);

} // namespace kestrel
