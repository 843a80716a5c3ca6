#include "ledger/core/Rules.h"

#include "hosts/common/Utf8.h"
#include "ledger/core/Sha256.h"

namespace ledger {

namespace {

const wchar_t* const RuleSelect =
    L"SELECT r.id, r.name, r.policy, r.lease_size, r.revision, d.number, d.code_length, d.stored_at, d.stored_by, "
    L"d.text, r.settings "
    L"FROM kestrel_rules r JOIN kestrel_definitions d ON d.rule_id = r.id AND d.number = r.definition";

std::wstring SelectRules(const wchar_t* rest) { return std::wstring(RuleSelect) + rest; }

StoredRule ReadRule(const Statement& row) {
    StoredRule rule;
    rule.id = row.Number(1);
    rule.name = row.Text(2);
    rule.policy = PolicyOf(row.Text(3)).value_or(Policy::Gapless);
    rule.leaseSize = row.Number(4);
    rule.revision = row.Number(5);
    rule.definition.number = row.Number(6);
    rule.definition.codeLength = row.Number(7);
    rule.definition.storedAt = row.Text(8);
    rule.definition.storedBy = row.Text(9);
    rule.definition.text = row.Text(10);
    rule.settings = RuleSettingsOf(row.Text(11));
    return rule;
}

} // namespace

std::wstring NameOf(Policy policy) { return policy == Policy::Fast ? L"fast" : L"gapless"; }

std::optional<Policy> PolicyOf(const std::wstring& name) {
    if (name == L"gapless") return Policy::Gapless;
    if (name == L"fast") return Policy::Fast;
    return std::nullopt;
}

std::wstring SettingsText(const StoredRule& rule) {
    return L"policy " + NameOf(rule.policy) + L", lease " + std::to_wstring(rule.leaseSize) + L", revision " +
           std::to_wstring(rule.revision) +
           (rule.settings == RuleSettings{} ? std::wstring() : L", settings " + TextOf(rule.settings)) +
           L", code length " + std::to_wstring(rule.definition.codeLength) + L", definition " +
           HexOf(Sha256Of(hosts::ToUtf8(rule.definition.text))) + L" of " + rule.definition.storedAt + L" by " +
           rule.definition.storedBy + L", rule " + rule.name;
}

std::vector<StoredRule> Rules::All() { return mvarDatabase.Prepare(SelectRules(L" ORDER BY r.name")).Rows(ReadRule); }

std::optional<StoredRule> Rules::Find(const std::wstring& name) {
    return mvarDatabase.Prepare(SelectRules(L" WHERE r.name = ?")).Set(name).First(ReadRule);
}

void Rules::Add(StoredRule& rule) {
    const auto highest = mvarDatabase.Prepare(L"SELECT MAX(id) FROM kestrel_rules").First([](const Statement& row) {
        return row.Number(1);
    });
    rule.id = highest.value_or(0) + 1;
    mvarDatabase
        .Prepare(
            L"INSERT INTO kestrel_rules (id, name, policy, lease_size, settings, revision, definition, turn) VALUES "
            L"(?, ?, ?, ?, ?, ?, ?, 0)")
        .Set(rule.id)
        .Set(rule.name)
        .Set(NameOf(rule.policy))
        .Set(rule.leaseSize)
        .Set(TextOf(rule.settings))
        .Set(rule.revision)
        .Set(rule.definition.number)
        .Execute();
}

void Rules::AddDefinition(std::int64_t ruleId, const Definition& definition) {
    mvarDatabase
        .Prepare(
            L"INSERT INTO kestrel_definitions (rule_id, number, code_length, stored_at, stored_by, text) VALUES (?, "
            L"?, ?, ?, ?, ?)")
        .Set(ruleId)
        .Set(definition.number)
        .Set(definition.codeLength)
        .Set(definition.storedAt)
        .Set(definition.storedBy)
        .Set(definition.text)
        .Execute();
}

void Rules::Replace(StoredRule& rule) {
    Statement& update =
        mvarDatabase.Prepare(L"UPDATE kestrel_rules SET name = ?, policy = ?, lease_size = ?, settings = ?, "
                             L"revision = ?, definition = ? WHERE id = ? AND revision = ?");
    update.Set(rule.name)
        .Set(NameOf(rule.policy))
        .Set(rule.leaseSize)
        .Set(TextOf(rule.settings))
        .Set(rule.revision + 1)
        .Set(rule.definition.number)
        .Set(rule.id)
        .Set(rule.revision)
        .Execute();
    if (update.Changed() != 1) RefuseChanged(rule);
    ++rule.revision;
}

std::vector<Definition> Rules::Definitions(std::int64_t ruleId) {
    return mvarDatabase
        .Prepare(L"SELECT number, code_length, stored_at, stored_by, text FROM kestrel_definitions WHERE rule_id = ? "
                 L"ORDER BY number")
        .Set(ruleId)
        .Rows([](const Statement& row) {
            return Definition{row.Number(1), row.Number(2), row.Text(3), row.Text(4), row.Text(5)};
        });
}

void Rules::Enter(const StoredRule& rule) {
    bool unchanged = false;
    if (mvarDatabase.EntersByWriting()) {
        Statement& touch =
            mvarDatabase.Prepare(L"UPDATE kestrel_rules SET turn = turn + 1 WHERE id = ? AND revision = ?");
        touch.Set(rule.id).Set(rule.revision).Execute();
        unchanged = touch.Changed() == 1;
    } else {
        unchanged = mvarDatabase.Prepare(L"SELECT id FROM kestrel_rules WHERE id = ? AND revision = ?")
                        .Set(rule.id)
                        .Set(rule.revision)
                        .First([](const Statement&) { return true; })
                        .has_value();
    }
    if (!unchanged) RefuseChanged(rule);
}

void Rules::RefuseChanged(const StoredRule& rule) {
    throw hosts::HostError(L"rule \"" + rule.name + L"\" was changed meanwhile; start again");
}

} // namespace ledger
