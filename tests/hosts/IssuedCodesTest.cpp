#include "hosts/issuer/IssuedCodes.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>

#include "hosts/common/HostError.h"

using hosts::IssuedCodes;
using hosts::Matches;

TEST(IssuedCodesTest, AQuestionMarkStandsForOneCharacter) {
    EXPECT_TRUE(Matches(L"A-001", L"A-???"));
    EXPECT_TRUE(Matches(L"", L""));
    EXPECT_FALSE(Matches(L"A-01", L"A-???"));
    EXPECT_FALSE(Matches(L"A-0001", L"A-???"));
    EXPECT_FALSE(Matches(L"B-001", L"A-???"));
    EXPECT_FALSE(Matches(L"a-001", L"A-???"));
}

TEST(IssuedCodesTest, OtherWildcardsAreOrdinaryCharacters) {
    EXPECT_FALSE(Matches(L"AB1", L"A%?"));
    EXPECT_FALSE(Matches(L"AB1", L"A_?"));
    EXPECT_FALSE(Matches(L"AB1", L"A*?"));
    EXPECT_TRUE(Matches(L"%_\\1", L"%_\\?"));
}

TEST(IssuedCodesTest, FindsTheLastIssuedThatMatches) {
    IssuedCodes codes;
    EXPECT_EQ(codes.LastMatching(L"A?"), L"");
    for (const wchar_t* code : {L"A1", L"B1", L"A2", L"B2"})
        codes.Add(code);
    EXPECT_EQ(codes.LastMatching(L"A?"), L"A2");
    EXPECT_EQ(codes.LastMatching(L"B?"), L"B2");
    EXPECT_EQ(codes.LastMatching(L"C?"), L"");
    EXPECT_TRUE(codes.Contains(L"B1"));
    EXPECT_FALSE(codes.Contains(L"C1"));
}

TEST(IssuedCodesTest, AFileKeepsCodesAndIsHeld) {
    const auto path = std::filesystem::temp_directory_path() / "IssuedCodesTest.codes";
    std::filesystem::remove(path);
    {
        IssuedCodes codes(path.wstring());
        codes.Add(L"Z\u00FC-1");
        codes.Add(L"Z\u00FC-2");
        EXPECT_THROW(IssuedCodes(path.wstring()), hosts::HostError) << "two writers at once";
    }
    {
        const IssuedCodes codes(path.wstring());
        EXPECT_EQ(codes.LastMatching(L"Z\u00FC-?"), L"Z\u00FC-2");
        EXPECT_TRUE(codes.Contains(L"Z\u00FC-1"));
    }
    std::filesystem::remove(path);
}
