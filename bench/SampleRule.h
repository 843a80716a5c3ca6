// The rule that the benchmarks of issuing use, made through automation: a fixed prefix, a year macro, a field converted
// over 1,000 pairs, a field converted in a layer, and a number that tracks the year.
#pragma once

#include "automation/support/Com.h"

namespace kestrel::bench {

inline constexpr StringView SampleLastCode = L"INV20261500DE000041";
inline constexpr StringView SampleNextCode = L"INV20261500DE000042";

class SampleRule {
  public:
    SampleRule() : rule(test::NewRule()) {
        using test::Must;
        const auto macros = test::Object(rule, &_CodeClass::get_UsrMacros);
        const auto fields = test::Object(rule, &_CodeClass::get_UsrFields);
        const auto year = Field(macros, L"Year", L"2026");
        const auto department = Field(fields, L"Department", L"Department number 500");
        const auto country = Field(fields, L"Country", L"Germany");
        AddBand(L"Prefix", bsFixed, smNoneSwap, L"INV", nullptr, 3, L"");
        AddBand(L"Year", bsUsrMacro, smNoneSwap, L"", year.Get(), 4, L"");
        const auto departmentBand = AddBand(L"Department", bsUsrField, smSimpleSwap, L"", department.Get(), 4, L"");
        const auto departments = test::Object(departmentBand, &_Band::get_Relations);
        for (int i = 0; i < 1000; ++i)
            AddPair(departments, ToText(1000 + i), L"Department number " + ToText(i));
        AddBand(L"Country", bsUsrField, smLayersSwap, L"", country.Get(), 2, L"");
        AddPair(test::Object(rule, &_CodeClass::get_Relations), L"DE", L"Germany");
        const auto number = AddBand(L"Number", bsIncreaseNumber, smNoneSwap, L"1", nullptr, 6, L"000000");
        Bstr added;
        Must(test::Object(number, &_Band::get_TrackBands)->Add(test::Arg(L"Year"), added.Out()));
    }

    const ComPtr<_CodeClass> rule;

  private:
    static ComPtr<_List> Field(const ComPtr<_Lists>& lists, StringView name, StringView value) {
        ComPtr<_List> item;
        test::Must(lists->Add(test::Arg(name), nullptr, test::Arg(value), nullptr, item.Out()));
        return item;
    }

    static void AddPair(const ComPtr<_cNodes>& tree, StringView code, StringView value) {
        ComPtr<_cNode> node;
        test::Must(tree->Add(test::Missing(), tvwFirst, test::Arg(code), test::Arg(value), node.Out()));
    }

    ComPtr<_Band> AddBand(StringView name, ::BandStyles style, ::SwapModes mode, StringView value, _List* field,
                          LONG length, StringView format) const {
        ComPtr<_Band> band;
        test::Must(rule->Add(test::Arg(name), style, mode, test::Arg(value), field, test::Number(length),
                             test::Arg(format), test::Missing(), test::Missing(), band.Out()));
        return band;
    }
};

} // namespace kestrel::bench
