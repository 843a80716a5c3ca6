// Definitions of rules for the ledger's tests.
#pragma once

#include <string>
#include <vector>

// A year, a dash and a number of six digits, which runs on within what the band of that name shows.
inline std::wstring NumberedRule(const std::wstring& dash, const std::wstring& tracked) {
    using Values = std::vector<std::wstring>; // of the keys 0 to 16
    const std::wstring zeroDate = L"1899-12-30 00:00:00";
    const std::vector<Values> bands = {
        {L"Year", L"2", L"0", L"", L"", L"4", L"Year", L"0", L"", L"", L"", zeroDate, L"", L"", L"0", L"1", L"1"},
        {L"Dash", L"0", L"0", dash, L"", L"1", L"", L"0", L"", L"", L"", zeroDate, L"", L"", L"0", L"1", L"1"},
        {L"Number", L"3", L"0", L"1", L"000000", L"6", L"", L"1", L"1", L"", L"", zeroDate, L"", tracked, L"0", L"1",
         L"1"}};
    std::wstring text = L"#####02\r0";
    for (int entry = 3; entry < 9; ++entry)
        text += L"\r" + std::to_wstring(entry) + L"\r1";
    text += L"\r11\r2\r12\r1\r13\r1\r14\rYear,,";
    for (const Values& band : bands) {
        text += L"\r16";
        for (std::size_t key = 0; key < band.size(); ++key)
            text += L"\r" + std::to_wstring(key) + L"=" + band[key];
        text += L"\r17";
    }
    return text;
}
