#include "ledger/core/pattern/GrowingPattern.h"

#include <algorithm>
#include <regex>

#include "ledger/core/pattern/PatternText.h"

namespace ledger {

namespace {

PatternPart& OnlyNumber(Pattern& pattern) {
    const auto count = std::ranges::count(pattern, PartKind::Number, &PatternPart::kind);
    if (count == 0) throw PatternError(0, L"the pattern has no number that could grow; write one such as {####}");
    const auto isNumber = [](const PatternPart& part) { return part.kind == PartKind::Number; };
    const auto first = std::ranges::find_if(pattern, isNumber);
    if (count == 1) return *first;
    throw PatternError(std::find_if(first + 1, pattern.end(), isNumber)->position,
                       L"this is a second number; only a pattern with one number can grow");
}

void RefuseUnfit(const PatternPart& number, const Growth& growth) {
    if (number.length != growth.least)
        throw PatternError(number.position, L"the number has " + std::to_wstring(number.length) +
                                                L" digits and is to grow from " + std::to_wstring(growth.least) +
                                                L"; write {" + std::wstring(growth.least, L'#') + L"}");
    if (!number.last.empty())
        throw PatternError(number.position, L"a number that grows does not end with " + number.last +
                                                L"; leave its end out, it ends with its last digit");
}

} // namespace

Growth GrowthOf(const std::wstring& text) {
    std::wsmatch parts;
    if (!std::regex_match(text, parts, std::wregex(L"([1-9][0-9]?)\\.\\.([1-9][0-9]?)")))
        throw hosts::HostError(L"\"" + text + L"\" does not say how a number grows; write its digits as in 4..9");
    const Growth growth{std::stoul(parts[1]), std::stoul(parts[2])};
    if (growth.most <= growth.least)
        throw hosts::HostError(L"a number that grows from " + parts[1].str() + L" to " + parts[2].str() +
                               L" digits does not grow; write as in 4..9");
    if (growth.most > MostDigits)
        throw hosts::HostError(L"a number of " + parts[2].str() + L" digits is too long; a ledger counts in up to " +
                               std::to_wstring(MostDigits));
    return growth;
}

std::vector<Pattern> GrowingPatterns(const Pattern& pattern, const Growth& growth) {
    std::vector<Pattern> patterns;
    for (std::size_t digits = growth.least; digits <= growth.most; ++digits) {
        Pattern& grown = patterns.emplace_back(pattern);
        PatternPart& number = OnlyNumber(grown);
        RefuseUnfit(number, growth);
        number.length = digits;
        if (digits > growth.least) number.first = L"1" + std::wstring(digits - 1, L'0');
    }
    return patterns;
}

} // namespace ledger
