#include "hosts/common/Csv.h"

#include <algorithm>
#include <optional>

#include "hosts/common/HostError.h"

namespace hosts {

namespace {

[[noreturn]] void Fail(std::size_t line, const std::wstring& cause) {
    throw HostError(L"line " + std::to_wstring(line) + L": " + cause);
}

class Reader {
  public:
    Reader(std::wstring_view text, wchar_t separator) : mvarText(text), mvarSeparator(separator) {}

    // The next line that holds anything.
    std::optional<CsvRecord> Next() {
        while (mvarAt < mvarText.size()) {
            CsvRecord record = Record();
            if (record.fields.size() > 1 || !record.fields[0].empty()) return record;
        }
        return std::nullopt;
    }

  private:
    [[nodiscard]] bool AtEnd() const { return mvarAt == mvarText.size(); }
    [[nodiscard]] bool AtLineEnd() const { return AtEnd() || mvarText[mvarAt] == L'\r' || mvarText[mvarAt] == L'\n'; }
    [[nodiscard]] bool AtFieldEnd() const { return AtLineEnd() || mvarText[mvarAt] == mvarSeparator; }

    CsvRecord Record() {
        CsvRecord record{mvarLine, {Field()}};
        while (!AtLineEnd()) {
            ++mvarAt;
            record.fields.push_back(Field());
        }
        SkipLineEnd();
        return record;
    }

    std::wstring Field() {
        if (!AtEnd() && mvarText[mvarAt] == L'"') return QuotedField();
        const std::size_t begin = mvarAt;
        while (!AtFieldEnd())
            ++mvarAt;
        return std::wstring(mvarText.substr(begin, mvarAt - begin));
    }

    std::wstring QuotedField() {
        const std::size_t opened = mvarLine;
        std::wstring field;
        for (++mvarAt; !ClosesQuote(opened); ++mvarAt) {
            if (mvarText[mvarAt] == L'\n') ++mvarLine;
            field.push_back(mvarText[mvarAt]);
        }
        ++mvarAt;
        if (!AtFieldEnd()) Fail(mvarLine, L"text follows a closed quote; double the quotes inside a quoted field");
        return field;
    }

    // Steps over the first of two quotes, which stand for one.
    bool ClosesQuote(std::size_t opened) {
        if (AtEnd()) Fail(opened, L"a quote is opened and never closed");
        if (mvarText[mvarAt] != L'"') return false;
        if (mvarAt + 1 == mvarText.size() || mvarText[mvarAt + 1] != L'"') return true;
        ++mvarAt;
        return false;
    }

    void SkipLineEnd() {
        if (!AtEnd() && mvarText[mvarAt] == L'\r') ++mvarAt;
        if (!AtEnd() && mvarText[mvarAt] == L'\n') ++mvarAt;
        ++mvarLine;
    }

    std::wstring_view mvarText;
    wchar_t mvarSeparator;
    std::size_t mvarAt = 0;
    std::size_t mvarLine = 1;
};

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

CsvTable ParseCsv(std::wstring_view text, wchar_t separator) {
    Reader reader(text, separator);
    std::optional<CsvRecord> header = reader.Next();
    if (!header) throw HostError(L"the first line must name the columns, and there is none");
    CsvTable table{ColumnNames(*std::move(header)), {}};
    while (std::optional<CsvRecord> record = reader.Next())
        table.records.push_back(*std::move(record));
    return table;
}

} // namespace hosts
