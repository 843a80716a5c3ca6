#include "ledger/core/AuditCodes.h"

#include "ledger/core/Json.h"

namespace ledger {

namespace {

constexpr std::size_t CodesRead = 2000;

} // namespace

void CodeAudit::CheckEach(const std::function<void()>& advance) {
    Codes codes(mvarDatabase, mvarReport.rule.id);
    std::wstring before;
    for (;;) {
        const std::vector<CodeRow> rows = codes.After(before, CodesRead);
        if (rows.empty()) return;
        for (const CodeRow& row : rows) {
            Check(row);
            if (advance) advance();
        }
        CheckNumbers(rows, before);
        before = rows.back().code;
    }
}

void CodeAudit::CheckNumbers(const std::vector<CodeRow>& rows, const std::wstring& before) {
    const auto numbers = Codes(mvarDatabase, mvarReport.rule.id).NumbersBetween(before, rows.back().code);
    for (const CodeRow& row : rows) {
        const auto found = numbers.find(row.code);
        const std::int64_t has = found == numbers.end() ? 0 : found->second;
        if (has < static_cast<std::int64_t>(mvarDefinitions.NumbersOfCode(row.definition).value_or(1)))
            mvarReport.Find(FindingKind::Uncounted,
                            L"code " + row.code + L" has not the numbers that its definition gives it",
                            {{L"code", row.code}});
    }
}

void CodeAudit::Check(const CodeRow& row) {
    ++mvarReport.codes;
    if (!IsJsonObject(row.fields))
        mvarReport.Find(FindingKind::Fields, L"the fields of code " + row.code + L" are no JSON",
                        {{L"code", row.code}});
    if (!mvarDefinitions.NumbersOfCode(row.definition))
        mvarReport.Find(FindingKind::Definition,
                        L"code " + row.code + L" was made by definition " + std::to_wstring(row.definition) +
                            L", which is not there",
                        {{L"code", row.code}, {L"definition", row.definition}});
    if (!mvarReuse.Fits(row))
        mvarReport.Find(FindingKind::Changed,
                        L"code " + row.code + L", which got a number that was given again, is not as it was stored",
                        {{L"code", row.code}});
    mvarJournal.TellMark(row);
}

void CodeAudit::CheckLetterCase() {
    Statement& groups = mvarDatabase.Prepare(L"SELECT UPPER(code), COUNT(*) FROM kestrel_codes WHERE rule_id = ? "
                                             L"GROUP BY UPPER(code) HAVING COUNT(*) > 1 ORDER BY UPPER(code)");
    groups.Set(mvarReport.rule.id).Execute();
    while (groups.Fetch()) {
        const std::wstring code = groups.Text(1);
        const std::int64_t count = groups.Number(2);
        mvarReport.Find(FindingKind::Duplicate,
                        std::to_wstring(count) + L" codes are " + code + L" but for letter case",
                        {{L"code", code}, {L"codes", count}});
    }
}

} // namespace ledger
