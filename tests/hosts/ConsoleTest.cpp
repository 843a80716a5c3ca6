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
