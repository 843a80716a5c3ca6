#include "ledger/core/Upgrade.h"

#include <algorithm>
#include <map>
#include <set>

#include "ledger/core/CodeMaker.h"
#include "ledger/core/Codes.h"
#include "ledger/core/Journal.h"
#include "ledger/core/Leases.h"
#include "ledger/core/Recount.h"
#include "ledger/core/Rules.h"
#include "ledger/core/Schema.h"
#include "ledger/core/Stamp.h"

namespace ledger {

namespace {

// The tables of version 1; their columns are those that the statements below name.
const wchar_t* const OldTables[] = {L"rules", L"codes", L"numbers", L"leases", L"schema"};

struct OldCode {
    CodeRow row;
    std::wstring reason;
};

class RuleUpgrade {
  public:
    RuleUpgrade(Database& database, StoredRule rule)
        : mvarDatabase(database), mvarRule(std::move(rule)), mvarCodes(database, mvarRule.id),
          mvarJournal(database, mvarRule.id) {}

    void Run(UpgradeReport& report) {
        mvarRule.definition.number = 1;
        mvarRule.definition.storedAt = NowText();
        mvarRule.definition.storedBy = ThisUser();
        Rules rules(mvarDatabase);
        mvarDatabase
            .Prepare(L"INSERT INTO kestrel_rules (id, name, policy, lease_size, revision, definition, turn, settings) "
                     L"VALUES (?, ?, ?, ?, ?, 1, 0, ?)")
            .Set(mvarRule.id)
            .Set(mvarRule.name)
            .Set(NameOf(mvarRule.policy))
            .Set(mvarRule.leaseSize)
            .Set(mvarRule.revision)
            .Set(TextOf(mvarRule.settings))
            .Execute();
        rules.AddDefinition(mvarRule.id, mvarRule.definition);
        BringLeases();
        BringCodes(report);
        mvarJournal.Write(acts::Upgrade, L"1", mvarSum.Text() + L", " + SettingsText(mvarRule), NewTicket());
        MakeVoid();
    }

  private:
    // The act that is written when all rows are there.
    static constexpr std::int64_t Act = 1;

    std::vector<OldCode> OldCodes() {
        return mvarDatabase
            .Prepare(L"SELECT code, ticket, state, stored_at, fields, reason FROM kestrel_old_codes WHERE rule_id = ? "
                     L"ORDER BY code")
            .Set(mvarRule.id)
            .Rows([](const Statement& row) {
                OldCode code;
                code.row.code = row.Text(1);
                code.row.ticket = row.Text(2);
                code.row.origin = row.Text(3);
                code.row.storedAt = row.Text(4);
                code.row.fields = row.Text(5);
                code.reason = row.Text(6);
                return code;
            });
    }

    std::map<std::wstring, std::vector<NumberHeld>> OldNumbers() {
        std::map<std::wstring, std::vector<NumberHeld>> numbers;
        Statement& rows =
            mvarDatabase.Prepare(L"SELECT code, band, series, number FROM kestrel_old_numbers WHERE rule_id = ?");
        rows.Set(mvarRule.id).Execute();
        while (rows.Fetch()) {
            const std::wstring code = rows.Text(1);
            NumberHeld held;
            held.band = rows.Text(2);
            held.series = rows.Text(3);
            held.number = rows.Number(4);
            numbers[code].push_back(std::move(held));
        }
        return numbers;
    }

    // 1 when the definition that there is takes the code apart; the one that made it was not kept otherwise.
    static std::int64_t DefinitionOf(CodeMaker& maker, const std::wstring& code) {
        try {
            static_cast<void>(maker.Recognise(code, {}));
            return 1;
        } catch (const hosts::RecordError&) {
            return 0;
        }
    }

    void BringCodes(UpgradeReport& report) {
        CodeMaker maker(mvarRule.definition.text);
        auto numbers = OldNumbers();
        std::vector<NewCode> codes;
        for (OldCode& old : OldCodes()) {
            const bool isVoid = old.row.origin == L"void";
            if (isVoid) mvarVoid.emplace_back(old.row.code, old.reason);
            if (old.row.origin != L"adopted") old.row.origin = L"issued";
            old.row.definition = DefinitionOf(maker, old.row.code);
            // Two codes of one request: what the tickets of today keep from happening.
            if (!mvarTickets.insert(old.row.ticket).second) {
                old.row.ticket = NewTicket();
                ++report.tickets;
            }
            NewCode code;
            code.row = std::move(old.row);
            AddNumbers(code, std::move(numbers[code.row.code]));
            codes.push_back(std::move(code));
            ++report.codes;
        }
        mvarCodes.Add(codes);
    }

    void AddNumbers(NewCode& code, std::vector<NumberHeld> numbers) {
        if (numbers.empty()) numbers.push_back({{}, {}, ++mvarUnnumbered});
        for (NumberHeld& held : numbers) {
            NumberRow row{std::move(held), 0, Act, {}};
            row.seal = SealOf(mvarRule.id, code.row, row, {});
            mvarSum.Add(row.seal);
            code.numbers.push_back(std::move(row));
        }
    }

    void BringLeases() {
        const auto leases =
            mvarDatabase
                .Prepare(L"SELECT band, series, first_number, last_number, granted_to, owner, taken_at, "
                         L"state FROM kestrel_old_leases WHERE rule_id = ?")
                .Set(mvarRule.id)
                .Rows([](const Statement& row) {
                    Lease lease;
                    lease.band = row.Text(1);
                    lease.series = row.Text(2);
                    lease.first = row.Number(3);
                    lease.last = row.Number(4);
                    lease.grantedTo = row.Number(5);
                    lease.owner = row.Text(6);
                    lease.takenAt = row.Text(7);
                    lease.state = row.Text(8);
                    return lease;
                });
        for (Lease lease : leases) {
            lease.ticket = NewTicket();
            lease.act = lease.state == L"open" ? 0 : Act;
            lease.seal = SealOf(mvarRule.id, lease);
            Statement& insert =
                mvarDatabase.Prepare(L"INSERT INTO kestrel_leases (rule_id, band, series, first_number, last_number, "
                                     L"granted_to, owner, taken_at, "
                                     L"ticket, state, act, seal) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)");
            insert.Set(mvarRule.id).Set(lease.band).Set(lease.series).Set(lease.first).Set(lease.last);
            insert.Set(lease.grantedTo).Set(lease.owner).Set(lease.takenAt).Set(lease.ticket).Set(lease.state);
            insert.Set(lease.act).Set(lease.seal).Execute();
        }
    }

    void MakeVoid() {
        for (const auto& [code, reason] : mvarVoid)
            static_cast<void>(mvarCodes.Void(code, mvarJournal.Write(acts::Void, code, reason, NewTicket())));
    }

    Database& mvarDatabase;
    StoredRule mvarRule;
    Codes mvarCodes;
    Journal mvarJournal;
    SealSum mvarSum;
    std::vector<std::pair<std::wstring, std::wstring>> mvarVoid; // code and reason
    std::set<std::wstring> mvarTickets;
    std::int64_t mvarUnnumbered = 0;
};

std::vector<StoredRule> OldRules(Database& database) {
    return database
        .Prepare(L"SELECT id, name, policy, lease_size, code_length, revision, definition FROM kestrel_old_rules ORDER "
                 L"BY id")
        .Rows([](const Statement& row) {
            StoredRule rule;
            rule.id = row.Number(1);
            rule.name = row.Text(2);
            rule.policy = PolicyOf(row.Text(3)).value_or(Policy::Gapless);
            rule.leaseSize = row.Number(4);
            rule.definition.codeLength = row.Number(5);
            rule.revision = row.Number(6);
            rule.definition.text = row.Text(7);
            return rule;
        });
}

UpgradeReport FromVersion1(Database& database) {
    UpgradeReport report;
    report.from = 1;
    for (const wchar_t* table : OldTables)
        database.Run(std::wstring(L"ALTER TABLE kestrel_") + table + L" RENAME TO kestrel_old_" + table);
    MakeTables(database);
    for (StoredRule& rule : OldRules(database)) {
        RuleUpgrade(database, std::move(rule)).Run(report);
        ++report.rules;
    }
    for (const wchar_t* table : OldTables)
        database.Run(std::wstring(L"DROP TABLE kestrel_old_") + table);
    return report;
}

std::int64_t CountOf(Database& database, const std::wstring& table) {
    return database.Prepare(L"SELECT COUNT(*) FROM " + table)
        .First([](const Statement& row) { return row.Number(1); })
        .value_or(0);
}

// Bands that track nothing count from version 3 on; codes that were adopted with a number in them are counted now.
void CountUntracked(Database& database, const StoredRule& rule) {
    Journal journal(database, rule.id);
    Recount recount(database, rule.id, journal.NextNumber());
    for (const Definition& definition : Rules(database).Definitions(rule.id)) {
        CodeMaker maker(definition.text);
        if (std::ranges::all_of(maker.NumberBands(), &NumberBand::tracks)) continue;
        recount.Run(maker, definition.number == rule.definition.number ? 0 : definition.number);
    }
    if (recount.Sum().Count() == 0) return;
    journal.Write(acts::Upgrade, std::to_wstring(rule.definition.number),
                  recount.Sum().Text() + L", " + SettingsText(rule), NewTicket());
}

// What version 3 added; every row of version 2 stays as it is.
UpgradeReport FromVersion2(Database& database) {
    UpgradeReport report;
    report.from = 2;
    report.rules = CountOf(database, L"kestrel_rules");
    report.codes = CountOf(database, L"kestrel_codes");
    database.Run(database.TableText(L"ALTER TABLE kestrel_rules ADD COLUMN settings LONGTEXT NOT NULL DEFAULT '{}'"));
    MakeTables(database);
    database.Run(L"DELETE FROM kestrel_schema WHERE version = 2");
    for (const StoredRule& rule : Rules(database).All())
        CountUntracked(database, rule);
    return report;
}

} // namespace

UpgradeReport UpgradeLedger(Database& database, Patience patience) {
    std::optional<UpgradeReport> tried; // by an attempt whose COMMIT was not answered
    return InTransaction(database, patience, OnUniqueKey::Fail, Access::Define, [&] {
        const std::int64_t version = StoredVersion(database);
        if (version == 0)
            throw hosts::HostError(L"there is no ledger in this database yet; nothing is to be brought up");
        if (version > SchemaVersion) throw hosts::HostError(L"the database was made by a newer kledger; use that one");
        if (version == 1) tried = FromVersion1(database);
        if (version == 2) tried = FromVersion2(database);
        if (tried) return *tried;
        UpgradeReport report;
        report.from = version;
        return report;
    });
}

} // namespace ledger
