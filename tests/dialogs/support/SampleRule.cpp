#include "dialogs/support/SampleRule.h"

namespace kestrel::test {

namespace {

Ref<Band> AddText(CodeClass& rule, const String& name, int style, const String& value) {
    NewBand band;
    band.name = name;
    band.style = style;
    band.defaultValue = value;
    return rule.Add(band);
}

Ref<Band> AddBound(CodeClass& rule, const String& name, int style, const Ref<List>& item, int swapMode, int length) {
    NewBand band;
    band.name = name;
    band.style = style;
    band.dataField = item;
    band.swapMode = swapMode;
    band.length = length;
    return rule.Add(band);
}

void AddRelations(cNodes& tree) {
    const auto north = tree.Add({}, tvwFirst, L"01", L"North");
    const auto south = tree.Add({}, tvwFirst, L"02", L"South");
    tree.Add(IndexKey(north->Key()), tvwChild, L"1", L"Hamburg");
    tree.Add(IndexKey(north->Key()), tvwChild, L"2", L"Bremen");
    tree.Add(IndexKey(north->Key()), tvwChild, L"3", L"Kiel");
    tree.Add(IndexKey(south->Key()), tvwChild, L"1", L"Munich");
    tree.Add(IndexKey(south->Key()), tvwChild, L"2", L"Stuttgart");
    tree.Add({}, tvwFirst, L"03", L"West");
}

} // namespace

Ref<CodeClass> EmptyRule() {
    auto rule = Make<CodeClass>();
    rule->SetName(L"Invoices");
    rule->SetAllowAddBand(true);
    rule->SetAllowDropBand(true);
    rule->SetAllowFieldManage(true);
    rule->SetAllowSimpleStyle(true);
    rule->SetAllowSetup(true);
    return rule;
}

Ref<CodeClass> GoodRule() {
    auto rule = EmptyRule();
    const auto year = rule->UsrMacros().Add(L"Year", L"Year of the invoice", L"2024-05-06");
    AddText(*rule, L"Prefix", bsFixed, L"INV");
    AddBound(*rule, L"Year", bsUsrMacro, year, smNoneSwap, 4);
    const auto number = AddText(*rule, L"Number", bsIncreaseNumber, L"1");
    number->SetLength(5);
    number->SetFormate(L"00000");
    number->TrackBands()->Add(L"Year");
    return rule;
}

Ref<CodeClass> TwoTreesRule() {
    auto rule = EmptyRule();
    const auto field = rule->UsrFields().Add(L"Region", L"Sales region", L"North");
    AddBound(*rule, L"Plain", bsUsrField, field, smSimpleSwap, 2);
    AddBound(*rule, L"Layered", bsUsrField, field, smLayersSwap, 2);
    cNodes& plain = *rule->Band(tbPlain)->Relations();
    plain.Add({}, tvwFirst, L"01", L"North");
    plain.Add({}, tvwFirst, L"02", L"South");
    plain.Add({}, tvwFirst, L"03", L"East");
    cNodes& layers = rule->Relations();
    const auto europe = layers.Add({}, tvwFirst, L"AA", L"Europe");
    layers.Add(IndexKey(europe->Key()), tvwChild, L"DE", L"Germany");
    layers.Add(IndexKey(europe->Key()), tvwChild, L"FR", L"France");
    const auto asia = layers.Add({}, tvwFirst, L"BB", L"Asia");
    layers.Add(IndexKey(asia->Key()), tvwChild, L"JP", L"Japan");
    return rule;
}

void AddCounters(CodeClass& rule, int count) {
    for (int number = 1; number <= count; ++number)
        AddText(rule, L"Counter " + ToText(number), bsIncreaseNumber, L"1");
}

Ref<CodeClass> InvoiceRule() {
    auto rule = EmptyRule();
    auto& fields = rule->UsrFields();
    const auto region = fields.Add(L"Region", L"Sales region", L"North");
    const auto branch = fields.Add(L"Branch", L"Branch office", L"Hamburg");
    fields.Add(L"Customer", L"Customer group", L"A");
    const auto year = rule->UsrMacros().Add(L"Year", L"Year of the invoice", L"2024-05-06");
    AddText(*rule, L"Prefix", bsFixed, L"INV");
    AddBound(*rule, L"Year", bsUsrMacro, year, smNoneSwap, 4)->SetFormate(L"yyyy");
    AddBound(*rule, L"Region", bsUsrField, region, smLayersSwap, 2);
    AddBound(*rule, L"Branch", bsUsrField, branch, smLayersSwap, 1);
    const auto number = AddText(*rule, L"Number", bsIncreaseNumber, L"1");
    number->SetLength(5);
    number->SetFormate(L"00000");
    number->TrackBands()->Add(L"Year");
    number->TrackBands()->Add(L"Region");
    AddText(*rule, L"Letter", bsIncreaseAlpha, L"A");
    AddRelations(rule->Relations());
    return rule;
}

} // namespace kestrel::test
