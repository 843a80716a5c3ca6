#include "dialogs/ListRows.h"

#include "common/Ports.h"
#include "dialogs/Texts.h"

namespace kestrel::dialogs {

namespace {

std::vector<String> TextRows(int first, int count) {
    std::vector<String> rows;
    for (int number = first; number < first + count; ++number)
        rows.push_back(TheStrings().Text(number));
    return rows;
}

std::vector<Ref<Band>> OtherBands(const CodeClass& rule, const Band* leftOut) {
    std::vector<Ref<Band>> others;
    for (const auto& band : rule.Bands())
        if (!(band == leftOut)) others.push_back(band);
    return others;
}

} // namespace

std::vector<String> StyleRows() { return TextRows(text::StyleFixed, text::StyleCount); }
std::vector<String> SwapRows() { return TextRows(text::SwapNone, text::SwapCount); }
std::vector<String> IncrRows() { return TextRows(text::IncrNever, text::IncrCount); }

std::vector<String> BoundRows(const Band& band) {
    const auto fields = band.DataFields();
    if (!fields) return {};
    std::vector<String> rows{TheStrings().Text(text::None)};
    for (const auto& field : fields->Snapshot())
        rows.push_back(field->Name());
    return rows;
}

int BoundRow(const Band& band) {
    const auto fields = band.DataFields();
    if (!fields) return -1;
    return band.BoundField() ? fields->FindItemPosition(band.BoundField()) : 0;
}

Ref<List> BoundItem(const Band& band, int row) {
    const auto fields = band.DataFields();
    return fields && row >= 1 && row <= fields->Count() ? fields->Item(row) : nullptr;
}

String BoundDescription(const Band& band) {
    const auto& field = band.BoundField();
    return field && field->Description() ? field->Description()->Text() : String();
}

std::vector<String> TriggerRows(const CodeClass& rule, const Band* leftOut) {
    std::vector<String> rows{TheStrings().Text(text::None)};
    for (const auto& band : OtherBands(rule, leftOut))
        rows.push_back(band->Name());
    return rows;
}

int TriggerRow(const CodeClass& rule, const Band& band, const Band* leftOut) {
    const auto trigger = band.TrigerBand();
    const auto others = OtherBands(rule, leftOut);
    for (std::size_t index = 0; trigger && index < others.size(); ++index)
        if (others[index] == trigger) return static_cast<int>(index) + 1;
    return 0;
}

Ref<Band> TriggerBand(const CodeClass& rule, const Band* leftOut, int row) {
    const auto others = OtherBands(rule, leftOut);
    return row >= 1 && row <= static_cast<int>(others.size()) ? others[static_cast<std::size_t>(row) - 1] : nullptr;
}

} // namespace kestrel::dialogs
