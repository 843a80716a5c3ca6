// One prepared statement: its parameters are set, it is executed, its rows are read.
#pragma once

#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <type_traits>
#include <vector>

#include "ledger/db/Handle.h"

namespace ledger {

class Statement {
  public:
    // Every member fails with DbError.
    Statement(SQLHDBC connection, const std::wstring& sql);

    // Parameters in the order of their "?"; all of them are set anew for each execution.
    Statement& Set(const std::wstring& text);
    Statement& Set(std::int64_t number);

    // Closes what an earlier execution left open.
    void Execute();
    // The number of rows that the execution changed.
    [[nodiscard]] std::int64_t Changed() const;
    // The next row; false, and the result is closed, after the last one.
    bool Fetch();
    // A column of the row, from 1, each read once and in order; null is empty or 0.
    [[nodiscard]] std::wstring Text(SQLUSMALLINT column) const;
    [[nodiscard]] std::int64_t Number(SQLUSMALLINT column) const;
    // Nothing for null.
    [[nodiscard]] std::optional<std::int64_t> NumberIfAny(SQLUSMALLINT column) const;
    void Close() noexcept;
    // Executes, and returns what the function makes of each row, in the order of the rows.
    template <class Read>
    [[nodiscard]] auto Rows(Read read) {
        std::vector<std::invoke_result_t<Read, const Statement&>> rows;
        Execute();
        while (Fetch())
            rows.push_back(read(*this));
        return rows;
    }

  private:
    struct Parameter {
        std::wstring text;
        std::int64_t number = 0;
        SQLLEN length = 0;
    };

    Parameter& NextParameter();
    void Bind(SQLSMALLINT cType, SQLSMALLINT sqlType, std::size_t size, void* value, Parameter& parameter) const;

    Handle mvarHandle;
    std::deque<Parameter> mvarParameters; // the driver reads them in place
    std::size_t mvarSet = 0;
};

} // namespace ledger
