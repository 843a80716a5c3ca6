// A file of records that names no columns: a list, each line of which gets a code.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "ledger/cli/Commands.h"
#include "ledger/cli/Fields.h"

namespace ledger {

// Under which name the text of a line is kept with its code.
inline constexpr const wchar_t* EntryName = L"Line";

// Whether the text is such a list: its first line names no field of the rule, and the rule needs none that the options
// do not give.
[[nodiscard]] bool IsPlainList(const FieldNames& known, const std::wstring& text, const IssueOptions& options);

// The lines that are not empty, each with its number from 1.
[[nodiscard]] std::vector<std::pair<std::size_t, std::wstring>> EntriesOf(const std::wstring& text);

} // namespace ledger
