#include "dialogs/FindingTexts.h"

#include "common/Ports.h"
#include "dialogs/Texts.h"

namespace kestrel::dialogs {

namespace {

constexpr std::size_t longestTip = 900; // characters

void AddLine(String& tip, const String& sentence) {
    if (tip.size() > longestTip) return; // full
    if (!tip.empty()) tip += L"\r\n";
    tip += sentence;
    if (tip.size() <= longestTip) return;
    tip.resize(longestTip);
    tip += L'…';
}

} // namespace

FindingTexts::FindingTexts(const std::vector<Finding>& findings) : mvarCount(findings.size()) {
    for (const auto& finding : findings)
        AddLine(finding.band ? mvarOfBands[finding.band.Get()] : mvarAll, finding.sentence);
    for (const auto& finding : findings)
        if (finding.band) AddLine(mvarAll, finding.sentence);
}

String FindingTexts::Of(const Band& band) const {
    const auto found = mvarOfBands.find(&band);
    return found == mvarOfBands.end() ? String() : found->second;
}

String FindingTexts::Count() const {
    if (mvarCount == 0) return {};
    if (mvarCount == 1) return TheStrings().Text(text::OneFinding);
    return ReplaceStar(TheStrings().Text(text::Findings), ToText(static_cast<std::int64_t>(mvarCount)));
}

} // namespace kestrel::dialogs
