#include "ledger/core/RuleChange.h"

#include <set>
#include <utility>

#include "ledger/core/Codes.h"
#include "ledger/core/Journal.h"
#include "ledger/core/Stamp.h"

namespace ledger {

namespace {

constexpr std::size_t CodesAtOnce = 1000;

// Counts the codes that are stored in the series of a definition, beside those that they are counted in already.
class Recount {
  public:
    Recount(Database& database, const StoredRule& rule, CodeMaker& maker, std::int64_t act)
        : mvarRuleId(rule.id), mvarCodes(database, rule.id), mvarMaker(maker), mvarAct(act) {}

    // The sum of the rows that were added.
    SealSum Run(ChangeReport& report) {
        for (NumberHeld& held : mvarCodes.AllNumbers())
            mvarTaken.insert(std::move(held));
        std::wstring last;
        for (;;) {
            const std::vector<CodeRow> codes = mvarCodes.After(last, CodesAtOnce);
            if (codes.empty()) return mvarSum;
            for (const CodeRow& code : codes)
                Count(code, report);
            last = codes.back().code;
        }
    }

  private:
    void Count(const CodeRow& code, ChangeReport& report) {
        ++report.codes;
        std::vector<NumberHeld> numbers;
        try {
            numbers = mvarMaker.Recognise(code.code).numbers;
        } catch (const hosts::RecordError&) { // made by an older definition
            ++report.foreign;
        }
        for (NumberHeld& held : numbers) {
            if (mvarTaken.insert(held).second)
                Add(code, std::move(held));
            else if (mvarCodes.Holder(held) != code.code)
                ++report.shared;
        }
    }

    void Add(const CodeRow& code, NumberHeld held) {
        NumberRow row{std::move(held), 0, mvarAct, {}};
        row.seal = SealOf(mvarRuleId, code, row, {});
        mvarSum.Add(row.seal);
        mvarCodes.AddNumbers(code.code, {&row, 1});
    }

    std::int64_t mvarRuleId;
    Codes mvarCodes;
    CodeMaker& mvarMaker;
    std::int64_t mvarAct;
    std::set<NumberHeld> mvarTaken;
    SealSum mvarSum;
};

void RefuseOtherLength(Database& database, const StoredRule& rule, const CodeMaker& maker) {
    const auto length = static_cast<std::int64_t>(maker.CodeLength());
    if (length == rule.definition.codeLength) return;
    const std::int64_t codes = Codes(database, rule.id).Count();
    if (codes == 0) return;
    throw hosts::HostError(L"rule \"" + rule.name + L"\" has issued " + std::to_wstring(codes) + L" codes of " +
                           std::to_wstring(rule.definition.codeLength) +
                           L" characters and the new definition makes codes of " + std::to_wstring(length) +
                           L"; keep it as a rule of another name");
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
            sum = Recount(mvarDatabase, rule, mvarMaker, Journal(mvarDatabase, rule.id).NextNumber()).Run(report);
        }
        mvarRules.Replace(rule);
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

ChangeReport ChangeRule(Database& database, Patience patience, const RuleChange& change, CodeMaker& maker) {
    maker.RefuseUnsound();
    const std::wstring ticket = NewTicket();
    return InTransaction(database, patience, OnUniqueKey::Retry,
                         [&] { return Changing(database, change, maker, ticket).Run(); });
}

} // namespace ledger
