// Files with the newest seals of a ledger's chains, one JSON object a line.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "ledger/core/Audit.h"

namespace ledger {

using HeadsOfRules = std::map<std::wstring, std::vector<Head>>; // by the rules' names

// Fails with HostError on a file that cannot be read or holds no heads, naming the line.
[[nodiscard]] HeadsOfRules ReadHeads(const std::wstring& file);
void WriteHeads(const std::wstring& file, const HeadsOfRules& heads);

} // namespace ledger
