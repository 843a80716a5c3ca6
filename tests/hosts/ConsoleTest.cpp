#include "hosts/common/Text.h"

#include <gtest/gtest.h>

#include "hosts/common/Utf8.h"

TEST(ConsoleTest, AMessageBecomesOneLine) {
    EXPECT_EQ(hosts::OneLine(L"Incorrect length.\r\n\r\nNumber"), L"Incorrect length.; Number");
    EXPECT_EQ(hosts::OneLine(L"\r\na\nb\r\n"), L"a; b");
    EXPECT_EQ(hosts::OneLine(L"plain"), L"plain");
    EXPECT_EQ(hosts::OneLine(L""), L"");
}

TEST(ConsoleTest, Utf8BothWays) {
    const std::wstring text = L"Z\u00FCrich \U0001F600";
    EXPECT_EQ(hosts::FromUtf8(hosts::ToUtf8(text)), text);
    EXPECT_EQ(hosts::FromUtf8("\xC3\xBC"), L"\u00FC");
    EXPECT_FALSE(hosts::FromUtf8("Z\xFCrich"));
    EXPECT_EQ(hosts::FromUtf8(""), L"");
}

TEST(ConsoleTest, WhatCouldForgeALineIsWrittenOut) {
    EXPECT_EQ(hosts::Shown(L"a\r\n\tb\x1B\x7F\u2028"), L"a\\r\\n\\tb\\u001b\\u007f\\u2028");
    EXPECT_EQ(hosts::Shown(L"Z\u00FCrich \\n"), L"Z\u00FCrich \\n") << "everything else stays";
    EXPECT_TRUE(hosts::HasControl(L"a\tb"));
    EXPECT_FALSE(hosts::HasControl(L"a b"));
}

TEST(ConsoleTest, HalvesOfPairsAreNotWhole) {
    EXPECT_TRUE(hosts::IsWhole(L"a\xD83D\xDE00z"));
    EXPECT_FALSE(hosts::IsWhole(L"a\xD83D"));
    EXPECT_FALSE(hosts::IsWhole(L"\xDE00z"));
    EXPECT_FALSE(hosts::IsWhole(L"\xDE00\xD83D"));
    EXPECT_FALSE(hosts::IsWhole(std::wstring_view(L"a\0z", 3)));
}
