// One prepared statement: its parameters are set, it is executed, its rows are read.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <type_traits>
#include <vector>

namespace ledger {

// Every member fails with DbError unless it says otherwise.
class Statement {
  public:
    Statement() = default;
    Statement(const Statement&) = delete; // one statement of one connection
    Statement& operator=(const Statement&) = delete;
    virtual ~Statement() = default;

    // Parameters in the order of their "?"; all of them are set anew for each execution.
    virtual Statement& Set(const std::wstring& text) = 0;
    virtual Statement& Set(std::int64_t number) = 0;

    // Closes what an earlier execution left open.
    virtual void Execute() = 0;
    // The number of rows that the execution changed.
    [[nodiscard]] virtual std::int64_t Changed() const = 0;
    // The next row; false, and the result is closed, after the last one.
    virtual bool Fetch() = 0;
    // A column of the row, from 1, each read once and in order; null is empty or 0.
    [[nodiscard]] virtual std::wstring Text(unsigned column) const = 0;
    [[nodiscard]] std::int64_t Number(unsigned column) const { return NumberIfAny(column).value_or(0); }
    // Nothing for null.
    [[nodiscard]] virtual std::optional<std::int64_t> NumberIfAny(unsigned column) const = 0;
    virtual void Close() noexcept = 0;

    // Executes, and returns what the function makes of each row, in the order of the rows.
    template <class Read>
    [[nodiscard]] auto Rows(Read read) {
        std::vector<std::invoke_result_t<Read, const Statement&>> rows;
        Execute();
        while (Fetch())
            rows.push_back(read(*this));
        return rows;
    }
    // Executes, and returns what the function makes of the first row; nothing without one.
    template <class Read>
    [[nodiscard]] auto First(Read read) {
        std::optional<std::invoke_result_t<Read, const Statement&>> first;
        Execute();
        if (Fetch()) first = read(*this);
        Close();
        return first;
    }
};

} // namespace ledger
