#include "ledger/core/Reuse.h"

#include "ledger/core/Stamp.h"

namespace ledger {

namespace {

std::wstring SelectReused() {
    return std::wstring(L"SELECT ") + CodeColumns + L", c.act FROM kestrel_reused c WHERE c.rule_id = ?";
}

// A number whose code is void and that waits for nobody yet, or the other way round.
const wchar_t* const IsOfVoidCode =
    L"EXISTS (SELECT 1 FROM kestrel_numbers n JOIN kestrel_codes c ON c.rule_id = n.rule_id AND c.code = n.code WHERE "
    L"n.rule_id = kestrel_free.rule_id AND n.band = kestrel_free.band AND n.series = kestrel_free.series AND n.number "
    L"= kestrel_free.number AND n.code = kestrel_free.code AND c.void_act <> 0)";

const wchar_t* const NotListed =
    L" FROM kestrel_codes c JOIN kestrel_numbers n ON n.rule_id = c.rule_id AND n.code = c.code WHERE c.rule_id = ? "
    L"AND c.void_act <> 0 AND NOT EXISTS (SELECT 1 FROM kestrel_free f WHERE f.rule_id = n.rule_id AND f.band = n.band "
    L"AND f.series = n.series AND f.number = n.number)";

CodeRow ReadReused(const Statement& row) {
    CodeRow code = ReadCode(row, 1);
    code.reuseAct = row.Number(CodeColumnCount + 1);
    return code;
}

} // namespace

const wchar_t* const LowestFreeQuery =
    L"SELECT number, code FROM kestrel_free WHERE rule_id = ? AND band = ? AND series = ? AND number = (SELECT "
    L"MIN(number) FROM kestrel_free WHERE rule_id = ? AND band = ? AND series = ? AND number >= ? AND number <= ?)";

std::wstring SealOf(std::int64_t ruleId, const CodeRow& code) {
    return SealText({})
        .Add(L"code")
        .Add(ruleId)
        .Add(code.code)
        .Add(code.ticket)
        .Add(code.definition)
        .Add(code.origin)
        .Add(code.storedAt)
        .Add(code.fields)
        .Seal();
}

std::wstring SuccessorIn(const Act& act) {
    const std::wstring word = L", code ";
    const std::size_t at = act.detail.find(word);
    return at == std::wstring::npos ? std::wstring() : act.detail.substr(at + word.size());
}

std::optional<FreeNumber> Reuse::Lowest(const std::wstring& band, const std::wstring& series, std::int64_t start,
                                        std::int64_t highest) {
    Statement& row = mvarDatabase.Prepare(LowestFreeQuery);
    row.Set(mvarRuleId).Set(band).Set(series).Set(mvarRuleId).Set(band).Set(series).Set(start).Set(highest);
    return row.First([](const Statement& found) { return FreeNumber{found.Number(1), found.Text(2)}; });
}

bool Reuse::HasAny() {
    return mvarDatabase.Prepare(L"SELECT number FROM kestrel_free WHERE rule_id = ? LIMIT 1")
        .Set(mvarRuleId)
        .First([](const Statement&) { return true; })
        .has_value();
}

void Reuse::Free(const std::wstring& code) {
    mvarDatabase
        .Prepare(
            L"INSERT INTO kestrel_free (rule_id, band, series, number, code) SELECT rule_id, band, series, number, "
            L"code FROM kestrel_numbers WHERE rule_id = ? AND code = ?")
        .Set(mvarRuleId)
        .Set(code)
        .Execute();
}

void Reuse::Give(const FreeNumber& number, const CodeRow& code) {
    Codes codes(mvarDatabase, mvarRuleId);
    const auto old = codes.Find(number.code);
    if (!old || old->voidAct == 0) throw DbError(Fault::Conflict, L"the number was given again meanwhile");
    const std::int64_t act =
        Journal(mvarDatabase, mvarRuleId)
            .Write(acts::Reuse, old->code,
                   L"void " + std::to_wstring(old->voidAct) + L", was " + SealOf(mvarRuleId, *old) + L", is " +
                       SealOf(mvarRuleId, code) + L", code " + code.code,
                   NewTicket());
    for (const NumberHeld& held : codes.NumbersOf(old->code))
        mvarDatabase.Prepare(L"DELETE FROM kestrel_free WHERE rule_id = ? AND band = ? AND series = ? AND number = ?")
            .Set(mvarRuleId)
            .Set(held.band)
            .Set(held.series)
            .Set(held.number)
            .Execute();
    mvarDatabase
        .Prepare(L"INSERT INTO kestrel_reused (rule_id, act, code, ticket, definition, origin, void_act, stored_at, "
                 L"fields) SELECT rule_id, ?, code, ticket, definition, origin, void_act, stored_at, fields FROM "
                 L"kestrel_codes WHERE rule_id = ? AND code = ?")
        .Set(act)
        .Set(mvarRuleId)
        .Set(old->code)
        .Execute();
    mvarDatabase.Prepare(L"DELETE FROM kestrel_codes WHERE rule_id = ? AND code = ?")
        .Set(mvarRuleId)
        .Set(old->code)
        .Execute();
    const NewCode given{code, {}};
    codes.Add({&given, 1});
    mvarDatabase.Prepare(L"UPDATE kestrel_numbers SET code = ? WHERE rule_id = ? AND code = ?")
        .Set(code.code)
        .Set(mvarRuleId)
        .Set(old->code)
        .Execute();
}

std::int64_t Reuse::Refill(bool isAllowed) {
    Statement& removal = mvarDatabase.Prepare(std::wstring(L"DELETE FROM kestrel_free WHERE rule_id = ?") +
                                              (isAllowed ? std::wstring(L" AND NOT ") + IsOfVoidCode : L""));
    removal.Set(mvarRuleId).Execute();
    const std::int64_t removed = removal.Changed();
    if (!isAllowed) return removed;
    Statement& missing = mvarDatabase.Prepare(
        std::wstring(L"INSERT INTO kestrel_free (rule_id, band, series, number, code) SELECT n.rule_id, n.band, "
                     L"n.series, n.number, n.code") +
        NotListed);
    missing.Set(mvarRuleId).Execute();
    return removed + missing.Changed();
}

std::vector<FreeNumber> Reuse::Wrong(bool isAllowed) {
    const auto read = [](const Statement& row) { return FreeNumber{row.Number(1), row.Text(2)}; };
    std::vector<FreeNumber> wrong =
        mvarDatabase
            .Prepare(std::wstring(L"SELECT number, code FROM kestrel_free WHERE rule_id = ?") +
                     (isAllowed ? std::wstring(L" AND NOT ") + IsOfVoidCode : L""))
            .Set(mvarRuleId)
            .Rows(read);
    if (!isAllowed) return wrong;
    std::vector<FreeNumber> missing =
        mvarDatabase.Prepare(std::wstring(L"SELECT n.number, n.code") + NotListed).Set(mvarRuleId).Rows(read);
    wrong.insert(wrong.end(), missing.begin(), missing.end());
    return wrong;
}

std::vector<CodeRow> Reuse::All() {
    return mvarDatabase.Prepare(SelectReused() + L" ORDER BY c.act").Set(mvarRuleId).Rows(ReadReused);
}

std::optional<ReusedCode> Reuse::Find(const std::wstring& code) {
    const auto row = mvarDatabase.Prepare(SelectReused() + L" AND c.code = ? ORDER BY c.act DESC")
                         .Set(mvarRuleId)
                         .Set(code)
                         .First(ReadReused);
    if (!row) return std::nullopt;
    const auto act = Journal(mvarDatabase, mvarRuleId).At(row->reuseAct);
    return ReusedCode{*row, act ? SuccessorIn(*act) : std::wstring()};
}

} // namespace ledger
