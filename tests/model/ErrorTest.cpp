#include <gtest/gtest.h>

#include "common/Error.h"
#include "support/Failures.h"
#include "support/StandIns.h"

namespace kestrel::test {

namespace {

Failure FailureIn(const Error& error) { return {error.Code(), error.Description()}; }

struct ErrorCase {
    Message message;
    Failure failure;
};

const ErrorCase AllErrors[] = {
    {Message::InvalidCall, InvalidCall},
    {Message::Overflow, Overflow},
    {Message::OutOfRange, OutOfRange},
    {Message::ObjectNotSet, ObjectNotSet},
    {Message::MemberNotSupported, MemberNotSupported},
    {Message::DuplicateKey, DuplicateKey},
    {Message::CantBeChanged, CantBeChanged},
    {Message::StyleNotDefined, StyleNotDefined},
    {Message::InvalidParameter, InvalidParameter},
    {Message::ReadOnly, ReadOnly},
    {Message::NotSupported, NotSupported},
    {Message::NoDragNeeded, NoDragNeeded},
    {Message::UsedAsTrigger, UsedAsTrigger},
    {Message::TrackedByOthers, TrackedByOthers},
    {Message::DropFailed, DropFailed},
    {Message::IncorrectReferBand, IncorrectReferBand},
    {Message::BandNameExists, BandNameExists},
    {Message::AddFailed, AddFailed},
    {Message::SameCode, SameCode},
    {Message::SameValue, SameValue},
    {Message::NoRelations, NoRelations},
    {Message::NoRelatedRelation, NoRelatedRelation},
    {Message::IncorrectPreviousCode, IncorrectPreviousCode},
    {Message::IncorrectValueLength, IncorrectValueLength},
    {Message::TriggersItself, TriggersItself},
    {Message::IllegalCodeLength, IllegalCodeLength},
    {Message::FixedValueError, FixedValueError},
};

} // namespace

TEST(ErrorTest, CarriesTheCodeAndTheTextOfItsNumber) {
    const StandIns standIns;
    for (const auto& row : AllErrors) {
        EXPECT_EQ(FailureIn(Error(row.message)), row.failure);
        EXPECT_EQ(Error(row.message).Number(), static_cast<int>(row.message));
    }
}

TEST(ErrorTest, ExtendsTheTextDirectlyOrAfterTwoLineBreaks) {
    const StandIns standIns;
    EXPECT_EQ(Error(Message::AddFailed, L"Item has existed.").Description(), L"Failed to add item.Item has existed.");
    EXPECT_EQ(Error::WithDetail(Message::IncorrectValueLength, L"Year").Description(),
              L"Incorrect length of band value.\r\n\r\nYear");
}

TEST(ErrorTest, CanLeaveTheObjectErrorBaseOut) {
    const StandIns standIns;
    EXPECT_EQ(FailureIn(Error::Plain(Message::SaveFailure)), PlainSaveFailure);
}

} // namespace kestrel::test
