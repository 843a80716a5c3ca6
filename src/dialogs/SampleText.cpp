#include "dialogs/SampleText.h"

#include <algorithm>

#include "common/Ports.h"
#include "dialogs/Texts.h"

namespace kestrel::dialogs {

namespace {

constexpr std::int32_t longest = 24;

String Cut(const String& text) {
    if (text.size() <= static_cast<std::size_t>(longest)) return text;
    return text.substr(0, static_cast<std::size_t>(longest)) + L'…';
}

String NumberSample(const Band& band) {
    const String& start = band.Default().empty() ? band.InitStart() : band.Default();
    const auto length = static_cast<std::size_t>(std::min(band.Length(), longest + 1));
    String digits = band.Formate().empty() ? start : TheText().Format(start, band.Formate());
    if (digits.size() < length) digits.insert(0, length - digits.size(), L'0');
    return digits.substr(digits.size() - length);
}

} // namespace

String SampleText(const Band& band) {
    if (!band.Value().empty()) return Cut(band.Value());
    switch (band.Style()) {
    case bsIncreaseNumber: return Cut(NumberSample(band));
    case bsIncreaseAlpha: return band.Default().empty() ? band.InitStart() : band.Default();
    case bsUsrMacro:
    case bsUsrField: return Cut(String(static_cast<std::size_t>(std::min(band.Length(), longest + 1)), L'X'));
    default: return {};
    }
}

String StyleName(BandStyles style) {
    return style < bsFixed ? String() : TheStrings().Text(text::StyleFixed + static_cast<int>(style));
}

} // namespace kestrel::dialogs
