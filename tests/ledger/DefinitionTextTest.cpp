#include "ledger/core/definition/DefinitionText.h"

#include <gtest/gtest.h>

#include "hosts/common/Utf8.h"
#include "ledger/core/definition/Untaken.h"

using ledger::FindUntaken;
using ledger::LineOf;
using ledger::ReadDefinitionText;

namespace {

using Lines = std::vector<std::wstring>;

Lines Strays(const wchar_t* text) {
    Lines lines;
    for (const auto& stray : ReadDefinitionText(text).strays)
        lines.push_back(std::to_wstring(stray.line) + L": " + stray.text + L": " + stray.why);
    return lines;
}

struct StrayCase {
    const wchar_t* text;
    const wchar_t* stray; // the only one, or a part of it
};

const StrayCase StrayTexts[] = {
    {L"=====02\r0", L"1: =====: is no definition, which begins with #####"},
    {L"", L"1: : is no definition, which begins with #####"},
    {L"#####02\r0\rx\ry", L"3: x: is no number of an entry; it counts as 0"},
    {L"#####02\r0\r99\r3\r1", L"3: 99: is no number of an entry from 0 to 17"},
    {L"#####02\r0\r18\rx", L"4: x: is the value of entry 18"},
    {L"#####02\r0\r13", L"3: : the text ends where a value is expected"},
    {L"#####16\r0=A\r1=0", L"3: : the text ends in the middle of band \"A\", which is lost"},
    {L"#####16\r1=0\r0=A\r17", L"2: 1=0: stands before the name of its band"},
    {L"#####16\r17", L"2: 17: ends a band without a name"},
    {L"#####16\r0=A\r0=B\r17", L"3: 0=B: begins a band before the one above ended"},
    {L"#####16\r0=A\r5\r17", L"3: 5: has no = behind the number"},
    {L"#####16\r0=A\rfive=4\r17", L"3: five=4: is no line of a band"},
    {L"#####16\r0=A\r18=4\r17", L"3: 18=4: is no line of a band"},
};

// What is told of a text whose rule holds the other one.
Lines Told(const std::wstring& text, const std::wstring& held) {
    Lines lines;
    for (const auto& untaken : FindUntaken(text, held))
        lines.push_back(LineOf(untaken));
    return lines;
}

struct Pair {
    const wchar_t* read;
    const wchar_t* held;
};

const Pair SameInOtherWords[] = {
    {L"#####02\r00\r3\rTrue\r4\r-1\r5\rfalse", L"#####02\r0\r3\r1\r4\r1\r5\r0"},
    {L"#####12\r07\r13\r 4", L"#####12\r7\r13\r4"},
    {L"#####10\r6:30", L"#####10\r06:30"},
    {L"#####10\r00:00", L"#####12\r1"},
    {L"#####14\rA,A,,;B,b", L"#####14\rA,,;B,,"},
    {L"#####9\r7;,1,a,b\r16\r0=A\r14=0\r17", L"#####9\r1;,1,a,b\r16\r0=A\r14=\r17"},
    {L"#####16\r0= A \r1=03\r3=007\r8= 1\r11=2026-01-02\r12=a\r17",
     L"#####16\r0=A\r1=3\r3=7\r8=1\r11=2026-01-02 00:00:00\r12=A\r17"},
    {L"#####16\r0=A\r3=\r6=\r13=\r17", L"#####16\r0=a\r3=5\r6=B\r13=C\r17"},
};

const struct {
    const wchar_t* read;
    const wchar_t* held;
    const wchar_t* told; // the only line
} Differences[] = {
    {L"#####03\rYes", L"#####03\r0", L"line 2: right to add bands: read \"Yes\", not taken; the rule holds \"0\""},
    {L"#####11\r3", L"#####11\r2", L"line 2: begin of the week: read \"3\", not taken; the rule holds \"2\""},
    {L"#####14\rA,,;B,,x,y", L"#####14\rA,,;B,,x",
     L"line 2: fields: read \"B,,x,y\", not taken; the rule holds \"B,,x\""},
    {L"#####9\r2;,1,a,b;,2,c,d,e", L"#####9\r2;,1,a,b;,2,c,d",
     L"line 2: relations of the layers: read \",2,c,d,e\", not taken; the rule holds \",2,c,d\""},
    {L"#####16\r0=A\r5=x\r17", L"#####16\r0=A\r5=1\r17",
     L"line 3: length of band A: read \"x\", not taken; the rule holds \"1\""},
    {L"#####16\r0=A\r6=Gone\r17", L"#####16\r0=A\r6=\r17",
     L"line 3: field of band A: read \"Gone\", not taken; the rule holds \"\""},
    {L"#####16\r0=A\r13=B,Yeer\r17", L"#####16\r0=A\r13=B\r17",
     L"line 3: tracked bands of band A: read \"Yeer\", not taken; the rule holds \"B\""},
    {L"#####16\r0=A\r17\r16\r0=a\r17", L"#####16\r0=A\r17",
     L"line 5: band a: read \"a\", not taken; the rule holds \"\""},
};

} // namespace

TEST(DefinitionTextTest, WhatIsNoLineOfADefinitionIsStray) {
    for (const StrayCase& row : StrayTexts) {
        const Lines strays = Strays(row.text);
        ASSERT_EQ(strays.size(), 1U) << hosts::ToUtf8(row.text);
        EXPECT_TRUE(strays[0].starts_with(row.stray)) << hosts::ToUtf8(strays[0]);
    }
}

TEST(DefinitionTextTest, SameInOtherWordsIsTaken) {
    for (const Pair& row : SameInOtherWords)
        EXPECT_EQ(Told(row.read, row.held), Lines()) << hosts::ToUtf8(row.read);
}

TEST(DefinitionTextTest, EachDifferenceIsToldWithItsLine) {
    for (const auto& row : Differences)
        EXPECT_EQ(Told(row.read, row.held), Lines{row.told}) << hosts::ToUtf8(row.read);
}

TEST(DefinitionTextTest, ValuesOfFieldsAreLeftOut) {
    EXPECT_EQ(ledger::WithoutValues(L"#####14\rA,,7;B,b,8,note;C\r15\rM,,2026-01-01\r16\r0=A,,7\r17"),
              L"#####14\rA,,;B,b,,note;C\r15\rM,,\r16\r0=A,,7\r17");
    for (const wchar_t* text : {L"", L"#####", L"#####02\r0", L"#####14\rA,,\r", L"#####14"})
        EXPECT_EQ(ledger::WithoutValues(text), text);
}
