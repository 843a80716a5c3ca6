// The issuer's three commands; each returns the program's exit code.
#pragma once

#include "hosts/common/Rule.h"
#include "hosts/issuer/CommandLine.h"

namespace hosts {

// Prints each record's code and fields, and reports the records that the rule refuses with their line and its message.
int IssueRecords(Rule& rule, const CommandLine& line);

// Prints the code that the values would get.
int PreviewCode(Rule& rule, const CommandLine& line);

// Prints the values that the code was made of, fields and macros before bands.
int ExplainCode(Rule& rule, const CommandLine& line);

} // namespace hosts
