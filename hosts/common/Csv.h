// Records from comma-separated values: a line of column names, then one record each. A field in quotes may hold the
// separator, doubled quotes and line breaks.
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace hosts {

struct CsvRecord {
    std::size_t line = 0; // 1-based, where the record begins
    std::vector<std::wstring> fields;
};

// Reads records one after the other from a text that comes in pieces.
class CsvReader {
  public:
    // The next piece of the text; empty at the end.
    using Pieces = std::function<std::wstring()>;

    // Reads the line of column names. Fails with HostError, naming the line, on a text without one and on an empty or
    // repeated column name.
    explicit CsvReader(Pieces pieces, wchar_t separator = L',');

    // Trimmed, none empty, none twice.
    [[nodiscard]] const std::vector<std::wstring>& Columns() const noexcept { return mvarColumns; }
    // The next record: as many fields as its line has. Empty lines are none. Fails with HostError, naming the line, on
    // a quote that is never closed and on text beside a closed quote.
    [[nodiscard]] std::optional<CsvRecord> Next();

  private:
    [[nodiscard]] bool AtEnd();
    [[nodiscard]] bool AtLineEnd();
    [[nodiscard]] bool AtFieldEnd();
    [[nodiscard]] CsvRecord Record();
    [[nodiscard]] std::wstring Field();
    [[nodiscard]] std::wstring QuotedField();
    [[nodiscard]] bool ClosesQuote(std::size_t opened);
    void SkipLineEnd();

    Pieces mvarPieces;
    wchar_t mvarSeparator;
    std::wstring mvarPiece;
    std::size_t mvarAt = 0; // in the piece
    std::size_t mvarLine = 1;
    std::vector<std::wstring> mvarColumns;
};

struct CsvTable {
    std::vector<std::wstring> columns;
    std::vector<CsvRecord> records;
};

// All of a text. Fails as the reader does.
[[nodiscard]] CsvTable ParseCsv(std::wstring text, wchar_t separator = L',');

} // namespace hosts
