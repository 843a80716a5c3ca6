#include "ledger/core/RuleChange.h"

#include <utility>

#include "hosts/common/Text.h"
#include "ledger/core/Codes.h"
#include "ledger/core/Journal.h"
#include "ledger/core/NumberingCheck.h"
#include "ledger/core/Numberings.h"
#include "ledger/core/Recount.h"
#include "ledger/core/Reuse.h"
#include "ledger/core/Stamp.h"

namespace ledger {

namespace {

void RefuseOtherLength(Database& database, const StoredRule& rule, const CodeMaker& maker) {
    const auto length = static_cast<std::int64_t>(maker.CodeLength());
    if (length == rule.definition.codeLength) return;
    const std::int64_t codes = Codes(database, rule.id).Count();
    if (codes == 0) return;
    throw hosts::HostError(L"rule \"" + rule.name + L"\" has issued " + hosts::Counted(codes, L"code") + L" of " +
                           hosts::Counted(rule.definition.codeLength, L"character") +
                           L" and the new definition makes codes of " + std::to_wstring(length) +
                           L"; keep it as a rule of another name");
}

void RefuseUnfit(const RuleSettings& settings, const CodeMaker& maker) {
    if (settings.step < 1)
        throw hosts::HostError(L"a step of " + std::to_wstring(settings.step) + L" leads nowhere; it is 1 or more");
    const std::size_t bands = maker.NumberBands().size();
    if (settings.reuse && bands != 1)
        throw hosts::HostError(L"the rule has " + std::to_wstring(bands) +
                               L" number bands; numbers can be given again where there is exactly one");
}

class Changing {
  public:
    Changing(Database& database, const RuleChange& change, CodeMaker& maker, std::wstring ticket)
        : mvarDatabase(database), mvarRules(database), mvarChange(change), mvarMaker(maker),
          mvarTicket(std::move(ticket)) {}

    ChangeReport Run() {
        mvarDatabase.KeepWritersOut(L"kestrel_codes");
        const auto stored = mvarRules.Find(mvarChange.name);
        return stored ? Change(*stored) : Add();
    }

  private:
    [[nodiscard]] StoredRule Wanted(StoredRule rule) const {
        rule.policy = mvarChange.policy.value_or(rule.policy);
        rule.leaseSize = mvarChange.leaseSize.value_or(rule.leaseSize);
        rule.settings = mvarChange.settings.value_or(rule.settings);
        const RuleSettings& made = mvarMaker.Settings();
        if (rule.settings.step != made.step || rule.settings.series != made.series || rule.settings.week != made.week)
            Rules::RefuseChanged(rule);
        RefuseUnfit(rule.settings, mvarMaker);
        return rule;
    }

    void NewDefinition(StoredRule& rule) {
        rule.definition = {rule.definition.number + 1, static_cast<std::int64_t>(mvarMaker.CodeLength()), NowText(),
                           ThisUser(), mvarChange.definition};
        mvarRules.AddDefinition(rule.id, rule.definition);
    }

    void Write(const StoredRule& rule, const wchar_t* kind, const SealSum& sum) {
        Journal(mvarDatabase, rule.id)
            .Write(kind, std::to_wstring(rule.definition.number), sum.Text() + L", " + SettingsText(rule), mvarTicket);
    }

    ChangeReport Add() {
        if (Numberings(mvarDatabase).Find(mvarChange.name))
            throw hosts::HostError(L"\"" + mvarChange.name + L"\" is a numbering; give the rule another name");
        StoredRule rule;
        rule.name = mvarChange.name;
        rule = Wanted(rule);
        rule.definition.number = 1;
        mvarRules.Add(rule);
        rule.definition.number = 0;
        NewDefinition(rule);
        Write(rule, acts::Import, {});
        return {rule, true, 0, 0, 0};
    }

    // Conditions and days must go on to make sense, and no two rules of a numbering can give the same code.
    void RefuseUnfitFor(const StoredRule& rule) {
        for (const Numbering& numbering : Numberings(mvarDatabase).All())
            if (numbering.Names(rule.id)) CheckNumbering(numbering, mvarRules.All());
    }

    ChangeReport Change(const StoredRule& stored) {
        if (Journal(mvarDatabase, stored.id).OfTicket(mvarTicket)) // by an attempt whose COMMIT was not answered
            return {stored, true, Codes(mvarDatabase, stored.id).Count(), 0, 0};
        StoredRule rule = Wanted(stored);
        const bool isNew = mvarChange.definition != stored.definition.text;
        if (!isNew && rule.policy == stored.policy && rule.leaseSize == stored.leaseSize &&
            rule.settings == stored.settings)
            return {stored, false, 0, 0, 0};
        if (mvarChange.revision && *mvarChange.revision != stored.revision) Rules::RefuseChanged(stored);
        if (mvarDatabase.EntersByWriting()) mvarRules.Enter(stored);
        ChangeReport report{rule, true, 0, 0, 0};
        SealSum sum;
        if (isNew) {
            RefuseOtherLength(mvarDatabase, stored, mvarMaker);
            NewDefinition(rule);
        }
        if (isNew || rule.settings.series != stored.settings.series) {
            Recount recount(mvarDatabase, rule.id, Journal(mvarDatabase, rule.id).NextNumber());
            report.codes = recount.Run(mvarMaker);
            report.foreign = recount.Foreign();
            report.shared = recount.Shared();
            sum = recount.Sum();
        }
        if (rule.settings.reuse || stored.settings.reuse) Reuse(mvarDatabase, rule.id).Refill(rule.settings.reuse);
        mvarRules.Replace(rule);
        RefuseUnfitFor(rule);
        Write(rule, isNew ? acts::Import : acts::Settings, sum);
        report.rule = rule;
        return report;
    }

    Database& mvarDatabase;
    Rules mvarRules;
    const RuleChange& mvarChange;
    CodeMaker& mvarMaker;
    std::wstring mvarTicket;
};

} // namespace

RuleSettings SettingsAfter(Database& database, Patience patience, const RuleChange& change) {
    if (change.settings) return *change.settings;
    Rules rules(database);
    const auto stored = InSnapshot(database, patience, [&] { return rules.Find(change.name); });
    return stored ? stored->settings : RuleSettings{};
}

ChangeReport ChangeRule(Database& database, Patience patience, const RuleChange& change, CodeMaker& maker) {
    const std::wstring ticket = NewTicket();
    return InTransaction(database, patience, OnUniqueKey::Retry,
                         [&] { return ChangeRuleWithin(database, change, maker, ticket); });
}

ChangeReport ChangeRuleWithin(Database& database, const RuleChange& change, CodeMaker& maker,
                              const std::wstring& ticket) {
    maker.RefuseUnsound();
    return Changing(database, change, maker, ticket).Run();
}

} // namespace ledger
