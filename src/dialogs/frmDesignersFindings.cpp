// What is found about the rule: marks at the boxes of its bands, and a word from when the form opens until the line is
// needed for something else. Nothing is forbidden by it.

#include <utility>

#include "dialogs/FindingTexts.h"
#include "dialogs/frmDesigners.h"
#include "engine/RuleCheck.h"

namespace kestrel::dialogs {

void frmDesigners::ShowFindings() {
    const auto code = cCode.Lock();
    if (!code) return;
    const FindingTexts texts(CheckRule(*code));
    std::vector<String> findings;
    for (const auto& band : code->Bands())
        findings.push_back(texts.Of(*band));
    mvarStrip.SetFindings(std::move(findings));
    mvarStatus.Tell(texts.Count(), texts.All());
}

// After a change that leaves the boxes as they are; once for all the changes that a step makes.
void frmDesigners::ShowFindingsSoon() {
    if (Window() != nullptr && !std::exchange(mvarFindingsWait, true)) PostMessageW(Window(), FindingsMessage, 0, 0);
}

} // namespace kestrel::dialogs
