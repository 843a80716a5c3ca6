#include "ledger/core/Rules.h"

namespace ledger {

namespace {

const wchar_t* const Columns = L"id, name, policy, lease_size, code_length, revision, definition";

StoredRule ReadRow(const Statement& row) {
    StoredRule rule;
    rule.id = row.Number(1);
    rule.name = row.Text(2);
    rule.policy = PolicyOf(row.Text(3)).value_or(Policy::Gapless);
    rule.leaseSize = row.Number(4);
    rule.codeLength = row.Number(5);
    rule.revision = row.Number(6);
    rule.definition = row.Text(7);
    return rule;
}

} // namespace

std::wstring NameOf(Policy policy) { return policy == Policy::Fast ? L"fast" : L"gapless"; }

std::optional<Policy> PolicyOf(const std::wstring& name) {
    if (name == L"gapless") return Policy::Gapless;
    if (name == L"fast") return Policy::Fast;
    return std::nullopt;
}

std::vector<StoredRule> Rules::All() {
    return mvarDatabase.Prepare(std::wstring(L"SELECT ") + Columns + L" FROM kestrel_rules ORDER BY name")
        .Rows(ReadRow);
}

std::optional<StoredRule> Rules::Find(const std::wstring& name) {
    Statement& rows = mvarDatabase.Prepare(std::wstring(L"SELECT ") + Columns + L" FROM kestrel_rules WHERE name = ?");
    rows.Set(name).Execute();
    if (!rows.Fetch()) return std::nullopt;
    return ReadRow(rows);
}

void Rules::Add(StoredRule& rule) {
    Statement& highest = mvarDatabase.Prepare(L"SELECT MAX(id) FROM kestrel_rules");
    highest.Execute();
    rule.id = (highest.Fetch() ? highest.Number(1) : 0) + 1;
    mvarDatabase.Prepare(std::wstring(L"INSERT INTO kestrel_rules (") + Columns + L") VALUES (?, ?, ?, ?, ?, ?, ?)")
        .Set(rule.id)
        .Set(rule.name)
        .Set(NameOf(rule.policy))
        .Set(rule.leaseSize)
        .Set(rule.codeLength)
        .Set(rule.revision)
        .Set(rule.definition)
        .Execute();
}

void Rules::Replace(StoredRule& rule) {
    mvarDatabase
        .Prepare(L"UPDATE kestrel_rules SET policy = ?, lease_size = ?, code_length = ?, revision = ?, definition = ? "
                 L"WHERE id = ?")
        .Set(NameOf(rule.policy))
        .Set(rule.leaseSize)
        .Set(rule.codeLength)
        .Set(rule.revision + 1)
        .Set(rule.definition)
        .Set(rule.id)
        .Execute();
    ++rule.revision;
}

void Rules::Enter(const StoredRule& rule) {
    bool unchanged = false;
    if (mvarDatabase.EntersByWriting()) {
        Statement& touch =
            mvarDatabase.Prepare(L"UPDATE kestrel_rules SET revision = revision WHERE id = ? AND revision = ?");
        touch.Set(rule.id).Set(rule.revision).Execute();
        unchanged = touch.Changed() == 1;
    } else {
        Statement& row = mvarDatabase.Prepare(L"SELECT id FROM kestrel_rules WHERE id = ? AND revision = ?");
        row.Set(rule.id).Set(rule.revision).Execute();
        unchanged = row.Fetch();
    }
    if (!unchanged) RefuseChanged(rule);
}

void Rules::RefuseChanged(const StoredRule& rule) {
    throw hosts::HostError(L"rule \"" + rule.name + L"\" was changed meanwhile; start again");
}

} // namespace ledger
