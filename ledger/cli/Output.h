// What a command prints: for people, or one JSON object a line.
#pragma once

#include <string>
#include <vector>

#include "ledger/core/Json.h"

namespace ledger {

class Output {
  public:
    explicit Output(bool json) noexcept : mvarJson(json) {}

    [[nodiscard]] bool IsJson() const noexcept { return mvarJson; }
    // One of the two, to standard output.
    void Line(std::wstring_view plain, const Json& json) const;
    // For people only, to standard error: what is not a result.
    void Note(std::wstring_view text) const;

  private:
    bool mvarJson;
};

// A table for people: columns as wide as their widest cell.
class Table {
  public:
    using Row = std::vector<std::wstring>;

    explicit Table(Row header) : mvarRows{std::move(header)} {}
    // What could end a line in a cell is written out.
    void Add(Row row);
    // The lines, the header and a rule under it first.
    [[nodiscard]] std::vector<std::wstring> Lines() const;

  private:
    std::vector<Row> mvarRows; // as many cells each as the header
};

} // namespace ledger
