// The enumerators that For Each walks.
#include <array>

#include "automation/support/Late.h"

namespace kestrel::test {

namespace {

class EnumeratorTest : public ComTest {
  protected:
    static ComPtr<_Names> Letters() {
        auto names = NewNames();
        for (const wchar_t* letter : {L"a", L"b", L"c"})
            Must(names->Add(Arg(letter), Bstr().Out()));
        return names;
    }
};

template <class Collection>
ComPtr<IEnumVARIANT> EnumeratorOf(const ComPtr<Collection>& collection) {
    auto enumerator = Object(collection, &Collection::get_NewEnum).template As<IEnumVARIANT>();
    if (!enumerator) throw HostError(E_NOINTERFACE);
    return enumerator;
}

// What one call of Next gives, as text, with its result and count.
struct Taken {
    HRESULT result;
    ULONG fetched;
    String text;
    friend bool operator==(const Taken&, const Taken&) = default;
    friend std::ostream& operator<<(std::ostream& stream, const Taken& taken) {
        return stream << taken.result << ", " << taken.fetched << ", " << testing::PrintToString(taken.text);
    }
};

Taken Take(const ComPtr<IEnumVARIANT>& enumerator, ULONG count) {
    std::array<VARIANT, 8> elements{};
    Taken taken{E_UNEXPECTED, 99, {}};
    taken.result = enumerator->Next(count, elements.data(), &taken.fetched);
    for (ULONG i = 0; i < taken.fetched; ++i) {
        taken.text += ViewOf(V_BSTR(&elements[i]));
        VariantClear(&elements[i]);
    }
    return taken;
}

} // namespace

TEST_F(EnumeratorTest, NextGivesWhatIsLeft) {
    const auto letters = EnumeratorOf(Letters());
    EXPECT_EQ(Take(letters, 2), (Taken{S_OK, 2, L"ab"}));
    EXPECT_EQ(Take(letters, 2), (Taken{S_FALSE, 1, L"c"}));
    EXPECT_EQ(Take(letters, 2), (Taken{S_FALSE, 0, L""}));
    EXPECT_EQ(Take(letters, 0), (Taken{S_OK, 0, L""}));
}

TEST_F(EnumeratorTest, NextExactlyToTheEnd) {
    const auto letters = EnumeratorOf(Letters());
    EXPECT_EQ(Take(letters, 3), (Taken{S_OK, 3, L"abc"}));
    EXPECT_EQ(Take(letters, 1), (Taken{S_FALSE, 0, L""}));
}

TEST_F(EnumeratorTest, NextChecksItsPointers) {
    const auto letters = EnumeratorOf(Letters());
    VARIANT element{};
    ULONG fetched = 99;
    EXPECT_EQ(letters->Next(1, nullptr, &fetched), E_POINTER);
    EXPECT_EQ(fetched, 0U);
    EXPECT_EQ(letters->Next(2, &element, nullptr), E_POINTER);
    EXPECT_EQ(letters->Next(1, &element, nullptr), S_OK) << "one element needs no count";
    EXPECT_EQ(ViewOf(V_BSTR(&element)), L"a");
    VariantClear(&element);
}

TEST_F(EnumeratorTest, SkipAndReset) {
    const auto letters = EnumeratorOf(Letters());
    EXPECT_EQ(letters->Skip(0), S_OK);
    EXPECT_EQ(letters->Skip(2), S_OK);
    EXPECT_EQ(Take(letters, 1), (Taken{S_OK, 1, L"c"}));
    EXPECT_EQ(letters->Skip(1), S_FALSE);
    EXPECT_EQ(letters->Reset(), S_OK);
    EXPECT_EQ(letters->Skip(3), S_OK);
    EXPECT_EQ(Take(letters, 1), (Taken{S_FALSE, 0, L""}));
    EXPECT_EQ(letters->Reset(), S_OK);
    EXPECT_EQ(letters->Skip(0xFFFFFFFF), S_FALSE);
    EXPECT_EQ(Take(letters, 1), (Taken{S_FALSE, 0, L""}));
}

TEST_F(EnumeratorTest, CloneStandsWhereTheOriginalStood) {
    const auto letters = EnumeratorOf(Letters());
    EXPECT_EQ(Take(letters, 1), (Taken{S_OK, 1, L"a"}));
    ComPtr<IEnumVARIANT> clone;
    ASSERT_EQ(letters->Clone(clone.Out()), S_OK);
    EXPECT_EQ(Take(letters, 3), (Taken{S_FALSE, 2, L"bc"}));
    EXPECT_EQ(Take(clone, 1), (Taken{S_OK, 1, L"b"}));
    EXPECT_EQ(clone->Reset(), S_OK);
    EXPECT_EQ(Take(clone, 3), (Taken{S_OK, 3, L"abc"}));
    EXPECT_EQ(letters->Clone(nullptr), E_POINTER);
}

TEST_F(EnumeratorTest, AnEmptyCollection) {
    const auto none = EnumeratorOf(NewNames());
    EXPECT_EQ(Take(none, 1), (Taken{S_FALSE, 0, L""}));
    EXPECT_EQ(none->Skip(1), S_FALSE);
    EXPECT_EQ(none->Reset(), S_OK);
}

TEST_F(EnumeratorTest, ASnapshotOutlivesChangesAndTheCollection) {
    auto names = Letters();
    const auto letters = EnumeratorOf(names);
    EXPECT_EQ(Take(letters, 1), (Taken{S_OK, 1, L"a"}));
    Must(names->Remove(Number(1)));
    Must(names->Remove(Arg(L"c")));
    names = {};
    EXPECT_EQ(Take(letters, 3), (Taken{S_FALSE, 2, L"bc"}));
}

TEST_F(EnumeratorTest, ObjectsAreTheOnesOfTheCollection) {
    const auto tree = NewNodes();
    ComPtr<_cNode> node;
    Must(tree->Add(Missing(), tvwFirst, Arg(L"1"), Arg(L"one"), node.Out()));
    VARIANT element{};
    Must(EnumeratorOf(tree)->Next(1, &element, nullptr));
    ASSERT_EQ(V_VT(&element), VT_DISPATCH);
    EXPECT_TRUE(Same(V_DISPATCH(&element), node.Get()));
    VariantClear(&element);
}

TEST_F(EnumeratorTest, RemovingWhileWalkingATree) {
    const auto tree = NewNodes();
    for (const wchar_t* text : {L"1", L"2", L"3"})
        Must(tree->Add(Missing(), tvwFirst, Arg(text), Arg(text), ComPtr<_cNode>().Out()));
    const auto nodes = EnumeratorOf(tree);
    int seen = 0;
    for (VARIANT element{}; nodes->Next(1, &element, nullptr) == S_OK; ++seen) {
        Must(tree->Remove(Call(V_DISPATCH(&element), L"Key").value.Get()));
        VariantClear(&element);
    }
    EXPECT_EQ(seen, 3);
    EXPECT_EQ(Plain(tree, &_cNodes::get_Count), 0);
}

TEST_F(EnumeratorTest, PublishedAsTheStandardOneExceptForTrees) {
    const auto rule = NewRule();
    const auto fields = Object(rule, &_CodeClass::get_UsrFields);
    EXPECT_EQ(Call(rule.Get(), DISPID_NEWENUM, AsValue).value.Type(), VT_UNKNOWN);
    EXPECT_EQ(Call(fields.Get(), DISPID_NEWENUM, AsValue).value.Type(), VT_UNKNOWN);
    EXPECT_EQ(Call(NewNames().Get(), DISPID_NEWENUM, AsValue).value.Type(), VT_UNKNOWN);
    const auto tree = NewNodes();
    EXPECT_EQ(Call(tree.Get(), DISPID_NEWENUM, AsValue).result, DISP_E_MEMBERNOTFOUND);
    EXPECT_EQ(Call(tree.Get(), L"NewEnum").value.Type(), VT_UNKNOWN);
}

} // namespace kestrel::test
