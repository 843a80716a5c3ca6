// Handlers of the events of Lists and Names that change, empty or release the collection that raises them.
#include <functional>

#include <gtest/gtest.h>

#include "lists/Lists.h"
#include "lists/Names.h"
#include "support/Checks.h"
#include "support/Failures.h"
#include "support/Recorders.h"
#include "support/StandIns.h"
#include "support/Step.h"

namespace kestrel::test {

namespace {

struct ListStage {
    ListStage() {
        list->SetListStyle(lsFields);
        list->SetListsText(L"a;b;c;d");
    }
    Ref<Lists> list = Make<Lists>();
    std::vector<Subscription> handlers;
};

const std::vector<Step<ListStage>> ListOperations = {
    {L"Add", [](ListStage& stage) { stage.list->Add(L"new"); }},
    {L"Insert",
     [](ListStage& stage) {
         const auto item = Make<List>();
         item->SetName(L"new");
         stage.list->InsertItem(item, L"b");
     }},
    {L"Remove", [](ListStage& stage) { stage.list->Remove(L"b"); }},
    {L"Remove by position", [](ListStage& stage) { stage.list->Remove(4); }},
    {L"MoveItem", [](ListStage& stage) { stage.list->MoveItem(L"a", {}, L"d"); }},
    {L"ClearItems", [](ListStage& stage) { stage.list->ClearItems(); }},
    {L"Empty", [](ListStage& stage) { stage.list->Empty(); }},
    {L"SetListsText", [](ListStage& stage) { stage.list->SetListsText(L"x;y;z"); }},
};

const std::vector<Step<ListStage>> ListHandlerSteps = {
    {L"adds", [](ListStage& stage) { stage.list->Add(L"other"); }},
    {L"adds the same", [](ListStage& stage) { stage.list->Add(L"new"); }},
    {L"removes the first", [](ListStage& stage) { stage.list->Remove(1); }},
    {L"removes b", [](ListStage& stage) { stage.list->Remove(L"b"); }},
    {L"moves", [](ListStage& stage) { stage.list->MoveItem(1, {}, stage.list->Count()); }},
    {L"clears", [](ListStage& stage) { stage.list->ClearItems(); }},
    {L"empties", [](ListStage& stage) { stage.list->Empty(); }},
    {L"reads", [](ListStage& stage) { stage.list->SetListsText(L"p;q"); }},
    {L"unsubscribes", [](ListStage& stage) { stage.handlers.clear(); }},
    {L"lets go", [](ListStage& stage) { stage.list = nullptr; }},
    {L"empties and lets go",
     [](ListStage& stage) {
         stage.list->Empty();
         stage.list = nullptr;
     }},
};

bool IsCollectionFailure(const Failure& failure) {
    return failure.code == 0 || failure == InvalidCall || failure == OutOfRange || failure == DuplicateKey ||
           failure == NoDragNeeded || failure == InvalidParameter;
}

} // namespace

class ListsReentrancyTest : public testing::Test {
  protected:
    StandIns mvarStandIns;
};

// Runs the operation while the step answers the first event, whichever it is.
void RunInEvent(const Step<ListStage>& operation, const Step<ListStage>& step, int event) {
    SCOPED_TRACE(testing::PrintToString(String(operation.name) + L", handler " + step.name) + " in event " +
                 std::to_string(event));
    ListStage stage;
    bool handled = false;
    const auto handle = [&] {
        if (handled) return;
        handled = true;
        EXPECT_EQ(FaultOf(*stage.list), "");
        const auto failure = FailureOf([&] { step.run(stage); });
        EXPECT_TRUE(IsCollectionFailure(failure)) << failure;
    };
    auto& list = *stage.list;
    if (event == 0)
        stage.handlers.push_back(
            list.BeforeAdd.Subscribe([&](const String&, bool&, const String&, std::int32_t) { handle(); }));
    else if (event == 1)
        stage.handlers.push_back(list.BeforeRemove.Subscribe([&](const String&, bool&, const String&) { handle(); }));
    else
        stage.handlers.push_back(list.CollectionChanged.Subscribe(handle));
    const auto held = stage.list.Get();
    const auto failure = FailureOf([&] { operation.run(stage); });
    EXPECT_TRUE(IsCollectionFailure(failure)) << failure;
    if (stage.list.Get() == held) {
        EXPECT_EQ(FaultOf(*stage.list), "");
    }
}

TEST_F(ListsReentrancyTest, EveryOperationSurvivesEveryHandlerOfEveryEvent) {
    for (const auto& operation : ListOperations)
        for (const auto& step : ListHandlerSteps)
            for (const int event : {0, 1, 2})
                RunInEvent(operation, step, event);
}

TEST_F(ListsReentrancyTest, AddFailsWhenItsHandlerHasAddedTheSameName) {
    ListStage stage;
    bool handled = false;
    const auto handler = stage.list->BeforeAdd.Subscribe([&](const String& name, bool&, const String&, std::int32_t) {
        if (!std::exchange(handled, true)) stage.list->Add(name);
    });
    EXPECT_FAILURE(stage.list->Add(L"new"), DuplicateKey);
    EXPECT_EQ(NamesOf(*stage.list), L"a b c d new");
}

TEST_F(ListsReentrancyTest, AddGoesToTheEndOfWhatItsHandlerLeft) {
    ListStage stage;
    const auto handler = stage.list->BeforeAdd.Subscribe(
        [&](const String&, bool&, const String&, std::int32_t) { stage.list->Remove(L"b"); });
    stage.list->Add(L"new");
    EXPECT_EQ(NamesOf(*stage.list), L"a c d new");
}

TEST_F(ListsReentrancyTest, RemoveIsDoneWhenItsHandlerHasRemovedTheItem) {
    ListStage stage;
    bool handled = false;
    const auto handler = stage.list->BeforeRemove.Subscribe([&](const String& name, bool&, const String&) {
        if (!std::exchange(handled, true)) stage.list->Remove(name);
    });
    const ListsRecorder events(*stage.list);
    stage.list->Remove(2);
    EXPECT_EQ(NamesOf(*stage.list), L"a c d");
    EXPECT_EQ(events.lines, (Lines{L"removing b", L"changed", L"removing b"}));
}

TEST_F(ListsReentrancyTest, RemoveTakesItsItemWhereverTheHandlerMovedIt) {
    ListStage stage;
    const auto handler = stage.list->BeforeRemove.Subscribe(
        [&](const String& name, bool&, const String&) { stage.list->MoveItem(name, {}, L"d"); });
    stage.list->Remove(1);
    EXPECT_EQ(NamesOf(*stage.list), L"b c d");
}

TEST_F(ListsReentrancyTest, ClearItemsCopesWithWhatAHandlerRemoves) {
    ListStage stage;
    bool handled = false;
    const auto handler = stage.list->BeforeRemove.Subscribe([&](const String&, bool&, const String&) {
        if (!std::exchange(handled, true)) stage.list->Remove(1);
    });
    stage.list->ClearItems();
    EXPECT_EQ(stage.list->Count(), 0);
}

TEST_F(ListsReentrancyTest, NamesAddSurvivesEveryHandler) {
    const std::vector<std::function<void(Ref<Names>&)>> steps = {
        [](Ref<Names>& names) { names->Add(L"B"); },        [](Ref<Names>& names) { names->ImportNames(L"p;q"); },
        [](Ref<Names>& names) { names->ImportNames(L""); }, [](Ref<Names>& names) { names->Remove(1); },
        [](Ref<Names>& names) { names = nullptr; },
    };
    for (const auto& step : steps) {
        auto names = Make<Names>();
        names->Add(L"first");
        bool handled = false;
        const auto handler = names->BeforeAdd.Subscribe([&](const String&, bool&, const String&) {
            if (!std::exchange(handled, true)) step(names);
        });
        EXPECT_EQ(names->Add(L"A"), L"A");
        if (names) {
            EXPECT_EQ(names->Item(names->Count()), L"A");
        }
    }
}

TEST_F(ListsReentrancyTest, NamesAddFailsWhenItsHandlerHasAddedTheSameText) {
    const auto names = Make<Names>();
    bool handled = false;
    const auto handler = names->BeforeAdd.Subscribe([&](const String& name, bool&, const String&) {
        if (!std::exchange(handled, true)) names->Add(name);
    });
    EXPECT_FAILURE(names->Add(L"A"), DuplicateKey);
    EXPECT_EQ(names->NamesText(), L"A");
}

} // namespace kestrel::test
