#include "ledger/core/NumberingCheck.h"

#include <algorithm>
#include <map>
#include <memory>

#include "ledger/core/CodeMaker.h"
#include "ledger/core/NumberingFit.h"

namespace ledger {

namespace {

using hosts::HostError;

class PartsCheck {
  public:
    PartsCheck(const Numbering& numbering, const std::vector<StoredRule>& rules)
        : mvarNumbering(numbering), mvarRules(rules) {}

    void Run() {
        for (const StoredRule& rule : mvarRules)
            if (rule.name == mvarNumbering.name) Refuse(L"a rule has this name; give the numbering another one");
        for (const NumberingPart& part : mvarNumbering.parts)
            CheckPart(part);
        for (std::size_t one = 0; one < mvarNumbering.parts.size(); ++one)
            for (std::size_t other = one + 1; other < mvarNumbering.parts.size(); ++other)
                CheckOverlap(mvarNumbering.parts[one], mvarNumbering.parts[other]);
        for (std::size_t one = 0; one < mvarNumbering.parts.size(); ++one)
            CheckSuccessors(one);
    }

  private:
    [[noreturn]] void Refuse(const std::wstring& reason) const {
        throw HostError(L"numbering \"" + mvarNumbering.name + L"\": " + reason);
    }

    [[nodiscard]] const StoredRule& RuleOf(const NumberingPart& part) const {
        const auto rule = std::ranges::find(mvarRules, part.rule, &StoredRule::id);
        if (rule == mvarRules.end()) Refuse(L"rule " + std::to_wstring(part.rule) + L" is not there any more");
        return *rule;
    }

    CodeMaker& MakerOf(const NumberingPart& part) {
        auto& maker = mvarMakers[part.rule];
        const StoredRule& rule = RuleOf(part);
        if (!maker) maker = std::make_unique<CodeMaker>(rule.definition.text, rule.settings);
        return *maker;
    }

    void CheckPart(const NumberingPart& part) {
        const CodeMaker& maker = MakerOf(part);
        for (const auto& [field, value] : part.when)
            CheckField(field, maker, part);
        CheckConditions(part);
        if (part.date.empty()) {
            if (!part.from.empty() || !part.until.empty())
                Refuse(L"days are given and no field with the record's date; name it with --date");
            return;
        }
        CheckField(part.date, maker, part);
        for (const std::wstring& day : {part.from, part.until})
            if (!day.empty() && DayOf(day) != day) Refuse(L"\"" + day + L"\" is no day; write it as 2026-04-12");
        if (!part.until.empty() && part.until < part.from) Refuse(part.until + L" is before " + part.from);
    }

    void CheckConditions(const NumberingPart& part) const {
        for (auto one = part.when.begin(); one != part.when.end(); ++one)
            for (auto other = one + 1; other != part.when.end(); ++other)
                if (one->first == other->first)
                    Refuse(L"field " + one->first + L" stands twice in --when, as '" + one->second + L"' and as '" +
                           other->second + L"', and a record has one value of it; add the rule once more for another");
    }

    void CheckField(const std::wstring& field, const CodeMaker& maker, const NumberingPart& part) const {
        if (maker.Knows(field) || std::ranges::find(mvarNumbering.fields, field) != mvarNumbering.fields.end()) return;
        Refuse(L"neither the numbering nor rule \"" + RuleOf(part).name + L"\" has a field \"" + field +
               L"\"; name those that only the records have with --fields");
    }

    static bool ExcludeEachOther(const NumberingPart& one, const NumberingPart& other) {
        for (const auto& [field, value] : one.when)
            for (const auto& [second, another] : other.when)
                if (field == second && value != another) return true;
        if (one.date.empty() || one.date != other.date) return false;
        return (!one.until.empty() && one.until < other.from) || (!other.until.empty() && other.until < one.from);
    }

    // The order of the parts says which of two comes first for a record that both are for: that is no contradiction as
    // long as the earlier one is the exception. It is one when it has a condition that the later one has not, or days
    // within the later one's. What contradicts itself:
    //
    //   twice       the same rule for the same records: the second part could never do anything
    //   unreached   the earlier part has no condition and no day that the later one has not, and does not pass on when
    //               it is full: it takes every record that the later one is for
    //   crosswise   the earlier part has no condition that the later one has not, and does not pass on; both have days,
    //               and some of each are the other's: nobody can say whether the later one's were meant to begin later
    //   on          the rule that the earlier one passes on to has no number above its last one: it could not go on
    //
    // Days of two fields say nothing about each other. What several parts together take from a later one is not looked
    // at, nor whether a record has all that its conditions ask for.
    void CheckSuccessors(std::size_t at) {
        const NumberingPart& one = mvarNumbering.parts[at];
        bool isNext = true;
        for (std::size_t behind = at + 1; behind < mvarNumbering.parts.size(); ++behind) {
            const NumberingPart& other = mvarNumbering.parts[behind];
            CheckTwice(one, other);
            if (ExcludeEachOther(one, other)) continue;
            if (one.then == Then::Stop) CheckReached(one, other);
            if (one.then == Then::On && isNext) CheckGoesOn(one, other);
            isNext = false;
        }
    }

    void CheckTwice(const NumberingPart& one, const NumberingPart& other) const {
        if (one.rule == other.rule && Takes(one.when, other.when) && Takes(other.when, one.when) &&
            one.date == other.date && one.from == other.from && one.until == other.until)
            Refuse(L"rule \"" + RuleOf(one).name + L"\" stands twice with the same days and conditions");
    }

    void CheckReached(const NumberingPart& one, const NumberingPart& other) const {
        if (!Takes(one.when, other.when)) return;
        if (one.date.empty() || (one.date == other.date && HasDaysOf(one, other)))
            Refuse(L"rule \"" + RuleOf(other).name + L"\" would never be reached: rule \"" + RuleOf(one).name +
                   L"\" takes every record that it is for; put the more special one first, or let \"" +
                   RuleOf(one).name + L"\" pass on with --then");
        if (one.date == other.date && !HasDaysOf(other, one))
            Refuse(L"the days of rules \"" + RuleOf(one).name + L"\" (" + DaysText(one) + L") and \"" +
                   RuleOf(other).name + L"\" (" + DaysText(other) +
                   L") overlap; let one begin when the other has ended");
    }

    void CheckGoesOn(const NumberingPart& one, const NumberingPart& other) {
        for (const NumberBand& band : MakerOf(one).NumberBands())
            for (const NumberBand& next : MakerOf(other).NumberBands())
                if (next.highest > band.highest) return;
        if (MakerOf(one).NumberBands().empty() || MakerOf(other).NumberBands().empty()) return;
        Refuse(L"rule \"" + RuleOf(other).name + L"\" cannot go on counting behind rule \"" + RuleOf(one).name +
               L"\": its last number is " + LastOf(other) + L", and that of \"" + RuleOf(one).name + L"\" is " +
               LastOf(one) + L"; let it begin with --then anew");
    }

    std::wstring LastOf(const NumberingPart& part) {
        return std::to_wstring(MakerOf(part).NumberBands().front().highest);
    }

    // Whether whatever meets the second conditions meets the first ones.
    static bool Takes(const FieldValues& wide, const FieldValues& narrow) {
        return std::ranges::all_of(
            wide, [&narrow](const auto& condition) { return std::ranges::find(narrow, condition) != narrow.end(); });
    }

    // Whether all days of the second part are the first one's, by the same field.
    static bool HasDaysOf(const NumberingPart& wide, const NumberingPart& narrow) {
        return wide.from <= narrow.from &&
               (wide.until.empty() || (!narrow.until.empty() && narrow.until <= wide.until));
    }

    void CheckOverlap(const NumberingPart& one, const NumberingPart& other) {
        if (one.rule == other.rule || ExcludeEachOther(one, other)) return;
        if (!CanBeTheSame(MakerOf(one), MakerOf(other))) return;
        Refuse(L"rules \"" + RuleOf(one).name + L"\" and \"" + RuleOf(other).name +
               L"\" overlap: both can give the same code; give them other texts, or numbers that do not meet");
    }

    static bool CanBeTheSame(const CodeMaker& one, const CodeMaker& other) {
        if (one.CodeLength() != other.CodeLength()) return false;
        const std::wstring first = FixedOf(one);
        const std::wstring second = FixedOf(other);
        for (std::size_t at = 0; at < first.size() && at < second.size(); ++at)
            if (first[at] != 0 && second[at] != 0 && first[at] != second[at]) return false;
        for (const NumberBand& band : one.NumberBands())
            for (const NumberBand& another : other.NumberBands())
                if (band.position == another.position && band.length == another.length &&
                    (band.highest < another.start || another.highest < band.start))
                    return false;
        return true;
    }

    // The characters that every code has; 0 where they differ.
    static std::wstring FixedOf(const CodeMaker& maker) {
        std::wstring text;
        for (const hosts::Band& band : maker.Bands())
            text += band.style == hosts::BandStyle::Fixed ? maker.Rule().BandValue(band.name)
                                                          : std::wstring(band.length, L'\0');
        return text;
    }

    const Numbering& mvarNumbering;
    const std::vector<StoredRule>& mvarRules;
    std::map<std::int64_t, std::unique_ptr<CodeMaker>> mvarMakers;
};

} // namespace

void CheckNumbering(const Numbering& numbering, const std::vector<StoredRule>& rules) {
    PartsCheck(numbering, rules).Run();
}

} // namespace ledger
