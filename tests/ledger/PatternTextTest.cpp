#include "ledger/core/pattern/PatternText.h"

#include <gtest/gtest.h>

#include "hosts/common/Utf8.h"
#include "ledger/core/pattern/CaretLines.h"
#include "ledger/core/pattern/PatternWriter.h"

using ledger::ParsePattern;
using ledger::PartKind;
using ledger::Pattern;
using ledger::PatternError;
using ledger::PatternPart;
using ledger::WritePattern;

namespace {

std::wstring KindText(PartKind kind) {
    switch (kind) {
    case PartKind::Text: return L"text";
    case PartKind::Number: return L"number";
    case PartKind::Letter: return L"letter";
    case PartKind::Field: return L"field";
    case PartKind::Macro: return L"macro";
    case PartKind::Formula: return L"formula";
    }
    return L"none";
}

std::wstring Said(const wchar_t* what, const std::wstring& value) {
    return value.empty() ? std::wstring() : std::wstring(L" ") + what + L"=" + value;
}

// What is known of a band in one line, so that a table can hold it.
std::wstring PartLine(const PatternPart& part) {
    std::wstring line = KindText(part.kind) + L" " + part.name + Said(L"text", part.text) +
                        Said(L"formula", part.formula) + Said(L"format", part.format) + Said(L"first", part.first) +
                        Said(L"last", part.last) + Said(L"file", part.file);
    if (part.length > 0) line += L" length=" + std::to_wstring(part.length);
    if (part.layer > 0) line += L" layer=" + std::to_wstring(part.layer);
    if (!part.tracked) return line;
    line += L" tracks";
    for (const auto& tracked : *part.tracked)
        line += L" [" + tracked.name + L"]";
    return line;
}

std::wstring PartLines(const Pattern& pattern) {
    std::wstring lines;
    for (const PatternPart& part : pattern)
        lines += PartLine(part) + L"\n";
    return lines;
}

struct Accepted {
    const wchar_t* pattern;
    const wchar_t* bands; // a line each
};

const Accepted AcceptedPatterns[] = {
    // fixed text
    {L"INV-", L"text Text text=INV-\n"},
    {L"a{{b}}c", L"text Text text=a{b}c\n"},
    {L"{\"A}{\"}{\"B\"\"\"}", L"text Text text=A}{\ntext Text 2 text=B\"\n"},
    {L"A{\" \" as Gap}B", L"text Text text=A\ntext Gap text= \ntext Text 2 text=B\n"},
    // numbers
    {L"{####}", L"number Number first=1 length=4 tracks\n"},
    {L"{##:10}", L"number Number first=10 length=2 tracks\n"},
    {L"{####:1000..4999}", L"number Number first=1000 last=4999 length=4 tracks\n"},
    {L"{####:..0500}", L"number Number first=1 last=500 length=4 tracks\n"},
    {L"{###:000}", L"number Number first=0 length=3 tracks\n"},
    {L"{ ### : 5 .. 9 as Serial }", L"number Serial first=5 last=9 length=3 tracks\n"},
    {L"{##################}", L"number Number first=1 length=18 tracks\n"},
    // fields and macros
    {L"{Customer:4}{##}", L"field Customer text=Customer length=4\nnumber Number first=1 length=2 tracks [Customer]\n"},
    {L"INV-{Date:yyyy}-{#####}", L"text Text text=INV-\nfield Date text=Date format=yyyy length=4\ntext Text 2 text=-\n"
                                 L"number Number first=1 length=5 tracks [Date]\n"},
    {L"{Date:yyyy}{Date:mm}",
     L"field Date text=Date format=yyyy length=4\nfield Date 2 text=Date format=mm length=2\n"},
    {L"{@Today:yymmdd}", L"macro Today text=Today format=yymmdd length=6\n"},
    {L"{Date:mmmm:9}", L"field Date text=Date format=mmmm length=9\n"},
    {L"{Time:\"hh:nn\"}", L"field Time text=Time format=hh:nn length=5\n"},
    {L"{Item:0}", L"field Item text=Item format=0 length=1\n"},
    {L"{Item:0000}", L"field Item text=Item format=0000 length=4\n"},
    {L"{Name:>:3}", L"field Name text=Name format=> length=3\n"},
    {L"{Day:dd/mm}", L"field Day text=Day format=dd/mm length=5\n"},
    {L"{\"My: field\":4 as \"A/B\"}", L"field A/B text=My: field length=4\n"},
    {L"{Customer no. 2:4}", L"field Customer no. 2 text=Customer no. 2 length=4\n"},
    {L"{Kunde \x00FC:2}", L"field Kunde \x00FC text=Kunde \x00FC length=2\n"},
    // what numbers track
    {L"{Country:2}{City:3}{###/Country}", L"field Country text=Country length=2\nfield City text=City length=3\n"
                                          L"number Number first=1 length=3 tracks [Country]\n"},
    {L"{A:1}{B:1}{#/B,a as N}",
     L"field A text=A length=1\nfield B text=B length=1\nnumber N first=1 length=1 tracks [B] [A]\n"},
    {L"{A:1}{#/}", L"field A text=A length=1\nnumber Number first=1 length=1 tracks\n"},
    {L"{A:1}{#/ as N}", L"field A text=A length=1\nnumber N first=1 length=1 tracks\n"},
    {L"{\"-\" as Dash}{#/Dash}", L"text Dash text=-\nnumber Number first=1 length=1 tracks [Dash]\n"},
    {L"{D:yyyy}{D:mm as Month}{##/D}{##/Month}",
     L"field D text=D format=yyyy length=4\nfield Month text=D format=mm length=2\n"
     L"number Number first=1 length=2 tracks [D]\n"
     L"number Number 2 first=1 length=2 tracks [Month]\n"},
    {L"{D:yyyy as Year}{D:mm as Month}{##/D}",
     L"field Year text=D format=yyyy length=4\nfield Month text=D format=mm length=2\n"
     L"number Number first=1 length=2 tracks [Year] [Month]\n"},
    // letters
    {L"{A..Z}", L"letter Letter text=A first=A last=Z length=1\n"},
    {L"{B..F:C as Rev}", L"letter Rev text=C first=B last=F length=1\n"},
    {L"{A:1}{A..Z/A}", L"field A text=A length=1\nletter Letter text=A first=A last=Z length=1 tracks [A]\n"},
    // conversions
    {L"{Country=countries.csv}-{###/Country}", L"field Country text=Country file=countries.csv\ntext Text text=-\n"
                                               L"number Number first=1 length=3 tracks [Country]\n"},
    {L"{Country:2=Z:\\data\\a b.csv}", L"field Country text=Country file=Z:\\data\\a b.csv length=2\n"},
    {L"{@User=\"list(1).csv\"}", L"macro User text=User file=list(1).csv\n"},
    {L"{Land=areas.csv|1}{City=areas.csv|2 as Town}", L"field Land text=Land file=areas.csv layer=1\n"
                                                      L"field Town text=City file=areas.csv layer=2\n"},
    // formulas
    {L"{Year=year(Date):4}", L"formula Year text=Year formula=year(Date) length=4\n"},
    {L"{=fiscal(Date)}", L"formula fiscal text=fiscal formula=fiscal(Date) length=7\n"},
    {L"{=fiscal(Date end)}", L"formula fiscal text=fiscal formula=fiscal(Date end) length=4\n"},
    {L"{A:1}{##}{=luhn(A)}", L"field A text=A length=1\nnumber Number first=1 length=2 tracks [A]\n"
                             L"formula luhn text=luhn formula=luhn(A) length=1\n"},
    {L"{=pad(Name 3 ')'):3}", L"formula pad text=pad formula=pad(Name 3 ')') length=3\n"},
    {L"{=left(upper(Name) 3):3}", L"formula left text=left formula=left(upper(Name) 3) length=3\n"},
    {L"{=month(Date):00}{=month(Date):00}{=month(Due)}",
     L"formula month text=month formula=month(Date) format=00 length=2\nformula month 2 text=month formula=month(Date) "
     L"format=00 "
     L"length=2\nformula month 2 2 text=month 2 formula=month(Due) length=2\n"},
    {L"{Month=month(Date)=months.csv}", L"formula Month text=Month formula=month(Date) file=months.csv\n"},
    {L"{=year(Date)}{###}{Check=luhn(Number):1}{Twice=pad(Check 2):2}",
     L"formula year text=year formula=year(Date) length=4\nnumber Number first=1 length=3 tracks [year]\n"
     L"formula Check text=Check formula=luhn(Number) length=1\nformula Twice text=Twice formula=pad(Check 2) "
     L"length=2\n"},
    {L"{=pick(Name \"a{b\"):1}", L"formula pick text=pick formula=pick(Name \"a{b\") length=1\n"},
};

struct Rejected {
    const wchar_t* pattern;
    std::size_t position;
    const wchar_t* message; // a part of it
};

const Rejected RejectedPatterns[] = {
    {L"", 0, L"the pattern is empty"},
    {L"A}B", 1, L"this brace closes nothing; write }}"},
    {L"A{", 1, L"this brace is never closed"},
    {L"A{B", 1, L"this brace is never closed"},
    {L"A{B:4", 1, L"this brace is never closed"},
    {L"A{###", 1, L"this brace is never closed"},
    {L"{}", 1, L"a band is empty"},
    {L"{ }", 2, L"a band is empty"},
    {L"A\tB", 1, L"control character"},
    {L"ab{C:1}c}}d\nE", 11, L"control character"},
    {L"{A\tB:4}", 2, L"control character"},
    {L"\xD83D\xDE00x\xD83Dy", 3, L"half a character"},
    {L"{Customer}", 1, L"say how long Customer is, as in {Customer:4}"},
    {L"{Customer:}", 10, L"a length or a format is expected"},
    {L"{Customer:256}", 10, L"a length from 1 to 255"},
    {L"{Customer:12345678901}", 10, L"a length from 1 to 255"},
    {L"{Date:mmmm}", 6, L"say it behind, as in mmmm:9"},
    {L"{Date:mmmm:x}", 11, L"a length from 1 to 255"},
    {L"{:4}", 1, L"a name is expected"},
    {L"{A;B:4}", 1, L"holds a comma or semicolon"},
    {L"{\"A,B\":4}", 1, L"holds a comma or semicolon"},
    {L"{A\":4}", 2, L"\" is not expected here"},
    {L"{A:4 as }", 8, L"a name is expected"},
    {L"{A:4 as B C", 0, L"this brace is never closed"},
    {L"{A:4 as B:C}", 9, L"\":\" is not expected here"},
    {L"{A:4/B}", 3, L"say it behind, as in 4/B:9"},
    {L"{\"A", 1, L"this quote is never closed"},
    {L"{\"\"}", 1, L"the fixed text is empty"},
    {L"{A/B}", 2, L"only numbers and letters track"},
    {L"{###:}", 5, L"a number's range is expected"},
    {L"{###:x}", 5, L"a number's range is expected"},
    {L"{###:1000}", 5, L"1000 has 4 digits; the band has 3"},
    {L"{###:1..1000}", 8, L"1000 has 4 digits; the band has 3"},
    {L"{###:9..1}", 8, L"the last number 1 lies below the first one, 9"},
    {L"{###:9..}", 8, L"a number is expected"},
    {L"{###-}", 4, L"\"-\" is not expected here"},
    {L"{###/Land}", 5, L"\"Land\" is no band or field of this pattern"},
    {L"{Country:2}{###/Country,Land}", 24, L"there are: Country"},
    {L"{### as N}{#/Number}", 13, L"the band cannot track itself"},
    {L"{### as N}{#/Nummer}", 13, L"is no band or field of this pattern"},
    {L"{###/Number}", 5, L"the band cannot track itself"},
    {L"{###/A,}", 7, L"a name is expected"},
    {L"{###################}", 0, L"19 digits; a ledger counts in up to 18"},
    {L"{C..A}", 4, L"a letter from C to Z is expected"},
    {L"{A..F:G}", 6, L"a letter from A to F is expected"},
    {L"{A:4 as X}{B:4 as x}", 10, L"two bands with the name \"x\""},
    {L"{=}", 1, L"a formula is expected"},
    {L"{=year}", 1, L"a formula is expected"},
    {L"{=year(Date}", 2, L"brackets are not closed"},
    {L"{=left(A,3)}", 8, L"no comma and no semicolon; put blanks"},
    {L"{=hash(Name)}", 2, L"hash is given too few arguments; write hash(VALUE DIGITS)"},
    {L"{=upper(Name)}", 2, L"say how long the result is, as in {=upper(Name):4}"},
    {L"{=foo(X)}{#}", 2, L"there is no function \"foo\""},
    {L"{=year()}{#}", 2, L"year is given too few arguments; write year("},
    {L"{Fiscal=fiscal(Date what)}{#}", 8, L"fiscal cannot take \"what\"; write fiscal("},
    {L"{@Year=year(Date)}", 0, L"leave out the @"},
    {L"{Year:4}{Year=year(Date)}", 8, L"\"Year\" is a field already"},
    {L"{Y=year(A)}{Y=year(B)}", 11, L"\"Y\" is something else already"},
    {L"{A=}", 3, L"a file with codes and values is expected"},
    {L"{A=a.csv|}", 9, L"a layer from 1 on is expected"},
    {L"{A=a.csv|0}", 9, L"a layer from 1 on is expected"},
    {L"{A=a.csv|2}", 0, L"layer 1 is missing"},
    {L"{A=a.csv|1}{B=a.csv|1}", 11, L"two bands for layer 1"},
    {L"{A=a.csv|1}{B=b.csv|2}", 11, L"all layers of a rule stand in one file; another one is in \"a.csv\""},
};

std::string Label(const wchar_t* pattern) { return hosts::ToUtf8(pattern); }

// What the parser makes of a text: its bands, or the place and the message of what is wrong.
std::wstring PatternOutcome(const std::wstring& text) {
    try {
        return PartLines(ParsePattern(text));
    } catch (const PatternError& error) {
        return std::to_wstring(error.Position()) + L": " + error.Message();
    }
}

} // namespace

TEST(PatternTextTest, AcceptedPatterns) {
    for (const Accepted& row : AcceptedPatterns)
        EXPECT_EQ(PatternOutcome(row.pattern), row.bands) << Label(row.pattern);
}

TEST(PatternTextTest, RejectedPatterns) {
    for (const Rejected& row : RejectedPatterns) {
        const std::wstring outcome = PatternOutcome(row.pattern);
        const std::wstring expected = std::to_wstring(row.position) + L": ";
        EXPECT_TRUE(outcome.starts_with(expected) && outcome.find(row.message) != std::wstring::npos)
            << Label(row.pattern) << " -> " << hosts::ToUtf8(outcome);
    }
}

TEST(PatternTextTest, WrittenAndReadAgainEveryPatternIsTheSame) {
    for (const Accepted& row : AcceptedPatterns) {
        const std::wstring written = WritePattern(ParsePattern(row.pattern));
        EXPECT_EQ(PatternOutcome(written), row.bands) << Label(row.pattern) << " -> " << hosts::ToUtf8(written);
    }
}

TEST(PatternTextTest, WhatIsNotGivenIsNotWritten) {
    const wchar_t* const patterns[] = {L"INV-{Date:yyyy}-{#####}", L"{Country=countries.csv}-{###/Country}",
                                       L"a{{b}}c{A..F:B}", L"{=year(Date)}{Q=quarter(Date):00}{##:10..20/}",
                                       L"{Land=\"f(x|y).csv\"|1}{@City=\"f(x|y).csv\"|2 as Town}"};
    for (const wchar_t* text : patterns) {
        Pattern pattern = ParsePattern(text);
        const Pattern complete = pattern;
        for (PatternPart& part : pattern) {
            const bool isSaid = std::wstring(text).find(L'/') != std::wstring::npos || part.name == L"Town";
            if (part.name != L"Town") part.name.clear();
            if (!isSaid) part.tracked.reset();
            if (part.kind == PartKind::Formula && part.text == L"year") part.text.clear();
        }
        EXPECT_EQ(WritePattern(pattern), text);
    }
}

TEST(PatternTextTest, AMillionCharactersAreRefusedAtOnce) {
    for (const wchar_t* piece : {L"a", L"{", L"}}", L"{a:1}", L"{#}", L"\"", L"{=a(", L"{#/a,"}) {
        std::wstring text;
        while (text.size() < 1'000'000)
            text += piece;
        EXPECT_NE(PatternOutcome(text).find(L"a pattern has at most 10000 characters; this one has 100"),
                  std::wstring::npos)
            << Label(piece);
    }
}

TEST(PatternTextTest, AsManyBandsAsAPatternHoldsAreRead) {
    std::wstring text;
    for (int band = 0; band < 2000; ++band)
        text += L"{a:1}";
    const Pattern pattern = ParsePattern(text);
    EXPECT_EQ(pattern.size(), 2000U);
    EXPECT_EQ(pattern.back().name, L"a 2000");
    std::wstring chain = L"{#}";
    for (int band = 0; band < 400; ++band)
        chain += L"{B" + std::to_wstring(400 - band) + L"=f(B" + std::to_wstring(399 - band) + L"):1}";
    EXPECT_EQ(ParsePattern(chain).size(), 401U) << "each formula names the one behind it";
}

TEST(PatternTextTest, TheMarkStandsBelowThePlace) {
    EXPECT_EQ(ledger::CaretLines(L"A{B}C", 2), (std::vector<std::wstring>{L"A{B}C", L"  ^"}));
    EXPECT_EQ(ledger::CaretLines(L"", 0), (std::vector<std::wstring>{L"", L"^"}));
    EXPECT_EQ(ledger::CaretLines(L"a\tb", 2), (std::vector<std::wstring>{L"a?b", L"  ^"}));
    const std::wstring longer(500, L'x');
    const auto lines = ledger::CaretLines(longer, 400);
    EXPECT_EQ(lines[0].size(), 76U);
    EXPECT_EQ(lines[1].size(), 51U);
}
