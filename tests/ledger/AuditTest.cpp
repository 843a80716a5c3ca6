#include "ledger/core/Audit.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <set>

#include "hosts/common/Dispatch.h"
#include "ledger/DatabaseFileTest.h"
#include "ledger/RuleText.h"
#include "ledger/core/Adoption.h"
#include "ledger/core/Issuer.h"
#include "ledger/core/NumberingIssuer.h"
#include "ledger/core/Repair.h"
#include "ledger/core/RuleChange.h"
#include "ledger/core/Schema.h"
#include "ledger/core/Stamp.h"
#include "ledger/core/Voiding.h"

using ledger::Access;
using ledger::AuditRequest;
using ledger::Finding;
using ledger::Head;
using ledger::Lease;
using ledger::Policy;
using ledger::RuleChange;
using ledger::StoredRule;

namespace {

struct Column {
    std::wstring table;
    std::wstring name;
    bool isNumber = false;
};

// A row as SQLite itself numbers it, with a column's value.
struct Cell {
    std::int64_t row = 0;
    std::wstring value;
};

std::string Narrow(const std::wstring& text) { return {text.begin(), text.end()}; }

// Changes are made to a ledger with something in every table, in each state that rows can have; each of them is undone
// again.
class AuditTest : public DatabaseFileTest {
  protected:
    void SetUp() override {
        DatabaseFileTest::SetUp();
        ledger::PrepareSchema(*mvarDatabase, Wait);
        FillGapless();
        FillFast();
        FillReused();
        FillNumberings();
        mvarDatabase->Begin(Access::Write);
        ASSERT_EQ(Found(), std::vector<std::wstring>());
        mvarHeads = Heads();
    }

    // What an audit of all rules finds in the state of the transaction.
    std::vector<std::wstring> Found() {
        std::vector<std::wstring> texts;
        const auto add = [&texts](const std::vector<Finding>& findings) {
            for (const Finding& finding : findings)
                texts.push_back(finding.text);
        };
        for (const StoredRule& rule : ledger::Rules(*mvarDatabase).All())
            add(ledger::AuditRuleNow(*mvarDatabase, rule, Request(rule.id)).findings);
        add(ledger::FindOrphans(*mvarDatabase));
        return texts;
    }
    std::map<std::int64_t, std::vector<Head>> Heads() {
        std::map<std::int64_t, std::vector<Head>> heads;
        for (const StoredRule& rule : ledger::Rules(*mvarDatabase).All())
            heads[rule.id] = ledger::AuditRuleNow(*mvarDatabase, rule, Request(rule.id)).heads;
        return heads;
    }

    // Runs statements, audits, and undoes them; what the tables' own keys refuse needs no audit.
    bool IsFound(const std::vector<std::wstring>& changes) {
        bool found = true;
        try {
            for (const std::wstring& change : changes)
                mvarDatabase->Run(change);
            found = !Found().empty();
        } catch (const ledger::DbError& error) {
            EXPECT_EQ(error.Kind(), ledger::Fault::UniqueKey) << Narrow(error.Message());
        }
        Undo();
        return found;
    }
    void Undo() {
        mvarDatabase->Rollback();
        mvarDatabase->Begin(Access::Write);
    }

    // Every column of the ledger's tables but `turn`, which means nothing.
    std::vector<Column> Columns() {
        return mvarDatabase
            ->Prepare(L"SELECT t.name, c.name, c.type FROM sqlite_schema t JOIN pragma_table_info(t.name) c WHERE "
                      L"t.type = 'table' AND t.name <> 'kestrel_schema' AND c.name <> 'turn'")
            .Rows([](const ledger::Statement& row) {
                return Column{row.Text(1), row.Text(2), row.Text(3) == L"BIGINT"};
            });
    }
    std::vector<Cell> Cells(const Column& column) {
        return mvarDatabase->Prepare(L"SELECT rowid, " + column.name + L" FROM " + column.table)
            .Rows([](const ledger::Statement& row) {
                return Cell{row.Number(1), row.Text(2)};
            });
    }
    static std::wstring Setting(const Column& column, const std::wstring& value, std::int64_t row) {
        return L"UPDATE " + column.table + L" SET " + column.name + L" = " + value + L" WHERE rowid = " +
               std::to_wstring(row);
    }

    static std::wstring Literal(const Column& column, const Cell& cell) {
        return column.isNumber ? cell.value : L"'" + cell.value + L"'";
    }

    StoredRule Change(const std::wstring& name, const std::wstring& definition, Policy policy, std::int64_t lease) {
        ledger::CodeMaker maker(definition);
        return ledger::ChangeRule(*mvarDatabase, Wait, {name, definition, policy, lease, {}, {}}, maker).rule;
    }
    StoredRule ReusingRule(const std::wstring& definition) {
        ledger::CodeMaker maker(definition);
        ledger::RuleSettings settings;
        settings.reuse = true;
        const RuleChange change{L"reusing", definition, Policy::Gapless, {}, settings, {}};
        return ledger::ChangeRule(*mvarDatabase, Wait, change, maker).rule;
    }
    void Issue(const StoredRule& rule, const std::vector<std::wstring>& years, bool finishes = true) {
        ledger::CodeMaker maker(rule.definition.text);
        const auto issuer = ledger::MakeIssuer({*mvarDatabase, rule, maker, Wait});
        IssueBy(*issuer, years, finishes);
    }
    static void IssueBy(ledger::Issuer& issuer, const std::vector<std::wstring>& years, bool finishes = true) {
        std::vector<ledger::Request> requests;
        requests.reserve(years.size());
        for (const std::wstring& year : years)
            requests.push_back({{{L"Year", year}}, L"{\"Year\":\"" + year + L"\"}", ledger::NewTicket(), false});
        for (const ledger::Outcome& outcome : issuer.Issue(requests, 10))
            EXPECT_EQ(outcome.refusal, L"");
        if (finishes) issuer.Finish();
    }

    std::map<std::int64_t, std::vector<Head>> mvarHeads; // by rule

  private:
    [[nodiscard]] AuditRequest Request(std::int64_t rule) const {
        AuditRequest request;
        if (const auto heads = mvarHeads.find(rule); heads != mvarHeads.end()) request.against = heads->second;
        return request;
    }

    void FillGapless() {
        const std::wstring yearly = NumberedRule(L"-", L"Year");
        StoredRule rule = Change(L"rule", yearly, Policy::Gapless, 100);
        Issue(rule, {L"2024", L"2024", L"2023", L"2024"});
        for (const wchar_t* code : {L"2024-000002", L"2023-000001"})
            ledger::VoidCodeOf(*mvarDatabase, Wait, rule, code, L"twice");
        ledger::CodeMaker maker(yearly);
        const auto adopted =
            ledger::Adopt(*mvarDatabase, Wait, rule, maker, {{2, L"2024-000004", {}}, {3, L"2022-000001", {}}}, [] {});
        EXPECT_EQ(adopted.size(), 2U);
        Change(L"rule", yearly, Policy::Gapless, 50);
        rule = Change(L"rule", NumberedRule(L"/", L"Year"), Policy::Gapless, 50);
        Issue(rule, {L"2024", L"2024"});
        ledger::InTransaction(*mvarDatabase, Wait, ledger::OnUniqueKey::Fail, [this] {
            mvarDatabase->Run(L"UPDATE kestrel_codes SET void_act = 0 WHERE code = '2024-000002'");
            return true;
        });
        EXPECT_EQ(ledger::RepairLedger(*mvarDatabase, Wait), 1);
    }

    // Leases that are used up, closed with a rest, closed without a number of theirs being used, closed with the last
    // of them wasted, and open.
    void FillFast() {
        const StoredRule rule = Change(L"fast", NumberedRule(L"-", L"Year"), Policy::Fast, 4);
        Issue(rule, {L"2024", L"2024", L"2024", L"2024", L"2024", L"2023"});
        ledger::InTransaction(*mvarDatabase, Wait, ledger::OnUniqueKey::Fail, [&] {
            ledger::Leases leases(*mvarDatabase, rule.id);
            const ledger::NumberBand band{L"Number", 5, 6, 1, 999'999, {}};
            const Lease unused = leases.Take(band, L"2024-??????", 4, L"one");
            const Lease behind = leases.Take(band, L"2024-??????", 4, L"two");
            leases.Close(unused, unused.first, band.step);
            leases.Close(behind, behind.first, band.step);
            const Lease wasted = leases.Take(band, L"2024-??????", 4, L"three");
            leases.Close(wasted, wasted.last + 1, band.step);
            return true;
        });
        Issue(rule, {L"2024", L"2024"}, false);
    }

    // Of four void numbers two are given again, and two wait for it.
    void FillReused() {
        const StoredRule rule = ReusingRule(NumberedRule(L".", L"Year"));
        Issue(rule, {L"2024", L"2024", L"2024", L"2024", L"2024"});
        for (const wchar_t* code : {L"2024.000001", L"2024.000002", L"2024.000003", L"2024.000004"})
            ledger::VoidCodeOf(*mvarDatabase, Wait, rule, code, L"twice");
        Issue(rule, {L"2024", L"2024"});
    }

    void FillNumberings() {
        const StoredRule rule = Change(L"numbered", NumberedRule(L"+", L"Year"), Policy::Gapless, 100);
        ledger::Numbering numbering;
        ledger::NumberingPart part;
        part.rule = rule.id;
        numbering.parts = {part};
        for (const wchar_t* name : {L"invoices", L"orders"}) {
            numbering.name = name;
            ledger::StoreNumbering(*mvarDatabase, Wait, numbering);
        }
        numbering = ledger::InSnapshot(*mvarDatabase, Wait,
                                       [this] { return *ledger::Numberings(*mvarDatabase).Find(L"orders"); });
        ledger::NumberingIssuer issuer(*mvarDatabase, Wait, numbering, {rule}, {}, false);
        IssueBy(issuer, {L"2024", L"2024", L"2025"});
    }

    hosts::Apartment mvarApartment;
};

} // namespace

TEST_F(AuditTest, ThereIsSomethingInEveryTableAndEachState) {
    std::set<std::wstring> states;
    for (const Column& column : Columns()) {
        const std::vector<Cell> cells = Cells(column);
        EXPECT_GE(cells.size(), 2U) << Narrow(column.table);
        for (const Cell& cell : cells)
            if (column.name == L"state" || column.name == L"act" || column.name == L"origin") states.insert(cell.value);
    }
    for (const wchar_t* state : {L"issued", L"adopted", L"open", L"used", L"closed", L"import", L"settings", L"void",
                                 L"adopt", L"lease", L"repair"})
        EXPECT_TRUE(states.contains(state)) << Narrow(state);
}

TEST_F(AuditTest, EveryChangeOfAColumnIsFound) {
    for (const Column& column : Columns())
        for (const Cell& cell : Cells(column)) {
            const std::wstring changed = column.isNumber ? column.name + L" + 100000" : L"'x' || " + column.name;
            EXPECT_TRUE(IsFound({Setting(column, changed, cell.row)}))
                << Narrow(column.table + L"." + column.name + L" of row " + std::to_wstring(cell.row));
        }
}

// One that is called open is shown as such, whatever it was: its program may be gone.
TEST_F(AuditTest, EveryOtherStateOfALeaseIsFound) {
    const Column column{L"kestrel_leases", L"state", false};
    std::size_t tried = 0;
    for (const Cell& cell : Cells(column))
        for (const wchar_t* state : {L"used", L"closed"}) {
            if (cell.value == state) continue;
            ++tried;
            EXPECT_TRUE(IsFound({Setting(column, Literal(column, {cell.row, state}), cell.row)}))
                << Narrow(cell.value) << " to " << Narrow(state) << " of row " << cell.row;
        }
    EXPECT_GE(tried, 4U);
}

TEST_F(AuditTest, EveryRowThatIsRemovedIsFound) {
    std::set<std::wstring> tables;
    for (const Column& column : Columns()) {
        if (!tables.insert(column.table).second) continue;
        for (const Cell& cell : Cells(column))
            EXPECT_TRUE(IsFound({L"DELETE FROM " + column.table + L" WHERE rowid = " + std::to_wstring(cell.row)}))
                << Narrow(column.table) << " without row " << cell.row;
    }
}

TEST_F(AuditTest, ValuesOfTwoRowsThatAreSwappedAreFound) {
    for (const Column& column : Columns()) {
        const std::vector<Cell> cells = Cells(column);
        for (std::size_t at = 1; at < cells.size(); ++at) {
            const Cell& one = cells[at - 1];
            const Cell& other = cells[at];
            if (one.value == other.value) continue;
            EXPECT_TRUE(IsFound({Setting(column, column.isNumber ? L"-1" : L"'between'", one.row),
                                 Setting(column, Literal(column, one), other.row),
                                 Setting(column, Literal(column, other), one.row)}))
                << Narrow(column.table + L"." + column.name) << " of rows " << one.row << " and " << other.row;
        }
    }
}

TEST_F(AuditTest, RowsThatArePutInAreFound) {
    // NOLINTBEGIN(bugprone-suspicious-missing-comma): statements that are longer than a line
    const std::vector<std::wstring> copies = {
        L"INSERT INTO kestrel_codes SELECT rule_id, '2024-000099', 'own', definition, origin, 0, stored_at, fields "
        L"FROM kestrel_codes WHERE code = '2024-000001'",
        L"INSERT INTO kestrel_numbers SELECT rule_id, band, series, 99, code, lease, act, seal FROM kestrel_numbers "
        L"WHERE code = '2024-000001'",
        L"INSERT INTO kestrel_definitions SELECT rule_id, 99, code_length, stored_at, stored_by, text FROM "
        L"kestrel_definitions WHERE number = 1",
        L"INSERT INTO kestrel_leases SELECT rule_id, band, series, 99, 100, 100, owner, taken_at, ticket, state, act, "
        L"seal FROM kestrel_leases WHERE first_number = 1",
        L"INSERT INTO kestrel_journal SELECT rule_id, 99, act, subject, detail, acted_at, acted_by, 'own', seal FROM "
        L"kestrel_journal WHERE number = 1"};
    // NOLINTEND(bugprone-suspicious-missing-comma)
    for (const std::wstring& copy : copies)
        EXPECT_TRUE(IsFound({copy})) << Narrow(copy);
}

TEST_F(AuditTest, TheEndOfAChainIsMissedByWhoeverKnewIt) {
    const std::vector<std::wstring> end = {L"DELETE FROM kestrel_codes WHERE code = '2024/000002' AND rule_id = 1",
                                           L"DELETE FROM kestrel_numbers WHERE code = '2024/000002' AND rule_id = 1"};
    EXPECT_TRUE(IsFound(end));
    mvarHeads.clear();
    EXPECT_FALSE(IsFound(end)) << "as if the code had never been issued";
}

TEST_F(AuditTest, AnOlderStateIsFound) {
    const auto heads = mvarHeads;
    mvarDatabase->Rollback();
    Issue(ledger::InSnapshot(*mvarDatabase, Wait, [this] { return *ledger::Rules(*mvarDatabase).Find(L"rule"); }),
          {L"2025"});
    mvarDatabase->Begin(Access::Write);
    EXPECT_EQ(Found(), std::vector<std::wstring>()) << "more was issued since";
    mvarHeads.clear();
    mvarHeads = Heads();
    EXPECT_TRUE(IsFound({L"DELETE FROM kestrel_codes WHERE code LIKE '2025%'",
                         L"DELETE FROM kestrel_numbers WHERE code LIKE '2025%'"}));
}
