// A rule as a host would set it up for the numbers of its purchase orders, and what it looks like as a definition.
//
// PO- + the month as the host writes it (2405) + the customer's code + a number that counts within month and customer.
#pragma once

#include "support/Rules.h"

namespace kestrel::test {

inline Ref<CodeClass> OrdersRule() {
    auto rule = Make<CodeClass>();
    rule->SetName(L"Orders");
    rule->SetAllowAddBand(true);
    rule->SetSeparaOfYear(4);
    rule->SetSeparaOfMonth(15);
    rule->UsrFields().Add(L"Customer", L"Kunde", L"Acme", L"who orders");
    rule->UsrFields().Add(L"Clerk");
    rule->UsrMacros().Add(L"Month", L"MONTH", L"2405");
    AddFixed(*rule, L"Prefix", L"PO-");
    AddMacro(*rule, L"Period", L"Month", 4)->SetFormate(L"0000");
    const auto customer = AddField(*rule, L"Customer", L"Customer", 2, smSimpleSwap);
    customer->Relations()->Add({}, tvwFirst, L"01", L"Acme");
    customer->Relations()->Add({}, tvwFirst, L"02", L"Widgets & Co");
    const auto number = AddNumber(*rule, L"Number", 5);
    number->SetInitEnd(L"099999");
    number->SetIncrMode(imTrigered);
    number->SetTrigerBand(rule->Band(L"Period"));
    number->TrackBands()->Add(L"Period");
    number->TrackBands()->Add(L"Customer");
    number->SetValue(L"41");
    number->SetDateUpdated(45418.297326388889);
    number->SetAllowDroped(false);
    return rule;
}

inline constexpr const wchar_t* OrdersDefinition = L"#####02\r0\r"
                                                   L"3\r1\r"
                                                   L"4\r0\r"
                                                   L"5\r0\r"
                                                   L"6\r0\r"
                                                   L"7\r0\r"
                                                   L"8\r1\r"
                                                   L"11\r2\r"
                                                   L"12\r15\r"
                                                   L"13\r4\r"
                                                   L"14\rCustomer,Kunde,Acme,who orders;Clerk,,\r"
                                                   L"15\rMonth,,2405\r"
                                                   L"16\r"
                                                   L"0=Prefix\r1=0\r2=0\r3=PO-\r4=\r5=3\r6=\r7=0\r8=\r9=\r10=\r"
                                                   L"11=1899-12-30 00:00:00\r12=PO-\r13=\r14=\r15=1\r16=1\r17\r"
                                                   L"16\r"
                                                   L"0=Period\r1=1\r2=0\r3=\r4=0000\r5=4\r6=Month\r7=0\r8=\r9=\r10=\r"
                                                   L"11=1899-12-30 00:00:00\r12=\r13=\r14=\r15=1\r16=1\r17\r"
                                                   L"16\r"
                                                   L"0=Customer\r1=2\r2=1\r3=\r4=\r5=2\r6=Customer\r7=0\r8=\r9=\r10=\r"
                                                   L"11=1899-12-30 00:00:00\r12=\r13=\r"
                                                   L"14=2;,1,01,Acme;,2,02,Widgets & Co\r15=1\r16=1\r17\r"
                                                   L"16\r"
                                                   L"0=Number\r1=3\r2=0\r3=1\r4=00000\r5=5\r6=\r7=2\r8=1\r9=099999\r"
                                                   L"10=Period\r11=2024-05-06 07:08:09\r12=00041\r"
                                                   L"13=Period,Customer\r14=\r15=0\r16=1\r17";

} // namespace kestrel::test
