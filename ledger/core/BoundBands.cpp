#include "ledger/core/BoundBands.h"

#include <oleauto.h>

namespace ledger {

namespace {

constexpr int WeekBeginsOnSunday = 1;
constexpr int YearBeginsOnFirstOfJanuary = 1;

std::wstring ItemOf(const hosts::Dispatch& band) {
    const hosts::Dispatch item = band.Object(L"DataField");
    return item.Raw() == nullptr ? std::wstring() : item.Get(L"Name").Text();
}

} // namespace

std::vector<BoundBand> ReadBoundBands(const hosts::Rule& rule, const std::vector<hosts::Band>& bands) {
    std::vector<BoundBand> bound;
    for (const hosts::Band& band : bands) {
        if (band.style != hosts::BandStyle::Macro && band.style != hosts::BandStyle::Field) continue;
        const hosts::Dispatch object = rule.Component().Item(hosts::Variant(band.name), L"Band");
        bound.push_back({band.name, ItemOf(object), band.style == hosts::BandStyle::Macro,
                         object.Get(L"Formate").Text(), static_cast<Swap>(object.Get(L"SwapMode").Number()),
                         band.position, band.length});
    }
    return bound;
}

std::wstring Formatted(const std::wstring& value, const std::wstring& format) {
    if (format.empty()) return value;
    hosts::Variant variant(value);
    std::wstring read = format; // the declaration takes no constant text
    BSTR text = nullptr;
    if (FAILED(VarFormat(variant.InOut(), read.data(), WeekBeginsOnSunday, YearBeginsOnFirstOfJanuary, 0, &text)))
        return value;
    std::wstring formatted = hosts::FromBstr(text);
    SysFreeString(text);
    return formatted;
}

} // namespace ledger
