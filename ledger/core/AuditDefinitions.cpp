#include "ledger/core/AuditDefinitions.h"

#include <algorithm>

namespace ledger {

namespace {

// What an act says of the definition alone.
std::wstring DefinitionPart(const StoredRule& rule) {
    std::wstring text = SettingsText(rule);
    text = text.substr(text.find(L", code length "));
    return text.substr(0, text.find(L", rule "));
}

bool IsKnown(const StoredRule& rule, const Definition& definition, const std::vector<Act>& acts) {
    StoredRule then = rule;
    then.definition = definition;
    const std::wstring text = DefinitionPart(then);
    return std::ranges::any_of(acts, [&](const Act& act) {
        return BringsDefinition(act) && act.subject == std::to_wstring(definition.number) &&
               act.detail.find(text) != std::wstring::npos;
    });
}

} // namespace

DefinitionAudit::DefinitionAudit(Database& database, const JournalAudit& journal, AuditReport& report)
    : mvarReport(report) {
    const std::vector<Definition> definitions = Rules(database).Definitions(report.rule.id);
    CheckEach(definitions, journal);
    CheckActs(definitions, journal);
    CheckSettings(database, journal);
}

std::optional<std::size_t> DefinitionAudit::NumbersOfCode(std::int64_t definition) const {
    if (definition == 0) return 1;
    const auto known = mvarBands.find(definition);
    if (known == mvarBands.end()) return std::nullopt;
    return std::max<std::size_t>(known->second, 1);
}

void DefinitionAudit::CheckEach(const std::vector<Definition>& definitions, const JournalAudit& journal) {
    for (const Definition& definition : definitions) {
        if (!IsKnown(mvarReport.rule, definition, journal.Acts()))
            mvarReport.Find(FindingKind::Definition,
                            L"definition " + std::to_wstring(definition.number) + L" is not as it was imported",
                            {{L"definition", definition.number}});
        mvarBands[definition.number] = BandsOf(definition);
    }
}

std::size_t DefinitionAudit::BandsOf(const Definition& definition) {
    try {
        const bool isNewest = definition.number == mvarReport.rule.definition.number;
        const CodeMaker maker(definition.text, isNewest ? mvarReport.rule.settings : RuleSettings{});
        if (isNewest) mvarReport.bands = maker.NumberBands();
        return maker.NumberBands().size();
    } catch (const hosts::HostError&) { // reported as changed
        return 0;
    }
}

void DefinitionAudit::CheckActs(const std::vector<Definition>& definitions, const JournalAudit& journal) {
    for (const Act& act : journal.Acts()) {
        const auto isOfAct = [&act](const Definition& definition) {
            return std::to_wstring(definition.number) == act.subject;
        };
        if (BringsDefinition(act) && std::ranges::none_of(definitions, isOfAct))
            mvarReport.Find(FindingKind::Definition, L"definition " + act.subject + L" is gone",
                            {{L"definition", act.subject}});
    }
}

void DefinitionAudit::CheckSettings(Database& database, const JournalAudit& journal) {
    const auto last = std::find_if(journal.Acts().rbegin(), journal.Acts().rend(), BringsSettings);
    // As they are stored: what cannot be read is read as something else.
    const auto stored = database.Prepare(L"SELECT policy, settings FROM kestrel_rules WHERE id = ?")
                            .Set(mvarReport.rule.id)
                            .First([](const Statement& row) { return std::pair(row.Text(1), row.Text(2)); });
    const std::wstring settings = SettingsText(mvarReport.rule);
    if (last == journal.Acts().rend() || !last->detail.ends_with(settings) ||
        stored != std::pair(NameOf(mvarReport.rule.policy), TextOf(mvarReport.rule.settings)))
        mvarReport.Find(FindingKind::Settings, L"the rule is not as the journal says: " + settings, {});
}

} // namespace ledger
