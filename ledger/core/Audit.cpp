#include "ledger/core/Audit.h"

#include <algorithm>
#include <set>

#include "ledger/core/Codes.h"
#include "ledger/core/Journal.h"
#include "ledger/core/Json.h"

namespace ledger {

namespace {

constexpr std::size_t RowsAtOnce = 2000;

std::wstring Number(std::int64_t number) { return std::to_wstring(number); }

// A number with the code that it is stored for; the code's own text is empty when that is gone.
struct FullRow {
    std::wstring code; // as the number names it
    NumberRow number;
    CodeRow row;
};

const wchar_t* const SelectNumbers =
    L"SELECT n.band, n.series, n.number, n.code, n.lease, n.act, n.seal, c.code, c.ticket, c.definition, c.origin, "
    L"c.void_act, c.stored_at, c.fields FROM kestrel_numbers n LEFT JOIN kestrel_codes c ON c.rule_id = n.rule_id AND "
    L"c.code = n.code WHERE n.rule_id = ? ";

FullRow ReadFull(const Statement& row) {
    FullRow full;
    full.number.held.band = row.Text(1);
    full.number.held.series = row.Text(2);
    full.number.held.number = row.Number(3);
    full.code = row.Text(4);
    full.number.lease = row.Number(5);
    full.number.act = row.Number(6);
    full.number.seal = row.Text(7);
    full.row = ReadCode(row, 8);
    return full;
}

// Hands out a rule's numbers by band, series and number, some at a time, each piece found through the key.
class NumberReader {
  public:
    NumberReader(Database& database, std::int64_t ruleId) : mvarDatabase(database), mvarRuleId(ruleId) {}

    template <class Visit>
    void ForEach(Visit visit) {
        for (const std::wstring& band : Bands())
            ReadBand(band, visit);
    }

  private:
    std::vector<std::wstring> Bands() {
        return mvarDatabase.Prepare(L"SELECT DISTINCT band FROM kestrel_numbers WHERE rule_id = ? ORDER BY band")
            .Set(mvarRuleId)
            .Rows([](const Statement& row) { return row.Text(1); });
    }

    Statement& Query(const std::wstring& condition, const std::wstring& band) {
        Statement& rows = mvarDatabase.Prepare(std::wstring(SelectNumbers) + L"AND n.band = ? AND " + condition +
                                               L" LIMIT " + std::to_wstring(RowsAtOnce));
        rows.Set(mvarRuleId).Set(band);
        return rows;
    }

    template <class Visit>
    void ReadBand(const std::wstring& band, Visit& visit) {
        std::vector<FullRow> rows =
            Query(L"n.series >= ? ORDER BY n.series, n.number", band).Set(std::wstring()).Rows(ReadFull);
        while (!rows.empty()) {
            for (const FullRow& row : rows)
                visit(row);
            const NumberHeld last = rows.back().number.held;
            rows = Query(L"n.series = ? AND n.number > ? ORDER BY n.number", band)
                       .Set(last.series)
                       .Set(last.number)
                       .Rows(ReadFull);
            if (rows.empty())
                rows = Query(L"n.series > ? ORDER BY n.series, n.number", band).Set(last.series).Rows(ReadFull);
        }
    }

    Database& mvarDatabase;
    std::int64_t mvarRuleId;
};

class Auditor {
  public:
    Auditor(Database& database, const StoredRule& rule, const AuditRequest& request)
        : mvarDatabase(database), mvarRule(rule), mvarRequest(request) {
        mvarReport.rule = rule;
    }

    AuditReport Run() {
        CheckJournal();
        CheckDefinitions();
        CheckCodes();
        CheckLeases();
        CheckNumbers();
        CheckSums();
        CheckUncounted();
        CheckSeries();
        CheckLetterCase();
        CheckAgainst();
        return std::move(mvarReport);
    }

  private:
    void Find(FindingKind kind, std::wstring text, std::vector<Fact> facts) {
        mvarReport.findings.push_back({kind, std::move(text), std::move(facts)});
    }

    void CheckJournal() {
        std::wstring before;
        for (Act& act : Journal(mvarDatabase, mvarRule.id).All()) {
            const auto next = static_cast<std::int64_t>(mvarActs.size()) + 1;
            if (act.number != next || act.seal != SealOf(mvarRule.id, act, before))
                Find(FindingKind::Act,
                     L"act " + Number(act.number) + L" (" + act.kind + L") does not follow the one before it",
                     {{L"act", act.number}, {L"what", act.kind}});
            before = act.seal;
            if (act.kind == acts::Void) mvarVoids[act.number] = act.subject;
            mvarActs.push_back(std::move(act));
        }
        if (mvarActs.empty())
            Find(FindingKind::Act, L"the journal of the rule is gone", {});
        else
            mvarReport.heads.push_back({L"journal", {}, {}, 0, mvarActs.back().number, mvarActs.back().seal});
    }

    static bool BringsDefinition(const Act& act) { return act.kind == acts::Import || act.kind == acts::Upgrade; }

    void CheckDefinitions() {
        const std::vector<Definition> definitions = Rules(mvarDatabase).Definitions(mvarRule.id);
        for (const Definition& definition : definitions) {
            StoredRule then = mvarRule;
            then.definition = definition;
            std::wstring text = SettingsText(then);
            text = text.substr(text.find(L", code length "));
            text = text.substr(0, text.find(L", rule "));
            const bool known = std::ranges::any_of(mvarActs, [&](const Act& act) {
                return BringsDefinition(act) && act.subject == Number(definition.number) &&
                       act.detail.find(text) != std::wstring::npos;
            });
            if (!known)
                Find(FindingKind::Definition,
                     L"definition " + Number(definition.number) + L" is not as it was imported",
                     {{L"definition", definition.number}});
            MakeMaker(definition);
        }
        for (const Act& act : mvarActs)
            if (BringsDefinition(act) && std::ranges::none_of(definitions, [&act](const Definition& definition) {
                    return Number(definition.number) == act.subject;
                }))
                Find(FindingKind::Definition, L"definition " + act.subject + L" is gone",
                     {{L"definition", act.subject}});
        CheckSettings();
    }

    void MakeMaker(const Definition& definition) {
        try {
            CodeMaker maker(definition.text);
            mvarBands[definition.number] = maker.NumberBands().size();
            if (definition.number == mvarRule.definition.number) mvarReport.bands = maker.NumberBands();
        } catch (const hosts::HostError&) { // reported as changed
            mvarBands[definition.number] = 0;
        }
    }

    void CheckSettings() {
        const auto last = std::find_if(mvarActs.rbegin(), mvarActs.rend(), [](const Act& act) {
            return BringsDefinition(act) || act.kind == acts::Settings;
        });
        // As they are stored: what cannot be read is read as something else.
        const auto stored = mvarDatabase.Prepare(L"SELECT policy, settings FROM kestrel_rules WHERE id = ?")
                                .Set(mvarRule.id)
                                .First([](const Statement& row) { return std::pair(row.Text(1), row.Text(2)); });
        if (last == mvarActs.rend() || !last->detail.ends_with(SettingsText(mvarRule)) ||
            stored != std::pair(NameOf(mvarRule.policy), TextOf(mvarRule.settings)))
            Find(FindingKind::Settings, L"the rule is not as the journal says: " + SettingsText(mvarRule), {});
    }

    void CheckCodes() {
        Codes codes(mvarDatabase, mvarRule.id);
        std::wstring last;
        for (;;) {
            const std::vector<CodeRow> rows = codes.After(last, RowsAtOnce);
            if (rows.empty()) break;
            for (const CodeRow& row : rows)
                CheckCode(row);
            last = rows.back().code;
        }
        for (const auto& [act, code] : mvarVoids)
            Find(FindingKind::Void, L"code " + code + L" is void by act " + Number(act) + L", and not marked so",
                 {{L"code", code}, {L"act", act}});
    }

    void CheckCode(const CodeRow& row) {
        ++mvarReport.codes;
        ++mvarCodesOf[row.definition];
        if (mvarRequest.advance) mvarRequest.advance();
        if (!IsJsonObject(row.fields))
            Find(FindingKind::Fields, L"the fields of code " + row.code + L" are no JSON", {{L"code", row.code}});
        if (row.definition != 0 && !mvarBands.contains(row.definition))
            Find(FindingKind::Definition,
                 L"code " + row.code + L" was made by definition " + Number(row.definition) + L", which is not there",
                 {{L"code", row.code}, {L"definition", row.definition}});
        if (row.voidAct == 0) return;
        const auto act = mvarVoids.find(row.voidAct);
        if (act != mvarVoids.end() && act->second == row.code)
            mvarVoids.erase(act);
        else
            Find(FindingKind::Void, L"code " + row.code + L" is marked void, and the journal has no act for it",
                 {{L"code", row.code}, {L"act", row.voidAct}});
    }

    void CheckLeases() {
        for (Lease& lease : Leases(mvarDatabase, mvarRule.id).All()) {
            CheckLease(lease);
            if (lease.state == L"open") mvarReport.openLeases.push_back(lease);
            mvarLeases[{lease.band, lease.series}].push_back(std::move(lease));
        }
    }

    void CheckLease(const Lease& lease) {
        const std::wstring name = L"the lease of " + SubjectOf(lease);
        const std::vector<Fact> facts = {{L"band", lease.band}, {L"series", lease.series}, {L"first", lease.first}};
        if (lease.seal != SealOf(mvarRule.id, lease)) return Find(FindingKind::Lease, name + L" was changed", facts);
        const bool isWhole = lease.last == lease.grantedTo && lease.act == 0;
        if ((lease.state == L"open" || lease.state == L"used") && isWhole) return;
        if (lease.state == L"closed" && IsClosedBy(lease)) return;
        Find(FindingKind::Lease, name + L" is not as the journal says (" + lease.state + L")", facts);
    }

    [[nodiscard]] bool IsClosedBy(const Lease& lease) const {
        if (lease.act < 1 || lease.act > static_cast<std::int64_t>(mvarActs.size())) return false;
        const Act& act = mvarActs[static_cast<std::size_t>(lease.act) - 1];
        if (act.kind == acts::Upgrade) return true;
        return act.kind == acts::Lease && act.subject == SubjectOf(lease) && act.detail == Number(lease.last);
    }

    [[nodiscard]] const Lease* LeaseOf(const NumberRow& row) const {
        const auto found = mvarLeases.find({row.held.band, row.held.series});
        if (found == mvarLeases.end()) return nullptr;
        const auto lease = std::ranges::find(found->second, row.lease, &Lease::first);
        return lease == found->second.end() ? nullptr : &*lease;
    }

    void CheckNumbers() {
        NumberReader(mvarDatabase, mvarRule.id).ForEach([this](const FullRow& row) { CheckNumber(row); });
        EndSeries();
    }

    void CheckNumber(const FullRow& row) {
        const NumberHeld& held = row.number.held;
        if (mvarSeries.count == 0 || mvarSeries.band != held.band || mvarSeries.series != held.series)
            BeginSeries(held);
        if (mvarSeries.count > 0 && held.number > mvarSeries.last + 1)
            mvarGaps.push_back({held.band, held.series, mvarSeries.last + 1, held.number - 1});
        if (mvarSeries.count == 0) mvarSeries.first = held.number;
        const std::wstring before = Before(row.number);
        ++mvarSeries.count;
        mvarSeries.last = held.number;
        if (row.row.code.empty())
            Find(FindingKind::Lost,
                 L"code " + row.code + L" is gone; number " + Number(held.number) + L" in band " + held.band +
                     L" was given to it",
                 {{L"code", row.code}, {L"band", held.band}, {L"series", held.series}, {L"number", held.number}});
        else if (!Fits(row, before))
            Find(FindingKind::Changed,
                 L"code " + row.code + L", number " + Number(held.number) + L" in band " + held.band +
                     L", is not as it was stored",
                 {{L"code", row.code}, {L"band", held.band}, {L"series", held.series}, {L"number", held.number}});
        if (row.number.act > 0) mvarSums[row.number.act].Add(row.number.seal);
        Remember(row.number);
    }

    [[nodiscard]] bool Fits(const FullRow& row, const std::wstring& before) const {
        if (row.number.seal == SealOf(mvarRule.id, row.row, row.number, before)) return true;
        // What an act brought can have come below a series that had begun already.
        const bool mayBegin = mvarLastAct > 0 && row.number.act == 0 && row.number.lease == 0;
        return mayBegin && row.number.seal == SealOf(mvarRule.id, row.row, row.number, {});
    }

    // The seal that the number's own continues.
    std::wstring Before(const NumberRow& row) {
        if (row.act > 0) return {};
        if (row.lease == 0) return mvarSeries.count > 0 && mvarSeries.last == row.held.number - 1 ? mvarLastSeal : L"";
        const auto head = mvarLeaseHeads.find(row.lease);
        if (head != mvarLeaseHeads.end()) return head->second.seal;
        const Lease* lease = LeaseOf(row);
        if (lease == nullptr)
            Find(FindingKind::Lease,
                 L"the lease of number " + Number(row.held.number) + L" in " + row.held.series + L" is gone",
                 {{L"band", row.held.band}, {L"series", row.held.series}, {L"first", row.lease}});
        return lease == nullptr ? std::wstring() : lease->seal;
    }

    void Remember(const NumberRow& row) {
        mvarLastSeal = row.seal;
        mvarLastAct = row.act;
        if (row.lease == 0)
            mvarSeriesHead = {L"series", row.held.band, row.held.series, 0, row.held.number, row.seal};
        else
            mvarLeaseHeads[row.lease] = {L"lease",  row.held.band,   row.held.series,
                                         row.lease, row.held.number, row.seal};
        CheckHead(row);
    }

    void BeginSeries(const NumberHeld& held) {
        EndSeries();
        mvarSeries = {held.band, held.series, 0, 0, 0};
        mvarLastSeal.clear();
        mvarLastAct = 0;
    }

    void EndSeries() {
        if (mvarSeries.count > 0) mvarReport.series.push_back(mvarSeries);
        if (!mvarSeriesHead.chain.empty()) mvarReport.heads.push_back(mvarSeriesHead);
        for (auto& [first, head] : mvarLeaseHeads)
            mvarReport.heads.push_back(std::move(head));
        mvarSeriesHead = {};
        mvarLeaseHeads.clear();
    }

    // Rows that an act brought come with its sum.
    void CheckSums() {
        for (const Act& act : mvarActs) {
            const bool brings = BringsDefinition(act) || act.kind == acts::Adopt || act.kind == acts::Repair;
            if (brings && !act.detail.starts_with(mvarSums[act.number].Text()))
                Find(FindingKind::Act,
                     L"rows that act " + Number(act.number) + L" (" + act.kind + L") brought are gone or changed",
                     {{L"act", act.number}, {L"what", act.kind}});
            mvarSums.erase(act.number);
        }
        for (const auto& [act, sum] : mvarSums)
            Find(FindingKind::Act,
                 Number(sum.Count()) + L" numbers came by act " + Number(act) + L", which is not there",
                 {{L"act", act}});
    }

    void CheckUncounted() {
        for (const auto& [definition, codes] : mvarCodesOf) {
            const auto known = mvarBands.find(definition);
            const auto bands =
                std::max<std::size_t>(known == mvarBands.end() || definition == 0 ? 1 : known->second, 1);
            const auto uncounted =
                mvarDatabase
                    .Prepare(L"SELECT c.code FROM kestrel_codes c WHERE c.rule_id = ? AND c.definition = ? AND (SELECT "
                             L"COUNT(*) FROM kestrel_numbers n WHERE n.rule_id = c.rule_id AND n.code = c.code) < ? "
                             L"ORDER BY "
                             L"c.code")
                    .Set(mvarRule.id)
                    .Set(definition)
                    .Set(static_cast<std::int64_t>(bands))
                    .Rows([](const Statement& row) { return row.Text(1); });
            for (const std::wstring& code : uncounted)
                Find(FindingKind::Uncounted, L"code " + code + L" has not the numbers that its definition gives it",
                     {{L"code", code}});
        }
    }

    void CheckSeries() {
        for (const Series& one : mvarReport.series) {
            if (const auto gap = GapBefore(one, mvarReport.bands)) mvarGaps.push_back(*gap);
            const auto room = RoomLeft(one, mvarReport.bands);
            if (room && room->percent < mvarRequest.warnPercent)
                Find(FindingKind::Room,
                     one.series + L" has " + Number(room->left) + L" numbers left in band " + one.band,
                     {{L"band", one.band}, {L"series", one.series}, {L"left", room->left}});
        }
        std::ranges::sort(mvarGaps, {}, [](const Gap& gap) { return std::tuple(gap.band, gap.series, gap.first); });
        for (const Gap& gap : mvarGaps) {
            if (IsLeftOfLeases(gap, mvarLeases[{gap.band, gap.series}]))
                mvarReport.leftOfLeases.push_back(gap);
            else
                Find(FindingKind::Gap,
                     gap.series + L" misses " + Number(gap.first) + L" to " + Number(gap.last) + L" in band " +
                         gap.band,
                     {{L"band", gap.band}, {L"series", gap.series}, {L"first", gap.first}, {L"last", gap.last}});
        }
    }

    void CheckLetterCase() {
        Statement& groups = mvarDatabase.Prepare(L"SELECT UPPER(code), COUNT(*) FROM kestrel_codes WHERE rule_id = ? "
                                                 L"GROUP BY UPPER(code) HAVING COUNT(*) > 1 ORDER BY UPPER(code)");
        groups.Set(mvarRule.id).Execute();
        while (groups.Fetch()) {
            const std::wstring code = groups.Text(1);
            const std::int64_t count = groups.Number(2);
            Find(FindingKind::Duplicate, Number(count) + L" codes are " + code + L" but for letter case",
                 {{L"code", code}, {L"codes", count}});
        }
    }

    using Place = std::tuple<std::wstring, std::wstring, std::int64_t>; // band, series, number

    // Takes the heads that are still there off the list.
    void CheckHead(const NumberRow& row) {
        if (mvarRequest.against.empty()) return;
        if (mvarWanted.empty() && !mvarWantedRead) ReadWanted();
        const auto wanted = mvarWanted.find({row.held.band, row.held.series, row.held.number});
        if (wanted != mvarWanted.end() && wanted->second->seal == row.seal && wanted->second->lease == row.lease)
            mvarWanted.erase(wanted);
    }

    void ReadWanted() {
        mvarWantedRead = true;
        for (const Head& head : mvarRequest.against)
            if (head.chain != L"journal") mvarWanted[{head.band, head.series, head.number}] = &head;
    }

    void CheckAgainst() {
        if (!mvarWantedRead) ReadWanted();
        for (const Head& head : mvarRequest.against) {
            if (head.chain != L"journal") continue;
            const auto place = static_cast<std::size_t>(head.number);
            if (place < 1 || place > mvarActs.size() || mvarActs[place - 1].seal != head.seal)
                Find(FindingKind::Head, L"act " + Number(head.number) + L" of the journal is not what it was",
                     {{L"chain", head.chain}, {L"number", head.number}});
        }
        for (const auto& [place, head] : mvarWanted)
            Find(
                FindingKind::Head,
                L"number " + Number(head->number) + L" of " + head->series + L" in band " + head->band +
                    L" is not what it was",
                {{L"chain", head->chain}, {L"band", head->band}, {L"series", head->series}, {L"number", head->number}});
    }

    Database& mvarDatabase;
    const StoredRule& mvarRule;
    const AuditRequest& mvarRequest;
    AuditReport mvarReport;
    std::vector<Act> mvarActs;
    std::map<std::int64_t, std::wstring> mvarVoids;   // acts whose code was not seen yet, and the code
    std::map<std::int64_t, std::size_t> mvarBands;    // number bands of each definition
    std::map<std::int64_t, std::int64_t> mvarCodesOf; // codes of each definition
    std::map<std::pair<std::wstring, std::wstring>, std::vector<Lease>> mvarLeases; // by band and series
    std::map<std::int64_t, SealSum> mvarSums;                                       // of the rows that each act brought
    std::vector<Gap> mvarGaps;
    Series mvarSeries; // the one that is being read
    Head mvarSeriesHead;
    std::map<std::int64_t, Head> mvarLeaseHeads; // of the leases of that series
    std::wstring mvarLastSeal;                   // of the number before
    std::int64_t mvarLastAct = 0;
    std::map<Place, const Head*> mvarWanted;
    bool mvarWantedRead = false;
};

} // namespace

AuditReport AuditRuleNow(Database& database, const StoredRule& rule, const AuditRequest& request) {
    return Auditor(database, rule, request).Run();
}

std::vector<Finding> FindOrphans(Database& database) {
    std::vector<Finding> findings;
    for (const wchar_t* table :
         {L"kestrel_definitions", L"kestrel_codes", L"kestrel_numbers", L"kestrel_leases", L"kestrel_journal"}) {
        const auto rules =
            database
                .Prepare(std::wstring(L"SELECT DISTINCT rule_id FROM ") + table +
                         L" WHERE rule_id NOT IN (SELECT r.id FROM kestrel_rules r JOIN kestrel_definitions d ON "
                         L"d.rule_id = r.id AND d.number = r.definition)")
                .Rows([](const Statement& row) { return row.Number(1); });
        for (const std::int64_t rule : rules)
            findings.push_back(
                {FindingKind::Orphan,
                 std::wstring(table) + L" has rows of rule " + std::to_wstring(rule) + L", which is not there",
                 {{L"table", std::wstring(table)}, {L"rule", rule}}});
    }
    return findings;
}

} // namespace ledger
