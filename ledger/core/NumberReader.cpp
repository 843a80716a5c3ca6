#include "ledger/core/NumberReader.h"

namespace ledger {

namespace {

constexpr std::size_t NumbersRead = 2000;

const std::wstring& NumberSelect() {
    static const std::wstring text =
        std::wstring(L"SELECT n.band, n.series, n.number, n.code, n.lease, n.act, n.seal, ") + CodeColumns +
        L" FROM kestrel_numbers n LEFT JOIN kestrel_codes c ON c.rule_id = n.rule_id AND c.code = n.code WHERE "
        L"n.rule_id = ? AND n.band = ? AND ";
    return text;
}

FullNumber ReadFull(const Statement& row) {
    FullNumber full;
    full.number.held.band = row.Text(1);
    full.number.held.series = row.Text(2);
    full.number.held.number = row.Number(3);
    full.code = row.Text(4);
    full.number.lease = row.Number(5);
    full.number.act = row.Number(6);
    full.number.seal = row.Text(7);
    full.row = ReadCode(row, 8);
    return full;
}

} // namespace

void NumberReader::ForEach(const std::function<void(const FullNumber&)>& visit) {
    for (const std::wstring& band : Bands()) {
        std::vector<FullNumber> rows = Next(band, nullptr);
        while (!rows.empty()) {
            for (const FullNumber& row : rows)
                visit(row);
            const FullNumber last = std::move(rows.back());
            rows = Next(band, &last);
        }
    }
}

std::vector<std::wstring> NumberReader::Bands() {
    return mvarDatabase.Prepare(L"SELECT DISTINCT band FROM kestrel_numbers WHERE rule_id = ? ORDER BY band")
        .Set(mvarRuleId)
        .Rows([](const Statement& row) { return row.Text(1); });
}

// The rest of the last one's series, or else the series behind it.
std::vector<FullNumber> NumberReader::Next(const std::wstring& band, const FullNumber* last) {
    if (last == nullptr)
        return Query(L"n.series >= ? ORDER BY n.series, n.number", band).Set(std::wstring()).Rows(ReadFull);
    const NumberHeld& held = last->number.held;
    std::vector<FullNumber> rows = Query(L"n.series = ? AND n.number > ? ORDER BY n.number", band)
                                       .Set(held.series)
                                       .Set(held.number)
                                       .Rows(ReadFull);
    if (!rows.empty()) return rows;
    return Query(L"n.series > ? ORDER BY n.series, n.number", band).Set(held.series).Rows(ReadFull);
}

Statement& NumberReader::Query(const std::wstring& condition, const std::wstring& band) {
    return mvarDatabase.Prepare(NumberSelect() + condition + L" LIMIT " + std::to_wstring(NumbersRead))
        .Set(mvarRuleId)
        .Set(band);
}

} // namespace ledger
