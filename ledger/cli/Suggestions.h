// What to say of an argument that kledger does not know.
#pragma once

#include <CLI/CLI.hpp>

#include <string>

namespace ledger {

// After a parse that failed: names the first argument that is no command and no option, and the nearest that is one;
// empty when every argument was understood.
[[nodiscard]] std::wstring UnknownArgument(const CLI::App& app);

} // namespace ledger
