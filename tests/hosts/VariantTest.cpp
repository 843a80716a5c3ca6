#include "hosts/common/Variant.h"

#include <gtest/gtest.h>

#include "hosts/common/HostError.h"

using hosts::Variant;

TEST(VariantTest, HoldsAndConverts) {
    EXPECT_EQ(Variant(std::wstring_view(L"a\0b", 3)).Text(), std::wstring(L"a\0b", 3));
    EXPECT_EQ(Variant(42L).Number(), 42);
    EXPECT_EQ(Variant(42L).Text(), L"42");
    EXPECT_EQ(Variant(std::wstring_view(L"42")).Number(), 42);
    EXPECT_EQ(Variant(true).Number(), -1);
    EXPECT_EQ(Variant().Text(), L"");
    EXPECT_EQ(Variant().Object(), nullptr);
    EXPECT_THROW(static_cast<void>(Variant(std::wstring_view(L"x")).Number()), hosts::HostError);
}

TEST(VariantTest, MovesLeaveNothingBehind) {
    Variant from(std::wstring_view(L"text"));
    const Variant to(std::move(from));
    EXPECT_EQ(to.Text(), L"text");
    EXPECT_EQ(from.Raw().vt, VT_EMPTY); // NOLINT(bugprone-use-after-move): the empty state is what is tested
}
