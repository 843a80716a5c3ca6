#include "ledger/db/DbError.h"

#include <gtest/gtest.h>
#include <sqlite3.h>

#include "ledger/db/odbc/Engine.h"
#include "ledger/db/sqlite/SqliteError.h"

using ledger::DbError;
using ledger::Fault;

namespace {

struct Case {
    const ledger::OdbcEngine* engine;
    const wchar_t* state;
    long native;
    const wchar_t* text;
    Fault kind;
};

// As the drivers report them.
const Case Cases[] = {
    {&ledger::Postgres(), L"23505", 1, L"ERROR: duplicate key value violates unique constraint", Fault::UniqueKey},
    {&ledger::Postgres(), L"40001", 1, L"ERROR: could not serialize access", Fault::Conflict},
    {&ledger::Postgres(), L"40P01", 1, L"ERROR: deadlock detected", Fault::Conflict},
    {&ledger::Postgres(), L"55P03", 1, L"ERROR: canceling statement due to lock timeout", Fault::Busy},
    {&ledger::Postgres(), L"08S01", 26, L"The connection has been lost", Fault::Lost},
    {&ledger::Postgres(), L"08001", 101, L"connection to server failed: Connection refused", Fault::Lost},
    {&ledger::Postgres(), L"08001", 101, L"FATAL: password authentication failed for user", Fault::Refused},
    {&ledger::Postgres(), L"08001", 101, L"FATAL: database \"x\" does not exist", Fault::Refused},
    {&ledger::Postgres(), L"57P01", 1, L"FATAL: terminating connection due to administrator command", Fault::Lost},
    {&ledger::Postgres(), L"HY000", 35, L"The connection has been lost;Error while preparing parameters", Fault::Lost},
    {&ledger::Postgres(), L"25006", 1, L"ERROR: cannot execute INSERT in a read-only transaction", Fault::Standby},
    {&ledger::Postgres(), L"53100", 1, L"ERROR: could not extend file: No space left on device", Fault::Full},
    {&ledger::Postgres(), L"22P05", 1, L"ERROR: character has no equivalent in encoding LATIN1", Fault::Text},
    {&ledger::Postgres(), L"42P01", 1, L"ERROR: relation is missing", Fault::Other},
    {&ledger::Postgres(), L"IM002", 0, L"[unixODBC][Driver Manager]Data source name not found", Fault::Other},
    {&ledger::MariaDb(), L"23000", 1062, L"Duplicate entry", Fault::UniqueKey},
    {&ledger::MariaDb(), L"HY000", 1205, L"Lock wait timeout exceeded", Fault::Busy},
    {&ledger::MariaDb(), L"40001", 1213, L"Deadlock found when trying to get lock", Fault::Conflict},
    {&ledger::MariaDb(), L"08S01", 1047, L"WSREP has not yet prepared node for application use", Fault::Lost},
    {&ledger::MariaDb(), L"HY000", 2013, L"Lost connection to server during query", Fault::Lost},
    {&ledger::MariaDb(), L"HY000", 1290, L"running with the --read-only option", Fault::Standby},
    {&ledger::MariaDb(), L"HY000", 1114, L"The table is full", Fault::Full},
};

struct SqliteCase {
    int code;
    Fault kind;
};

const SqliteCase SqliteCases[] = {
    {SQLITE_CONSTRAINT_UNIQUE, Fault::UniqueKey},
    {SQLITE_CONSTRAINT_PRIMARYKEY, Fault::UniqueKey},
    {SQLITE_CONSTRAINT_NOTNULL, Fault::Other},
    {SQLITE_BUSY, Fault::Busy},
    {SQLITE_BUSY_SNAPSHOT, Fault::Busy},
    {SQLITE_READONLY_DIRECTORY, Fault::ReadOnly},
    {SQLITE_FULL, Fault::Full},
    {SQLITE_IOERR_SHMSIZE, Fault::Full},
    {SQLITE_IOERR_READ, Fault::Other},
    {SQLITE_NOTADB, Fault::NoDatabase},
    {SQLITE_CORRUPT_INDEX, Fault::NoDatabase},
    {SQLITE_CANTOPEN, Fault::Lost},
};

} // namespace

TEST(DbErrorTest, TellsFaultsOfServersApart) {
    for (const Case& row : Cases) {
        const Fault known = row.engine->classify(row.state, row.native, row.text);
        EXPECT_EQ(known == Fault::Other ? ledger::FaultOfDriver(row.state, row.text) : known, row.kind)
            << std::string(row.text, row.text + std::char_traits<wchar_t>::length(row.text));
    }
}

TEST(DbErrorTest, TellsFaultsOfTheEmbeddedEngineApart) {
    for (const SqliteCase& row : SqliteCases)
        EXPECT_EQ(ledger::FaultOfSqlite(row.code), row.kind) << row.code;
}

TEST(DbErrorTest, WhatMaySucceedLaterMayBeTriedAgain) {
    for (const Fault kind : {Fault::Conflict, Fault::Busy, Fault::Lost, Fault::Standby})
        EXPECT_TRUE(DbError(kind, L"").MayRetry());
    for (const Fault kind :
         {Fault::UniqueKey, Fault::ReadOnly, Fault::Full, Fault::NoDatabase, Fault::Replaced, Fault::Text})
        EXPECT_FALSE(DbError(kind, L"").MayRetry());
}

TEST(DbErrorTest, TheMessageIsOneLineWithTheDriversOwnText) {
    const DbError error(Fault::UniqueKey, L"ERROR: duplicate key\r\nDETAIL: Key (n)=(1)");
    EXPECT_EQ(error.Message(),
              L"the database holds a row with that key already (ERROR: duplicate key; DETAIL: Key (n)=(1))");
}
