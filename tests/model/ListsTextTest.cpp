#include <gtest/gtest.h>

#include "lists/Lists.h"
#include "support/Failures.h"
#include "support/Recorders.h"
#include "support/StandIns.h"

namespace kestrel::test {

namespace {

using namespace std::string_literals;

Ref<Lists> ListOf(const String& text) {
    auto list = Make<Lists>();
    list->SetListStyle(lsFields);
    list->SetListsText(text);
    return list;
}

// Name|ForeignName|Value|Description of each item.
String ShownItems(const Lists& list) {
    String shown;
    for (const auto& item : list.Snapshot()) {
        shown += L"(" + item->Name() + L"|" + item->ForeignName() + L"|" + item->Value() + L"|";
        shown += (item->Description() ? item->Description()->Text() : L"-") + L")";
    }
    return shown;
}

struct AcceptedListText {
    String text;
    String items;
    String written;
};

const AcceptedListText AcceptedListTexts[] = {
    {L"a", L"(a|a||)", L"a,,"},
    {L"a,b;c", L"(a|b||)(c|c||)", L"a,b,;c,,"},
    {L"a,b,c", L"(a|b|c|)", L"a,b,c"},
    {L"a,b,c,d", L"(a|b|c|d)", L"a,b,c,d"},
    {L"a,,,d", L"(a|a||d)", L"a,,,d"},
    {L"a,b,c,d,e,f", L"(a|b|c|d)", L"a,b,c,d"},
    {L"a,,c", L"(a|a|c|)", L"a,,c"},
    {L" a , b , c , d ", L"(a|b| c | d )", L"a,b, c , d "},
    {L"a,A,", L"(a|A||)", L"a,,"},
    {L"Year,YEAR,2024;year,,x", L"(Year|YEAR|2024|)(year|year|x|)", L"Year,,2024;year,,x"},
    {L"\u00c4,\u00d6,\u00dc", L"(\u00c4|\u00d6|\u00dc|)", L"\u00c4,\u00d6,\u00dc"},
    {L"a\0b,c\0,\0"s, L"(a\0b|c\0|\0|)"s, L"a\0b,c\0,\0"s},
    {L"a\r\nb", L"(a\r\nb|a\r\nb||)", L"a\r\nb,,"},
};

struct RejectedListText {
    String text;
    Failure failure;
    String itemsLeft;
};

const RejectedListText RejectedListTexts[] = {
    {L";", InvalidParameter, L""},      {L" ", InvalidParameter, L""},     {L",b", InvalidParameter, L""},
    {L"a;", InvalidParameter, L"a"},    {L"a;;b", InvalidParameter, L"a"}, {L"a;b,  ", InvalidParameter, L"a"},
    {L"a;b;a;c", DuplicateKey, L"a b"}, {L"a; a", DuplicateKey, L"a"},
};

} // namespace

class ListsTextTest : public testing::Test {
  protected:
    StandIns mvarStandIns;
};

TEST_F(ListsTextTest, ReadsEachRecordAndWritesItBack) {
    for (const auto& row : AcceptedListTexts) {
        const auto list = ListOf(row.text);
        EXPECT_EQ(ShownItems(*list), row.items) << testing::PrintToString(row.text);
        EXPECT_EQ(list->ListsText(), row.written) << testing::PrintToString(row.text);
    }
}

TEST_F(ListsTextTest, StopsAtTheFirstRecordThatCannotBeAdded) {
    for (const auto& row : RejectedListTexts) {
        const auto list = Make<Lists>();
        list->SetListStyle(lsFields);
        EXPECT_FAILURE(list->SetListsText(row.text), row.failure) << testing::PrintToString(row.text);
        EXPECT_EQ(NamesOf(*list), row.itemsLeft) << testing::PrintToString(row.text);
    }
}

TEST_F(ListsTextTest, OfAnEmptyListIsEmpty) { EXPECT_EQ(ListOf(L"")->ListsText(), L""); }

TEST_F(ListsTextTest, SurvivesARoundTrip) {
    for (const auto& row : AcceptedListTexts)
        EXPECT_EQ(ListOf(row.written)->ListsText(), row.written) << testing::PrintToString(row.written);
}

TEST_F(ListsTextTest, LosesTheLetterCaseOfAForeignNameThatEqualsTheName) {
    const auto list = ListOf(L"Year,YEAR,1");
    EXPECT_EQ(list->Item(1)->ForeignName(), L"YEAR");
    EXPECT_EQ(list->ListsText(), L"Year,,1");
    EXPECT_EQ(ListOf(list->ListsText())->Item(1)->ForeignName(), L"Year");
}

TEST_F(ListsTextTest, LosesNamesAndValuesThatHoldSeparators) {
    const auto list = Make<Lists>();
    list->SetListStyle(lsFields);
    list->Add(L"a", L"", L"1;2");
    EXPECT_EQ(list->ListsText(), L"a,,1;2");
    EXPECT_EQ(ShownItems(*ListOf(list->ListsText())), L"(a|a|1|)(2|2||)");
}

TEST_F(ListsTextTest, LeavesOutADescriptionWithoutText) {
    const auto list = ListOf(L"a");
    list->Item(1)->SetDescription(Make<TextValue>(L""));
    EXPECT_EQ(list->ListsText(), L"a,,");
    list->Item(1)->SetDescription(Make<TextValue>(L"d"));
    EXPECT_EQ(list->ListsText(), L"a,,,d");
}

TEST_F(ListsTextTest, EmptyTextChangesNothing) {
    const auto list = ListOf(L"a;b");
    const ListsRecorder events(*list);
    list->SetListsText(L"");
    EXPECT_EQ(NamesOf(*list), L"a b");
    EXPECT_EQ(events.lines, Lines{});
}

TEST_F(ListsTextTest, ReplacesTheItemsWithoutRemoveEventsAndAddsEachThroughAdd) {
    const auto list = ListOf(L"a;b");
    const ListsRecorder events(*list);
    list->SetListsText(L"b;c");
    EXPECT_EQ(NamesOf(*list), L"b c");
    EXPECT_EQ(events.lines, (Lines{L"adding b at 1", L"changed", L"adding c at 2", L"changed"}));
}

TEST_F(ListsTextTest, EndsAtAVetoedRecord) {
    const auto list = ListOf(L"z");
    const auto veto =
        list->BeforeAdd.Subscribe([](const String& name, bool& cancel, String& description, std::int32_t) {
            cancel = name == L"b";
            description = L"Not b.";
        });
    EXPECT_FAILURE(list->SetListsText(L"a;b;c"), AddFailed.Followed(L"Not b."));
    EXPECT_EQ(NamesOf(*list), L"a");
}

TEST_F(ListsTextTest, IsRefusedByAListOfMixedStyleAfterTheItemsAreGone) {
    const auto list = ListOf(L"a");
    list->SetListStyle(lsMulriple);
    EXPECT_FAILURE(list->SetListsText(L"b"), NotSupported);
    EXPECT_EQ(list->Count(), 0);
}

TEST_F(ListsTextTest, CutAtEveryPositionReadsOrFailsAsARecordDoes) {
    const String text = L"Year,Jahr,2024,of the order;Month,,05;Customer,Kunde,C-17,d";
    for (std::size_t length = 1; length <= text.size(); ++length) {
        const auto list = Make<Lists>();
        list->SetListStyle(lsFields);
        const String cut = text.substr(0, length);
        EXPECT_FAILURE(list->SetListsText(cut), cut.back() == L';' ? InvalidParameter : Failure{}) << length;
    }
}

TEST_F(ListsTextTest, TakesAMillionCharacters) {
    const String name(1'000'000, L'n');
    const auto one = ListOf(name + L",f,v");
    EXPECT_EQ(one->Item(name)->Value(), L"v");
    String text;
    for (int i = 0; i < 100'000; ++i)
        text += L"F" + ToText(i) + L",,;";
    text.pop_back();
    EXPECT_EQ(ListOf(text)->ListsText(), text);
}

} // namespace kestrel::test
