#include <gtest/gtest.h>

#include "lists/Names.h"
#include "support/Failures.h"
#include "support/StandIns.h"

namespace kestrel::test {

namespace {

using namespace std::string_literals;

struct ImportCase {
    String text;
    std::vector<String> names;
};

const ImportCase Imports[] = {
    {L"", {}},
    {L"A", {L"A"}},
    {L"A;B;;A", {L"A", L"B", L"", L"A"}},
    {L";", {L"", L""}},
    {L"A,B", {L"A,B"}},
    {L" A ; B", {L" A ", L" B"}},
    {L"A\0;\0"s, {L"A\0"s, L"\0"s}},
};

} // namespace

class NamesTest : public testing::Test {
  protected:
    StandIns mvarStandIns;
    Ref<Names> mvarNames = Make<Names>();
};

using NamesTest_Add = NamesTest;
using NamesTest_Import = NamesTest;
using NamesTest_Remove = NamesTest;

TEST_F(NamesTest, StartsEmpty) {
    EXPECT_EQ(mvarNames->Count(), 0);
    EXPECT_EQ(mvarNames->NamesText(), L"");
}

TEST_F(NamesTest_Add, AppendsAndReturnsTheText) {
    EXPECT_EQ(mvarNames->Add(L"A"), L"A");
    EXPECT_EQ(mvarNames->Add(L" b "), L" b ");
    EXPECT_EQ(mvarNames->Item(1), L"A");
    EXPECT_EQ(mvarNames->Item(L" b "), L" b ");
    EXPECT_EQ(mvarNames->Snapshot(), (std::vector<String>{L"A", L" b "}));
}

TEST_F(NamesTest_Add, TakesTheEmptyTextOnce) {
    EXPECT_EQ(mvarNames->Add(L""), L"");
    EXPECT_FAILURE(mvarNames->Add(L""), DuplicateKey);
    EXPECT_EQ(mvarNames->Item(L""), L"");
}

TEST_F(NamesTest_Add, RefusesATextAlreadyAdded) {
    mvarNames->Add(L"A");
    EXPECT_FAILURE(mvarNames->Add(L"A"), DuplicateKey);
    EXPECT_SUCCESS(mvarNames->Add(L"a"));
    EXPECT_EQ(mvarNames->NamesText(), L"A,a");
}

TEST_F(NamesTest_Add, RaisesBeforeAddWithTheName) {
    std::vector<String> asked;
    const auto handler = mvarNames->BeforeAdd.Subscribe([&](const String& name, bool& cancel, String& description) {
        EXPECT_FALSE(cancel);
        EXPECT_EQ(description, L"");
        EXPECT_EQ(mvarNames->Count(), 0);
        asked.push_back(name);
    });
    mvarNames->Add(L"A");
    EXPECT_EQ(asked, (std::vector<String>{L"A"}));
}

TEST_F(NamesTest_Add, FailsWithTheReasonOfTheVeto) {
    const auto veto = mvarNames->BeforeAdd.Subscribe([](const String&, bool& cancel, String& description) {
        cancel = true;
        description = L"No sense to track itself.";
    });
    EXPECT_FAILURE(mvarNames->Add(L"A"), AddFailed.Followed(L"No sense to track itself."));
    EXPECT_EQ(mvarNames->Count(), 0);
}

TEST_F(NamesTest, ItemsAreReachedWithinTheRange) {
    mvarNames->Add(L"A");
    for (const int position : {0, -1, 2})
        EXPECT_FAILURE(mvarNames->Item(position), OutOfRange) << position;
    EXPECT_FAILURE(mvarNames->Item(L"B"), InvalidCall);
    EXPECT_FAILURE(mvarNames->Item(IndexKey()), InvalidCall);
}

TEST_F(NamesTest_Remove, TakesAPositionOrAKeyAndRaisesNothing) {
    mvarNames->Add(L"A");
    mvarNames->Add(L"B");
    mvarNames->Add(L"C");
    int raised = 0;
    const auto adding = mvarNames->BeforeAdd.Subscribe([&](const String&, bool&, const String&) { ++raised; });
    const auto enums = mvarNames->GetEnums.Subscribe([&](const String&) { ++raised; });
    mvarNames->Remove(L"B");
    mvarNames->Remove(1);
    EXPECT_EQ(mvarNames->NamesText(), L"C");
    EXPECT_EQ(raised, 0);
    EXPECT_FAILURE(mvarNames->Remove(L"B"), InvalidCall);
    EXPECT_FAILURE(mvarNames->Remove(2), OutOfRange);
    EXPECT_SUCCESS(mvarNames->Add(L"B"));
}

TEST_F(NamesTest_Import, SplitsAtSemicolonsAndKeepsEmptyAndRepeatedPieces) {
    for (const auto& row : Imports) {
        mvarNames->ImportNames(row.text);
        EXPECT_EQ(mvarNames->Snapshot(), row.names) << testing::PrintToString(row.text);
    }
}

TEST_F(NamesTest_Import, GivesNoKeys) {
    mvarNames->ImportNames(L"A;B");
    EXPECT_FAILURE(mvarNames->Item(L"A"), InvalidCall);
    EXPECT_SUCCESS(mvarNames->Add(L"A"));
    EXPECT_EQ(mvarNames->NamesText(), L"A,B,A");
    mvarNames->Remove(L"A");
    EXPECT_EQ(mvarNames->NamesText(), L"A,B");
}

TEST_F(NamesTest_Import, ReplacesWhatWasThereWithoutEvents) {
    mvarNames->Add(L"A");
    int raised = 0;
    const auto adding = mvarNames->BeforeAdd.Subscribe([&](const String&, bool&, const String&) { ++raised; });
    mvarNames->ImportNames(L"B");
    EXPECT_EQ(mvarNames->NamesText(), L"B");
    mvarNames->ImportNames(L"");
    EXPECT_EQ(mvarNames->Count(), 0);
    EXPECT_EQ(raised, 0);
    EXPECT_SUCCESS(mvarNames->Add(L"A"));
}

TEST_F(NamesTest_Import, DoesNotReadWhatNamesTextWrites) {
    mvarNames->Add(L"A");
    mvarNames->Add(L"B");
    EXPECT_EQ(mvarNames->NamesText(), L"A,B");
    mvarNames->ImportNames(mvarNames->NamesText());
    EXPECT_EQ(mvarNames->Snapshot(), (std::vector<String>{L"A,B"}));
}

TEST_F(NamesTest_Import, TakesAMillionCharacters) {
    mvarNames->ImportNames(String(1'000'000, L';'));
    EXPECT_EQ(mvarNames->Count(), 1'000'001);
    mvarNames->ImportNames(String(1'000'000, L'n'));
    EXPECT_EQ(mvarNames->Item(1).size(), 1'000'000U);
}

} // namespace kestrel::test
