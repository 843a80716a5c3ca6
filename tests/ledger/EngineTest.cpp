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

TEST(EngineTest, PostgresSetsNoSavepointsUnlessTold) {
    EXPECT_EQ(Postgres().connectionString(L"Driver={PostgreSQL Unicode};Server=s"),
              L"Driver={PostgreSQL Unicode};Server=s;Protocol=7.4-1;Debug=0;CommLog=0");
    EXPECT_EQ(Postgres().connectionString(L"Driver={PostgreSQL Unicode};protocol=7.4-2;Debug=1;CommLog=1;Server=s"),
              L"Driver={PostgreSQL Unicode};protocol=7.4-2;Debug=1;CommLog=1;Server=s");
}
