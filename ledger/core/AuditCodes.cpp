#include "ledger/core/AuditCodes.h"

#include "ledger/core/Json.h"

namespace ledger {

namespace {

constexpr std::size_t RowsAtOnce = 2000;

} // namespace

void CodeAudit::CheckEach(const std::function<void()>& advance) {
    Codes codes(mvarDatabase, mvarReport.rule.id);
    std::vector<CodeRow> rows = codes.After({}, RowsAtOnce);
    while (!rows.empty()) {
        for (const CodeRow& row : rows) {
            Check(row);
            if (advance) advance();
        }
        rows = codes.After(rows.back().code, RowsAtOnce);
    }
}

void CodeAudit::Check(const CodeRow& row) {
    ++mvarReport.codes;
    ++mvarCodesOf[row.definition];
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

void CodeAudit::CheckUncounted() {
    for (const auto& [definition, codes] : mvarCodesOf) {
        const auto numbers = static_cast<std::int64_t>(mvarDefinitions.NumbersOfCode(definition).value_or(1));
        const auto uncounted =
            mvarDatabase
                .Prepare(L"SELECT c.code FROM kestrel_codes c WHERE c.rule_id = ? AND c.definition = ? AND (SELECT "
                         L"COUNT(*) FROM kestrel_numbers n WHERE n.rule_id = c.rule_id AND n.code = c.code) < ? "
                         L"ORDER BY c.code")
                .Set(mvarReport.rule.id)
                .Set(definition)
                .Set(numbers)
                .Rows([](const Statement& row) { return row.Text(1); });
        for (const std::wstring& code : uncounted)
            mvarReport.Find(FindingKind::Uncounted,
                            L"code " + code + L" has not the numbers that its definition gives it", {{L"code", code}});
    }
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
