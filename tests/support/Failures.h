// What an operation failed with, and the failures of the library by name: each with the automation code and the exact
// text that hosts see, written out here so that the tests do not take them from the program.
#pragma once

#include <cstdint>
#include <ios>
#include <ostream>
#include <utility>

#include <gtest/gtest.h>

#include "common/Error.h"

namespace kestrel::test {

struct Failure {
    std::uint32_t code = 0; // 0: it did not fail
    String description;

    friend bool operator==(const Failure& left, const Failure& right) = default;

    friend std::ostream& operator<<(std::ostream& stream, const Failure& failure) {
        if (failure.code == 0) return stream << "no failure";
        return stream << "0x" << std::hex << failure.code << std::dec << " "
                      << testing::PrintToString(failure.description);
    }

    // The same failure whose description goes on with that text.
    [[nodiscard]] Failure Followed(const String& text) const { return {code, description + text}; }
    // The same failure with the text after two line breaks.
    [[nodiscard]] Failure WithDetail(const String& text) const { return Followed(L"\r\n\r\n" + text); }
};

template <class Operation>
[[nodiscard]] Failure FailureOf(const Operation& operation) {
    try {
        operation();
    } catch (const Error& error) {
        return {error.Code(), error.Description()};
    }
    return {};
}

// NOLINTBEGIN(cppcoreguidelines-macro-usage): only a macro reports the line of the test
#define EXPECT_FAILURE(expression, failure)                                                                            \
    EXPECT_EQ(::kestrel::test::FailureOf([&] { static_cast<void>(expression); }), (failure))
#define EXPECT_SUCCESS(expression) EXPECT_FAILURE(expression, ::kestrel::test::Failure{})
// NOLINTEND(cppcoreguidelines-macro-usage)

inline const Failure InvalidCall{0x800A0005, L"Invalid procedure call or argument"};
inline const Failure Overflow{0x800A0006, L"Overflow"};
inline const Failure OutOfRange{0x800A0009, L"Subscript out of range"};
inline const Failure ObjectNotSet{0x800A005B, L"Object variable or With block variable not set"};
inline const Failure MemberNotSupported{0x800A01B6, L"Object doesn't support this property or method"};
inline const Failure DuplicateKey{0x800A01C9, L"This key is already associated with an element of this collection"};
inline const Failure PlainSaveFailure{0x800A07D5, L"Save failure."};

inline const Failure CantBeChanged{0x800407D1, L"Property can't be changed."};
inline const Failure StyleNotDefined{0x800407D2, L"Band style not defined."};
inline const Failure InvalidParameter{0x800407D3, L"Invalid parametre(s) or value."};
inline const Failure ReadOnly{0x800407D4, L"Property is read only."};
inline const Failure NotSupported{0x800407D6, L"Method not supported."};
inline const Failure NoDragNeeded{0x800407D8, L"None action of drag is needed."};
inline const Failure UsedAsTrigger{
    0x800407D9, L"The band can't be Deleted,cause still used as triger band for the following band(s):"};
inline const Failure TrackedByOthers{0x800407DB, L"The band can't be deleted,cause tracked by other band(s)."};
inline const Failure DropFailed{0x800407DF, L"Failed to drop item."};
inline const Failure IncorrectReferBand{0x800407E2, L"Incorrect refer band:"};
inline const Failure BandNameExists{0x800407E3, L"Band with the same name exist."};
inline const Failure AddFailed{0x800407E6, L"Failed to add item."};
inline const Failure SameCode{0x800407ED, L"Same code existed in the layer."};
inline const Failure SameValue{0x800407EE, L"Same value existed in the layer."};
inline const Failure NoRelations{0x800407F1, L"No relation(s) defined."};
inline const Failure NoRelatedRelation{0x800407F2, L"No related relation defined."};
inline const Failure IncorrectPreviousCode{0x800407F3, L"Incorrect previous code."};
inline const Failure IncorrectValueLength{0x800407F4, L"Incorrect length of band value."};
inline const Failure TriggersItself{0x800407F6, L"Band should not trigered by itself."};
inline const Failure IllegalCodeLength{0x800407F8, L"Length of code ilegal!"};
inline const Failure FixedValueError{0x800407F9, L"Fixed band value error. Code can't be disassembled."};

} // namespace kestrel::test
