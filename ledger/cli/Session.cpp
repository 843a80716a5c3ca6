#include "ledger/cli/Session.h"

#include <algorithm>

#include "ledger/core/Codes.h"
#include "ledger/core/Numberings.h"

namespace ledger {

namespace {

using hosts::HostError;

std::wstring NamesOf(const std::vector<StoredRule>& rules) {
    std::wstring names;
    for (const StoredRule& rule : rules)
        names += (names.empty() ? L"" : L", ") + rule.name;
    return names;
}

// Those that issue no more are offered only where there is nothing else.
std::wstring NamesToChoose(const std::vector<StoredRule>& rules) {
    std::vector<StoredRule> active = rules;
    std::erase_if(active, [](const StoredRule& rule) { return rule.settings.retired; });
    return NamesOf(active.empty() ? rules : active);
}

StoredRule OnlyOne(std::vector<StoredRule> rules) {
    if (rules.empty())
        throw HostError(L"the database has no rules yet; make one with: kledger rule new NAME PATTERN, or bring one in "
                        L"with: kledger rule import FILE");
    if (rules.size() > 1) throw HostError(L"name the rule with --rule; there are: " + NamesToChoose(rules));
    return std::move(rules.front());
}

[[noreturn]] void RefuseNoRule(Session& session, const std::wstring& name) {
    const auto numbering =
        InSnapshot(session.database, session.patience, [&] { return Numberings(session.database).Find(name); });
    if (!numbering) throw HostError(L"there is no rule \"" + name + L"\"; kledger rule list shows those there are");
    std::vector<StoredRule> rules = AllRules(session);
    std::erase_if(rules, [&numbering](const StoredRule& rule) { return !numbering->Names(rule.id); });
    throw HostError(L"\"" + name + L"\" is a numbering; name one of its rules: " + NamesOf(rules));
}

} // namespace

std::vector<StoredRule> AllRules(Session& session) {
    Rules rules(session.database);
    return InSnapshot(session.database, session.patience, [&rules] { return rules.All(); });
}

StoredRule ResolveRule(Session& session, const std::wstring& name) {
    if (name.empty()) return OnlyOne(AllRules(session));
    Rules rules(session.database);
    auto found = InSnapshot(session.database, session.patience, [&rules, &name] { return rules.Find(name); });
    if (!found) RefuseNoRule(session, name);
    return *std::move(found);
}

StoredRule ResolveRuleOfCode(Session& session, const std::wstring& name, const std::wstring& code) {
    if (!name.empty()) return ResolveRule(session, name);
    std::vector<StoredRule> rules = AllRules(session);
    const auto ids = InSnapshot(session.database, session.patience,
                                [&session, &code] { return RulesOfCode(session.database, code); });
    const auto hasNot = [&ids](const StoredRule& rule) { return std::ranges::find(ids, rule.id) == ids.end(); };
    if (!ids.empty()) std::erase_if(rules, hasNot);
    return OnlyOne(std::move(rules));
}

} // namespace ledger
