#include "ledger/db/odbc/Engine.h"

#include <gtest/gtest.h>

using ledger::EngineOf;
using ledger::MariaDb;
using ledger::Postgres;

TEST(EngineTest, ADriversNameTellsTheEngine) {
    EXPECT_EQ(EngineOf(L"Driver={PostgreSQL Unicode};Server=s"), &Postgres());
    EXPECT_EQ(EngineOf(L"driver={postgresql ansi};server=s;"), &Postgres());
    EXPECT_EQ(EngineOf(L"Driver={/usr/lib/odbc/libmaodbc.so};Server=s"), &MariaDb());
    EXPECT_EQ(EngineOf(L"Driver={MariaDB ODBC 3.1 Driver};Server=s"), &MariaDb());
    EXPECT_EQ(EngineOf(L"Server=s;Driver={MariaDB; a copy};Database=postgresql"), &MariaDb());
    EXPECT_EQ(EngineOf(L"Driver=No Such Driver;Database=mariadb"), nullptr);
    EXPECT_EQ(EngineOf(L"DSN=no such source"), nullptr);
}

TEST(EngineTest, AListOfPortsThatTheDriverWouldCutIsRefused) {
    EXPECT_NO_THROW(static_cast<void>(Postgres().connectionString(L"Server=a,b;Port=5432,5433;Uid=u")));
    EXPECT_NO_THROW(static_cast<void>(Postgres().connectionString(L"Server=a,b;Pqopt={port=25432,25433};Uid=u")));
    for (const wchar_t* given : {L"Server=a,b;Port=25432,25433;Uid=u", L"port=5432,5433,5434"}) {
        try {
            static_cast<void>(Postgres().connectionString(given));
            FAIL() << "taken";
        } catch (const hosts::HostError& error) {
            EXPECT_NE(error.Message().find(L"write it as Pqopt={port="), std::wstring::npos);
        }
    }
}

TEST(EngineTest, PostgresTellsWhatAStandbySays) {
    struct Row {
        const wchar_t* state;
        const wchar_t* text;
        ledger::Fault kind;
    };
    const Row rows[] = {
        {L"25006", L"ERROR: cannot execute INSERT in a read-only transaction", ledger::Fault::Standby},
        {L"0A000", L"ERROR: cannot use serializable mode in a hot standby", ledger::Fault::Standby},
        {L"XX000", L"ERROR: cannot assign TransactionIds during recovery", ledger::Fault::Standby},
        {L"0A000", L"ERROR: not supported", ledger::Fault::Other},
    };
    for (const Row& row : rows)
        EXPECT_EQ(Postgres().classify(row.state, 1, row.text), row.kind) << row.state;
}

TEST(EngineTest, PostgresSetsNoSavepointsUnlessTold) {
    EXPECT_EQ(Postgres().connectionString(L"Driver={PostgreSQL Unicode};Server=s"),
              L"Driver={PostgreSQL Unicode};Server=s;Protocol=7.4-1;Debug=0;CommLog=0");
    EXPECT_EQ(Postgres().connectionString(L"Driver={PostgreSQL Unicode};protocol=7.4-2;Debug=1;CommLog=1;Server=s"),
              L"Driver={PostgreSQL Unicode};protocol=7.4-2;Debug=1;CommLog=1;Server=s");
}
