#include <gtest/gtest.h>

#include "lists/List.h"
#include "support/Failures.h"
#include "support/StandIns.h"

namespace kestrel::test {

class ListTest : public testing::Test {
  protected:
    StandIns mvarStandIns;
    Ref<List> mvarItem = Make<List>();
};

TEST_F(ListTest, StartsEmpty) {
    EXPECT_EQ(mvarItem->Name(), L"");
    EXPECT_EQ(mvarItem->ForeignName(), L"");
    EXPECT_EQ(mvarItem->Value(), L"");
    EXPECT_FALSE(mvarItem->Description());
    EXPECT_EQ(mvarItem->Style(), 0);
}

TEST_F(ListTest, NameIsStoredWithoutBlanksAndBecomesTheForeignName) {
    mvarItem->SetName(L"  Year ");
    EXPECT_EQ(mvarItem->Name(), L"Year");
    EXPECT_EQ(mvarItem->ForeignName(), L"Year");
}

TEST_F(ListTest, NameLeavesAForeignNameThatIsAlreadySet) {
    mvarItem->SetForeignName(L"Jahr");
    mvarItem->SetName(L"Year");
    EXPECT_EQ(mvarItem->ForeignName(), L"Jahr");
}

TEST_F(ListTest, NameIsSetOnce) {
    mvarItem->SetName(L"Year");
    EXPECT_FAILURE(mvarItem->SetName(L"Month"), CantBeChanged);
    EXPECT_FAILURE(mvarItem->SetName(L"Year"), CantBeChanged);
    EXPECT_FAILURE(mvarItem->SetName(L""), CantBeChanged);
    EXPECT_EQ(mvarItem->Name(), L"Year");
}

TEST_F(ListTest, NameMustNotBeEmpty) {
    EXPECT_FAILURE(mvarItem->SetName(L""), InvalidParameter);
    EXPECT_FAILURE(mvarItem->SetName(L"   "), InvalidParameter);
    EXPECT_EQ(mvarItem->Name(), L"");
    EXPECT_EQ(mvarItem->ForeignName(), L"");
    EXPECT_SUCCESS(mvarItem->SetName(L"Year"));
}

TEST_F(ListTest, ForeignNameIsStoredWithoutBlanks) {
    mvarItem->SetForeignName(L"  Jahr ");
    EXPECT_EQ(mvarItem->ForeignName(), L"Jahr");
    mvarItem->SetForeignName(L"Ann\u00e9e");
    EXPECT_EQ(mvarItem->ForeignName(), L"Ann\u00e9e");
}

TEST_F(ListTest, ForeignNameMustNotBeEmpty) {
    mvarItem->SetName(L"Year");
    EXPECT_FAILURE(mvarItem->SetForeignName(L""), InvalidParameter);
    EXPECT_FAILURE(mvarItem->SetForeignName(L" "), InvalidParameter);
    EXPECT_EQ(mvarItem->ForeignName(), L"Year");
}

TEST_F(ListTest, ValueAndDescriptionTakeAnything) {
    const String text = L" a;b,\r\n" + String(1, L'\0') + String(1'000'000, L'x');
    mvarItem->SetValue(text);
    EXPECT_EQ(mvarItem->Value(), text);
    const auto description = Make<TextValue>(text);
    mvarItem->SetDescription(description);
    ASSERT_TRUE(mvarItem->Description());
    EXPECT_EQ(mvarItem->Description().Get(), description.Get());
    EXPECT_EQ(mvarItem->Description()->Text(), text);
    mvarItem->SetDescription(nullptr);
    EXPECT_FALSE(mvarItem->Description());
}

TEST_F(ListTest, StyleIsSetByTheOwner) {
    mvarItem->SetListStyle(lsMacros);
    EXPECT_EQ(mvarItem->Style(), lsMacros);
}

} // namespace kestrel::test
