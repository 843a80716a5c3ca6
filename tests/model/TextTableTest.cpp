// The table of texts: what both languages must have in common.
#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "common/String.h"

namespace kestrel::test {

namespace {

struct Row {
    int number;
    String english;
    String german;
};

std::vector<Row> Rows() {
    return {
// NOLINTNEXTLINE(cppcoreguidelines-macro-usage): shared with the resource compiler, which knows macros
#define STRING(id, english, german) {id, L##english, L##german},
#include "resources/strings.inc"
#undef STRING
    };
}

} // namespace

// Each "*" is replaced by what the text tells of, in the same order in both languages.
TEST(TextTableTest, HasAsManyPlacesForArgumentsInBothLanguages) {
    int texts = 0;
    for (const auto& row : Rows()) {
        const auto places = std::count(row.english.begin(), row.english.end(), L'*');
        EXPECT_EQ(std::count(row.german.begin(), row.german.end(), L'*'), places) << row.number;
        if (places > 0) ++texts;
    }
    EXPECT_GT(texts, 30);
}

} // namespace kestrel::test
