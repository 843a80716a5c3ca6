#include "ledger/db/DbError.h"

#include <gtest/gtest.h>

using ledger::DbError;
using ledger::Fault;

namespace {

struct Case {
    const wchar_t* state;
    long native;
    const wchar_t* text;
    Fault kind;
    bool mayRetry;
};

// As the drivers report them.
const Case Cases[] = {
    {L"23505", 1, L"ERROR: duplicate key value violates unique constraint", Fault::UniqueKey, false},
    {L"HY000", 19, L"[SQLite]UNIQUE constraint failed: codes.code (19)", Fault::UniqueKey, false},
    {L"40001", 1, L"ERROR: could not serialize access", Fault::Conflict, true},
    {L"40P01", 1, L"ERROR: deadlock detected", Fault::Conflict, true},
    {L"HY000", 5, L"[SQLite]database is locked (5)", Fault::Busy, true},
    {L"HY000", 6, L"[SQLite]database table is locked (6)", Fault::Busy, true},
    {L"08S01", 26, L"The connection has been lost", Fault::Lost, true},
    {L"08001", 101, L"connection to server failed: Connection refused", Fault::Lost, true},
    {L"57P01", 1, L"FATAL: terminating connection due to administrator command", Fault::Lost, true},
    {L"HY000", 35, L"The connection has been lost;Error while preparing parameters", Fault::Lost, true},
    {L"HY000", 8, L"[SQLite]attempt to write a readonly database (8)", Fault::ReadOnly, false},
    {L"HY000", 13, L"[SQLite]database or disk is full (13)", Fault::Full, false},
    {L"53100", 1, L"ERROR: could not extend file: No space left on device", Fault::Full, false},
    {L"HY000", 26, L"[SQLite]file is not a database (26)", Fault::NoDatabase, false},
    {L"HY000", 8, L"internal SAVEPOINT failed", Fault::Other, false}, // the number is this driver's own
    {L"42P01", 1, L"ERROR: relation does not exist", Fault::Other, false},
    {L"IM002", 0, L"[unixODBC][Driver Manager]Data source name not found", Fault::Other, false},
};

} // namespace

TEST(DbErrorTest, TellsFaultsApart) {
    for (const Case& row : Cases) {
        const DbError error(row.state, row.native, row.text);
        EXPECT_EQ(error.Kind(), row.kind)
            << std::string(row.text, row.text + std::char_traits<wchar_t>::length(row.text));
        EXPECT_EQ(error.MayRetry(), row.mayRetry) << row.native;
    }
}

TEST(DbErrorTest, TheMessageIsOneLineWithTheDriversOwnText) {
    const DbError error(L"23505", 1, L"ERROR: duplicate key\r\nDETAIL: Key (n)=(1)");
    EXPECT_EQ(error.Message(),
              L"the database holds a row with that key already (ERROR: duplicate key; DETAIL: Key (n)=(1))");
}
