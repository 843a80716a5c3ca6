#include <gtest/gtest.h>

#include "common/Error.h"
#include "lists/List.h"
#include "support/StandIns.h"

namespace kestrel::test {

TEST(ListTest, NameIsStoredWithoutBlanksAndBecomesTheForeignName) {
    const StandIns standIns;
    const auto item = Make<List>();
    item->SetName(L"  Year ");
    EXPECT_EQ(item->Name(), L"Year");
    EXPECT_EQ(item->ForeignName(), L"Year");
}

} // namespace kestrel::test
