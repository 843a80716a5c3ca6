#include "ledger/core/pattern/SaidPattern.h"

#include <gtest/gtest.h>

#include "hosts/common/Rule.h"
#include "hosts/common/Utf8.h"
#include "ledger/Replaced.h"
#include "ledger/core/pattern/PatternText.h"

using ledger::BuildDefinition;
using ledger::ParsePattern;
using ledger::PatternSettings;
using ledger::SaidPattern;
using ledger::SayPattern;

namespace {

class SaidPatternTest : public testing::Test {
    hosts::Apartment mvarApartment;
};

const ledger::CodeFiles LayerFiles = [](const std::wstring& file) {
    if (file == L"layers.csv")
        return hosts::ParseCsv(L"Land code,Land,Town code,Town\nD,Germany,1,Ulm\nD,Germany,2,Bonn\nF,France,1,Nice\n");
    if (file == L"flat.csv") return hosts::ParseCsv(L"c,v\n");
    return hosts::ParseCsv(L"c,v\n1,North\n2,\"South \"\"x\"\"\"\n");
};

std::wstring Built(const std::wstring& pattern, const PatternSettings& settings = {}) {
    return BuildDefinition(ParsePattern(pattern), settings, LayerFiles);
}

std::wstring BuiltAgain(const SaidPattern& said) {
    return BuildDefinition(ParsePattern(said.text), said.settings,
                           [&said](const std::wstring& file) { return hosts::ParseCsv(said.files.at(file)); });
}

} // namespace

TEST_F(SaidPatternTest, EveryPatternIsSaidAsItWasWritten) {
    for (const wchar_t* pattern :
         {L"INV-{Date:yyyy}-{#####}", L"{Customer:4}{##}", L"{Country=Country.csv}-{###}", L"a{{b}}c{####:1000..4999}",
          L"{Date:yyyy}{Date:mm}{##/Date}", L"{@Today:yymmdd}{A..F:C as Rev}{#/}", L"{\"-\" as Dash}{A:1}{#/Dash}",
          L"{Land=layers.csv|1}-{Town=layers.csv|2 as City}{###/City}", L"{Town=layers.csv|2}{Land=layers.csv|1}{##}",
          L"{=year(Date)}{Half=half(Date)}{###}{Check=luhn(Number):1}", L"{=month(Date):00}{=month(Due):00}",
          L"{Item:0000}{\"A/B\":3 as \"x:y\"}", L"{Name:>:3}", L"{User:\"@@@\"=User.csv}", L"A{\"B\"}C{####:..0500}"}) {
        const std::wstring definition = Built(pattern);
        const SaidPattern said = SayPattern(definition);
        ASSERT_NE(said.text, L"") << hosts::ToUtf8(pattern) << ": " << hosts::ToUtf8(said.why);
        EXPECT_EQ(BuiltAgain(said), definition) << hosts::ToUtf8(pattern) << " -> " << hosts::ToUtf8(said.text);
        EXPECT_TRUE(said.besides.empty());
        EXPECT_EQ(SayPattern(BuiltAgain(said)).text, said.text);
    }
    EXPECT_EQ(SayPattern(Built(L"INV-{Date:yyyy}-{#####}")).text, L"INV-{Date:yyyy}-{#####}");
    EXPECT_EQ(SayPattern(Built(L"{=year(Date)}{Half=half(Date)}{###}")).text, L"{=year(Date)}{Half=half(Date)}{###}");
    EXPECT_EQ(SayPattern(Built(L"{Town=layers.csv|2}{Land=layers.csv|1}{##}")).text,
              L"{Town=layers.csv|2}{Land=layers.csv|1}{##}");
}

TEST_F(SaidPatternTest, SettingsAreSaidBesideThePattern) {
    const PatternSettings settings{true, 4, 16, 1, L"06:30"};
    const SaidPattern said = SayPattern(Built(L"{A:1}{##}", settings));
    EXPECT_EQ(said.settings, settings);
    EXPECT_EQ(BuiltAgain(said), Built(L"{A:1}{##}", settings));
}

TEST_F(SaidPatternTest, RightsAndLastValuesStandBeside) {
    const std::wstring definition = Replaced(Replaced(Built(L"{A:1}{##}"), L"3\r1", L"3\r0"), L"15=1", L"15=0");
    const SaidPattern said = SayPattern(definition);
    EXPECT_EQ(said.text, L"{A:1}{##}");
    EXPECT_EQ(said.besides, (std::vector<std::wstring>{L"right to add bands 0", L"right to drop of band A 0"}));
}

TEST_F(SaidPatternTest, WhatNoPatternSaysIsToldWhy) {
    const struct {
        std::wstring definition;
        const wchar_t* why;
    } rows[] = {
        {Replaced(Built(L"{A:1}{##}"), L"4=00", L"4=0\\0"),
         L"the number of band Number is written with the format \"0\\0\""},
        {Replaced(Built(L"{A:1}{##}"), L"14\rA,,", L"14\rA,,;B,,"), L"fields: the rule has \"A,,;B,,\""},
        {Replaced(Built(L"{A:1}{##}"), L"14\rA,,", L"14\rA,Customer,"), L"fields: the rule has \"A,Customer,\""},
        {Replaced(Built(L"{A=a.csv}{##}"), L",1,1,North", L",1,1,"), L"the value of code \"1\" is empty"},
        {Replaced(Built(L"{A:1}{##:5}"), L"8=1", L"8=2"), L"begin of band Number: the rule has \"2\""},
    };
    for (const auto& row : rows) {
        const SaidPattern said = SayPattern(row.definition);
        EXPECT_EQ(said.text, L"");
        EXPECT_NE(said.why.find(row.why), std::wstring::npos) << hosts::ToUtf8(said.why);
    }
}

TEST_F(SaidPatternTest, TreesThatConvertAlikeAreTheSame) {
    const std::wstring definition = Built(L"{Land=layers.csv|1}{Town=layers.csv|2}{##}");
    std::wstring other = definition;
    const std::wstring tree = L"5;,1,D,Germany;1,2,1,Ulm;1,3,2,Bonn;,4,F,France;4,5,1,Nice";
    for (auto at = other.find(tree); at != std::wstring::npos; at = other.find(tree))
        other.replace(at, tree.size(), L"9;,7,D,Germany;,4,F,France;7,2,1,Ulm;4,9,1,Nice;7,3,2,Bonn");
    EXPECT_EQ(SayPattern(other).text, SayPattern(definition).text);
    EXPECT_NE(SayPattern(other).text, L"");
}

TEST_F(SaidPatternTest, TheBuilderTellsThePlace) {
    const struct {
        const wchar_t* pattern;
        std::size_t position;
        const wchar_t* message;
    } rows[] = {
        {L"x{A:3=a.csv}", 1, L"the codes in a.csv have 1 character, 3 expected"},
        {L"xy{A:1}{B:3 as \" \"}", 15, L"a name is expected"},
    };
    for (const auto& row : rows) {
        try {
            Built(row.pattern);
            ADD_FAILURE() << hosts::ToUtf8(row.pattern);
        } catch (const ledger::PatternError& error) {
            EXPECT_EQ(error.Position(), row.position) << hosts::ToUtf8(row.pattern);
            EXPECT_NE(error.Message().find(row.message), std::wstring::npos) << hosts::ToUtf8(error.Message());
        }
    }
    EXPECT_THROW(Built(L"{A=flat.csv}"), hosts::HostError);
}
