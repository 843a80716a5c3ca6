#include "ledger/db/odbc/OdbcStatement.h"

#include <algorithm>
#include <array>
#include <memory>

namespace ledger {

namespace {

// Longer texts are declared as long ones, which every driver takes at any size.
constexpr std::size_t LongestVarchar = 4000;

} // namespace

OdbcStatement::OdbcStatement(OdbcSession& session, const std::wstring& sql)
    : mvarSession(session), mvarHandle(SQL_HANDLE_STMT, session.Connection()) {
    mvarSession.Call(mvarHandle, [handle = mvarHandle.Get(), text = std::make_shared<std::wstring>(sql)] {
        return SQLPrepareW(handle, text->data(), SQL_NTS);
    });
}

OdbcStatement::Parameter& OdbcStatement::NextParameter() {
    if (mvarSet == mvarParameters.size()) mvarParameters.emplace_back();
    return mvarParameters[mvarSet++];
}

void OdbcStatement::Bind(SQLSMALLINT cType, SQLSMALLINT sqlType, std::size_t size, void* value,
                         Parameter& parameter) const {
    mvarHandle.Check(SQLBindParameter(mvarHandle.Get(), static_cast<SQLUSMALLINT>(mvarSet), SQL_PARAM_INPUT, cType,
                                      sqlType, size, 0, value, 0, &parameter.length),
                     &mvarSession.Engine());
}

Statement& OdbcStatement::Set(const std::wstring& text) {
    Parameter& parameter = NextParameter();
    parameter.text = text;
    parameter.length = static_cast<SQLLEN>(text.size() * sizeof(wchar_t));
    const bool isLong = text.size() > LongestVarchar;
    Bind(SQL_C_WCHAR, isLong ? SQL_WLONGVARCHAR : SQL_WVARCHAR, std::max<std::size_t>(text.size(), 1),
         parameter.text.data(), parameter);
    return *this;
}

Statement& OdbcStatement::Set(std::int64_t number) {
    Parameter& parameter = NextParameter();
    parameter.number = number;
    parameter.length = sizeof number;
    Bind(SQL_C_SBIGINT, SQL_BIGINT, 0, &parameter.number, parameter);
    return *this;
}

void OdbcStatement::Execute() {
    mvarSet = 0;
    Close();
    mvarFailed = true;
    mvarSession.Call(mvarHandle, [handle = mvarHandle.Get()] { return SQLExecute(handle); });
    mvarFailed = false;
}

std::int64_t OdbcStatement::Changed() const {
    SQLLEN count = 0;
    mvarHandle.Check(SQLRowCount(mvarHandle.Get(), &count), &mvarSession.Engine());
    return count;
}

bool OdbcStatement::Fetch() {
    const SQLRETURN code = SQLFetch(mvarHandle.Get()); // the driver has all rows already
    mvarHandle.Check(code, &mvarSession.Engine());
    if (code == SQL_NO_DATA) Close();
    return code != SQL_NO_DATA;
}

std::wstring OdbcStatement::Text(unsigned column) const {
    std::wstring text;
    std::array<SQLWCHAR, 512> piece{};
    for (;;) {
        SQLLEN left = 0;
        const SQLRETURN code = SQLGetData(mvarHandle.Get(), static_cast<SQLUSMALLINT>(column), SQL_C_WCHAR,
                                          piece.data(), sizeof(piece), &left);
        mvarHandle.Check(code);
        if (code == SQL_NO_DATA || left == SQL_NULL_DATA) return text;
        text += piece.data();
        if (code == SQL_SUCCESS) return text;
    }
}

std::optional<std::int64_t> OdbcStatement::NumberIfAny(unsigned column) const {
    std::int64_t number = 0;
    SQLLEN length = 0;
    mvarHandle.Check(SQLGetData(mvarHandle.Get(), static_cast<SQLUSMALLINT>(column), SQL_C_SBIGINT, &number,
                                sizeof number, &length));
    return length == SQL_NULL_DATA ? std::nullopt : std::optional(number);
}

void OdbcStatement::Close() noexcept {
    if (!mvarSession.IsStuck()) SQLFreeStmt(mvarHandle.Get(), SQL_CLOSE);
}

} // namespace ledger
