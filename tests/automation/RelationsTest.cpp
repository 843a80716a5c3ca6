// Relation nodes and trees, as hosts use them.
#include "automation/support/Late.h"

namespace kestrel::test {

namespace {

class RelationsTest : public ComTest {
  protected:
    static ComPtr<_cNode> Add(const ComPtr<_cNodes>& tree, const VARIANT& relative, ::tvwRelationships relationship,
                              StringView text, StringView tag) {
        ComPtr<_cNode> node;
        Must(tree->Add(relative, relationship, Arg(text), Arg(tag), node.Out()));
        return node;
    }
    static Failure FailureOfAdd(const ComPtr<_cNodes>& tree, const VARIANT& relative, int relationship, StringView text,
                                StringView tag) {
        ComPtr<_cNode> node;
        Failure failure = FailureOf(
            tree->Add(relative, static_cast<::tvwRelationships>(relationship), Arg(text), Arg(tag), node.Out()));
        EXPECT_EQ(static_cast<bool>(node), failure == Failure{});
        return failure;
    }
    static Failure Drag(const ComPtr<_cNodes>& tree, const VARIANT& relative, ::tvwRelationships relationship,
                        const VARIANT& node) {
        return FailureOf(tree->Drag(relative, relationship, node));
    }
    static String Keys(const ComPtr<_cNodes>& tree) {
        String keys;
        for (LONG i = 1; i <= Plain(tree, &_cNodes::get_Count); ++i) {
            ComPtr<_cNode> node;
            Must(tree->get_Node(Number(i), node.Out()));
            keys += Text(node, &_cNode::get_Key);
        }
        return keys;
    }
};

} // namespace

TEST_F(RelationsTest, ANodeWithoutTreeAnswersQuietly) {
    const auto node = NewNode();
    EXPECT_TRUE(Same(Object(node, &_cNode::get_LastSibling).Get(), node.Get()));
    EXPECT_TRUE(Same(Object(node, &_cNode::get_FirstSibling).Get(), node.Get()));
    EXPECT_TRUE(Same(Object(node, &_cNode::get_Root).Get(), node.Get()));
    for (const auto getter : {&_cNode::get_Child, &_cNode::get_Parent, &_cNode::get_Previous, &_cNode::get_Nexts,
                              &_cNode::get_PreviousSibling})
        EXPECT_FALSE(Object(node, getter));
    for (const auto getter : {&_cNode::get_Children, &_cNode::get_Index, &_cNode::get_Layer, &_cNode::get_Descendants})
        EXPECT_EQ(Plain(node, getter), 0);
    EXPECT_EQ(Text(node, &_cNode::get_Key), L"");
    EXPECT_DONE(node->put_Text(Arg(L"1")));
    EXPECT_DONE(node->put_Tag(Arg(L"one")));
    EXPECT_EQ(Text(node, &_cNode::get_Text), L"1");
    EXPECT_EQ(Text(node, &_cNode::get_Tag), L"one");
}

TEST_F(RelationsTest, NodesOfATree) {
    const auto tree = NewNodes();
    const auto first = Add(tree, Missing(), tvwFirst, L"1", L"a");
    const auto child = Add(tree, Number(1), tvwChild, L"1", L"b");
    const auto second = Add(tree, Missing(), tvwFirst, L"2", L"c");
    const auto third = Add(tree, Missing(), tvwFirst, L"3", L"d");
    EXPECT_TRUE(Same(Object(first, &_cNode::get_LastSibling).Get(), third.Get()));
    EXPECT_TRUE(Same(Object(third, &_cNode::get_FirstSibling).Get(), first.Get()));
    EXPECT_TRUE(Same(Object(first, &_cNode::get_Child).Get(), child.Get()));
    EXPECT_TRUE(Same(Object(child, &_cNode::get_Parent).Get(), first.Get()));
    EXPECT_TRUE(Same(Object(child, &_cNode::get_Root).Get(), first.Get()));
    EXPECT_TRUE(Same(Object(first, &_cNode::get_Nexts).Get(), second.Get()));
    EXPECT_TRUE(Same(Object(third, &_cNode::get_PreviousSibling).Get(), second.Get()));
    EXPECT_FALSE(Object(third, &_cNode::get_Nexts));
    EXPECT_EQ(Plain(child, &_cNode::get_Layer), 1);
    EXPECT_EQ(Plain(second, &_cNode::get_Index), 3);
    EXPECT_EQ(Plain(first, &_cNode::get_Descendants), 1);
    EXPECT_EQ(Plain(first, &_cNode::get_Children), 0);
    EXPECT_EQ(Text(second, &_cNode::get_Key), L"N3");
}

TEST_F(RelationsTest, PreviousFailsWhereItCompares) {
    const auto tree = NewNodes();
    Add(tree, Missing(), tvwFirst, L"1", L"a");
    const auto second = Add(tree, Missing(), tvwFirst, L"2", L"b");
    const auto third = Add(tree, Missing(), tvwFirst, L"3", L"c");
    EXPECT_FALSE(Object(third, &_cNode::get_Previous));
    ComPtr<_cNode> none;
    EXPECT_FAILS(second->get_Previous(none.Out()), ObjectNotSet);
    Add(tree, Number(1), tvwChild, L"1", L"a");
    const auto last = Add(tree, Number(1), tvwChild, L"2", L"b");
    EXPECT_FAILS(last->get_Previous(none.Out()), MemberNotSupported);
}

TEST_F(RelationsTest, CodesAndValuesAreUniqueInALayer) {
    const auto tree = NewNodes();
    Add(tree, Missing(), tvwFirst, L"1", L"a");
    const auto second = Add(tree, Missing(), tvwFirst, L"2", L"b");
    EXPECT_FAILS(second->put_Text(Arg(L"1")), SameCode);
    EXPECT_EQ(Text(second, &_cNode::get_Text), L"2");
    EXPECT_FAILS(second->put_Tag(Arg(L"a")), SameValue);
    EXPECT_TRUE(FAILED(second->put_Tag(Arg(L"a"))));
    EXPECT_EQ(TakenSource(), L"Kestrel.cNode");
    EXPECT_EQ(FailureOfAdd(tree, Missing(), tvwFirst, L"1", L"c"), SameCode);
    EXPECT_EQ(FailureOfAdd(tree, Missing(), tvwFirst, L"3", L"a"), SameValue);
    EXPECT_EQ(FailureOfAdd(tree, Number(1), tvwChild, L"1", L"a"), Failure{}) << "another layer";
}

TEST_F(RelationsTest, AddTakesPositionsKeysAndNodes) {
    const auto tree = NewNodes();
    const auto first = Add(tree, Missing(), tvwFirst, L"1", L"a");
    Add(tree, Arg(L"N1"), tvwNext, L"2", L"b");
    Add(tree, Number(1), tvwPrevious, L"3", L"c");
    Add(tree, Reference(first.Get()), tvwLast, L"4", L"d");
    Add(tree, Reference(first.Get()), tvwFirst, L"5", L"e");
    EXPECT_EQ(Keys(tree), L"N5N3N1N2N4");
}

TEST_F(RelationsTest, AddRefusesUnknownPlaces) {
    const auto tree = NewNodes();
    const auto other = NewNodes();
    const auto node = Add(other, Missing(), tvwFirst, L"1", L"a");
    EXPECT_EQ(FailureOfAdd(tree, Number(1), tvwFirst, L"1", L"a"), OutOfRange);
    EXPECT_EQ(FailureOfAdd(tree, Arg(L"N1"), tvwFirst, L"1", L"a"), InvalidCall);
    EXPECT_EQ(FailureOfAdd(tree, Reference(node.Get()), tvwFirst, L"1", L"a"), InvalidCall) << "a node of another tree";
    EXPECT_EQ(FailureOfAdd(tree, Reference(NewNode().Get()), tvwFirst, L"1", L"a"), InvalidCall) << "of no tree";
    EXPECT_EQ(FailureOfAdd(tree, Reference(other.Get()), tvwFirst, L"1", L"a"), InvalidParameter) << "no node at all";
    EXPECT_EQ(FailureOfAdd(other, Number(1), 5, L"2", L"b"), InvalidParameter);
    EXPECT_EQ(FailureOfAdd(other, Number(1), -1, L"2", L"b"), InvalidParameter);
    EXPECT_FAILS(tree->Add(Missing(), tvwFirst, nullptr, nullptr, nullptr), Bare(E_POINTER));
}

TEST_F(RelationsTest, NodeAndRemove) {
    const auto tree = NewNodes();
    Add(tree, Missing(), tvwFirst, L"1", L"a");
    Add(tree, Number(1), tvwChild, L"1", L"b");
    Add(tree, Missing(), tvwFirst, L"2", L"c");
    ComPtr<_cNode> node;
    for (const LONG outside : {0L, -1L, 4L})
        EXPECT_FAILS(tree->get_Node(Number(outside), node.Out()), OutOfRange);
    EXPECT_FAILS(tree->get_Node(Arg(L"n1"), node.Out()), InvalidCall);
    EXPECT_FAILS(tree->Remove(Arg(L"N9")), InvalidCall);
    EXPECT_FAILS(tree->RemoveItem(Number(0)), OutOfRange);
    EXPECT_DONE(tree->Remove(Arg(L"N1")));
    EXPECT_EQ(Keys(tree), L"N3");
    EXPECT_DONE(tree->RemoveItem(Number(1)));
    EXPECT_EQ(Keys(tree), L"");
    EXPECT_EQ(Text(Add(tree, Missing(), tvwFirst, L"1", L"a"), &_cNode::get_Key), L"N4")
        << "RemoveItem keeps the counter";
    EXPECT_DONE(tree->Cls());
    EXPECT_EQ(Text(Add(tree, Missing(), tvwFirst, L"1", L"a"), &_cNode::get_Key), L"N1");
}

TEST_F(RelationsTest, DragTakesPositionsKeysAndNodes) {
    const auto tree = NewNodes();
    const auto first = Add(tree, Missing(), tvwFirst, L"1", L"a");
    const auto second = Add(tree, Missing(), tvwFirst, L"2", L"b");
    const auto third = Add(tree, Missing(), tvwFirst, L"3", L"c");
    EXPECT_EQ(Drag(tree, Arg(L"N3"), tvwNext, Arg(L"N1")), Failure{});
    EXPECT_EQ(Keys(tree), L"N2N3N1");
    EXPECT_EQ(Drag(tree, Reference(second.Get()), tvwPrevious, Reference(first.Get())), Failure{});
    EXPECT_EQ(Keys(tree), L"N1N2N3");
    EXPECT_EQ(Drag(tree, Reference(third.Get()), tvwNext, Reference(first.Get())), Failure{})
        << "whatever the positions";
    EXPECT_EQ(Keys(tree), L"N2N3N1");
    EXPECT_EQ(Drag(tree, Number(1), tvwPrevious, Number(3)), Failure{});
    EXPECT_EQ(Keys(tree), L"N1N2N3");
    EXPECT_EQ(Drag(tree, Arg(L"N1"), tvwChild, Arg(L"N3")), Failure{});
    EXPECT_EQ(Plain(third, &_cNode::get_Layer), 1);
}

TEST_F(RelationsTest, DragOfNothingMovesNothing) {
    const auto tree = NewNodes();
    Add(tree, Missing(), tvwFirst, L"1", L"a");
    Add(tree, Missing(), tvwFirst, L"2", L"b");
    for (const VARIANT& none : {Missing(), Variant().Get(), Reference(nullptr)})
        EXPECT_EQ(Drag(tree, Number(2), tvwNext, none), Failure{}) << V_VT(&none);
    EXPECT_EQ(Keys(tree), L"N1N2");
}

TEST_F(RelationsTest, DragThatMovesNothingDoesNotFail) {
    const auto tree = NewNodes();
    const auto foreign = NewNames();
    const auto stranger = NewNode();
    const Argument unknown(L"N9");
    const std::vector<VARIANT> unusable{Null(), Reference(foreign.Get()), Reference(stranger.Get()), unknown};
    for (int nodes = 0; nodes < 3; ++nodes) {
        for (const VARIANT& place : unusable) {
            EXPECT_EQ(Drag(tree, place, tvwUbound, Missing()), Failure{}) << nodes;
            EXPECT_EQ(nodes < 2 ? Drag(tree, place, tvwUbound, place) : Failure{}, Failure{}) << nodes;
        }
        const String next = ToText(nodes);
        Add(tree, Missing(), tvwFirst, next, next);
    }
    EXPECT_EQ(Keys(tree), L"N1N2N3");
}

TEST_F(RelationsTest, DragToAnUnusablePlaceHasTakenTheNodeOut) {
    const auto tree = NewNodes();
    Add(tree, Missing(), tvwFirst, L"1", L"a");
    Add(tree, Missing(), tvwFirst, L"2", L"b");
    EXPECT_EQ(Drag(tree, Null(), tvwNext, Arg(L"N1")), InvalidCall);
    EXPECT_EQ(Keys(tree), L"N2");
}

TEST_F(RelationsTest, AFailedAddHasUsedItsKeyNumberWhateverItWasGiven) {
    const auto tree = NewNodes();
    const auto foreign = NewNames();
    Variant array;
    V_VT(array.Out()) = VT_ARRAY | VT_I4;
    V_ARRAY(array.Out()) = SafeArrayCreateVector(VT_I4, 0, 1);
    EXPECT_EQ(FailureOfAdd(tree, Null(), tvwFirst, L"1", L"a"), InvalidCall);
    EXPECT_EQ(FailureOfAdd(tree, array.Get(), tvwFirst, L"1", L"a"), InvalidCall);
    EXPECT_EQ(FailureOfAdd(tree, Reference(foreign.Get()), tvwFirst, L"1", L"a"), InvalidParameter);
    EXPECT_EQ(FailureOfAdd(tree, Reference(NewNode().Get()), tvwFirst, L"1", L"a"), InvalidCall);
    EXPECT_EQ(Call(tree.Get(), L"Add", {Null(), Number(tvwFirst), Arg(L"1"), Arg(L"a")}).failure, InvalidCall);
    EXPECT_EQ(FailureOfAdd(tree, Missing(), tvwFirst, L"1", L"a"), Failure{});
    EXPECT_EQ(Keys(tree), L"N6");
}

TEST_F(RelationsTest, ConversionLooksAtItsPlaceLast) {
    const auto tree = NewNodes();
    const auto failure = [&tree](int style, StringView text) {
        auto direction = static_cast<::ConvStyles>(style);
        Bstr value(text);
        return FailureOf(tree->Conversion(&direction, value.Out(), Null(), Bstr().Out()));
    };
    EXPECT_EQ(failure(2, L""), InvalidParameter);
    EXPECT_EQ(failure(csCodeToValue, L""), InvalidParameter);
    EXPECT_EQ(failure(csCodeToValue, L"1"), NoRelations);
    Add(tree, Missing(), tvwFirst, L"1", L"a");
    EXPECT_EQ(failure(csCodeToValue, L"1"), InvalidCall);
}

TEST_F(RelationsTest, DragRefusals) {
    const auto tree = NewNodes();
    const auto first = Add(tree, Missing(), tvwFirst, L"1", L"a");
    Add(tree, Number(1), tvwChild, L"1", L"b");
    EXPECT_EQ(Drag(tree, Arg(L"N2"), tvwChild, Arg(L"N1")), InvalidParameter) << "below its own descendant";
    EXPECT_EQ(Drag(tree, Arg(L"N9"), tvwChild, Arg(L"N9")), InvalidCall);
    EXPECT_EQ(Drag(tree, Number(1), tvwNext, Number(9)), OutOfRange);
    EXPECT_EQ(Drag(tree, Missing(), tvwNext, Null()), InvalidCall);
    EXPECT_EQ(Drag(tree, Missing(), tvwNext, Reference(NewNode().Get())), InvalidCall);
    EXPECT_EQ(Drag(tree, Missing(), tvwNext, Reference(tree.Get())), InvalidParameter);
    EXPECT_EQ(Keys(tree), L"N1N2");
}

TEST_F(RelationsTest, Conversion) {
    const auto tree = NewNodes();
    const auto convert = [&](int style, Bstr& value, const VARIANT& index) {
        auto direction = static_cast<::ConvStyles>(style);
        Bstr key;
        Failure failure = FailureOf(tree->Conversion(&direction, value.Out(), index, key.Out()));
        EXPECT_EQ(direction, style);
        return failure == Failure{} ? std::pair(failure, key.Text()) : std::pair(failure, String());
    };
    Bstr value(L"A");
    EXPECT_EQ(convert(csCodeToValue, value, Missing()).first, NoRelations);
    Add(tree, Missing(), tvwFirst, L"A", L"first");
    Add(tree, Number(1), tvwChild, L"b", L"second");
    value = Bstr(L"a");
    EXPECT_EQ(convert(csCodeToValue, value, Missing()).second, L"N1");
    EXPECT_EQ(value.Text(), L"first");
    value = Bstr(L"SECOND");
    EXPECT_EQ(convert(csValueToCode, value, Arg(L"N1")).second, L"N2");
    EXPECT_EQ(value.Text(), L"b");
    EXPECT_EQ(convert(csValueToCode, value, Number(2)).first, NoRelatedRelation);
    EXPECT_EQ(value.Text(), L"b");
    EXPECT_EQ(convert(2, value, Missing()).first, InvalidParameter);
    EXPECT_EQ(convert(csCodeToValue, value, Arg(L"N9")).first, InvalidCall);
    EXPECT_EQ(convert(csCodeToValue, value, Null()).first, InvalidCall);
    value = Bstr();
    EXPECT_EQ(convert(csCodeToValue, value, Missing()).first, InvalidParameter) << "no text";
}

TEST_F(RelationsTest, ConversionChecksItsPointers) {
    const auto tree = NewNodes();
    ::ConvStyles style = csCodeToValue;
    Bstr value(L"A");
    Bstr key;
    EXPECT_FAILS(tree->Conversion(nullptr, value.Out(), Missing(), key.Out()), Bare(E_POINTER));
    EXPECT_FAILS(tree->Conversion(&style, nullptr, Missing(), key.Out()), Bare(E_POINTER));
    EXPECT_FAILS(tree->Conversion(&style, value.Out(), Missing(), nullptr), Bare(E_POINTER));
    EXPECT_EQ(value.Text(), L"A");
}

TEST_F(RelationsTest, ConversionFollowsTheUsersLocale) {
    const auto tree = NewNodes();
    Add(tree, Missing(), tvwFirst, L"\u00C4\u00D6\u00DC", L"umlauts");
    ::ConvStyles style = csCodeToValue;
    Bstr value(L"\u00E4\u00F6\u00FC");
    Bstr key;
    EXPECT_DONE(tree->Conversion(&style, value.Out(), Missing(), key.Out()));
    EXPECT_EQ(value.Text(), L"umlauts");
}

TEST_F(RelationsTest, TextsOfAMillionCharactersAndNuls) {
    const auto tree = NewNodes();
    const String million(1'000'000, L'x');
    const String withNul(L"a\0b", 3);
    const auto node = Add(tree, Missing(), tvwFirst, million, withNul);
    EXPECT_EQ(Text(node, &_cNode::get_Text), million);
    EXPECT_EQ(Text(node, &_cNode::get_Tag), withNul);
}

TEST_F(RelationsTest, StylesOfTrees) {
    EXPECT_EQ(Plain(NewNodes(), &_cNodes::get_Style), tsNormal);
    const auto rule = NewRule();
    EXPECT_EQ(Plain(Object(rule, &_CodeClass::get_Relations), &_cNodes::get_Style), tsNormal);
}

} // namespace kestrel::test
