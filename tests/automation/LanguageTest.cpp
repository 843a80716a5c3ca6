// The texts in both languages. Runs in English and in German: see CMakeLists.txt.
#include "automation/support/Library.h"

namespace kestrel::test {

namespace {

struct TextPair {
    int number;
    const wchar_t* english;
    const wchar_t* german;
};

const TextPair Texts[] = {
// NOLINTNEXTLINE(cppcoreguidelines-macro-usage): shared with the resource compiler, which knows macros
#define STRING(number, english, german) {number, L##english, L##german},
#include "resources/strings.inc"
#undef STRING
};

bool HasGermanTexts() { return PRIMARYLANGID(GetUserDefaultUILanguage()) == LANG_GERMAN; }

// The text as it stands in the library's resources for that language.
String Resource(HMODULE module, int number, WORD language) {
    const HRSRC block = FindResourceExW(module, RT_STRING, MAKEINTRESOURCEW(number / 16 + 1), language);
    if (block == nullptr) return L"no block";
    const auto* text = static_cast<const wchar_t*>(LockResource(LoadResource(module, block)));
    for (int i = number % 16; i > 0; --i)
        text += 1 + *text;
    return String(text + 1, static_cast<std::size_t>(*text));
}

class LanguageTest : public ComTest {};

} // namespace

TEST_F(LanguageTest, IsTheOneThatThisRunIsFor) {
    // NOLINTNEXTLINE(concurrency-mt-unsafe): nothing changes the environment while the tests run
    const char* expected = std::getenv("KESTREL_TEST_LANGUAGE");
    if (expected == nullptr) return; // run by hand, in whatever language
    EXPECT_EQ(std::string(expected), HasGermanTexts() ? "German" : "English");
}

TEST_F(LanguageTest, EveryTextIsThereInBothLanguages) {
    const LoadedLibrary library(LibraryPath());
    for (const auto& [number, english, german] : Texts) {
        EXPECT_EQ(Resource(library.Module(), number, 1033), english) << number;
        EXPECT_EQ(Resource(library.Module(), number, 2048), german) << number;
    }
}

TEST_F(LanguageTest, ErrorsSpeakTheUsersLanguage) {
    const auto textOf = [](int number) {
        for (const auto& [candidate, english, german] : Texts)
            if (candidate == number) return String(HasGermanTexts() ? german : english);
        return String();
    };
    EXPECT_EQ(FailureOf(NewList()->put_Name(nullptr)).description, textOf(2003));
    EXPECT_EQ(FailureOf(NewNodes()->Remove(Number(1))).description, textOf(9));
    EXPECT_EQ(FailureOf(NewNodes()->Remove(Arg(L"x"))).description, textOf(5));
    const auto band = NewBand();
    Must(band->put_Style(bsIncreaseNumber));
    EXPECT_EQ(FailureOf(band->put_Length(0)).description, textOf(2003) + L"\r\n\r\n" + textOf(1505));
}

// What a band stores in its own form, and a definition holds, means the same for every user.
TEST_F(LanguageTest, AStoredNumberIsReadAlikeEverywhere) {
    const auto band = NewBand();
    Must(band->put_Style(bsIncreaseNumber));
    Must(band->put_Default(Arg(HasGermanTexts() ? L"7,5" : L"7.50")));
    EXPECT_EQ(Text(band, &_Band::get_Default), L"7.5");
    Must(band->put_InitStart(Arg(L"7.5")));
    EXPECT_EQ(Text(band, &_Band::get_InitStart), L"7.5");
}

} // namespace kestrel::test
