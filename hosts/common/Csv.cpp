#include "hosts/common/Csv.h"

#include <algorithm>
#include <utility>

#include "hosts/common/HostError.h"

namespace hosts {

namespace {

[[noreturn]] void Fail(std::size_t line, const std::wstring& cause) {
    throw HostError(L"line " + std::to_wstring(line) + L": " + cause);
}

std::vector<std::wstring> ColumnNames(CsvRecord header) {
    for (std::wstring& name : header.fields) {
        name.erase(name.find_last_not_of(L" \t") + 1);
        name.erase(0, std::min(name.find_first_not_of(L" \t"), name.size()));
        if (name.empty()) Fail(header.line, L"a column has no name");
        if (std::ranges::count(header.fields, name) > 1) Fail(header.line, L"column \"" + name + L"\" stands twice");
    }
    return std::move(header.fields);
}

} // namespace

CsvReader::CsvReader(Pieces pieces, wchar_t separator) : mvarPieces(std::move(pieces)), mvarSeparator(separator) {
    std::optional<CsvRecord> header = Next();
    if (!header) throw HostError(L"the first line must name the columns, and there is none");
    mvarColumns = ColumnNames(*std::move(header));
}

std::optional<CsvRecord> CsvReader::Next() {
    while (!AtEnd()) {
        CsvRecord record = Record();
        if (record.fields.size() > 1 || !record.fields[0].empty()) return record;
    }
    return std::nullopt;
}

// Gets the next piece where one is read to its end.
bool CsvReader::AtEnd() {
    if (mvarAt < mvarPiece.size()) return false;
    mvarPiece = mvarPieces();
    mvarAt = 0;
    return mvarPiece.empty();
}

bool CsvReader::AtLineEnd() { return AtEnd() || mvarPiece[mvarAt] == L'\r' || mvarPiece[mvarAt] == L'\n'; }
bool CsvReader::AtFieldEnd() { return AtLineEnd() || mvarPiece[mvarAt] == mvarSeparator; }

CsvRecord CsvReader::Record() {
    CsvRecord record{mvarLine, {Field()}};
    while (!AtLineEnd()) {
        ++mvarAt;
        record.fields.push_back(Field());
    }
    SkipLineEnd();
    return record;
}

std::wstring CsvReader::Field() {
    if (!AtEnd() && mvarPiece[mvarAt] == L'"') return QuotedField();
    std::wstring field;
    for (; !AtFieldEnd(); ++mvarAt)
        field.push_back(mvarPiece[mvarAt]);
    return field;
}

std::wstring CsvReader::QuotedField() {
    const std::size_t opened = mvarLine;
    std::wstring field;
    for (++mvarAt; !ClosesQuote(opened); ++mvarAt) {
        if (mvarPiece[mvarAt] == L'\n') ++mvarLine;
        field.push_back(mvarPiece[mvarAt]);
    }
    if (!AtFieldEnd()) Fail(mvarLine, L"text follows a closed quote; double the quotes inside a quoted field");
    return field;
}

// Steps over a quote that closes, and over the first of two, which stand for one.
bool CsvReader::ClosesQuote(std::size_t opened) {
    if (AtEnd()) Fail(opened, L"a quote is opened and never closed");
    if (mvarPiece[mvarAt] != L'"') return false;
    ++mvarAt;
    return AtEnd() || mvarPiece[mvarAt] != L'"';
}

void CsvReader::SkipLineEnd() {
    if (!AtEnd() && mvarPiece[mvarAt] == L'\r') ++mvarAt;
    if (!AtEnd() && mvarPiece[mvarAt] == L'\n') ++mvarAt;
    ++mvarLine;
}

CsvTable ParseCsv(std::wstring text, wchar_t separator) {
    CsvReader reader([&text] { return std::exchange(text, {}); }, separator);
    CsvTable table{reader.Columns(), {}};
    while (std::optional<CsvRecord> record = reader.Next())
        table.records.push_back(*std::move(record));
    return table;
}

} // namespace hosts
