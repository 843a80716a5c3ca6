// The dialogs by name, for programs that show one.
#pragma once

#include "dialogs/support/SampleRule.h"

namespace kestrel::test {

// Shows a dialog of the rule modally: designer, band, relation, modify, fields, options. Any other name shows nothing.
inline void ShowDialog(CodeClass& rule, StringView dialog) {
    if (dialog == L"designer") rule.ShowDesigner({}, true);
    if (dialog == L"band") rule.ShowAddBand(rule.Count() > 0 ? L"Number" : L"", 2);
    if (dialog == L"relation") rule.ShowAddRelation(ibRegion, L"N3", tvwNext, false);
    if (dialog == L"modify") rule.ShowAddRelation(ibRegion, L"N3", tvwNext, true);
    if (dialog == L"fields") rule.ShowFieldManage();
    if (dialog == L"options") rule.ShowOptions();
}

} // namespace kestrel::test
