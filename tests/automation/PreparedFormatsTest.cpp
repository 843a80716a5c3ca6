// What the platform's parser made of a format is kept, and is what it makes of it again.
#include "platform/PreparedFormats.h"

#include <gtest/gtest.h>

#include <oleauto.h>

namespace kestrel::test {

namespace {

constexpr LCID German = 0x0407;
constexpr LCID English = 0x0409;

PreparedFormats::Tokens Parsed(const String& format, LCID locale) {
    PreparedFormats::Tokens tokens{};
    EXPECT_EQ(VarTokenizeFormatString(const_cast<LPOLESTR>(format.c_str()), tokens.data(),
                                      static_cast<int>(tokens.size()), PreparedFormats::WeekBeginsOnSunday,
                                      PreparedFormats::YearBeginsOnFirstOfJanuary, locale, nullptr),
              S_OK);
    return tokens;
}

} // namespace

TEST(PreparedFormatsTest, AreWhatTheParserMakesOfThem) {
    PreparedFormats formats;
    for (int round = 0; round < 3; ++round)
        for (std::size_t length = 1; length <= PreparedFormats::Most + 3; ++length)
            for (const LCID locale : {German, English})
                for (const wchar_t letter : {L'0', L'@', L'd'}) {
                    const String format(length, letter);
                    PreparedFormats::Tokens tokens{};
                    ASSERT_TRUE(formats.Prepare(format, locale, tokens));
                    EXPECT_EQ(tokens, Parsed(format, locale)) << testing::PrintToString(format) << " " << locale;
                }
}

TEST(PreparedFormatsTest, LeaveWhatIsTooLongToThePlatform) {
    String parts;
    while (parts.size() < 400)
        parts += L"d/m/";
    PreparedFormats formats;
    PreparedFormats::Tokens tokens{};
    EXPECT_FALSE(formats.Prepare(parts, English, tokens));
    EXPECT_FALSE(formats.Prepare(parts, English, tokens));
    EXPECT_TRUE(formats.Prepare(L"@", English, tokens));
}

} // namespace kestrel::test
