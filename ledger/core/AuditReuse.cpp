#include "ledger/core/AuditReuse.h"

#include <set>

namespace ledger {

ReuseAudit::ReuseAudit(Database& database, JournalAudit& journal, AuditReport& report) : mvarReport(report) {
    std::set<std::int64_t> known;
    for (CodeRow& row : Reuse(database, report.rule.id).All()) {
        const Act* act = journal.At(row.reuseAct);
        known.insert(row.reuseAct);
        if (!IsAsItWas(row, act)) {
            report.Find(FindingKind::Act, L"code " + row.code + L", whose number was given again, is not as it was",
                        {{L"code", row.code}, {L"act", row.reuseAct}});
            continue;
        }
        journal.TellReused(row);
        auto first = mvarFirst.extract(row.code);
        mvarSeals.erase(row.code);
        mvarSeals[SuccessorIn(*act)] = PartOf(*act, L", is ");
        mvarFirst[SuccessorIn(*act)] = first ? std::move(first.mapped()) : std::move(row);
    }
    for (const Act& act : journal.Acts())
        if (act.kind == acts::Reuse && !known.contains(act.number))
            report.Find(FindingKind::Act, L"code " + act.subject + L", whose number was given again, is gone",
                        {{L"code", act.subject}, {L"act", act.number}});
    CheckFree(database);
}

bool ReuseAudit::IsAsItWas(const CodeRow& row, const Act* act) const {
    return act != nullptr && act->kind == acts::Reuse && act->subject == row.code &&
           PartOf(*act, L"void ") == std::to_wstring(row.voidAct) &&
           PartOf(*act, L", was ") == SealOf(mvarReport.rule.id, row);
}

bool ReuseAudit::Fits(const CodeRow& code) const {
    const auto seal = mvarSeals.find(code.code);
    return seal == mvarSeals.end() || seal->second == SealOf(mvarReport.rule.id, code);
}

const CodeRow& ReuseAudit::First(const CodeRow& code) const {
    const auto first = mvarFirst.find(code.code);
    return first == mvarFirst.end() ? code : first->second;
}

void ReuseAudit::CheckFree(Database& database) {
    const bool isAllowed = mvarReport.rule.settings.reuse;
    for (const FreeNumber& free : Reuse(database, mvarReport.rule.id).Wrong(isAllowed))
        mvarReport.Find(FindingKind::Void,
                        L"number " + std::to_wstring(free.number) + L" of code " + free.code +
                            L" waits to be given again and must not, or does not and must",
                        {{L"code", free.code}, {L"number", free.number}});
}

} // namespace ledger
