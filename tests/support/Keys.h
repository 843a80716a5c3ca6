// Keys for the tests and benchmarks of collections.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "common/String.h"

namespace kestrel::test {

// The number in so many digits.
[[nodiscard]] inline String Padded(int number, std::size_t digits) {
    const String text = ToText(number);
    return String(digits > text.size() ? digits - text.size() : 0, L'0') + text;
}

// "N1", "N2", ...
[[nodiscard]] inline std::vector<String> NumberedKeys(int count) {
    std::vector<String> keys;
    for (int number = 1; number <= count; ++number)
        keys.push_back(L"N" + ToText(number));
    return keys;
}

// Keys of 32 characters, numbered in a row.
[[nodiscard]] inline std::vector<String> HarmlessKeys(int count) {
    std::vector<String> keys;
    keys.reserve(static_cast<std::size_t>(count));
    for (int number = 0; number < count; ++number)
        keys.push_back(L"K" + Padded(number, 31));
    return keys;
}

// Different keys of 32 characters: a pair of letters for each bit of their numbers. Where a hash takes both pairs for
// the same, all keys are the same to it.
[[nodiscard]] inline std::vector<String> PairedKeys(int count, const String& zero, const String& one) {
    std::vector<String> keys;
    for (int number = 0; number < count; ++number) {
        String key;
        for (int bit = 0; bit < 16; ++bit)
            key += (number >> bit & 1) != 0 ? one : zero;
        keys.push_back(key);
    }
    return keys;
}

// Families of up to 65,536 keys that were made to fall together, by what they aim at.
[[nodiscard]] inline std::vector<std::pair<std::string, std::vector<String>>> HostileKeys(int count) {
    std::vector<String> sameDigits;
    std::vector<String> zeros;
    std::vector<String> steps;
    for (int number = 0; number < count; ++number) {
        sameDigits.push_back(L"K" + Padded(number, 28) + L"000");
        zeros.push_back(L"K" + ToText(number / 64) + L"x" + String(static_cast<std::size_t>(number % 64), L'0') + L"7");
        // Characters a multiple of 29 apart meet wherever there are 29 places, whatever stands before them.
        steps.push_back(ToText(number / 1'024) + static_cast<wchar_t>(0x100 + number % 1'024 * 29));
    }
    return {{"a polynomial at 31", PairedKeys(count, L"Aa", L"BB")},
            {"a polynomial at 33", PairedKeys(count, L"Ab", L"BA")},
            {"a sum of characters", PairedKeys(count, L"ab", L"ba")},
            {"equal digits at the end", sameDigits},
            {"more and more zeros before a digit", zeros},
            {"last characters a prime apart", steps}};
}

} // namespace kestrel::test
