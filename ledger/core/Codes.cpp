#include "ledger/core/Codes.h"

namespace ledger {

namespace {

// Rows that one INSERT stores: few enough for every engine's limit of parameters, enough to make the way there cheap.
constexpr std::size_t RowsOfInsert = 50;

const wchar_t* const InsertColumns =
    L"kestrel_codes (rule_id, code, ticket, definition, origin, void_act, stored_at, fields)";

std::wstring InsertText(const std::wstring& into, const std::wstring& row, std::size_t rows) {
    std::wstring text = L"INSERT INTO " + into + L" VALUES " + row;
    for (std::size_t more = 1; more < rows; ++more)
        text += L", " + row;
    return text;
}

// Calls the function with pieces of the rows: full ones of RowsOfInsert, then single rows, so that only two statements
// are ever prepared.
template <class Row, class Store>
void InPieces(std::span<const Row> rows, Store store) {
    while (!rows.empty()) {
        const std::size_t size = rows.size() >= RowsOfInsert ? RowsOfInsert : 1;
        store(rows.first(size));
        rows = rows.subspan(size);
    }
}

struct NumberOfCode {
    const NumberRow* number;
    const std::wstring* code;
};

void AddNumberRows(Database& database, std::int64_t ruleId, std::span<const NumberOfCode> rows) {
    InPieces(rows, [&](std::span<const NumberOfCode> piece) {
        Statement& insert =
            database.Prepare(InsertText(L"kestrel_numbers (rule_id, band, series, number, code, lease, act, seal)",
                                        L"(?, ?, ?, ?, ?, ?, ?, ?)", piece.size()));
        for (const NumberOfCode& row : piece) {
            const NumberHeld& held = row.number->held;
            insert.Set(ruleId).Set(held.band).Set(held.series).Set(held.number).Set(*row.code);
            insert.Set(row.number->lease).Set(row.number->act).Set(row.number->seal);
        }
        insert.Execute();
    });
}

} // namespace

// Not by MAX: a server that takes the table for small reads the whole series for that.
const wchar_t* const HighestNumberQuery =
    L"SELECT number, code, seal FROM kestrel_numbers WHERE rule_id = ? AND band = ? AND series = ? ORDER BY number "
    L"DESC LIMIT 1";

// By ranges of codes, whose size a server looks up in its index: what it knows of a table that was filled a moment ago
// is that it was empty, and for all codes at once it would read all numbers for each. The rule is a range as well, or
// an engine would rather read all of its numbers by their key, for each range of codes.
const wchar_t* const NumbersBetweenQuery = L"SELECT code, COUNT(*) FROM kestrel_numbers WHERE rule_id >= ? AND rule_id "
                                           L"<= ? AND code > ? AND code <= ? GROUP BY "
                                           L"code";

const wchar_t* const CodeColumns = L"c.code, c.ticket, c.definition, c.origin, c.void_act, c.stored_at, c.fields";

CodeRow ReadCode(const Statement& row, unsigned first) {
    CodeRow code;
    code.code = row.Text(first);
    code.ticket = row.Text(first + 1);
    code.definition = row.Number(first + 2);
    code.origin = row.Text(first + 3);
    code.voidAct = row.Number(first + 4);
    code.storedAt = row.Text(first + 5);
    code.fields = row.Text(first + 6);
    return code;
}

std::wstring SealOf(std::int64_t ruleId, const CodeRow& code, const NumberRow& number, const std::wstring& before) {
    return SealText(before)
        .Add(L"number")
        .Add(ruleId)
        .Add(number.held.band)
        .Add(number.held.series)
        .Add(number.held.number)
        .Add(number.lease)
        .Add(number.act)
        .Add(code.code)
        .Add(code.ticket)
        .Add(code.definition)
        .Add(code.origin)
        .Add(code.storedAt)
        .Add(code.fields)
        .Seal();
}

void Codes::Add(std::span<const NewCode> codes) {
    InPieces(codes, [&](std::span<const NewCode> piece) {
        Statement& insert = mvarDatabase.Prepare(InsertText(InsertColumns, L"(?, ?, ?, ?, ?, ?, ?, ?)", piece.size()));
        for (const NewCode& code : piece) {
            const CodeRow& row = code.row;
            insert.Set(mvarRuleId).Set(row.code).Set(row.ticket).Set(row.definition).Set(row.origin);
            insert.Set(row.voidAct).Set(row.storedAt).Set(row.fields);
        }
        insert.Execute();
    });
    std::vector<NumberOfCode> rows;
    for (const NewCode& code : codes)
        for (const NumberRow& number : code.numbers)
            rows.push_back({&number, &code.row.code});
    AddNumberRows(mvarDatabase, mvarRuleId, rows);
}

bool Codes::AddIssued(const NewCode& code, std::int64_t revision, std::span<const NumberHeld> guessedEnds) {
    std::wstring text = std::wstring(L"INSERT INTO ") + InsertColumns +
                        L" SELECT id, ?, ?, definition, ?, 0, ?, ? FROM kestrel_rules WHERE id = ? AND revision = ?";
    for (std::size_t end = 0; end < guessedEnds.size(); ++end)
        text += L" AND NOT EXISTS (SELECT 1 FROM kestrel_numbers n WHERE n.rule_id = kestrel_rules.id AND n.band = ? "
                L"AND n.series = ? AND n.number > ?)";
    Statement& insert = mvarDatabase.Prepare(text);
    insert.Set(code.row.code).Set(code.row.ticket).Set(code.row.origin).Set(code.row.storedAt).Set(code.row.fields);
    insert.Set(mvarRuleId).Set(revision);
    for (const NumberHeld& end : guessedEnds)
        insert.Set(end.band).Set(end.series).Set(end.number);
    insert.Execute();
    if (insert.Changed() != 1) return false;
    AddNumbers(code.row.code, code.numbers);
    return true;
}

void Codes::AddNumbers(const std::wstring& code, std::span<const NumberRow> numbers) {
    std::vector<NumberOfCode> rows;
    for (const NumberRow& number : numbers)
        rows.push_back({&number, &code});
    AddNumberRows(mvarDatabase, mvarRuleId, rows);
}

std::optional<CodeRow> Codes::Find(const std::wstring& code) {
    return mvarDatabase
        .Prepare(std::wstring(L"SELECT ") + CodeColumns + L" FROM kestrel_codes c WHERE rule_id = ? AND code = ?")
        .Set(mvarRuleId)
        .Set(code)
        .First([](const Statement& row) { return ReadCode(row, 1); });
}

std::optional<CodeRow> Codes::OfTicket(const std::wstring& ticket) {
    auto stored = mvarDatabase
                      .Prepare(std::wstring(L"SELECT ") + CodeColumns +
                               L", 0 FROM kestrel_codes c WHERE c.rule_id = ? AND c.ticket = ? UNION ALL SELECT " +
                               CodeColumns + L", c.act FROM kestrel_reused c WHERE c.rule_id = ? AND c.ticket = ?")
                      .Set(mvarRuleId)
                      .Set(ticket)
                      .Set(mvarRuleId)
                      .Set(ticket)
                      .First([](const Statement& row) {
                          CodeRow code = ReadCode(row, 1);
                          code.reuseAct = row.Number(CodeColumnCount + 1);
                          return code;
                      });
    if (stored) mvarDatabase.Confirm();
    return stored;
}

std::optional<HighestNumber> Codes::HighestIssued(const std::wstring& band, const std::wstring& series) {
    return mvarDatabase
        .Prepare(L"SELECT number, code, seal FROM kestrel_numbers WHERE rule_id = ? AND band = ? AND series = ? AND "
                 L"code <> '' ORDER BY number DESC LIMIT 1")
        .Set(mvarRuleId)
        .Set(band)
        .Set(series)
        .First([](const Statement& row) {
            return HighestNumber{row.Number(1), row.Text(2), row.Text(3)};
        });
}

std::vector<NumberHeld> Codes::NumbersOf(const std::wstring& code) {
    return mvarDatabase.Prepare(L"SELECT band, series, number FROM kestrel_numbers WHERE rule_id = ? AND code = ?")
        .Set(mvarRuleId)
        .Set(code)
        .Rows([](const Statement& row) {
            return NumberHeld{row.Text(1), row.Text(2), row.Number(3)};
        });
}

std::optional<HighestNumber> Codes::Highest(const std::wstring& band, const std::wstring& series) {
    Statement& row = mvarDatabase.Prepare(HighestNumberQuery);
    row.Set(mvarRuleId).Set(band).Set(series);
    return row.First([](const Statement& found) {
        HighestNumber highest;
        highest.number = found.Number(1);
        highest.code = found.Text(2);
        highest.seal = found.Text(3);
        return highest;
    });
}

std::optional<std::wstring> Codes::HeadOfLease(const std::wstring& band, const std::wstring& series,
                                               std::int64_t lease) {
    return mvarDatabase
        .Prepare(L"SELECT seal FROM kestrel_numbers WHERE rule_id = ? AND band = ? AND series = ? AND number >= ? AND "
                 L"lease = ? ORDER BY number DESC LIMIT 1")
        .Set(mvarRuleId)
        .Set(band)
        .Set(series)
        .Set(lease)
        .Set(lease)
        .First([](const Statement& row) { return row.Text(1); });
}

std::optional<std::wstring> Codes::Holder(const NumberHeld& number) {
    return mvarDatabase
        .Prepare(L"SELECT code FROM kestrel_numbers WHERE rule_id = ? AND band = ? AND series = ? AND number = ?")
        .Set(mvarRuleId)
        .Set(number.band)
        .Set(number.series)
        .Set(number.number)
        .First([](const Statement& row) { return row.Text(1); });
}

std::vector<NumberHeld> Codes::AllNumbers() {
    return mvarDatabase.Prepare(L"SELECT band, series, number FROM kestrel_numbers WHERE rule_id = ?")
        .Set(mvarRuleId)
        .Rows([](const Statement& row) {
            return NumberHeld{row.Text(1), row.Text(2), row.Number(3)};
        });
}

bool Codes::Void(const std::wstring& code, std::int64_t act) {
    Statement& update =
        mvarDatabase.Prepare(L"UPDATE kestrel_codes SET void_act = ? WHERE rule_id = ? AND code = ? AND void_act = 0");
    update.Set(act).Set(mvarRuleId).Set(code).Execute();
    return update.Changed() == 1;
}

std::int64_t Codes::Count() {
    return mvarDatabase.Prepare(L"SELECT COUNT(*) FROM kestrel_codes WHERE rule_id = ?")
        .Set(mvarRuleId)
        .First([](const Statement& row) { return row.Number(1); })
        .value_or(0);
}

std::vector<CodeRow> Codes::After(const std::wstring& code, std::size_t count) {
    return mvarDatabase
        .Prepare(std::wstring(L"SELECT ") + CodeColumns +
                 L" FROM kestrel_codes c WHERE rule_id = ? AND code > ? ORDER BY code LIMIT " + std::to_wstring(count))
        .Set(mvarRuleId)
        .Set(code)
        .Rows([](const Statement& row) { return ReadCode(row, 1); });
}

std::map<std::wstring, std::int64_t> Codes::NumbersBetween(const std::wstring& first, const std::wstring& last) {
    Statement& counts = mvarDatabase.Prepare(NumbersBetweenQuery);
    counts.Set(mvarRuleId).Set(mvarRuleId).Set(first).Set(last).Execute();
    std::map<std::wstring, std::int64_t> numbers;
    while (counts.Fetch()) {
        std::wstring code = counts.Text(1);
        numbers[std::move(code)] = counts.Number(2);
    }
    return numbers;
}

std::vector<std::int64_t> RulesOfCode(Database& database, const std::wstring& code) {
    return database.Prepare(L"SELECT rule_id FROM kestrel_codes WHERE code = ?")
        .Set(code)
        .Rows([](const Statement& row) { return row.Number(1); });
}

} // namespace ledger
