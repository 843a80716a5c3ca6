// preview, explain, void
#include "hosts/common/Console.h"
#include "ledger/cli/Commands.h"
#include "ledger/cli/ExitCode.h"
#include "ledger/cli/Fields.h"
#include "ledger/core/Preview.h"

namespace ledger {

namespace {

std::optional<StoredCode> FindCode(Session& session, const StoredRule& rule, const std::wstring& code) {
    Codes codes(session.database, rule.id);
    return InTransaction(session.database, session.patience, OnUniqueKey::Fail,
                         [&codes, &code] { return codes.Find(code); });
}

FieldValues BandValues(CodeMaker& maker) {
    FieldValues values;
    for (const hosts::Band& band : maker.Bands())
        values.emplace_back(band.name, maker.Rule().BandValue(band.name));
    return values;
}

Json StateJson(const std::optional<StoredCode>& stored) {
    if (!stored) return "unknown";
    return ToJson(stored->state);
}

void PrintExplained(const std::optional<StoredCode>& stored, const FieldValues& values, const FieldValues& bands) {
    Table table({L"PART", L"NAME", L"VALUE"});
    for (const auto& [name, value] : values)
        table.Add({L"field", name, value});
    for (const auto& [name, value] : bands)
        table.Add({L"band", name, value});
    if (stored)
        for (const auto& [name, value] : FieldsOf(stored->fields))
            table.Add({L"stored", name, value});
    for (const std::wstring& line : table.Lines())
        hosts::PrintLine(line);
    if (!stored) hosts::PrintLine(L"not in the ledger");
    if (stored)
        hosts::PrintLine(stored->state + L" " + stored->storedAt + (stored->reason.empty() ? L"" : L": ") +
                         stored->reason);
}

} // namespace

int PreviewCommand(Session& session, const PreviewOptions& options) {
    const StoredRule rule = ResolveRule(session, options.rule);
    CodeMaker maker(rule.definition);
    const FieldValues values = ParseFields(maker, options.fields);
    for (const std::wstring& code :
         PreviewCodes({session.database, rule, maker, session.patience}, values, options.count))
        session.output.Line(code, {{"code", ToJson(code)}});
    return ExitDone;
}

int ExplainCommand(Session& session, const CodeOptions& options) {
    const StoredRule rule = ResolveRuleOfCode(session, options.rule, options.code);
    CodeMaker maker(rule.definition);
    maker.Rule().TakeApart(options.code);
    const auto stored = FindCode(session, rule, options.code);
    const FieldValues values = maker.Values();
    const FieldValues bands = BandValues(maker);
    if (!session.output.IsJson()) {
        PrintExplained(stored, values, bands);
        return ExitDone;
    }
    Json json = {{"code", ToJson(options.code)},
                 {"rule", ToJson(rule.name)},
                 {"state", StateJson(stored)},
                 {"fields", ToJson(values)},
                 {"bands", ToJson(bands)}};
    if (stored) json["stored"] = ToJson(FieldsOf(stored->fields));
    if (stored) json["storedAt"] = ToJson(stored->storedAt);
    if (stored && !stored->reason.empty()) json["reason"] = ToJson(stored->reason);
    hosts::PrintLine(JsonText(json));
    return ExitDone;
}

int VoidCode(Session& session, const CodeOptions& options) {
    const StoredRule rule = ResolveRuleOfCode(session, options.rule, options.code);
    Codes codes(session.database, rule.id);
    InTransaction(session.database, session.patience, OnUniqueKey::Fail, [&] {
        Rules(session.database).Enter(rule);
        const auto stored = codes.Find(options.code);
        if (!stored) throw hosts::HostError(L"code " + options.code + L" is not in the ledger of rule " + rule.name);
        if (stored->state == L"void")
            throw hosts::HostError(L"code " + options.code + L" is void already: " + stored->reason);
        codes.Void(options.code, options.reason);
        return true;
    });
    session.output.Line(L"void: " + options.code,
                        {{"code", ToJson(options.code)}, {"state", "void"}, {"reason", ToJson(options.reason)}});
    return ExitDone;
}

} // namespace ledger
