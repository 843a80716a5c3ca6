#include "ledger/core/RuleActs.h"

#include "ledger/core/Codes.h"
#include "ledger/core/Journal.h"
#include "ledger/core/Numberings.h"
#include "ledger/core/RuleChange.h"
#include "ledger/core/Stamp.h"

namespace ledger {

namespace {

using hosts::HostError;

// Tables with rows of a rule, its own row last.
const wchar_t* const TablesOfRules[] = {L"kestrel_numbers WHERE rule_id", L"kestrel_leases WHERE rule_id",
                                        L"kestrel_free WHERE rule_id",    L"kestrel_reused WHERE rule_id",
                                        L"kestrel_journal WHERE rule_id", L"kestrel_definitions WHERE rule_id",
                                        L"kestrel_rules WHERE id"};

void RefuseTaken(Database& database, const std::wstring& name) {
    if (Rules(database).Find(name)) throw HostError(L"there is a rule \"" + name + L"\" already; give another name");
    if (Numberings(database).Find(name))
        throw HostError(L"there is a numbering \"" + name + L"\" already; give another name");
}

// A numbering without one of its rules could issue nothing.
void RefuseNumbered(Database& database, const StoredRule& rule) {
    for (const Numbering& numbering : Numberings(database).All())
        if (numbering.Names(rule.id))
            throw HostError(L"numbering \"" + numbering.name + L"\" issues by rule \"" + rule.name +
                            L"\"; take the rule out of it first: kledger numbering remove \"" + numbering.name +
                            L"\" \"" + rule.name + L"\"");
}

// The word says what was done; what the rule is after it stands behind, for the audit.
void Store(Database& database, StoredRule& rule, const wchar_t* word, const std::wstring& ticket) {
    Rules(database).Replace(rule);
    Journal(database, rule.id)
        .Write(acts::Settings, std::to_wstring(rule.definition.number), word + (L", " + SettingsText(rule)), ticket);
}

// Whether an attempt whose COMMIT was not answered did it.
bool IsDone(Database& database, const StoredRule& rule, const std::wstring& ticket) {
    return Journal(database, rule.id).OfTicket(ticket).has_value();
}

void Remove(Database& database, const StoredRule& rule) {
    for (const wchar_t* table : TablesOfRules)
        database.Prepare(std::wstring(L"DELETE FROM ") + table + L" = ?").Set(rule.id).Execute();
}

} // namespace

void RenameRule(Database& database, Patience patience, const StoredRule& rule, const std::wstring& name) {
    const std::wstring ticket = NewTicket();
    InTransaction(database, patience, OnUniqueKey::Retry, [&] {
        if (IsDone(database, rule, ticket)) return true;
        RefuseTaken(database, name);
        StoredRule renamed = rule;
        renamed.name = name;
        Store(database, renamed, L"renamed", ticket);
        return true;
    });
}

void CopyRule(Database& database, Patience patience, const StoredRule& rule, const std::wstring& name) {
    InSnapshot(database, patience, [&] {
        RefuseTaken(database, name);
        return true;
    });
    RuleChange change;
    change.name = name;
    change.definition = rule.definition.text;
    change.policy = rule.policy;
    change.leaseSize = rule.leaseSize;
    change.settings = rule.settings;
    change.settings->retired = false;
    change.revision = 0; // of no rule that is there
    CodeMaker maker(change.definition, change.settings.value_or(RuleSettings{}));
    static_cast<void>(ChangeRule(database, patience, change, maker));
}

bool RemoveRule(Database& database, Patience patience, const StoredRule& rule) {
    const std::wstring ticket = NewTicket();
    return InTransaction(database, patience, OnUniqueKey::Retry, [&] {
        database.KeepWritersOut(L"kestrel_codes");
        if (IsDone(database, rule, ticket)) return false;
        const auto stored = Rules(database).Find(rule.name);
        if (!stored && database.IsInDoubt()) return true; // by an attempt whose COMMIT was not answered
        if (!stored || stored->revision != rule.revision) Rules::RefuseChanged(rule);
        RefuseNumbered(database, rule);
        if (Codes(database, rule.id).Count() == 0) {
            Remove(database, rule);
            return true;
        }
        if (rule.settings.retired)
            throw HostError(L"rule \"" + rule.name + L"\" is retired already; it keeps its codes");
        StoredRule retired = rule;
        retired.settings.retired = true;
        Store(database, retired, L"retired", ticket);
        return false;
    });
}

void RestoreRule(Database& database, Patience patience, const StoredRule& rule) {
    if (!rule.settings.retired) throw HostError(L"rule \"" + rule.name + L"\" is not retired");
    const std::wstring ticket = NewTicket();
    InTransaction(database, patience, OnUniqueKey::Retry, [&] {
        if (IsDone(database, rule, ticket)) return true;
        StoredRule restored = rule;
        restored.settings.retired = false;
        Store(database, restored, L"restored", ticket);
        return true;
    });
}

} // namespace ledger
