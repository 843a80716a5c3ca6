#include "ledger/core/Codes.h"

#include <windows.h>

#include <algorithm>
#include <array>
#include <cwchar>

namespace ledger {

namespace {

// Rows that one INSERT stores: few enough for every engine's limit of parameters, enough to make the way there cheap.
constexpr std::size_t RowsAtOnce = 50;

const wchar_t* const CodeColumns = L"kestrel_codes (rule_id, code, state, ticket, stored_at, fields, reason)";

std::wstring InsertText(const std::wstring& into, const std::wstring& row, std::size_t rows) {
    std::wstring text = L"INSERT INTO " + into + L" VALUES " + row;
    for (std::size_t more = 1; more < rows; ++more)
        text += L", " + row;
    return text;
}

// Calls the function with pieces of the rows: full ones of RowsAtOnce, then single rows, so that only two statements
// are ever prepared.
template <class Row, class Store>
void InPieces(std::span<const Row> rows, Store store) {
    while (!rows.empty()) {
        const std::size_t size = rows.size() >= RowsAtOnce ? RowsAtOnce : 1;
        store(rows.first(size));
        rows = rows.subspan(size);
    }
}

struct NumberRow {
    const NumberHeld* number;
    const std::wstring* code;
};

void AddNumberRows(Database& database, std::int64_t ruleId, std::span<const NumberRow> rows) {
    InPieces(rows, [&](std::span<const NumberRow> piece) {
        Statement& insert = database.Prepare(
            InsertText(L"kestrel_numbers (rule_id, band, series, number, code)", L"(?, ?, ?, ?, ?)", piece.size()));
        for (const NumberRow& row : piece)
            insert.Set(ruleId).Set(row.number->band).Set(row.number->series).Set(row.number->number).Set(*row.code);
        insert.Execute();
    });
}

} // namespace

const wchar_t* const HighestNumberQuery =
    L"SELECT number, code FROM kestrel_numbers WHERE rule_id = ? AND band = ? AND series = ? AND number = "
    L"(SELECT MAX(number) FROM kestrel_numbers WHERE rule_id = ? AND band = ? AND series = ?)";

std::wstring NowText() {
    SYSTEMTIME now{};
    GetSystemTime(&now);
    std::array<wchar_t, 32> text{};
    static_cast<void>(std::swprintf(text.data(), text.size(), L"%04u-%02u-%02uT%02u:%02u:%02uZ", now.wYear, now.wMonth,
                                    now.wDay, now.wHour, now.wMinute, now.wSecond)); // there is room for all of it
    return text.data();
}

void Codes::AddRows(std::span<const NewCode> codes, const std::wstring& state, const std::wstring& now) {
    InPieces(codes, [&](std::span<const NewCode> piece) {
        Statement& insert = mvarDatabase.Prepare(InsertText(CodeColumns, L"(?, ?, ?, ?, ?, ?, '')", piece.size()));
        for (const NewCode& code : piece)
            insert.Set(mvarRuleId).Set(code.code).Set(state).Set(code.ticket).Set(now).Set(code.fields);
        insert.Execute();
    });
}

void Codes::Add(std::span<const NewCode> codes, const std::wstring& state) {
    AddRows(codes, state, NowText());
    std::vector<NumberRow> rows;
    for (const NewCode& code : codes)
        for (const NumberHeld& number : code.numbers)
            rows.push_back({&number, &code.code});
    AddNumberRows(mvarDatabase, mvarRuleId, rows);
}

bool Codes::AddIssued(const NewCode& code, std::int64_t revision) {
    Statement& insert =
        mvarDatabase.Prepare(std::wstring(L"INSERT INTO ") + CodeColumns +
                             L" SELECT id, ?, 'issued', ?, ?, ?, '' FROM kestrel_rules WHERE id = ? AND revision = ?");
    insert.Set(code.code).Set(code.ticket).Set(NowText()).Set(code.fields).Set(mvarRuleId).Set(revision).Execute();
    if (insert.Changed() != 1) return false;
    AddNumbers(code.code, code.numbers);
    return true;
}

void Codes::AddNumbers(const std::wstring& code, std::span<const NumberHeld> numbers) {
    std::vector<NumberRow> rows;
    for (const NumberHeld& number : numbers)
        rows.push_back({&number, &code});
    AddNumberRows(mvarDatabase, mvarRuleId, rows);
}

void Codes::RemoveAllNumbers() {
    mvarDatabase.Prepare(L"DELETE FROM kestrel_numbers WHERE rule_id = ?").Set(mvarRuleId).Execute();
}

std::vector<std::pair<std::wstring, NumberHeld>> Codes::AllNumbers() {
    return mvarDatabase.Prepare(L"SELECT code, band, series, number FROM kestrel_numbers WHERE rule_id = ?")
        .Set(mvarRuleId)
        .Rows([](const Statement& row) {
            return std::pair<std::wstring, NumberHeld>{row.Text(1), {row.Text(2), row.Text(3), row.Number(4)}};
        });
}

std::optional<StoredCode> Codes::Find(const std::wstring& code) {
    Statement& row = mvarDatabase.Prepare(
        L"SELECT code, state, ticket, stored_at, fields, reason FROM kestrel_codes WHERE rule_id = ? AND code = ?");
    row.Set(mvarRuleId).Set(code).Execute();
    if (!row.Fetch()) return std::nullopt;
    StoredCode found;
    found.code = row.Text(1);
    found.state = row.Text(2);
    found.ticket = row.Text(3);
    found.storedAt = row.Text(4);
    found.fields = row.Text(5);
    found.reason = row.Text(6);
    return found;
}

std::optional<HighestNumber> Codes::Highest(const std::wstring& band, const std::wstring& series) {
    Statement& row = mvarDatabase.Prepare(HighestNumberQuery);
    row.Set(mvarRuleId).Set(band).Set(series).Set(mvarRuleId).Set(band).Set(series).Execute();
    if (!row.Fetch()) return std::nullopt;
    HighestNumber highest;
    highest.number = row.Number(1);
    highest.code = row.Text(2);
    return highest;
}

std::optional<std::wstring> Codes::Holder(const NumberHeld& number) {
    Statement& row = mvarDatabase.Prepare(
        L"SELECT code FROM kestrel_numbers WHERE rule_id = ? AND band = ? AND series = ? AND number = ?");
    row.Set(mvarRuleId).Set(number.band).Set(number.series).Set(number.number).Execute();
    if (!row.Fetch()) return std::nullopt;
    return row.Text(1);
}

void Codes::Void(const std::wstring& code, const std::wstring& reason) {
    mvarDatabase.Prepare(L"UPDATE kestrel_codes SET state = 'void', reason = ? WHERE rule_id = ? AND code = ?")
        .Set(reason)
        .Set(mvarRuleId)
        .Set(code)
        .Execute();
}

std::int64_t Codes::Count() {
    Statement& row = mvarDatabase.Prepare(L"SELECT COUNT(*) FROM kestrel_codes WHERE rule_id = ?");
    row.Set(mvarRuleId).Execute();
    return row.Fetch() ? row.Number(1) : 0;
}

std::vector<std::wstring> Codes::Uncounted(std::size_t bands) {
    return mvarDatabase
        .Prepare(
            L"SELECT c.code FROM kestrel_codes c LEFT JOIN (SELECT code, COUNT(*) AS held FROM kestrel_numbers WHERE "
            L"rule_id = ? GROUP BY code) n ON n.code = c.code WHERE c.rule_id = ? AND COALESCE(n.held, 0) < ? "
            L"ORDER BY c.code")
        .Set(mvarRuleId)
        .Set(mvarRuleId)
        .Set(static_cast<std::int64_t>(bands))
        .Rows([](const Statement& row) { return row.Text(1); });
}

void Codes::ForEach(const std::function<void(const std::wstring& code)>& visit) {
    Statement& rows = mvarDatabase.Prepare(L"SELECT code FROM kestrel_codes WHERE rule_id = ? ORDER BY code");
    rows.Set(mvarRuleId).Execute();
    while (rows.Fetch())
        visit(rows.Text(1));
}

std::vector<std::int64_t> RulesOfCode(Database& database, const std::wstring& code) {
    return database.Prepare(L"SELECT rule_id FROM kestrel_codes WHERE code = ?")
        .Set(code)
        .Rows([](const Statement& row) { return row.Number(1); });
}

} // namespace ledger
