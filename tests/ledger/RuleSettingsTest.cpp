#include <gtest/gtest.h>

#include "hosts/common/HostError.h"
#include "ledger/core/Rules.h"

namespace {

ledger::RuleSettings AllSet() {
    ledger::RuleSettings settings;
    settings.step = 10;
    settings.reuse = true;
    settings.series = L"the, company";
    settings.week = 7;
    settings.retired = true;
    return settings;
}

} // namespace

TEST(RuleSettingsTest, WhatIsAsItIsAnywayIsNotWritten) {
    EXPECT_EQ(ledger::TextOf(ledger::RuleSettings{}), L"{}");
    EXPECT_EQ(ledger::RuleSettingsOf(L"{}"), ledger::RuleSettings{});
}

TEST(RuleSettingsTest, WhatIsWrittenIsReadBack) {
    const std::wstring text = ledger::TextOf(AllSet());
    EXPECT_EQ(text, LR"({"step":10,"reuse":true,"series":"the,\u0020company","week":7,"retired":true})");
    EXPECT_EQ(ledger::RuleSettingsOf(text), AllSet());
}

TEST(RuleSettingsTest, WhatIsOfAnotherKindIsAsItIsAnyway) {
    for (const wchar_t* text : {L"", L"x", L"[]", L"7", LR"({"step":"10","reuse":1,"series":false,"week":"7","x":1})"})
        EXPECT_EQ(ledger::RuleSettingsOf(text), ledger::RuleSettings{}) << std::string(text, text + wcslen(text));
}

TEST(RuleSettingsTest, TheJournalTellsThemAndNothingOfThemEndsAPartOfItsLine) {
    ledger::StoredRule rule;
    const std::wstring before = ledger::SettingsText(rule);
    EXPECT_EQ(before.find(L"settings"), std::wstring::npos);
    rule.settings = AllSet();
    const std::wstring part = L", settings " + ledger::TextOf(AllSet());
    EXPECT_EQ(part.find(L", ", 1), std::wstring::npos);
    EXPECT_NE(ledger::SettingsText(rule).find(part + L", code length "), std::wstring::npos);
}

TEST(RuleSettingsTest, ARetiredRuleIsRefused) {
    EXPECT_NO_THROW(ledger::RefuseRetired({}, L"items"));
    EXPECT_THROW(ledger::RefuseRetired(AllSet(), L"items"), hosts::HostError);
}
