// audit: what is wrong, or soon will be, with a rule's codes
#include <algorithm>

#include "hosts/common/Console.h"
#include "hosts/common/Text.h"
#include "ledger/cli/Commands.h"
#include "ledger/cli/ExitCode.h"
#include "ledger/cli/Progress.h"
#include "ledger/core/Findings.h"

namespace ledger {

namespace {

// Codes of one kind that are named one by one; JSON names all.
constexpr std::size_t NamedForPeople = 20;

// A code whose number another one holds; a change of the definition can put them into one series.
struct SameNumber {
    std::wstring code;
    std::wstring holder;
    NumberHeld number;
};

struct Facts {
    std::int64_t codes = 0;
    std::vector<Series> series;
    std::vector<Gap> gaps;
    std::vector<Lease> leases;
    std::vector<Alike> alike;
    std::vector<SameNumber> sameNumbers;
    std::vector<std::pair<std::wstring, std::wstring>> foreign; // code and reason
};

std::vector<std::pair<std::wstring, std::wstring>> ForeignCodes(Codes& codes, CodeMaker& maker, Progress& progress) {
    std::vector<std::pair<std::wstring, std::wstring>> foreign;
    codes.ForEach([&](const std::wstring& code) {
        try {
            static_cast<void>(maker.Recognise(code));
        } catch (const hosts::RecordError& error) {
            foreign.emplace_back(code, hosts::OneLine(error.Message()));
        }
        progress.Advance(1);
    });
    return foreign;
}

std::vector<SameNumber> SameNumbers(Codes& codes, CodeMaker& maker) {
    std::vector<SameNumber> same;
    for (const std::wstring& code : codes.Uncounted(maker.NumberBands().size())) {
        try {
            for (const NumberHeld& number : maker.Recognise(code).numbers)
                if (const auto holder = codes.Holder(number); holder && *holder != code)
                    same.push_back({code, *holder, number});
        } catch (const hosts::RecordError&) { // reported with the codes that are not of this rule
        }
    }
    return same;
}

Facts Gather(Session& session, const StoredRule& rule, CodeMaker& maker) {
    return InTransaction(session.database, session.patience, OnUniqueKey::Fail, [&] {
        Codes codes(session.database, rule.id);
        Facts facts;
        facts.codes = codes.Count();
        facts.series = AllSeries(session.database, rule.id);
        facts.gaps = AllGaps(session.database, rule.id);
        facts.leases = Leases(session.database, rule.id).All();
        facts.alike = AllAlike(session.database, rule.id);
        facts.sameNumbers = SameNumbers(codes, maker);
        Progress progress(static_cast<std::size_t>(facts.codes));
        facts.foreign = ForeignCodes(codes, maker, progress);
        return facts;
    });
}

class Report {
  public:
    Report(const Session& session, const CodeMaker& maker, const AuditOptions& options)
        : mvarSession(session), mvarMaker(maker), mvarOptions(options) {}

    // The number of findings.
    std::size_t Print(const Facts& facts) {
        PrintSeries(facts);
        PrintGaps(facts);
        PrintLeases(facts);
        PrintAlike(facts);
        PrintSameNumbers(facts);
        PrintForeign(facts);
        mvarSession.output.Line(std::to_wstring(facts.codes) + L" codes, " + std::to_wstring(mvarFindings) +
                                    L" findings",
                                {{"codes", facts.codes}, {"findings", mvarFindings}});
        return mvarFindings;
    }

  private:
    void Find(const std::wstring& plain, const Json& json) {
        ++mvarFindings;
        mvarSession.output.Line(plain, json);
    }

    static std::wstring Percent(const std::optional<Room>& room) {
        return room ? std::to_wstring(room->percent) + L"%" : L"";
    }

    void PrintSeries(const Facts& facts) {
        Table table({L"BAND", L"SERIES", L"CODES", L"FIRST", L"LAST", L"LEFT", L"ROOM"});
        for (const Series& one : facts.series) {
            const auto room = RoomLeft(one, mvarMaker.NumberBands());
            table.Add({one.band, one.series, std::to_wstring(one.count), std::to_wstring(one.first),
                       std::to_wstring(one.last), room ? std::to_wstring(room->left) : L"", Percent(room)});
            if (mvarSession.output.IsJson()) PrintSeriesJson(one, room);
        }
        if (!mvarSession.output.IsJson() && !facts.series.empty())
            for (const std::wstring& line : table.Lines())
                hosts::PrintLine(line);
        for (const Series& one : facts.series)
            WarnOfRoom(one);
    }

    static void PrintSeriesJson(const Series& one, const std::optional<Room>& room) {
        Json json = {{"band", ToJson(one.band)},
                     {"series", ToJson(one.series)},
                     {"codes", one.count},
                     {"first", one.first},
                     {"last", one.last}};
        if (room) json["left"] = room->left;
        hosts::PrintLine(JsonText(json));
    }

    void WarnOfRoom(const Series& one) {
        const auto room = RoomLeft(one, mvarMaker.NumberBands());
        if (!room || room->percent >= mvarOptions.warnPercent) return;
        Find(L"room: " + one.series + L" has " + std::to_wstring(room->left) + L" numbers left in band " + one.band,
             {{"finding", "room"}, {"band", ToJson(one.band)}, {"series", ToJson(one.series)}, {"left", room->left}});
    }

    void PrintGaps(const Facts& facts) {
        for (const Series& one : facts.series)
            if (const auto gap = GapBefore(one, mvarMaker.NumberBands())) PrintGap(*gap, facts.leases);
        for (const Gap& gap : facts.gaps)
            PrintGap(gap, facts.leases);
    }

    void PrintGap(const Gap& gap, const std::vector<Lease>& leases) {
        const bool left = IsLeftOfLeases(gap, leases);
        const std::wstring numbers = std::to_wstring(gap.first) + L" to " + std::to_wstring(gap.last);
        Json json = {{left ? "note" : "finding", "gap"},
                     {"band", ToJson(gap.band)},
                     {"series", ToJson(gap.series)},
                     {"first", gap.first},
                     {"last", gap.last},
                     {"leftOfLease", left}};
        const std::wstring text = L"gap: " + gap.series + L" misses " + numbers + L" in band " + gap.band;
        if (left)
            mvarSession.output.Line(text + L" (left of a lease)", json);
        else
            Find(text, json);
    }

    // An open lease is a program that is at work, or one that ended early.
    void PrintLeases(const Facts& facts) {
        for (const Lease& lease : facts.leases) {
            if (!lease.open) continue;
            mvarSession.output.Line(L"lease: " + lease.owner + L" has set aside " + std::to_wstring(lease.first) +
                                        L" to " + std::to_wstring(lease.last) + L" of " + lease.series + L" in band " +
                                        lease.band + L" since " + lease.takenAt,
                                    {{"note", "lease"},
                                     {"owner", ToJson(lease.owner)},
                                     {"band", ToJson(lease.band)},
                                     {"series", ToJson(lease.series)},
                                     {"first", lease.first},
                                     {"last", lease.last},
                                     {"takenAt", ToJson(lease.takenAt)}});
        }
    }

    void PrintAlike(const Facts& facts) {
        for (const Alike& group : facts.alike)
            Find(L"duplicate: " + std::to_wstring(group.count) + L" codes are " + group.code + L" but for letter case",
                 {{"finding", "duplicate"}, {"code", ToJson(group.code)}, {"codes", group.count}});
    }

    void PrintSameNumbers(const Facts& facts) {
        for (const SameNumber& same : facts.sameNumbers)
            Find(L"duplicate: " + same.code + L" and " + same.holder + L" have number " +
                     std::to_wstring(same.number.number) + L" in band " + same.number.band,
                 {{"finding", "duplicate"},
                  {"code", ToJson(same.code)},
                  {"other", ToJson(same.holder)},
                  {"band", ToJson(same.number.band)},
                  {"number", same.number.number}});
    }

    void PrintForeignCode(const std::wstring& code, const std::wstring& reason) const {
        mvarSession.output.Line(L"not of this rule: " + code + L" (" + reason + L")",
                                {{"finding", "foreign"}, {"code", ToJson(code)}, {"reason", ToJson(reason)}});
    }

    void PrintForeign(const Facts& facts) {
        std::size_t named = 0;
        for (const auto& [code, reason] : facts.foreign) {
            ++mvarFindings;
            if (mvarSession.output.IsJson() || named++ < NamedForPeople) PrintForeignCode(code, reason);
        }
        if (!mvarSession.output.IsJson() && named > NamedForPeople)
            hosts::PrintLine(L"and " + std::to_wstring(named - NamedForPeople) + L" more not of this rule");
    }

    const Session& mvarSession;
    const CodeMaker& mvarMaker;
    const AuditOptions& mvarOptions;
    std::size_t mvarFindings = 0;
};

} // namespace

int AuditRule(Session& session, const AuditOptions& options) {
    const StoredRule rule = ResolveRule(session, options.rule);
    CodeMaker maker(rule.definition);
    const Facts facts = Gather(session, rule, maker);
    return Report(session, maker, options).Print(facts) == 0 ? ExitDone : ExitFindings;
}

} // namespace ledger
