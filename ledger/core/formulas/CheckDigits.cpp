#include "ledger/core/formulas/CheckDigits.h"

#include <algorithm>
#include <array>
#include <vector>

#include "hosts/common/HostError.h"

namespace ledger {

namespace {

enum class Letters { Refused, Counted };

using Digits = std::vector<int>;

constexpr std::wstring_view Ignored = L" -./";

int ValueOf(wchar_t character) {
    if (character >= L'0' && character <= L'9') return character - L'0';
    if (character >= L'A' && character <= L'Z') return character - L'A' + 10;
    if (character >= L'a' && character <= L'z') return character - L'a' + 10;
    return -1;
}

Digits DigitsOf(std::wstring_view number, Letters letters) {
    Digits digits;
    for (const wchar_t character : number) {
        if (Ignored.find(character) != std::wstring_view::npos) continue;
        const int value = ValueOf(character);
        if (value < 0 || (value > 9 && letters == Letters::Refused))
            throw hosts::RecordError(L"'" + std::wstring(1, character) + L"' in '" + std::wstring(number) + L"', " +
                                     (letters == Letters::Counted ? L"digits and letters" : L"digits") + L" expected");
        if (value > 9) digits.push_back(value / 10);
        digits.push_back(value % 10);
    }
    if (digits.empty()) throw hosts::RecordError(L"no digit in '" + std::wstring(number) + L"', one or more expected");
    return digits;
}

std::wstring Digit(int value) { return std::to_wstring(value); }

using Table = std::array<std::array<int, 10>, 10>;

constexpr Table VerhoeffProduct = {{{0, 1, 2, 3, 4, 5, 6, 7, 8, 9},
                                    {1, 2, 3, 4, 0, 6, 7, 8, 9, 5},
                                    {2, 3, 4, 0, 1, 7, 8, 9, 5, 6},
                                    {3, 4, 0, 1, 2, 8, 9, 5, 6, 7},
                                    {4, 0, 1, 2, 3, 9, 5, 6, 7, 8},
                                    {5, 9, 8, 7, 6, 0, 4, 3, 2, 1},
                                    {6, 5, 9, 8, 7, 1, 0, 4, 3, 2},
                                    {7, 6, 5, 9, 8, 2, 1, 0, 4, 3},
                                    {8, 7, 6, 5, 9, 3, 2, 1, 0, 4},
                                    {9, 8, 7, 6, 5, 4, 3, 2, 1, 0}}};

constexpr std::array<std::array<int, 10>, 8> VerhoeffPermutation = {{{0, 1, 2, 3, 4, 5, 6, 7, 8, 9},
                                                                     {1, 5, 7, 6, 2, 8, 3, 0, 9, 4},
                                                                     {5, 8, 0, 3, 7, 9, 6, 1, 4, 2},
                                                                     {8, 9, 1, 6, 0, 4, 3, 5, 2, 7},
                                                                     {9, 4, 5, 3, 1, 2, 6, 8, 7, 0},
                                                                     {4, 2, 8, 6, 5, 7, 3, 9, 0, 1},
                                                                     {2, 7, 9, 3, 8, 0, 6, 4, 1, 5},
                                                                     {7, 0, 4, 6, 9, 1, 3, 2, 5, 8}}};

constexpr std::array<int, 10> VerhoeffInverse = {0, 4, 3, 2, 1, 5, 6, 7, 8, 9};

constexpr Table DammProduct = {{{0, 3, 1, 7, 5, 9, 8, 6, 4, 2},
                                {7, 0, 9, 2, 1, 5, 4, 8, 6, 3},
                                {4, 2, 0, 6, 8, 7, 1, 3, 5, 9},
                                {1, 7, 5, 0, 9, 8, 3, 4, 2, 6},
                                {6, 1, 2, 3, 0, 4, 5, 9, 7, 8},
                                {3, 6, 7, 4, 2, 0, 9, 5, 8, 1},
                                {5, 8, 6, 9, 7, 2, 0, 1, 3, 4},
                                {8, 9, 4, 5, 3, 6, 2, 0, 1, 7},
                                {9, 4, 3, 8, 6, 1, 7, 2, 0, 5},
                                {2, 5, 8, 1, 4, 3, 6, 7, 9, 0}}};

// The tables' indices are digits.
int At(const std::array<int, 10>& row, int digit) { return row.at(static_cast<std::size_t>(digit)); }
int At(const Table& table, int left, int right) { return At(table.at(static_cast<std::size_t>(left)), right); }

} // namespace

std::wstring LuhnDigit(std::wstring_view number) {
    const Digits digits = DigitsOf(number, Letters::Counted);
    int sum = 0;
    bool doubled = true; // the digit beside the check digit is
    for (auto digit = digits.rbegin(); digit != digits.rend(); ++digit, doubled = !doubled)
        sum += doubled ? *digit * 2 / 10 + *digit * 2 % 10 : *digit;
    return Digit((10 - sum % 10) % 10);
}

std::wstring EanDigit(std::wstring_view number) {
    const Digits digits = DigitsOf(number, Letters::Refused);
    int sum = 0;
    int weight = 3;
    for (auto digit = digits.rbegin(); digit != digits.rend(); ++digit, weight = 4 - weight)
        sum += *digit * weight;
    return Digit((10 - sum % 10) % 10);
}

std::wstring Modulo11Digit(std::wstring_view number, int highest) {
    const Digits digits = DigitsOf(number, Letters::Refused);
    int sum = 0;
    int weight = 2;
    std::for_each(digits.rbegin(), digits.rend(), [&](int digit) {
        sum += digit * weight;
        weight = weight == highest ? 2 : weight + 1;
    });
    const int check = (11 - sum % 11) % 11;
    return check == 10 ? L"X" : Digit(check);
}

std::wstring Modulo97Digits(std::wstring_view number) {
    int rest = 0;
    for (const int digit : DigitsOf(number, Letters::Counted))
        rest = (rest * 10 + digit) % 97;
    const int check = 98 - rest * 100 % 97;
    return (check < 10 ? L"0" : L"") + Digit(check);
}

std::wstring VerhoeffDigit(std::wstring_view number) {
    const Digits digits = DigitsOf(number, Letters::Refused);
    int check = 0;
    std::size_t place = 1; // the check digit's own is 0
    for (auto digit = digits.rbegin(); digit != digits.rend(); ++digit, ++place)
        check = At(VerhoeffProduct, check, At(VerhoeffPermutation.at(place % 8), *digit));
    return Digit(At(VerhoeffInverse, check));
}

std::wstring DammDigit(std::wstring_view number) {
    int check = 0;
    for (const int digit : DigitsOf(number, Letters::Refused))
        check = At(DammProduct, check, digit);
    return Digit(check);
}

} // namespace ledger
