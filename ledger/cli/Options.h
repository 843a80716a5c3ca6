// kledger's command line.
#pragma once

#include <chrono>
#include <functional>
#include <string>
#include <vector>

#include "ledger/cli/Commands.h"
#include "ledger/db/Open.h"

namespace ledger {

struct Invocation {
    std::wstring database = L"ledger.db";
    bool json = false;
    std::chrono::milliseconds patience{30'000};
    IfNone ifNone = IfNone::Refuse;          // whether the command makes a ledger where there is none
    bool anySchema = false;                  // the command works on tables of an older version as well
    std::function<int(Session&)> command;    // none when there is nothing to do but to end with exitCode
    std::function<int(const Output&)> alone; // the command instead, where it needs no ledger
    int exitCode = 0;
};

// Prints help where it is asked for, and one line to standard error when the arguments are wrong.
[[nodiscard]] Invocation ParseArguments(const std::vector<std::wstring>& arguments);

} // namespace ledger
