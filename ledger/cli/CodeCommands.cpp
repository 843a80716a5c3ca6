// preview, explain, void, find
#include "hosts/common/Console.h"
#include "hosts/common/Text.h"
#include "ledger/cli/Commands.h"
#include "ledger/cli/ExitCode.h"
#include "ledger/cli/Fields.h"
#include "ledger/core/Codes.h"
#include "ledger/core/Journal.h"
#include "ledger/core/Json.h"
#include "ledger/core/Preview.h"
#include "ledger/core/Reuse.h"
#include "ledger/core/Voiding.h"

namespace ledger {

namespace {

// A code with what the ledger knows of it; the definition is the one that made it, the newest for a code not stored.
struct KnownCode {
    std::optional<CodeRow> row;
    std::optional<Act> voided;
    Definition definition;
    std::wstring successor; // the code that has its number now; empty while it has its own
};

KnownCode FindCode(Session& session, const StoredRule& rule, const std::wstring& code) {
    return InSnapshot(session.database, session.patience, [&] {
        KnownCode known{Codes(session.database, rule.id).Find(code), std::nullopt, rule.definition, {}};
        if (auto reused = known.row ? std::nullopt : Reuse(session.database, rule.id).Find(code)) {
            known.row = std::move(reused->row);
            known.successor = std::move(reused->successor);
        }
        if (!known.row) return known;
        if (known.row->voidAct > 0) known.voided = Journal(session.database, rule.id).At(known.row->voidAct);
        for (Definition& definition : Rules(session.database).Definitions(rule.id))
            if (definition.number == known.row->definition) known.definition = std::move(definition);
        return known;
    });
}

// What the definition makes of the code; nothing of one that was made by a definition that was not kept.
struct Parts {
    FieldValues fields;
    FieldValues bands;
    std::vector<CheckedPart> checks;
    std::vector<std::wstring> unreadable; // fields that have a value, and the code does not tell which
};

// As they stand in the code: a band that was read again may hold another text, 1905 for the year 2024.
FieldValues BandTexts(CodeMaker& maker, const std::wstring& code) {
    FieldValues texts;
    for (const hosts::Band& band : maker.Bands())
        texts.emplace_back(band.name, code.substr(band.position, band.length));
    return texts;
}

Parts PartsOf(const KnownCode& known, const std::wstring& code) {
    if (known.row && known.row->definition == 0) return {};
    CodeMaker maker(known.definition.text);
    maker.TakeApart(code);
    Parts parts{maker.Values(), BandTexts(maker, code), maker.Checked(code), maker.Unreadable(code)};
    for (const std::wstring& item : parts.unreadable)
        std::erase_if(parts.fields, [&item](const auto& field) { return field.first == item; });
    return parts;
}

std::wstring ResultOf(const CheckedPart& check) {
    return check.IsRight() ? L"right" : L"wrong: '" + check.expected + L"' expected";
}

void AddRows(Table& table, const std::wstring& part, const FieldValues& values) {
    for (const auto& [name, value] : values)
        table.Add({part, name, value});
}

void PrintExplained(const KnownCode& known, const Parts& parts) {
    Table table({L"PART", L"NAME", L"VALUE"});
    AddRows(table, L"field", parts.fields);
    for (const std::wstring& item : parts.unreadable)
        table.Add({L"field", item, L"(the code does not tell its value)"});
    AddRows(table, L"band", parts.bands);
    for (const CheckedPart& check : parts.checks)
        table.Add({L"check", hosts::Shown(check.band), hosts::Shown(ResultOf(check))});
    if (known.row) AddRows(table, L"stored", FieldsOf(known.row->fields));
    for (const std::wstring& line : table.Lines())
        hosts::PrintLine(line);
    if (!known.row) return hosts::PrintLine(L"not in the ledger");
    hosts::PrintLine((known.row->origin == Numbered ? L"issued" : known.row->origin) + L" " + known.row->storedAt +
                     L" by definition " + std::to_wstring(known.row->definition) + L", ticket " + known.row->ticket);
    if (known.voided)
        hosts::PrintLine(L"void " + known.voided->at + L" by " + known.voided->by + L": " +
                         hosts::Shown(known.voided->detail));
    if (!known.successor.empty()) hosts::PrintLine(L"its number was given again to " + hosts::Shown(known.successor));
}

Json ExplainedJson(const StoredRule& rule, const std::wstring& code, const KnownCode& known, const Parts& parts) {
    Json json = {{"code", ToJson(code)},
                 {"rule", ToJson(rule.name)},
                 {"state", known.row ? ToJson(known.row->State()) : Json("unknown")},
                 {"definition", known.row ? known.row->definition : known.definition.number},
                 {"fields", ToJson(parts.fields)},
                 {"bands", ToJson(parts.bands)}};
    for (const std::wstring& item : parts.unreadable)
        json["unreadable"].push_back(ToJson(item));
    for (const CheckedPart& check : parts.checks)
        json["checks"].push_back({{"band", ToJson(check.band)},
                                  {"stands", ToJson(check.stands)},
                                  {"expected", ToJson(check.expected)},
                                  {"right", check.IsRight()}});
    if (!known.row) return json;
    json["stored"] = ToJson(FieldsOf(known.row->fields));
    json["storedAt"] = ToJson(known.row->storedAt);
    json["ticket"] = ToJson(known.row->ticket);
    if (!known.voided) return json;
    json["reason"] = ToJson(known.voided->detail);
    json["voidAt"] = ToJson(known.voided->at);
    json["voidBy"] = ToJson(known.voided->by);
    if (!known.successor.empty()) json["successor"] = ToJson(known.successor);
    return json;
}

} // namespace

int PreviewCommand(Session& session, const PreviewOptions& options) {
    const StoredRule rule = ResolveRule(session, options.rule);
    CodeMaker maker(rule.definition.text, rule.settings);
    UseDateFormat(maker, options.dateFormat);
    const FieldValues values = ParseFields(maker, options.fields);
    RefuseUnfit(values);
    for (const std::wstring& code :
         PreviewCodes({session.database, rule, maker, session.patience}, values, options.count))
        session.output.Line(hosts::Shown(code), {{"code", ToJson(code)}});
    return ExitDone;
}

int ExplainCommand(Session& session, const CodeOptions& options) {
    const StoredRule rule = ResolveRuleOfCode(session, options.rule, options.code);
    const KnownCode known = FindCode(session, rule, options.code);
    const Parts parts = PartsOf(known, options.code);
    if (session.output.IsJson())
        hosts::PrintLine(JsonText(ExplainedJson(rule, options.code, known, parts)));
    else
        PrintExplained(known, parts);
    for (const CheckedPart& check : parts.checks)
        if (!check.IsRight()) throw hosts::HostError(hosts::Shown(RefusalOf(check)));
    return ExitDone;
}

int VoidCode(Session& session, const CodeOptions& options) {
    const StoredRule rule = ResolveRuleOfCode(session, options.rule, options.code);
    VoidCodeOf(session.database, session.patience, rule, options.code, options.reason);
    session.output.Line(L"void: " + hosts::Shown(options.code),
                        {{"code", ToJson(options.code)}, {"state", "void"}, {"reason", ToJson(options.reason)}});
    return ExitDone;
}

int FindTicket(Session& session, const FindOptions& options) {
    using Found = std::vector<std::pair<StoredRule, CodeRow>>;
    const Found found = InSnapshot(session.database, session.patience, [&] {
        Found codes;
        for (const StoredRule& rule : Rules(session.database).All())
            if (options.rule.empty() || options.rule == rule.name)
                if (auto code = Codes(session.database, rule.id).OfTicket(options.ticket))
                    codes.emplace_back(rule, *std::move(code));
        return codes;
    });
    if (found.empty())
        throw hosts::HostError(L"no code has ticket \"" + options.ticket +
                               L"\"; the request can be made again with the same key");
    for (const auto& [rule, code] : found)
        session.output.Line(hosts::Shown(code.code) + L'\t' + hosts::Shown(rule.name) + L'\t' + code.State() + L'\t' +
                                code.storedAt,
                            {{"code", ToJson(code.code)},
                             {"rule", ToJson(rule.name)},
                             {"state", ToJson(code.State())},
                             {"storedAt", ToJson(code.storedAt)},
                             {"ticket", ToJson(code.ticket)},
                             {"fields", ToJson(FieldsOf(code.fields))}});
    return ExitDone;
}

} // namespace ledger
