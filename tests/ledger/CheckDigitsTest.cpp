#include "ledger/core/formulas/CheckDigits.h"

#include <gtest/gtest.h>

#include <functional>

#include "hosts/common/HostError.h"

using ledger::DammDigit;
using ledger::EanDigit;
using ledger::LuhnDigit;
using ledger::Modulo11Digit;
using ledger::Modulo97Digits;
using ledger::VerhoeffDigit;

namespace {

using Method = std::function<std::wstring(std::wstring_view)>;

std::wstring Weighted10(std::wstring_view number) { return Modulo11Digit(number, 10); }
std::wstring Weighted7(std::wstring_view number) { return Modulo11Digit(number, 7); }

void ExpectEndings(const Method& method, std::size_t digits, std::initializer_list<std::wstring_view> numbers) {
    for (const std::wstring_view number : numbers) {
        const std::size_t end = number.size() - digits;
        EXPECT_EQ(method(number.substr(0, end)), number.substr(end)) << testing::PrintToString(std::wstring(number));
    }
}

} // namespace

TEST(CheckDigitsTest, PublishedNumbersEndWithTheirDigit) {
    // The usual example, numbers that payment services publish for tests, and securities.
    ExpectEndings(LuhnDigit, 1,
                  {L"79927398713", L"4111111111111111", L"5500000000000004", L"378282246310005", L"US0378331005",
                   L"AU0000XVGZA3", L"GB0002634946", L"US5949181045"});
    // GTIN-13, GTIN-8, GTIN-12, ISBN-13, SSCC.
    ExpectEndings(EanDigit, 1,
                  {L"4006381333931", L"73513537", L"036000291452", L"978-0-306-40615-7", L"376104250021234569"});
    // ISBN-10 and ISSN.
    ExpectEndings(Weighted10, 1, {L"0306406152", L"080442957X", L"0-19-852663-6", L"03785955", L"2434-561X"});
    ExpectEndings(Weighted7, 1, {L"974760673", L"923609016"});
    ExpectEndings(Modulo97Digits, 2, {L"79444", L"5493001KJTIIGC8Y1R12", L"213800WSGIIZCXF1P572"});
    ExpectEndings(VerhoeffDigit, 1, {L"2363", L"123451", L"1428570", L"84736430954837284567892"});
    ExpectEndings(DammDigit, 1, {L"5724", L"112946"});
}

TEST(CheckDigitsTest, AnIbanIsCheckedWithItsCountryBehind) {
    EXPECT_EQ(Modulo97Digits(L"WEST12345698765432GB"), L"82");
    EXPECT_EQ(Modulo97Digits(L"370400440532013000DE"), L"89");
    EXPECT_EQ(Modulo97Digits(L"539007547034BE"), L"68");
}

TEST(CheckDigitsTest, EveryWrongDigitAndSwapThatAMethodPromisesIsFound) {
    const std::wstring number = L"572943816";
    const struct {
        Method method;
        bool findsAllSwaps;
    } rows[] = {{LuhnDigit, false},     {EanDigit, false},     {Weighted10, true},
                {Modulo97Digits, true}, {VerhoeffDigit, true}, {DammDigit, true}};
    for (const auto& row : rows) {
        const std::wstring right = row.method(number);
        for (std::size_t at = 0; at < number.size(); ++at) {
            for (wchar_t digit = L'0'; digit <= L'9'; ++digit) {
                std::wstring wrong = number;
                wrong[at] = digit;
                EXPECT_EQ(row.method(wrong) == right, wrong == number);
            }
            std::wstring swapped = number;
            if (at > 0) std::swap(swapped[at - 1], swapped[at]);
            EXPECT_TRUE(!row.findsAllSwaps || (row.method(swapped) == right) == (swapped == number));
        }
    }
}

TEST(CheckDigitsTest, OtherSignsAreRefusedWithWhatWasExpected) {
    for (const Method& method : {Method(EanDigit), Method(Weighted10), Method(VerhoeffDigit), Method(DammDigit)})
        try {
            static_cast<void>(method(L"12A4"));
            ADD_FAILURE() << "a letter was taken";
        } catch (const hosts::RecordError& error) {
            EXPECT_EQ(error.Message(), L"'A' in '12A4', digits expected");
        }
    EXPECT_THROW(static_cast<void>(LuhnDigit(L"12_4")), hosts::RecordError);
    EXPECT_THROW(static_cast<void>(Modulo97Digits(L"\u0661")), hosts::RecordError);
    EXPECT_THROW(static_cast<void>(LuhnDigit(L" - ")), hosts::RecordError) << "no digit at all";
}
