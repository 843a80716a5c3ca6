#include "ledger/db/Statement.h"

#include <algorithm>
#include <array>

namespace ledger {

namespace {

// Longer texts are declared as long ones, which every driver takes at any size.
constexpr std::size_t LongestVarchar = 4000;

SQLWCHAR* Writable(const std::wstring& text) { return const_cast<SQLWCHAR*>(text.c_str()); }

} // namespace

Statement::Statement(SQLHDBC connection, const std::wstring& sql) : mvarHandle(SQL_HANDLE_STMT, connection) {
    mvarHandle.Check(SQLPrepareW(mvarHandle.Get(), Writable(sql), SQL_NTS));
}

Statement::Parameter& Statement::NextParameter() {
    if (mvarSet == mvarParameters.size()) mvarParameters.emplace_back();
    return mvarParameters[mvarSet++];
}

void Statement::Bind(SQLSMALLINT cType, SQLSMALLINT sqlType, std::size_t size, void* value,
                     Parameter& parameter) const {
    mvarHandle.Check(SQLBindParameter(mvarHandle.Get(), static_cast<SQLUSMALLINT>(mvarSet), SQL_PARAM_INPUT, cType,
                                      sqlType, size, 0, value, 0, &parameter.length));
}

Statement& Statement::Set(const std::wstring& text) {
    Parameter& parameter = NextParameter();
    parameter.text = text;
    parameter.length = static_cast<SQLLEN>(text.size() * sizeof(wchar_t));
    const bool isLong = text.size() > LongestVarchar;
    Bind(SQL_C_WCHAR, isLong ? SQL_WLONGVARCHAR : SQL_WVARCHAR, std::max<std::size_t>(text.size(), 1),
         parameter.text.data(), parameter);
    return *this;
}

Statement& Statement::Set(std::int64_t number) {
    Parameter& parameter = NextParameter();
    parameter.number = number;
    parameter.length = sizeof number;
    Bind(SQL_C_SBIGINT, SQL_BIGINT, 0, &parameter.number, parameter);
    return *this;
}

void Statement::Execute() {
    mvarSet = 0;
    Close();
    mvarHandle.Check(SQLExecute(mvarHandle.Get()));
}

std::int64_t Statement::Changed() const {
    SQLLEN count = 0;
    mvarHandle.Check(SQLRowCount(mvarHandle.Get(), &count));
    return count;
}

bool Statement::Fetch() {
    const SQLRETURN code = SQLFetch(mvarHandle.Get());
    mvarHandle.Check(code);
    if (code == SQL_NO_DATA) Close();
    return code != SQL_NO_DATA;
}

std::wstring Statement::Text(SQLUSMALLINT column) const {
    std::wstring text;
    std::array<SQLWCHAR, 512> piece{};
    for (;;) {
        SQLLEN left = 0;
        const SQLRETURN code = SQLGetData(mvarHandle.Get(), column, SQL_C_WCHAR, piece.data(), sizeof(piece), &left);
        mvarHandle.Check(code);
        if (code == SQL_NO_DATA || left == SQL_NULL_DATA) return text;
        text += piece.data();
        if (code == SQL_SUCCESS) return text;
    }
}

std::optional<std::int64_t> Statement::NumberIfAny(SQLUSMALLINT column) const {
    std::int64_t number = 0;
    SQLLEN length = 0;
    mvarHandle.Check(SQLGetData(mvarHandle.Get(), column, SQL_C_SBIGINT, &number, sizeof number, &length));
    return length == SQL_NULL_DATA ? std::nullopt : std::optional(number);
}

std::int64_t Statement::Number(SQLUSMALLINT column) const { return NumberIfAny(column).value_or(0); }

void Statement::Close() noexcept { SQLFreeStmt(mvarHandle.Get(), SQL_CLOSE); }

} // namespace ledger
