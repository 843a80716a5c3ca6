#include "ledger/core/NumberingCheck.h"

#include <algorithm>
#include <map>
#include <memory>

#include "ledger/core/CodeMaker.h"
#include "ledger/core/formulas/Dates.h"

namespace ledger {

namespace {

using hosts::HostError;

class Check {
  public:
    Check(const Numbering& numbering, const std::vector<StoredRule>& rules)
        : mvarNumbering(numbering), mvarRules(rules) {}

    void Run() {
        for (const StoredRule& rule : mvarRules)
            if (rule.name == mvarNumbering.name) Refuse(L"a rule has this name");
        for (const NumberingPart& part : mvarNumbering.parts)
            CheckPart(part);
        for (std::size_t one = 0; one < mvarNumbering.parts.size(); ++one)
            for (std::size_t other = one + 1; other < mvarNumbering.parts.size(); ++other)
                CheckOverlap(mvarNumbering.parts[one], mvarNumbering.parts[other]);
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

std::wstring DayOf(const std::wstring& date) {
    constexpr std::size_t lengthOfDay = 10;
    const auto read = DateFormat().Read(date);
    return read ? IsoText(*read).substr(0, lengthOfDay) : std::wstring();
}

void CheckNumbering(const Numbering& numbering, const std::vector<StoredRule>& rules) { Check(numbering, rules).Run(); }

} // namespace ledger
