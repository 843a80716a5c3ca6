#include "ledger/db/Database.h"

#include <array>
#include <utility>

namespace ledger {

struct Database::Session {
    explicit Session(SQLHENV environment) : connection(SQL_HANDLE_DBC, environment) {}
    Session(const Session&) = delete; // one connection, one owner
    Session& operator=(const Session&) = delete;
    ~Session() {
        statements.clear();
        SQLEndTran(SQL_HANDLE_DBC, connection.Get(), SQL_ROLLBACK);
        SQLDisconnect(connection.Get());
    }

    Handle connection;
    std::map<std::wstring, Statement> statements;
};

Database::Database(std::wstring connectionString)
    : mvarConnectionString(std::move(connectionString)), mvarEnvironment(SQL_HANDLE_ENV, SQL_NULL_HANDLE),
      mvarSession(nullptr, [](Session* session) { delete session; }) {
    // The driver manager takes the version as a number in the place of a pointer.
    auto* const version = reinterpret_cast<SQLPOINTER>(SQL_OV_ODBC3);
    mvarEnvironment.Check(SQLSetEnvAttr(mvarEnvironment.Get(), SQL_ATTR_ODBC_VERSION, version, 0));
    Connect();
}

void Database::Connect() {
    mvarSession.reset();
    std::unique_ptr<Session, void (*)(Session*)> session(new Session(mvarEnvironment.Get()), mvarSession.get_deleter());
    std::wstring text = mvarConnectionString; // the declaration takes no constant text
    session->connection.Check(SQLDriverConnectW(session->connection.Get(), nullptr, text.data(), SQL_NTS, nullptr, 0,
                                                nullptr, SQL_DRIVER_NOPROMPT));
    auto* const off = reinterpret_cast<SQLPOINTER>(SQL_AUTOCOMMIT_OFF);
    session->connection.Check(SQLSetConnectAttrW(session->connection.Get(), SQL_ATTR_AUTOCOMMIT, off, 0));
    mvarSession = std::move(session);
    mvarHasOneWriter = ProductName().starts_with(L"SQLite");
}

std::wstring Database::ProductName() const {
    std::array<SQLWCHAR, 64> name{};
    SQLSMALLINT length = 0;
    mvarSession->connection.Check(
        SQLGetInfoW(mvarSession->connection.Get(), SQL_DBMS_NAME, name.data(), sizeof(name), &length));
    return name.data();
}

Statement& Database::Prepare(const std::wstring& sql) {
    if (!mvarSession) Connect();
    const auto known = mvarSession->statements.find(sql);
    if (known != mvarSession->statements.end()) return known->second;
    return mvarSession->statements.try_emplace(sql, mvarSession->connection.Get(), sql).first->second;
}

void Database::Commit() {
    mvarSession->connection.Check(SQLEndTran(SQL_HANDLE_DBC, mvarSession->connection.Get(), SQL_COMMIT));
}

void Database::Rollback() noexcept {
    if (!mvarSession) return;
    for (auto& [sql, statement] : mvarSession->statements)
        statement.Close();
    SQLEndTran(SQL_HANDLE_DBC, mvarSession->connection.Get(), SQL_ROLLBACK);
}

void Database::Reconnect() { Connect(); }

bool Database::IsDead() const noexcept {
    if (!mvarSession) return true;
    SQLUINTEGER dead = SQL_CD_FALSE;
    const SQLRETURN code =
        SQLGetConnectAttrW(mvarSession->connection.Get(), SQL_ATTR_CONNECTION_DEAD, &dead, sizeof dead, nullptr);
    return SQL_SUCCEEDED(code) && dead == SQL_CD_TRUE;
}

bool Database::HasTable(const std::wstring& name) {
    if (!mvarSession) Connect();
    const Handle tables(SQL_HANDLE_STMT, mvarSession->connection.Get());
    std::wstring text = name; // the declaration takes no constant text
    tables.Check(SQLTablesW(tables.Get(), nullptr, 0, nullptr, 0, text.data(), SQL_NTS, nullptr, 0));
    const SQLRETURN code = SQLFetch(tables.Get());
    tables.Check(code);
    return code != SQL_NO_DATA;
}

} // namespace ledger
