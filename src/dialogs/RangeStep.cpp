#include "dialogs/RangeStep.h"

#include "common/Numbers.h"
#include "common/Ports.h"

namespace kestrel::dialogs {

namespace {

String SteppedNumber(const String& text, int step) {
    const double number = NumericValue(text).value_or(0) + step;
    return number < 0 ? text : CanonicalText(number);
}

String SteppedLetter(const String& text, int step) {
    const wchar_t letter = TheText().Upper(text.substr(0, 1)).append(1, L'\0').front();
    if (letter < L'A' || letter > L'Z') return step > 0 ? L"A" : L"Z";
    const auto next = static_cast<wchar_t>(letter + step);
    return next < L'A' || next > L'Z' ? text : String(1, next);
}

} // namespace

String SteppedText(BandStyles style, const String& text, int step) {
    if (style == bsIncreaseNumber) return SteppedNumber(text, step);
    return style == bsIncreaseAlpha ? SteppedLetter(text, step) : text;
}

} // namespace kestrel::dialogs
