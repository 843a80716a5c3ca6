// codes list, codes find, codes export
#include <algorithm>
#include <array>
#include <set>

#include "hosts/common/Console.h"
#include "hosts/common/NewFile.h"
#include "hosts/common/Text.h"
#include "ledger/cli/CodesCommand.h"
#include "ledger/cli/ExitCode.h"
#include "ledger/core/Json.h"

namespace ledger {

namespace {

using hosts::HostError;

// The columns that every code has; those of the fields come behind them.
constexpr std::array FixedColumns = {L"code",   L"rule",    L"state",   L"stored at",   L"definition",
                                     L"ticket", L"void at", L"void by", L"void because"};

CodeWish WishOf(Session& session, const CodesOptions& options) {
    CodeWish wish = options.wish;
    for (const std::wstring& text : options.fields) {
        const std::size_t equals = text.find(L'=');
        if (equals == std::wstring::npos) throw HostError(L"\"" + text + L"\" is no field; write Name=Value");
        wish.fields.emplace_back(text.substr(0, equals), text.substr(equals + 1));
    }
    CheckWish(wish);
    if (!wish.rule.empty()) static_cast<void>(ResolveRule(session, wish.rule));
    return wish;
}

Json JsonOf(const FoundCode& code) {
    Json json = {{"code", ToJson(code.row.code)},     {"rule", ToJson(code.rule)},
                 {"state", ToJson(code.row.State())}, {"storedAt", ToJson(code.row.storedAt)},
                 {"definition", code.row.definition}, {"ticket", ToJson(code.row.ticket)},
                 {"fields", ToJson(code.fields)}};
    if (code.row.voidAct == 0) return json;
    json["voidAt"] = ToJson(code.voidAt);
    json["voidBy"] = ToJson(code.voidBy);
    json["reason"] = ToJson(code.voidReason);
    return json;
}

std::wstring PlainLine(const FoundCode& code) {
    std::wstring line = hosts::Shown(code.row.code) + L'\t' + hosts::Shown(code.rule) + L'\t' + code.row.State() +
                        L'\t' + code.row.storedAt;
    for (const auto& [name, value] : code.fields)
        line += L'\t' + hosts::Shown(name) + L'=' + hosts::Shown(value);
    return code.voidReason.empty() ? line : line + L"\tvoid because: " + hosts::Shown(code.voidReason);
}

std::wstring Quoted(const std::wstring& field) {
    if (field.find_first_of(L",\"\r\n") == std::wstring::npos) return field;
    std::wstring quoted = L"\"";
    for (const wchar_t letter : field)
        quoted += letter == L'"' ? L"\"\"" : std::wstring(1, letter);
    return quoted + L'"';
}

std::wstring CsvLine(const std::vector<std::wstring>& fields) {
    std::wstring line;
    for (const std::wstring& field : fields)
        line += (line.empty() && &field == &fields.front() ? L"" : L",") + Quoted(field);
    return line + L"\r\n";
}

std::vector<std::wstring> CsvFields(const FoundCode& code, const std::set<std::wstring>& names) {
    std::vector<std::wstring> fields = {
        code.row.code,   code.rule,   code.row.State(), code.row.storedAt, std::to_wstring(code.row.definition),
        code.row.ticket, code.voidAt, code.voidBy,      code.voidReason};
    for (const auto& [name, value] : code.fields)
        if (!names.contains(name))
            throw HostError(L"codes with a field \"" + name + L"\" were stored meanwhile; export again");
    for (const std::wstring& name : names) {
        const auto field = std::ranges::find(code.fields, name, &FieldValues::value_type::first);
        fields.push_back(field == code.fields.end() ? std::wstring() : field->second);
    }
    return fields;
}

std::vector<std::wstring> CsvHeader(const std::set<std::wstring>& names) {
    std::vector<std::wstring> columns(FixedColumns.begin(), FixedColumns.end());
    for (const std::wstring& name : names) {
        const bool isTaken = std::ranges::find(FixedColumns, name) != FixedColumns.end();
        columns.push_back(isTaken ? name + L" (field)" : name);
    }
    return columns;
}

using PrintText = std::function<void(std::wstring_view)>;

// Read twice: a table has all its columns from the first line on.
void PrintCsv(Session& session, const CodeWish& wish, const PrintText& print) {
    std::set<std::wstring> names;
    ForEachCode(session.database, session.patience, wish, [&names](const FoundCode& code) {
        for (const auto& [name, value] : code.fields)
            names.insert(name);
    });
    print(CsvLine(CsvHeader(names)));
    ForEachCode(session.database, session.patience, wish,
                [&](const FoundCode& code) { print(CsvLine(CsvFields(code, names))); });
}

void PrintJson(Session& session, const CodeWish& wish, const PrintText& print) {
    ForEachCode(session.database, session.patience, wish,
                [&print](const FoundCode& code) { print(JsonText(JsonOf(code)) + L'\n'); });
}

std::size_t PrintLines(Session& session, const CodeWish& wish) {
    std::size_t found = 0;
    ForEachCode(session.database, session.patience, wish, [&](const FoundCode& code) {
        ++found;
        session.output.Line(PlainLine(code), JsonOf(code));
    });
    return found;
}

} // namespace

int ListCodes(Session& session, const CodesOptions& options) {
    if (PrintLines(session, WishOf(session, options)) == 0) session.output.Note(L"there is no such code");
    return ExitDone;
}

int FindCodes(Session& session, const CodesOptions& options) {
    if (PrintLines(session, WishOf(session, options)) > 0) return ExitDone;
    throw HostError(L"no code fits \"" + options.wish.pattern +
                    L"\"; * stands for any characters and ? for one, and the options narrow it down");
}

int ExportCodes(Session& session, const CodesOptions& options) {
    const CodeWish wish = WishOf(session, options);
    const auto write = session.output.IsJson() ? PrintJson : PrintCsv;
    if (options.file.empty()) {
        write(session, wish, hosts::PrintText);
        return ExitDone;
    }
    hosts::NewFile file(options.file);
    write(session, wish, [&file](std::wstring_view text) { file.Write(text); });
    file.Keep();
    return ExitDone;
}

} // namespace ledger
