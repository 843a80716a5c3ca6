// Check digits: what is added to a number so that a mistyped one is found out.
//
// Blanks and the signs "-", "." and "/" within a number do not count. Letters of either case count as 10 (A) to 35 (Z)
// where a method says so; any other character fails with RecordError, as does a number without any digit.
#pragma once

#include <string>
#include <string_view>

namespace ledger {

// ISO/IEC 7812-1, with the two digits of each letter as ISO 6166 does. One digit.
[[nodiscard]] std::wstring LuhnDigit(std::wstring_view number);

// Modulo 10 with the weights 3, 1, 3, ... from the right: GTIN and EAN, SSCC, ISBN-13. One digit.
[[nodiscard]] std::wstring EanDigit(std::wstring_view number);

// Modulo 11 with the weights 2, 3, ... up to `highest` from the right, and from 2 again: up to 10 for ISBN-10 and ISSN,
// up to 7 for many registers. One digit, or "X" for 10.
[[nodiscard]] std::wstring Modulo11Digit(std::wstring_view number, int highest);

// ISO 7064, MOD 97-10: IBAN, LEI. Letters count. Two digits.
[[nodiscard]] std::wstring Modulo97Digits(std::wstring_view number);

// Verhoeff's dihedral group. One digit.
[[nodiscard]] std::wstring VerhoeffDigit(std::wstring_view number);

// Damm's quasigroup. One digit.
[[nodiscard]] std::wstring DammDigit(std::wstring_view number);

} // namespace ledger
