#include "ledger/core/Repair.h"

#include <algorithm>
#include <cwchar>
#include <map>
#include <set>

#include "hosts/common/Text.h"
#include "ledger/core/Journal.h"
#include "ledger/core/Reuse.h"
#include "ledger/core/Rules.h"
#include "ledger/core/Seal.h"
#include "ledger/core/Stamp.h"

namespace ledger {

namespace {

class RuleRepair {
  public:
    RuleRepair(Database& database, std::int64_t ruleId)
        : mvarDatabase(database), mvarRuleId(ruleId), mvarJournal(database, ruleId) {}

    [[nodiscard]] bool IsDone(const std::wstring& ticket) { return mvarJournal.OfTicket(ticket).has_value(); }

    std::int64_t Run(const std::wstring& ticket) {
        const std::int64_t settings = RepairSettings();
        const std::int64_t voids = RepairVoids() + Reuse(mvarDatabase, mvarRuleId).Refill(GivesAgain());
        if (voids + settings > 0)
            mvarJournal.Write(acts::Repair,
                              hosts::Counted(voids, L"void mark") + L", " + hosts::Counted(settings, L"setting"),
                              SealSum().Text(), ticket);
        return voids + settings;
    }

  private:
    bool GivesAgain() {
        const auto settings = mvarDatabase.Prepare(L"SELECT settings FROM kestrel_rules WHERE id = ?")
                                  .Set(mvarRuleId)
                                  .First([](const Statement& row) { return row.Text(1); });
        return RuleSettingsOf(settings.value_or(L"")).reuse;
    }

    std::int64_t RepairVoids() {
        std::int64_t repaired = 0;
        Statement& missing = mvarDatabase.Prepare(
            L"UPDATE kestrel_codes SET void_act = ? WHERE rule_id = ? AND code = ? AND void_act <> ?");
        const std::vector<Act> all = mvarJournal.All();
        std::set<std::wstring> past; // acts whose code's number was given again
        for (const Act& act : all)
            if (act.kind == acts::Reuse) past.insert(PartOf(act, L"void "));
        for (const Act& act : all) {
            if (act.kind != acts::Void || past.contains(std::to_wstring(act.number))) continue;
            missing.Set(act.number).Set(mvarRuleId).Set(act.subject).Set(act.number).Execute();
            repaired += missing.Changed();
        }
        Statement& marked = mvarDatabase.Prepare(
            L"UPDATE kestrel_codes SET void_act = 0 WHERE rule_id = ? AND void_act <> 0 AND NOT EXISTS (SELECT 1 FROM "
            L"kestrel_journal j WHERE j.rule_id = kestrel_codes.rule_id AND j.number = kestrel_codes.void_act AND "
            L"j.act = "
            L"'void' AND j.subject = kestrel_codes.code)");
        marked.Set(mvarRuleId).Execute();
        return repaired + marked.Changed();
    }

    std::int64_t RepairSettings() {
        const std::vector<Act> all = mvarJournal.All();
        const auto last = std::find_if(all.rbegin(), all.rend(), BringsSettings);
        if (last == all.rend()) return 0;
        const auto number = [](const std::wstring& text) {
            return static_cast<std::int64_t>(std::wcstoll(text.c_str(), nullptr, 10));
        };
        const std::wstring policy = PartOf(*last, L"policy ");
        const std::wstring name = last->detail.substr(last->detail.find(L", rule ") + 7);
        const std::wstring settings = TextOf(SettingsIn(*last));
        const std::int64_t lease = number(PartOf(*last, L", lease "));
        const std::int64_t revision = number(PartOf(*last, L", revision "));
        Statement& update = mvarDatabase.Prepare(
            L"UPDATE kestrel_rules SET name = ?, policy = ?, lease_size = ?, settings = ?, revision = ?, definition = "
            L"? "
            L"WHERE id = ? AND NOT (name = ? AND policy = ? AND lease_size = ? AND settings = ? AND revision = ? AND "
            L"definition = ?)");
        const std::int64_t definition = number(last->subject);
        update.Set(name).Set(policy).Set(lease).Set(settings).Set(revision).Set(definition).Set(mvarRuleId);
        update.Set(name).Set(policy).Set(lease).Set(settings).Set(revision).Set(definition).Execute();
        return update.Changed();
    }

    Database& mvarDatabase;
    std::int64_t mvarRuleId;
    Journal mvarJournal;
};

} // namespace

std::int64_t RepairLedger(Database& database, Patience patience) {
    const std::wstring ticket = NewTicket();
    std::map<std::int64_t, std::int64_t> attempt; // what the last one put right, by rule
    return InTransaction(database, patience, OnUniqueKey::Retry, [&] {
        std::int64_t repaired = 0;
        const auto rules = database.Prepare(L"SELECT id FROM kestrel_rules ORDER BY id").Rows([](const Statement& row) {
            return row.Number(1);
        });
        for (const std::int64_t rule : rules) {
            RuleRepair repair(database, rule);
            // An attempt whose COMMIT was not answered may be stored.
            if (!repair.IsDone(ticket)) attempt[rule] = repair.Run(ticket);
            repaired += attempt[rule];
        }
        return repaired;
    });
}

} // namespace ledger
