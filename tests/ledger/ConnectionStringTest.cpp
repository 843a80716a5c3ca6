#include "ledger/db/ConnectionString.h"

#include <gtest/gtest.h>

using ledger::ConnectionStringFor;

TEST(ConnectionStringTest, ATextWithAnEqualsSignIsTakenAsItIs) {
    EXPECT_EQ(ConnectionStringFor(L"DSN=ledger"), L"DSN=ledger");
    EXPECT_EQ(ConnectionStringFor(L"Driver={Other};Server=s"), L"Driver={Other};Server=s");
}

TEST(ConnectionStringTest, PostgresSetsNoSavepointsUnlessTold) {
    EXPECT_EQ(ConnectionStringFor(L"Driver={PostgreSQL Unicode};Server=s"),
              L"Driver={PostgreSQL Unicode};Server=s;Protocol=7.4-1");
    EXPECT_EQ(ConnectionStringFor(L"driver={postgresql ansi};server=s;"),
              L"driver={postgresql ansi};server=s;Protocol=7.4-1");
    EXPECT_EQ(ConnectionStringFor(L"Driver={PostgreSQL Unicode};protocol=7.4-2;Server=s"),
              L"Driver={PostgreSQL Unicode};protocol=7.4-2;Server=s");
}

TEST(ConnectionStringTest, AFileIsOneOfTheEmbeddedDatabase) {
    const std::wstring text = ConnectionStringFor(L"some.db");
    EXPECT_TRUE(text.starts_with(L"Driver={SQLite3")) << testing::PrintToString(text);
    EXPECT_NE(text.find(L"some.db;"), std::wstring::npos) << testing::PrintToString(text);
}
