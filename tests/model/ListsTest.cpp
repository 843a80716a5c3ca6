#include <gtest/gtest.h>

#include "lists/Lists.h"
#include "support/Failures.h"
#include "support/Recorders.h"
#include "support/StandIns.h"

namespace kestrel::test {

class ListsTest : public testing::Test {
  protected:
    ListsTest() { mvarList->SetListStyle(lsFields); }

    void AddAll(std::initializer_list<const wchar_t*> names) {
        for (const auto* name : names)
            mvarList->Add(name);
    }

    StandIns mvarStandIns;
    Ref<Lists> mvarList = Make<Lists>();
};

using ListsTest_Add = ListsTest;
using ListsTest_Item = ListsTest;
using ListsTest_Remove = ListsTest;
using ListsTest_Insert = ListsTest;
using ListsTest_Move = ListsTest;
using ListsTest_Clear = ListsTest;

TEST_F(ListsTest, StartsEmptyWithTheStyleOfAMixedList) {
    const auto list = Make<Lists>();
    EXPECT_EQ(list->Count(), 0);
    EXPECT_EQ(list->ListStyle(), lsMulriple);
}

TEST_F(ListsTest, StoresAnyStyle) {
    mvarList->SetListStyle(static_cast<ListStyles>(9));
    EXPECT_EQ(mvarList->ListStyle(), 9);
}

TEST_F(ListsTest_Add, MakesAnItemOfTheListsStyle) {
    const auto item = mvarList->Add(L"Year", L"Jahr", L"2024", L"of the order");
    EXPECT_EQ(item->Name(), L"Year");
    EXPECT_EQ(item->ForeignName(), L"Jahr");
    EXPECT_EQ(item->Value(), L"2024");
    ASSERT_TRUE(item->Description());
    EXPECT_EQ(item->Description()->Text(), L"of the order");
    EXPECT_EQ(item->Style(), lsFields);
    EXPECT_EQ(mvarList->Item(1), item);
}

TEST_F(ListsTest_Add, GivesAnEmptyTextAsDescriptionWhenNoneIsGiven) {
    const auto item = mvarList->Add(L"Year");
    ASSERT_TRUE(item->Description());
    EXPECT_EQ(item->Description()->Text(), L"");
}

TEST_F(ListsTest_Add, TakesTheNameAsForeignNameWhenNoneIsGiven) {
    EXPECT_EQ(mvarList->Add(L"Year")->ForeignName(), L"Year");
}

TEST_F(ListsTest_Add, StoresAndKeysTheNameWithoutBlanks) {
    const auto item = mvarList->Add(L"  Year  ");
    EXPECT_EQ(item->Name(), L"Year");
    EXPECT_EQ(mvarList->Item(L"Year"), item);
    EXPECT_FAILURE(mvarList->Item(L"  Year  "), InvalidCall);
}

TEST_F(ListsTest_Add, IsRefusedByAListOfMixedStyle) {
    mvarList->SetListStyle(lsMulriple);
    EXPECT_FAILURE(mvarList->Add(L"Year"), NotSupported);
    EXPECT_FAILURE(mvarList->Add(L""), NotSupported);
    EXPECT_EQ(mvarList->Count(), 0);
}

TEST_F(ListsTest_Add, RefusesAnEmptyNameAndABlankForeignName) {
    const ListsRecorder events(*mvarList);
    EXPECT_FAILURE(mvarList->Add(L""), InvalidParameter);
    EXPECT_FAILURE(mvarList->Add(L"  "), InvalidParameter);
    EXPECT_FAILURE(mvarList->Add(L"Year", L"  "), InvalidParameter);
    EXPECT_EQ(mvarList->Count(), 0);
    EXPECT_EQ(events.lines, Lines{});
}

TEST_F(ListsTest_Add, RefusesANameAlreadyUsed) {
    const auto item = mvarList->Add(L"Year");
    const ListsRecorder events(*mvarList);
    EXPECT_FAILURE(mvarList->Add(L" Year "), DuplicateKey);
    EXPECT_EQ(mvarList->Count(), 1);
    EXPECT_EQ(mvarList->Item(L"Year"), item);
    EXPECT_EQ(events.lines, (Lines{L"adding Year at 2"}));
}

TEST_F(ListsTest_Add, ComparesNamesExactly) {
    AddAll({L"year", L"Year"});
    EXPECT_EQ(mvarList->Count(), 2);
    EXPECT_EQ(mvarList->Item(L"Year"), mvarList->Item(2));
}

TEST_F(ListsTest_Add, RaisesBeforeAddAndThenCollectionChanged) {
    const ListsRecorder events(*mvarList);
    AddAll({L"Year", L"Month"});
    EXPECT_EQ(events.lines, (Lines{L"adding Year at 1", L"changed", L"adding Month at 2", L"changed"}));
}

TEST_F(ListsTest_Add, FindsTheCollectionUnchangedInBeforeAddAndChangedAfterwards) {
    std::vector<std::int32_t> counts;
    const auto adding = mvarList->BeforeAdd.Subscribe(
        [&](const String&, bool&, const String&, std::int32_t) { counts.push_back(mvarList->Count()); });
    const auto changed = mvarList->CollectionChanged.Subscribe([&] { counts.push_back(mvarList->Count()); });
    mvarList->Add(L"Year");
    EXPECT_EQ(counts, (std::vector<std::int32_t>{0, 1}));
}

TEST_F(ListsTest_Add, FailsWithTheReasonOfTheVeto) {
    const auto veto = mvarList->BeforeAdd.Subscribe([](String&, bool& cancel, String& description, std::int32_t&) {
        EXPECT_FALSE(cancel);
        EXPECT_EQ(description, L"");
        cancel = true;
        description = L"Item has existed.";
    });
    const ListsRecorder events(*mvarList);
    EXPECT_FAILURE(mvarList->Add(L"Year"), AddFailed.Followed(L"Item has existed."));
    EXPECT_EQ(mvarList->Count(), 0);
    EXPECT_EQ(events.lines, (Lines{L"adding Year at 1"}));
}

TEST_F(ListsTest_Add, IgnoresADescriptionWithoutVetoAndWhatHandlersDoToNameAndIndex) {
    const auto handler =
        mvarList->BeforeAdd.Subscribe([](String& name, bool&, String& description, std::int32_t& index) {
            name = L"Other";
            description = L"no reason";
            index = 77;
        });
    EXPECT_EQ(mvarList->Add(L"Year")->Name(), L"Year");
    EXPECT_EQ(NamesOf(*mvarList), L"Year");
}

TEST_F(ListsTest_Item, IsFoundByNameAndByPosition) {
    AddAll({L"a", L"b"});
    EXPECT_EQ(mvarList->Item(2)->Name(), L"b");
    EXPECT_EQ(mvarList->Item(L"a")->Name(), L"a");
    for (const int position : {0, -1, 3})
        EXPECT_FAILURE(mvarList->Item(position), OutOfRange) << position;
    EXPECT_FAILURE(mvarList->Item(L"c"), InvalidCall);
    EXPECT_FAILURE(mvarList->Item(IndexKey()), InvalidCall);
}

TEST_F(ListsTest_Item, PositionIsFoundByNameAndByIdentity) {
    AddAll({L"a", L"b"});
    EXPECT_EQ(mvarList->FindItemPosition(L"b"), 2);
    EXPECT_EQ(mvarList->FindItemPosition(L"B"), 0);
    EXPECT_EQ(mvarList->FindItemPosition(mvarList->Item(1)), 1);
    EXPECT_EQ(mvarList->FindItemPosition(Make<List>()), 0);
}

TEST_F(ListsTest_Remove, RaisesBeforeRemoveAndThenCollectionChanged) {
    AddAll({L"a", L"b", L"c"});
    const ListsRecorder events(*mvarList);
    mvarList->Remove(2);
    mvarList->Remove(L"a");
    EXPECT_EQ(NamesOf(*mvarList), L"c");
    EXPECT_EQ(events.lines, (Lines{L"removing b", L"changed", L"removing a", L"changed"}));
}

TEST_F(ListsTest_Remove, FailsWithTheReasonOfTheVetoAndRemovesNothing) {
    AddAll({L"a"});
    const auto veto = mvarList->BeforeRemove.Subscribe([](String& name, bool& cancel, String& description) {
        EXPECT_EQ(name, L"a");
        EXPECT_FALSE(cancel);
        EXPECT_EQ(description, L"");
        cancel = true;
        description = L"Needed.";
    });
    const ListsRecorder events(*mvarList);
    EXPECT_FAILURE(mvarList->Remove(L"a"), DropFailed.Followed(L"Needed."));
    EXPECT_EQ(mvarList->Count(), 1);
    EXPECT_EQ(events.lines, (Lines{L"removing a"}));
}

TEST_F(ListsTest_Remove, OfAnUnknownItemFailsWithoutEvent) {
    AddAll({L"a"});
    const ListsRecorder events(*mvarList);
    EXPECT_FAILURE(mvarList->Remove(L"b"), InvalidCall);
    EXPECT_FAILURE(mvarList->Remove(0), OutOfRange);
    EXPECT_FAILURE(mvarList->Remove(2), OutOfRange);
    EXPECT_EQ(events.lines, Lines{});
    EXPECT_EQ(mvarList->Count(), 1);
}

TEST_F(ListsTest_Remove, LeavesTheItemUsable) {
    AddAll({L"a"});
    const auto item = mvarList->Item(1);
    mvarList->Remove(1);
    EXPECT_EQ(item->Name(), L"a");
    EXPECT_EQ(item->References(), 1U);
}

TEST_F(ListsTest_Insert, RefusesNoItem) {
    const ListsRecorder events(*mvarList);
    EXPECT_FAILURE(mvarList->InsertItem(nullptr), InvalidParameter);
    EXPECT_EQ(events.lines, Lines{});
}

TEST_F(ListsTest_Insert, PutsTheItemBeforeOrAfterAnotherOne) {
    AddAll({L"a", L"b"});
    const ListsRecorder events(*mvarList);
    const auto first = Make<List>();
    first->SetName(L"first");
    const auto middle = Make<List>();
    middle->SetName(L"middle");
    mvarList->InsertItem(first, L"a");
    mvarList->InsertItem(middle, {}, 2);
    EXPECT_EQ(NamesOf(*mvarList), L"first a middle b");
    EXPECT_EQ(events.lines, (Lines{L"adding first at 1", L"changed", L"adding middle at 3", L"changed"}));
    EXPECT_EQ(mvarList->Item(L"middle"), middle);
}

TEST_F(ListsTest_Insert, WorksInAListOfMixedStyle) {
    mvarList->SetListStyle(lsMulriple);
    const auto item = Make<List>();
    item->SetName(L"a");
    mvarList->InsertItem(item);
    EXPECT_EQ(mvarList->Item(L"a"), item);
}

TEST_F(ListsTest_Insert, TakesItemsWithoutNameWithoutKey) {
    mvarList->InsertItem(Make<List>());
    mvarList->InsertItem(Make<List>());
    EXPECT_EQ(mvarList->Count(), 2);
    EXPECT_FAILURE(mvarList->Item(L""), InvalidCall);
}

TEST_F(ListsTest_Insert, RefusesAnUnknownPlace) {
    AddAll({L"a"});
    const auto item = Make<List>();
    item->SetName(L"b");
    EXPECT_FAILURE(mvarList->InsertItem(item, L"c"), InvalidCall);
    EXPECT_FAILURE(mvarList->InsertItem(item, {}, 2), OutOfRange);
    EXPECT_EQ(mvarList->Count(), 1);
}

TEST_F(ListsTest_Move, PutsTheItemBeforeOrAfterAnotherOneWithOneEvent) {
    AddAll({L"a", L"b", L"c", L"d"});
    const ListsRecorder events(*mvarList);
    mvarList->MoveItem(L"d", L"a", {});
    EXPECT_EQ(NamesOf(*mvarList), L"d a b c");
    mvarList->MoveItem(1, {}, 3);
    EXPECT_EQ(NamesOf(*mvarList), L"a b d c");
    mvarList->MoveItem(L"a", {}, L"c");
    EXPECT_EQ(NamesOf(*mvarList), L"b d c a");
    mvarList->MoveItem(L"b", L"c", {});
    EXPECT_EQ(NamesOf(*mvarList), L"d b c a");
    EXPECT_EQ(events.lines, (Lines{L"changed", L"changed", L"changed", L"changed"}));
    EXPECT_EQ(mvarList->Item(L"b"), mvarList->Item(2));
}

TEST_F(ListsTest_Move, RefusesAMoveThatChangesNothing) {
    AddAll({L"a", L"b", L"c"});
    const ListsRecorder events(*mvarList);
    EXPECT_FAILURE(mvarList->MoveItem(L"b", L"b", {}), NoDragNeeded);
    EXPECT_FAILURE(mvarList->MoveItem(L"b", {}, L"b"), NoDragNeeded);
    EXPECT_FAILURE(mvarList->MoveItem(L"b", L"c", {}), NoDragNeeded);
    EXPECT_FAILURE(mvarList->MoveItem(L"b", {}, L"a"), NoDragNeeded);
    EXPECT_EQ(NamesOf(*mvarList), L"a b c");
    EXPECT_EQ(events.lines, Lines{});
}

TEST_F(ListsTest_Move, RefusesUnusableArguments) {
    AddAll({L"a", L"b"});
    EXPECT_FAILURE(mvarList->MoveItem(L"a", {}, {}), InvalidParameter);
    EXPECT_FAILURE(mvarList->MoveItem(L"a", L"b", L"b"), InvalidParameter);
    EXPECT_FAILURE(mvarList->MoveItem(L"c", L"b", {}), InvalidParameter);
    EXPECT_FAILURE(mvarList->MoveItem({}, L"b", {}), InvalidParameter);
    EXPECT_FAILURE(mvarList->MoveItem(0, L"b", {}), InvalidParameter);
    EXPECT_FAILURE(mvarList->MoveItem(L"a", {}, L"c"), InvalidParameter);
    EXPECT_FAILURE(mvarList->MoveItem(L"a", {}, 3), InvalidParameter);
    EXPECT_EQ(NamesOf(*mvarList), L"a b");
}

TEST_F(ListsTest_Clear, RemovesTheItemsLastFirstThroughRemove) {
    AddAll({L"a", L"b"});
    const ListsRecorder events(*mvarList);
    mvarList->ClearItems();
    EXPECT_EQ(mvarList->Count(), 0);
    EXPECT_EQ(events.lines, (Lines{L"removing b", L"changed", L"removing a", L"changed"}));
}

TEST_F(ListsTest_Clear, StopsAtTheFirstVeto) {
    AddAll({L"a", L"b", L"c"});
    const auto veto = mvarList->BeforeRemove.Subscribe(
        [](const String& name, bool& cancel, const String&) { cancel = name == L"b"; });
    EXPECT_FAILURE(mvarList->ClearItems(), DropFailed);
    EXPECT_EQ(NamesOf(*mvarList), L"a b");
}

TEST_F(ListsTest_Clear, EmptyAsksNoOneAndTellsOnce) {
    AddAll({L"a", L"b"});
    const ListsRecorder events(*mvarList);
    mvarList->Empty();
    EXPECT_EQ(mvarList->Count(), 0);
    EXPECT_EQ(events.lines, (Lines{L"changed"}));
    mvarList->Empty();
    EXPECT_EQ(events.lines, (Lines{L"changed"}));
}

TEST_F(ListsTest_Clear, AssignReplacesTheItemsWithoutEvents) {
    AddAll({L"a", L"b"});
    const auto kept = mvarList->Item(2);
    const ListsRecorder events(*mvarList);
    mvarList->Assign({kept});
    EXPECT_EQ(mvarList->Count(), 1);
    EXPECT_EQ(mvarList->Item(L"b"), kept);
    EXPECT_EQ(events.lines, Lines{});
}

} // namespace kestrel::test
