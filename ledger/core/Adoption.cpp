#include "ledger/core/Adoption.h"

#include <algorithm>
#include <map>
#include <set>

#include "hosts/common/Text.h"
#include "ledger/core/Codes.h"
#include "ledger/core/Journal.h"
#include "ledger/core/Json.h"
#include "ledger/core/Stamp.h"

namespace ledger {

namespace {

// Looks at one code after the other; what is stored is decided at the end, all at once.
class Adoption {
  public:
    Adoption(Database& database, const StoredRule& rule, CodeMaker& maker)
        : mvarRule(rule), mvarCodes(database, rule.id), mvarJournal(database, rule.id), mvarMaker(maker),
          mvarAct(mvarJournal.NextNumber()), mvarNow(NowText()) {}

    AdoptionFinding Look(const ForeignCode& code) {
        AdoptionFinding finding{code.line, code.code, L"adopted", {}};
        try {
            MadeCode made = mvarMaker.Recognise(code.code, code.others);
            finding.detail = DuplicateOf(made);
            if (finding.detail.empty())
                Take(std::move(made), code.others);
            else
                finding.kind = L"duplicate";
        } catch (const hosts::RecordError& error) {
            finding.kind = L"foreign";
            finding.detail = hosts::OneLine(error.Message());
        }
        return finding;
    }

    // The sum of the rows stored; nothing is written when there are none.
    std::wstring Store(const std::wstring& ticket) {
        if (mvarNew.empty()) return {};
        mvarCodes.Add(mvarNew);
        mvarJournal.Write(acts::Adopt, hosts::Counted(mvarNew.size(), L"code"), mvarSum.Text(), ticket);
        return mvarSum.Text();
    }

  private:
    std::wstring DuplicateOf(const MadeCode& made) {
        if (mvarSeen.contains(made.code)) return L"stands in the file before";
        if (const auto stored = mvarCodes.Find(made.code)) return L"in the ledger as " + stored->State();
        for (const NumberHeld& number : made.numbers) {
            if (mvarTaken.contains(number)) return L"the file has its number in band " + number.band + L" before";
            if (const auto holder = mvarCodes.Holder(number))
                return *holder + L" has its number in band " + number.band;
        }
        return {};
    }

    void Take(MadeCode made, const FieldValues& others) {
        FieldValues fields = mvarMaker.Values();
        const std::vector<std::wstring> unreadable = mvarMaker.Unreadable(made.code);
        std::erase_if(fields, [&unreadable](const auto& field) {
            return std::ranges::find(unreadable, field.first) != unreadable.end();
        });
        fields.insert(fields.end(), others.begin(), others.end());
        NewCode code;
        code.row = {made.code, NewTicket(), mvarRule.definition.number, L"adopted",
                    0,         mvarNow,     JsonText(ToJson(fields))};
        mvarSeen.insert(made.code);
        mvarTaken.insert(made.numbers.begin(), made.numbers.end());
        if (made.numbers.empty()) made.numbers.push_back({{}, {}, NextUnnumbered()});
        for (NumberHeld& held : made.numbers) {
            NumberRow row{std::move(held), 0, mvarAct, {}};
            row.seal = SealOf(mvarRule.id, code.row, row, {});
            mvarSum.Add(row.seal);
            code.numbers.push_back(std::move(row));
        }
        mvarNew.push_back(std::move(code));
    }

    // Codes without number bands are counted as well, in the series of no name.
    std::int64_t NextUnnumbered() {
        if (mvarUnnumbered == 0) {
            const auto highest = mvarCodes.Highest({}, {});
            mvarUnnumbered = highest ? highest->number : 0;
        }
        return ++mvarUnnumbered;
    }

    const StoredRule& mvarRule;
    Codes mvarCodes;
    Journal mvarJournal;
    CodeMaker& mvarMaker;
    std::int64_t mvarAct;
    std::wstring mvarNow;
    std::set<std::wstring> mvarSeen;
    std::set<NumberHeld> mvarTaken;
    std::vector<NewCode> mvarNew;
    SealSum mvarSum;
    std::int64_t mvarUnnumbered = 0;
};

} // namespace

std::vector<AdoptionFinding> Adopt(Database& database, Patience patience, const StoredRule& rule, CodeMaker& maker,
                                   const std::vector<ForeignCode>& codes, const std::function<void()>& advance) {
    const std::wstring ticket = NewTicket();
    std::map<std::wstring, std::vector<AdoptionFinding>> attempts; // by the sum of what they stored
    return InTransaction(database, patience, OnUniqueKey::Retry, [&] {
        database.KeepWritersOut(L"kestrel_codes");
        Rules(database).Enter(rule);
        if (const auto act = Journal(database, rule.id).OfTicket(ticket)) return attempts[act->detail];
        Adoption adoption(database, rule, maker);
        std::vector<AdoptionFinding> findings;
        for (const ForeignCode& code : codes) {
            findings.push_back(adoption.Look(code));
            advance();
        }
        attempts[adoption.Store(ticket)] = findings;
        return findings;
    });
}

} // namespace ledger
