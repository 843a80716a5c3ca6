#include "ledger/core/AuditJournal.h"

#include <algorithm>

#include "hosts/common/Text.h"

namespace ledger {

JournalAudit::JournalAudit(Database& database, AuditReport& report)
    : mvarRuleId(report.rule.id), mvarReport(report), mvarActs(Journal(database, report.rule.id).All()) {
    Check();
}

void JournalAudit::Check() {
    std::wstring before;
    std::int64_t next = 1;
    for (const Act& act : mvarActs) {
        if (act.number != next++ || act.seal != SealOf(mvarRuleId, act, before))
            mvarReport.Find(FindingKind::Act,
                            L"act " + std::to_wstring(act.number) + L" (" + act.kind +
                                L") does not follow the one before it",
                            {{L"act", act.number}, {L"what", act.kind}});
        before = act.seal;
        if (act.kind == acts::Void) mvarVoids[act.number] = act.subject;
    }
    if (mvarActs.empty())
        mvarReport.Find(FindingKind::Act, L"the journal of the rule is gone", {});
    else
        mvarReport.heads.push_back({L"journal", {}, {}, 0, mvarActs.back().number, mvarActs.back().seal});
}

const Act* JournalAudit::At(std::int64_t number) const {
    const auto found = std::ranges::lower_bound(mvarActs, number, {}, &Act::number);
    return found == mvarActs.end() || found->number != number ? nullptr : &*found;
}

std::int64_t JournalAudit::LongestStep() const {
    std::int64_t longest = 1;
    for (const Act& act : mvarActs)
        longest = std::max(longest, SettingsIn(act).step);
    return longest;
}

bool JournalAudit::BringsRows(const Act& act) {
    // A change of settings may count codes anew; a change of the name alone tells no sum.
    if (act.kind == acts::Settings)
        return !act.detail.empty() && act.detail.front() >= L'0' && act.detail.front() <= L'9';
    return BringsDefinition(act) || act.kind == acts::Adopt || act.kind == acts::Repair || act.kind == acts::Next;
}

void JournalAudit::TellMark(const CodeRow& code) {
    if (code.voidAct == 0) return;
    const auto act = mvarVoids.find(code.voidAct);
    if (act != mvarVoids.end() && act->second == code.code)
        mvarVoids.erase(act);
    else
        mvarReport.Find(FindingKind::Void, L"code " + code.code + L" is marked void, and the journal has no act for it",
                        {{L"code", code.code}, {L"act", code.voidAct}});
}

void JournalAudit::TellReused(const CodeRow& code) {
    const auto act = mvarVoids.find(code.voidAct);
    if (act != mvarVoids.end() && act->second == code.code) mvarVoids.erase(act);
}

void JournalAudit::TellRow(const NumberRow& row) {
    if (row.act > 0) mvarSums[row.act].Add(row.seal);
}

void JournalAudit::CheckMarks() {
    for (const auto& [act, code] : mvarVoids)
        mvarReport.Find(FindingKind::Void,
                        L"code " + code + L" is void by act " + std::to_wstring(act) + L", and not marked so",
                        {{L"code", code}, {L"act", act}});
}

void JournalAudit::CheckSums() {
    for (const Act& act : mvarActs) {
        if (BringsRows(act) && !act.detail.starts_with(mvarSums[act.number].Text()))
            mvarReport.Find(FindingKind::Act,
                            L"rows that act " + std::to_wstring(act.number) + L" (" + act.kind +
                                L") brought are gone or changed",
                            {{L"act", act.number}, {L"what", act.kind}});
        mvarSums.erase(act.number);
    }
    for (const auto& [act, sum] : mvarSums)
        mvarReport.Find(FindingKind::Act,
                        hosts::Counted(sum.Count(), L"number") + L" came by act " + std::to_wstring(act) +
                            L", which is not there",
                        {{L"act", act}});
}

} // namespace ledger
