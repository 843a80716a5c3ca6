#include "ledger/cli/Output.h"

#include <algorithm>

#include "hosts/common/Console.h"
#include "hosts/common/Text.h"

namespace ledger {

namespace {

std::wstring Padded(const std::wstring& text, std::size_t width) {
    return text + std::wstring(width - std::min(width, text.size()), L' ');
}

std::wstring WithoutSpacesBehind(std::wstring line) {
    line.erase(line.find_last_not_of(L' ') + 1);
    return line;
}

} // namespace

void Output::Line(std::wstring_view plain, const Json& json) const {
    if (mvarJson)
        hosts::PrintLine(JsonText(json));
    else
        hosts::PrintLine(plain);
}

void Output::Note(std::wstring_view text) const {
    if (!mvarJson) hosts::ReportLine(text);
}

void Table::Add(Row row) {
    for (std::wstring& cell : row)
        cell = hosts::Shown(cell);
    mvarRows.push_back(std::move(row));
}

std::vector<std::wstring> Table::Lines() const {
    std::vector<std::size_t> widths(mvarRows.front().size());
    for (const Row& row : mvarRows)
        for (std::size_t column = 0; column < row.size(); ++column)
            widths[column] = std::max(widths[column], row[column].size());
    std::vector<std::wstring> lines;
    for (const Row& row : mvarRows) {
        std::wstring line;
        for (std::size_t column = 0; column < row.size(); ++column)
            line += Padded(row[column], widths[column]) + L"  ";
        lines.push_back(WithoutSpacesBehind(std::move(line)));
    }
    std::wstring rule;
    for (const std::size_t width : widths)
        rule += std::wstring(width, L'-') + L"  ";
    lines.insert(lines.begin() + 1, WithoutSpacesBehind(std::move(rule)));
    return lines;
}

} // namespace ledger
