// Texts that an earlier sibling has are found as comparing each with each before it would find them.
#include "engine/RepeatedTexts.h"

#include <gtest/gtest.h>

#include <random>

#include "common/Ports.h"
#include "engine/TextTraits.h"
#include "relations/cNodes.h"
#include "support/StandIns.h"

namespace kestrel::test {

class RepeatedTextsTest : public testing::Test {
  protected:
    using Offsets = std::vector<std::size_t>;

    // Of all nodes but those that are left out.
    static Offsets Found(const cNodes& tree, std::size_t leftOut) {
        const auto nodes = tree.View();
        RepeatedTexts texts(nodes, &cNode::Text);
        for (std::size_t offset = 0; offset < nodes.size(); ++offset)
            if (offset != leftOut) texts.Note(offset, TraitsOf(nodes[offset]->Text()));
        return texts.Found();
    }

    static Offsets Expected(const cNodes& tree, std::size_t leftOut) {
        const auto nodes = tree.View();
        Offsets repeated;
        for (std::size_t later = 0; later < nodes.size(); ++later)
            for (std::size_t earlier = 0; earlier < later; ++earlier) {
                if (earlier == leftOut || later == leftOut || nodes[earlier]->Parent() != nodes[later]->Parent() ||
                    !TheText().SameText(nodes[earlier]->Text(), nodes[later]->Text()))
                    continue;
                repeated.push_back(later);
                break;
            }
        return repeated;
    }

    // As texts are read: no check of duplicates.
    static Ref<cNodes> Tree(const std::vector<String>& codes, int parents) {
        String text = ToText(static_cast<std::int32_t>(codes.size()));
        for (std::size_t i = 0; i < codes.size(); ++i) {
            const auto number = static_cast<int>(i) + 1;
            const String parent = number <= parents ? String() : ToText(number % parents + 1);
            text += L';' + parent + L',' + ToText(number) + L',' + codes[i] + L",v";
        }
        auto tree = Make<cNodes>();
        tree->ImportNodes(text);
        return tree;
    }

    StandIns standIns;
};

TEST_F(RepeatedTextsTest, AreFoundAsByComparingEachWithEach) {
    std::mt19937 random(7); // NOLINT(cert-msc32-c,cert-msc51-cpp): the same trees in every run
    // The first of them are ASCII; a full-width letter is the same as that one, a soft hyphen is nothing.
    const std::vector<String> alphabet{L"a", L"A", L"b", L"7", L"\uFF21", L"\u00E4", L"\u00C4", L"\u00AD"};
    std::size_t repeated = 0;
    for (int round = 0; round < 60; ++round) {
        const auto letters = round % 2 == 0 ? 4 : alphabet.size();
        std::vector<String> codes(1 + random() % 120);
        for (auto& code : codes)
            for (std::size_t letter = 0; letter <= random() % 3; ++letter)
                code += alphabet[random() % letters];
        const auto tree = Tree(codes, 1 + round % 5);
        const auto found = Found(*tree, codes.size() / 2);
        EXPECT_EQ(found, Expected(*tree, codes.size() / 2)) << "round " << round;
        repeated += found.size();
    }
    EXPECT_GT(repeated, 0U);
}

TEST_F(RepeatedTextsTest, AreNoneInAnEmptyTree) { EXPECT_EQ(Found(*Make<cNodes>(), 1), Offsets{}); }

// All alike: each is compared with the first one only.
TEST_F(RepeatedTextsTest, MayBeAllOfThem) {
    const auto found = Found(*Tree(std::vector<String>(100'000, L"same"), 100'000), 100'000);
    EXPECT_EQ(found.size(), 99'999U);
}

} // namespace kestrel::test
