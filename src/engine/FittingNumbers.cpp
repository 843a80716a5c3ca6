#include "engine/FittingNumbers.h"

#include "common/Numbers.h"
#include "engine/FormatTrials.h"

namespace kestrel {

namespace {

// On the way up to zero texts become shorter, and then longer again.
template <class Fits>
std::uint32_t CountedOneByOne(Fits fits, std::uint32_t enough) {
    std::uint32_t count = 1;
    while (count < enough && fits(count))
        ++count;
    return count;
}

// The longer a number grows, the longer its text: the last one that fits is found by halving.
template <class Fits>
std::uint32_t CountedByHalving(Fits fits, std::uint32_t enough) {
    if (fits(enough - 1)) return enough;
    std::uint32_t last = 0;
    for (std::uint32_t tooFar = enough - 1; tooFar - last > 1;) {
        const auto middle = (last + tooFar) / 2;
        (fits(middle) ? last : tooFar) = middle;
    }
    return last + 1;
}

} // namespace

std::uint32_t FittingNumbers(const Band& band, const String& start, std::uint32_t enough) {
    const auto fits = [&](std::uint32_t step) {
        return FormattedWith(band.Formate(), Increased(start, step)).size() == static_cast<std::size_t>(band.Length());
    };
    return NumericallyLess(start, L"0") ? CountedOneByOne(fits, enough) : CountedByHalving(fits, enough);
}

} // namespace kestrel
