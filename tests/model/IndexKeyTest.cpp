#include <gtest/gtest.h>

#include "common/IndexKey.h"

namespace kestrel::test {

TEST(IndexKeyTest, IsAPositionOrAKeyOrMissing) {
    const IndexKey missing;
    const IndexKey position = 3;
    const IndexKey key = L"N3";
    EXPECT_TRUE(missing.IsMissing());
    EXPECT_EQ(missing.Key(), nullptr);
    EXPECT_EQ(missing.Position(), nullptr);
    ASSERT_NE(position.Position(), nullptr);
    EXPECT_EQ(*position.Position(), 3);
    EXPECT_EQ(position.Key(), nullptr);
    ASSERT_NE(key.Key(), nullptr);
    EXPECT_EQ(*key.Key(), L"N3");
    EXPECT_FALSE(key.IsMissing());
}

TEST(IndexKeyTest, ShowsAsTheHostWroteIt) {
    EXPECT_EQ(IndexKey().Text(), L"");
    EXPECT_EQ(IndexKey(-7).Text(), L"-7");
    EXPECT_EQ(IndexKey(L"Year").Text(), L"Year");
    EXPECT_EQ(IndexKey(L"").Text(), L"");
}

} // namespace kestrel::test
