// A tree under random changes, of which everything is asked that indexes answer, and compared with one pass over its
// list.
#pragma once

#include <gtest/gtest.h>

#include <random>

#include "common/Error.h"
#include "common/Ports.h"
#include "support/Failures.h"
#include "support/Trees.h"

namespace kestrel::test {

class RandomTree {
  public:
    // Texts are made of the letters, up to three of them.
    RandomTree(unsigned seed, std::vector<String> letters) : mvarRandom(seed), mvarLetters(std::move(letters)) {}

    void Run(int changes) {
        for (int change = 0; change < changes; ++change) {
            Change();
            CompareConversions();
            ComparePlaces();
            if (testing::Test::HasFailure()) return;
        }
    }
    // So many conversions and refusals were compared that found something.
    [[nodiscard]] int Found() const noexcept { return mvarFound; }
    [[nodiscard]] int Refused() const noexcept { return mvarRefused; }

  private:
    [[nodiscard]] unsigned Below(unsigned limit) { return static_cast<unsigned>(mvarRandom() % limit); }

    [[nodiscard]] String Word() {
        String word;
        for (unsigned letter = 0; letter <= Below(3); ++letter)
            word += mvarLetters[Below(static_cast<unsigned>(mvarLetters.size()))];
        return word;
    }

    [[nodiscard]] IndexKey AnyNode() {
        return static_cast<std::int32_t>(Below(static_cast<unsigned>(mvarTree->Count()))) + 1;
    }

    // Mostly additions, so that trees grow large enough for indexes.
    void Change() {
        const unsigned kind = mvarTree->Count() == 0 ? 0 : Below(100);
        if (kind < 60) {
            Add();
        } else if (kind < 80) {
            Rename();
        } else if (kind < 84) {
            mvarTree->Remove(AnyNode());
        } else if (kind < 90) {
            static_cast<void>(FailureOf([&] { mvarTree->Drag(AnyNode(), static_cast<int>(Below(5)), AnyNode()); }));
        } else if (kind == 90) {
            // A node may stand before its parent: the import ends there.
            static_cast<void>(FailureOf([&] { mvarTree->ImportNodes(mvarTree->ExportNodes()); }));
        }
    }

    void Add() {
        const String text = Word() + ToText(static_cast<std::int32_t>(Below(40)));
        const String tag = Word() + ToText(static_cast<std::int32_t>(Below(400)));
        if (mvarTree->Count() == 0 || Below(3) == 0)
            Compare({}, tvwLast, text, tag);
        else
            Compare(AnyNode(), static_cast<int>(Below(5)), text, tag);
    }

    // An Add fails as a pass says, and with what the first sibling in order tells.
    void Compare(const IndexKey& relative, int relationship, const String& text, const String& tag) {
        Ref<cNode> parent;
        if (!relative.IsMissing()) {
            parent = mvarTree->Node(relative);
            if (relationship != tvwChild) parent = parent->Parent();
        }
        Failure expected;
        for (const auto& node : mvarTree->Snapshot()) {
            if (node->Parent() != parent || (node->Text() != text && node->Tag() != tag)) continue;
            expected = node->Text() == text ? SameCode : SameValue;
            ++mvarRefused;
            break;
        }
        EXPECT_EQ(FailureOf([&] { static_cast<void>(mvarTree->Add(relative, relationship, text, tag)); }), expected);
    }

    void Rename() {
        const auto node = mvarTree->Node(AnyNode());
        const String text = Word() + ToText(static_cast<std::int32_t>(Below(40)));
        const bool isText = Below(2) == 0;
        bool isTaken = false;
        for (const auto& other : mvarTree->Snapshot())
            isTaken = isTaken || (other != node && other->Parent() == node->Parent() &&
                                  (isText ? other->Text() : other->Tag()) == text);
        const auto failure = FailureOf([&] { isText ? node->SetText(text) : node->SetTag(text); });
        EXPECT_EQ(failure, !isTaken ? Failure{} : isText ? SameCode : SameValue);
    }

    void CompareConversions() {
        if (mvarTree->Count() == 0) return;
        const auto known = mvarTree->Node(AnyNode());
        for (const String& value : {known->Text(), known->Tag(), Word() + L"7", TheText().Upper(known->Text())})
            for (const int style : {csCodeToValue, csValueToCode}) {
                CompareConversion(style, value, known->Parent());
                CompareConversion(style, value, nullptr);
            }
    }

    void CompareConversion(int style, const String& value, const Ref<cNode>& parent) {
        Ref<cNode> expected;
        for (const auto& node : mvarTree->Snapshot())
            if (!expected && node->Parent() == parent &&
                TheText().SameText(style == csCodeToValue ? node->Text() : node->Tag(), value))
                expected = node;
        String converted = value;
        String key;
        const auto under = parent ? IndexKey(parent->Key()) : IndexKey();
        const auto failure = FailureOf([&] { key = mvarTree->Conversion(style, converted, under); });
        EXPECT_EQ(failure, expected ? Failure{} : NoRelatedRelation) << "value " << ::testing::PrintToString(value);
        if (!expected) return;
        ++mvarFound;
        EXPECT_EQ(key, expected->Key());
        EXPECT_EQ(converted, style == csCodeToValue ? expected->Tag() : expected->Text());
    }

    void ComparePlaces() {
        if (mvarTree->Count() == 0) return;
        const auto node = mvarTree->Node(AnyNode());
        Ref<cNode> first;
        Ref<cNode> last;
        Ref<cNode> child;
        for (const auto& other : mvarTree->Snapshot()) {
            if (other->Parent() == node->Parent()) {
                if (!first) first = other;
                last = other;
            }
            if (!child && other->Parent() == node) child = other;
        }
        EXPECT_EQ(KeyOf(node->FirstSibling()), KeyOf(first));
        EXPECT_EQ(KeyOf(node->LastSibling()), KeyOf(last));
        EXPECT_EQ(KeyOf(node->Child()), KeyOf(child));
    }

    std::mt19937 mvarRandom;
    std::vector<String> mvarLetters;
    Ref<cNodes> mvarTree = Make<cNodes>();
    int mvarFound = 0;
    int mvarRefused = 0;
};

} // namespace kestrel::test
