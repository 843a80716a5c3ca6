#include "ledger/db/odbc/OdbcDatabase.h"

#include <array>
#include <utility>

namespace ledger {

namespace {

void Replace(std::wstring& text, const std::wstring& part, const std::wstring& by) {
    for (std::size_t at = text.find(part); at != std::wstring::npos; at = text.find(part, at + by.size()))
        text.replace(at, part.size(), by);
}

// "TEXT(40)" becomes the type with its number in the place of "%n".
void ReplaceShortTexts(std::wstring& definition, const std::wstring& type) {
    const std::wstring mark = L"TEXT(";
    for (std::size_t at = definition.find(mark); at != std::wstring::npos; at = definition.find(mark, at)) {
        const std::size_t end = definition.find(L')', at);
        std::wstring known = type;
        Replace(known, L"%n", definition.substr(at + mark.size(), end - at - mark.size()));
        definition.replace(at, end + 1 - at, known);
        at += known.size();
    }
}

// Not as a prepared statement: a server that follows another one fails to forget those, and their names come again.
void Apply(OdbcSession& session, const std::wstring& setting) {
    Handle statement(SQL_HANDLE_STMT, session.Connection());
    session.Call(statement, [handle = statement.Get(), text = std::make_shared<std::wstring>(setting)] {
        return SQLExecDirectW(handle, text->data(), SQL_NTS);
    });
}

} // namespace

struct OdbcDatabase::Open {
    Open(SQLHENV environment, const OdbcEngine& engine) : session(environment, engine) {}

    OdbcSession session;
    std::map<std::wstring, OdbcStatement> statements;
};

OdbcDatabase::OdbcDatabase(const std::wstring& connectionString, const OdbcEngine& engine)
    : mvarEngine(engine), mvarConnectionString(engine.connectionString(connectionString)),
      mvarEnvironment(NewEnvironment()), mvarDeadline{std::chrono::steady_clock::time_point::max(),
                                                      std::chrono::hours(24)},
      mvarOpen(nullptr, [](Open* open) { delete open; }) {}

OdbcDatabase::~OdbcDatabase() {
    Rollback();
    if (!mvarOpen || !mvarEngine.leavesAtExit || mvarOpen->session.IsStuck()) {
        Disconnect();
        return;
    }
    mvarOpen->session.EndThread();
    static_cast<void>(mvarOpen.release());
}

// What a call that never returned still uses is left to the end of the process.
void OdbcDatabase::Disconnect() noexcept {
    if (!mvarOpen) return;
    if (!mvarOpen->session.IsStuck()) {
        mvarOpen->statements.clear();
        try {
            mvarOpen->session.Limit(
                {std::chrono::steady_clock::now() + std::chrono::seconds(2), std::chrono::seconds(2)});
            mvarOpen->session.Call([connection = mvarOpen->session.Connection()] { return SQLDisconnect(connection); });
        } catch (const DbError&) { // it is gone one way or the other
        }
    }
    if (mvarOpen->session.IsStuck()) static_cast<void>(mvarOpen.release());
    mvarOpen.reset();
}

void OdbcDatabase::Connect() {
    Disconnect();
    std::unique_ptr<Open, void (*)(Open*)> open(new Open(mvarEnvironment.Get(), mvarEngine), mvarOpen.get_deleter());
    OdbcSession& session = open->session;
    session.Limit(mvarDeadline);
    try {
        session.Call([connection = session.Connection(), text = std::make_shared<std::wstring>(mvarConnectionString)] {
            return SQLDriverConnectW(connection, nullptr, text->data(), SQL_NTS, nullptr, 0, nullptr,
                                     SQL_DRIVER_NOPROMPT);
        });
        CheckProduct(session);
        for (const std::wstring& setting : mvarEngine.settings(mvarDeadline.each))
            Apply(session, setting);
        session.Call([connection = session.Connection()] {
            return SQLSetConnectAttrW(connection, SQL_ATTR_AUTOCOMMIT, AsPointer(SQL_AUTOCOMMIT_OFF), 0);
        });
    } catch (...) {
        if (session.IsStuck()) static_cast<void>(open.release());
        throw;
    }
    mvarOpen = std::move(open);
}

void OdbcDatabase::CheckProduct(OdbcSession& session) const {
    std::array<SQLWCHAR, 64> name{};
    SQLSMALLINT length = 0;
    const SQLRETURN code = SQLGetInfoW(session.Connection(), SQL_DBMS_NAME, name.data(), sizeof(name), &length);
    if (!SQL_SUCCEEDED(code)) throw DbError(Fault::Lost, L"the server does not tell its name");
    const std::wstring product = name.data();
    if (!Names(product, mvarEngine.product) && !(&mvarEngine == &MariaDb() && Names(product, L"MySQL")))
        throw hosts::HostError(L"the server is \"" + product + L"\"; the ledger works with PostgreSQL and MariaDB");
}

void OdbcDatabase::Limit(const Deadline& deadline) noexcept {
    mvarDeadline = deadline;
    if (mvarOpen) mvarOpen->session.Limit(deadline);
}

OdbcSession& OdbcDatabase::Session() {
    // Even a new statement would wait for a call that is under way.
    if (!mvarOpen || mvarOpen->session.IsStuck()) Connect();
    return mvarOpen->session;
}

Statement& OdbcDatabase::Prepare(const std::wstring& sql) {
    OdbcSession& session = Session();
    const auto known = mvarOpen->statements.find(sql);
    if (known != mvarOpen->statements.end()) return known->second;
    return mvarOpen->statements.try_emplace(sql, session, sql).first->second;
}

void OdbcDatabase::Begin(Access access) {
    mvarConfirmed = false;
    mvarIsOne = access != Access::Define;
    if (!mvarIsOne) return;
    for (const wchar_t* statement : access == Access::Read ? mvarEngine.beginRead : mvarEngine.beginWrite)
        Run(statement);
}

void OdbcDatabase::Commit() {
    if (mvarIsOne && mvarEngine.assertSame != nullptr) Run(mvarEngine.assertSame);
    OdbcSession& session = Session();
    session.Call([connection = session.Connection()] { return SQLEndTran(SQL_HANDLE_DBC, connection, SQL_COMMIT); });
}

void OdbcDatabase::Rollback() noexcept {
    if (!mvarOpen || mvarOpen->session.IsStuck()) return;
    for (auto& [sql, statement] : mvarOpen->statements)
        statement.Close();
    if (mvarEngine.failureSpoils)
        std::erase_if(mvarOpen->statements, [](const auto& entry) { return entry.second.HasFailed(); });
    try {
        mvarOpen->session.Call([connection = mvarOpen->session.Connection()] {
            return SQLEndTran(SQL_HANDLE_DBC, connection, SQL_ROLLBACK);
        });
    } catch (const DbError&) { // the server undoes it when it finds the connection gone
    }
}

bool OdbcDatabase::IsDead() const noexcept {
    if (!mvarOpen || mvarOpen->session.IsStuck()) return true;
    SQLUINTEGER dead = SQL_CD_FALSE;
    const SQLRETURN code =
        SQLGetConnectAttrW(mvarOpen->session.Connection(), SQL_ATTR_CONNECTION_DEAD, &dead, sizeof dead, nullptr);
    return SQL_SUCCEEDED(code) && dead == SQL_CD_TRUE;
}

bool OdbcDatabase::HasTable(const std::wstring& name) {
    const std::wstring schema = mvarEngine.needsCatalogue ? L"DATABASE()" : L"CURRENT_SCHEMA()";
    Statement& tables =
        Prepare(L"SELECT 1 FROM information_schema.tables WHERE table_schema = " + schema + L" AND table_name = ?");
    return tables.Set(name).First([](const Statement&) { return true; }).has_value();
}

std::wstring OdbcDatabase::TableText(std::wstring definition) const {
    // The short type's own text may hold the longer one's name.
    Replace(definition, L"LONGTEXT", L"\1");
    ReplaceShortTexts(definition, mvarEngine.shortText);
    Replace(definition, L"\1", mvarEngine.longText);
    if (mvarEngine.wantsRuleFirst) Replace(definition, L"(code, rule_id)", L"(rule_id, code)");
    return definition.starts_with(L"CREATE TABLE") ? definition + mvarEngine.tableEnd : definition;
}

void OdbcDatabase::KeepWritersOut(const std::wstring& table) {
    if (mvarEngine.lockTable != nullptr) Run(mvarEngine.lockTable + (L" " + table) + mvarEngine.lockMode);
}

void OdbcDatabase::Confirm() {
    if (mvarEngine.confirm == nullptr || mvarConfirmed) return;
    mvarConfirmed = Prepare(mvarEngine.confirm).First([](const Statement&) { return true; }).has_value();
}

std::wstring OdbcDatabase::Ask(const std::wstring& sql) {
    try {
        return Prepare(sql).First([](const Statement& row) { return row.Text(1); }).value_or(L"");
    } catch (const DbError& error) {
        if (error.Kind() != Fault::Other) throw;
        return {};
    }
}

std::vector<EngineFact> OdbcDatabase::Facts() {
    return mvarEngine.facts([this](const std::wstring& sql) { return Ask(sql); });
}

} // namespace ledger
