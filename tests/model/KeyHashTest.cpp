// That no one who writes keys can make them fall together, and that keys numbered in a row lie side by side.
#include "common/KeyHash.h"

#include <array>
#include <functional>
#include <unordered_set>

#include <gtest/gtest.h>

#include "support/Keys.h"

namespace kestrel::test {

namespace {

constexpr int Keys = 4'096;
// Some points that a process may draw.
constexpr std::array<std::uint32_t, 4> Points = {65'599, 1'048'583, 1'234'567'891, 2'147'000'003};

// How many other keys a lookup meets before its own, on average.
double OthersMet(const std::vector<String>& keys, std::uint32_t point) {
    const std::unordered_set<String, KeyHash> set(keys.begin(), keys.end(), 0, KeyHash(point));
    EXPECT_EQ(set.size(), keys.size()) << "the keys are different";
    double met = 0;
    for (std::size_t bucket = 0; bucket < set.bucket_count(); ++bucket) {
        const auto size = static_cast<double>(set.bucket_size(bucket));
        met += size * (size - 1) / 2;
    }
    return met / static_cast<double>(keys.size());
}

} // namespace

TEST(KeyHashTest, KeysMadeToFallTogetherDoNot) {
    for (const auto& [name, keys] : HostileKeys(Keys))
        for (const auto point : Points)
            EXPECT_LT(OthersMet(keys, point), 2) << name << ", point " << point;
}

TEST(KeyHashTest, KeysInARowHardlyMeet) {
    for (const auto point : Points)
        EXPECT_LT(OthersMet(NumberedKeys(Keys), point), 2) << point;
}

TEST(KeyHashTest, NumbersInARowLieSideBySide) {
    const KeyHash hash;
    for (int number : {1, 11, 101, 1'001, 123'456})
        EXPECT_EQ(hash(L"N" + ToText(number + 1)), hash(L"N" + ToText(number)) + 1) << number;
}

TEST(KeyHashTest, IsTheSameAllThroughTheProcess) {
    for (const auto* key : {L"", L"1", L"N1", L"a band's name"})
        EXPECT_EQ(KeyHash()(key), KeyHash()(key));
}

TEST(KeyHashTest, TellsAlikeTextsApart) {
    const std::vector<String> keys = {L"",
                                      L"0",
                                      L"00",
                                      L"000",
                                      L"0000",
                                      L"N1",
                                      L"N01",
                                      L"N001",
                                      L"N0001",
                                      String(1, L'\0'),
                                      String(2, L'\0'),
                                      L"N",
                                      L"1000",
                                      L"N1000",
                                      L"N100",
                                      L"\uFF21",
                                      L"A",
                                      L"a"};
    for (const auto point : Points) {
        std::unordered_set<std::size_t> hashes;
        for (const auto& key : keys)
            EXPECT_TRUE(hashes.insert(KeyHash(point)(key)).second) << testing::PrintToString(key) << ", " << point;
    }
}

} // namespace kestrel::test
