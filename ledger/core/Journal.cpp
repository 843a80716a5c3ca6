#include "ledger/core/Journal.h"

#include "ledger/core/Seal.h"
#include "ledger/core/Stamp.h"

namespace ledger {

namespace {

const wchar_t* const ActSelect =
    L"SELECT number, act, subject, detail, acted_at, acted_by, ticket, seal FROM kestrel_journal WHERE rule_id = ?";

std::wstring SelectActs(const wchar_t* rest) { return std::wstring(ActSelect) + rest; }

Act ReadAct(const Statement& row) {
    Act act;
    act.number = row.Number(1);
    act.kind = row.Text(2);
    act.subject = row.Text(3);
    act.detail = row.Text(4);
    act.at = row.Text(5);
    act.by = row.Text(6);
    act.ticket = row.Text(7);
    act.seal = row.Text(8);
    return act;
}

} // namespace

std::wstring SealOf(std::int64_t ruleId, const Act& act, const std::wstring& before) {
    return SealText(before)
        .Add(L"journal")
        .Add(ruleId)
        .Add(act.number)
        .Add(act.kind)
        .Add(act.subject)
        .Add(act.detail)
        .Add(act.at)
        .Add(act.by)
        .Add(act.ticket)
        .Seal();
}

std::optional<Act> Journal::Newest() {
    return mvarDatabase.Prepare(SelectActs(L" ORDER BY number DESC LIMIT 1")).Set(mvarRuleId).First(ReadAct);
}

bool BringsSettings(const Act& act) { return BringsDefinition(act) || act.kind == acts::Settings; }

bool BringsDefinition(const Act& act) { return act.kind == acts::Import || act.kind == acts::Upgrade; }

std::wstring PartOf(const Act& act, const std::wstring& word) {
    const std::size_t at = act.detail.find(word);
    if (at == std::wstring::npos) return {};
    const std::size_t begin = at + word.size();
    return act.detail.substr(begin, act.detail.find(L", ", begin) - begin);
}

RuleSettings SettingsIn(const Act& act) {
    return BringsSettings(act) ? RuleSettingsOf(PartOf(act, L", settings ")) : RuleSettings{};
}

std::int64_t Journal::NextNumber() {
    const auto newest = Newest();
    return newest ? newest->number + 1 : 1;
}

std::int64_t Journal::Write(const std::wstring& kind, const std::wstring& subject, const std::wstring& detail,
                            const std::wstring& ticket) {
    const auto newest = Newest();
    Act act{newest ? newest->number + 1 : 1, kind, subject, detail, NowText(), ThisUser(), ticket, {}};
    act.seal = SealOf(mvarRuleId, act, newest ? newest->seal : std::wstring());
    mvarDatabase
        .Prepare(
            L"INSERT INTO kestrel_journal (rule_id, number, act, subject, detail, acted_at, acted_by, ticket, seal) "
            L"VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?)")
        .Set(mvarRuleId)
        .Set(act.number)
        .Set(act.kind)
        .Set(act.subject)
        .Set(act.detail)
        .Set(act.at)
        .Set(act.by)
        .Set(act.ticket)
        .Set(act.seal)
        .Execute();
    return act.number;
}

std::optional<Act> Journal::OfTicket(const std::wstring& ticket) {
    auto act = mvarDatabase.Prepare(SelectActs(L" AND ticket = ?")).Set(mvarRuleId).Set(ticket).First(ReadAct);
    if (act) mvarDatabase.Confirm();
    return act;
}

std::optional<Act> Journal::At(std::int64_t number) {
    return mvarDatabase.Prepare(SelectActs(L" AND number = ?")).Set(mvarRuleId).Set(number).First(ReadAct);
}

std::vector<Act> Journal::All() {
    return mvarDatabase.Prepare(SelectActs(L" ORDER BY number")).Set(mvarRuleId).Rows(ReadAct);
}

} // namespace ledger
