// A file of records that names no columns: a list, each line of which gets a code.
#pragma once

#include <optional>
#include <string>

#include "hosts/common/Csv.h"
#include "ledger/cli/Commands.h"
#include "ledger/cli/Fields.h"

namespace ledger {

// Under which name the text of a line is kept with its code.
inline constexpr const wchar_t* EntryName = L"Line";

struct PlainEntry {
    std::size_t line = 0; // 1-based
    std::wstring text;
};

// Reads the lines that are not empty from a text that comes in pieces.
class PlainReader {
  public:
    explicit PlainReader(hosts::CsvReader::Pieces pieces) : mvarPieces(std::move(pieces)) {}

    [[nodiscard]] std::optional<PlainEntry> Next();

  private:
    // The next line without its end; nothing when there is none.
    [[nodiscard]] std::optional<std::wstring> Line();

    hosts::CsvReader::Pieces mvarPieces;
    std::wstring mvarPiece;
    std::size_t mvarAt = 0; // in the piece
    std::size_t mvarLine = 0;
};

// Whether the text that begins with that entry is such a list: its first line names no field of the rule, and the rule
// needs none that the options do not give.
[[nodiscard]] bool IsPlainList(const FieldNames& known, const std::optional<PlainEntry>& first,
                               const IssueOptions& options);

} // namespace ledger
