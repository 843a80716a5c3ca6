// Named items and their collection, as hosts use them.
#include "automation/support/Late.h"

namespace kestrel::test {

namespace {

class ListTest : public ComTest {
  protected:
    static LateResult Describe(const ComPtr<_List>& item, const VARIANT& value) {
        Must(item->put_Description(value));
        return Call(item.Get(), L"Description");
    }
};

} // namespace

TEST_F(ListTest, BeginsEmpty) {
    const auto item = NewList();
    EXPECT_EQ(Text(item, &_List::get_Name), L"");
    EXPECT_EQ(Text(item, &_List::get_Value), L"");
    EXPECT_EQ(Text(item, &_List::get_ForeignName), L"");
    EXPECT_EQ(Plain(item, &_List::get_Style), lsMulriple);
    EXPECT_EQ(Call(item.Get(), L"Description").value.Type(), VT_EMPTY);
}

TEST_F(ListTest, NameIsTrimmedAndSetOnce) {
    const auto item = NewList();
    EXPECT_FAILS(item->put_Name(Arg(L"   ")), InvalidParameter);
    EXPECT_FAILS(item->put_Name(nullptr), InvalidParameter) << "no text is an empty one";
    EXPECT_DONE(item->put_Name(Arg(L"  F1 ")));
    EXPECT_EQ(Text(item, &_List::get_Name), L"F1");
    EXPECT_EQ(Text(item, &_List::get_ForeignName), L"F1");
    EXPECT_FAILS(item->put_Name(Arg(L"F1")), CantBeChanged);
}

TEST_F(ListTest, ForeignNameIsTrimmed) {
    const auto item = NewList();
    EXPECT_DONE(item->put_ForeignName(Arg(L" Feld ")));
    EXPECT_EQ(Text(item, &_List::get_ForeignName), L"Feld");
    EXPECT_FAILS(item->put_ForeignName(Arg(L" ")), InvalidParameter);
    EXPECT_EQ(Text(item, &_List::get_ForeignName), L"Feld");
    EXPECT_DONE(item->put_Name(Arg(L"F1")));
    EXPECT_EQ(Text(item, &_List::get_ForeignName), L"Feld");
}

TEST_F(ListTest, ErrorsNameTheClass) {
    EXPECT_TRUE(FAILED(NewList()->put_Name(nullptr)));
    EXPECT_EQ(TakenSource(), L"Kestrel.List");
}

TEST_F(ListTest, ValueTakesAnyText) {
    const auto item = NewList();
    const String million(1'000'000, L'x');
    EXPECT_DONE(item->put_Value(Arg(million)));
    EXPECT_EQ(Text(item, &_List::get_Value), million);
    const String withNul(L"a\0b", 3);
    EXPECT_DONE(item->put_Value(Arg(withNul)));
    EXPECT_EQ(Text(item, &_List::get_Value), withNul);
    EXPECT_DONE(item->put_Value(nullptr));
    EXPECT_EQ(Text(item, &_List::get_Value), L"");
}

TEST_F(ListTest, DescriptionKeepsItsType) {
    const auto item = NewList();
    EXPECT_EQ(Describe(item, Number(5)).value.Type(), VT_I4);
    EXPECT_EQ(Describe(item, Real(1.5)).value.Type(), VT_R8);
    EXPECT_EQ(Describe(item, Truth(true)).value.Type(), VT_BOOL);
    EXPECT_EQ(Describe(item, Null()).value.Type(), VT_NULL);
    EXPECT_EQ(TextIn(Describe(item, Arg(L"text"))), L"text");
    EXPECT_EQ(Describe(item, Variant().Get()).value.Type(), VT_EMPTY);
}

TEST_F(ListTest, DescriptionFollowsReferencesAndHoldsObjects) {
    const auto item = NewList();
    VARIANT variable = Number(5);
    EXPECT_EQ(NumberIn(Describe(item, ReferenceTo(variable))), 5);
    variable = Number(6);
    EXPECT_EQ(NumberIn(Call(item.Get(), L"Description")), 5) << "a copy, not the variable";
    const auto rule = NewRule();
    EXPECT_TRUE(Same(V_DISPATCH(&Describe(item, Reference(rule.Get())).value.Get()), rule.Get()));
}

class ListTestLists : public ListTest {
  protected:
    ComPtr<_List> Add(StringView name, StringView value = {}, StringView description = {}) {
        ComPtr<_List> item;
        Must(fields->Add(Arg(name), nullptr, Arg(value), Arg(description), item.Out()));
        return item;
    }
    Failure FailureOfItem(const VARIANT& index) {
        ComPtr<_List> item;
        Failure failure = FailureOf(fields->get_Item(index, item.Out()));
        EXPECT_EQ(static_cast<bool>(item), failure == Failure{});
        return failure;
    }
    [[nodiscard]] String Definition() const {
        const String definition = Text(rule, &_CodeClass::get_Definition);
        const auto begin = definition.find(L"\r14\r");
        return begin == String::npos ? String() : definition.substr(begin + 4);
    }

    const ComPtr<_CodeClass> rule = NewRule();
    const ComPtr<_Lists> fields = Object(rule, &_CodeClass::get_UsrFields);
};

TEST_F(ListTestLists, Add) {
    ComPtr<_List> item;
    EXPECT_DONE(fields->Add(Arg(L" F1 "), Arg(L"Feld"), Arg(L"1"), Arg(L"one"), item.Out()));
    EXPECT_EQ(Text(item, &_List::get_Name), L"F1");
    EXPECT_EQ(Text(item, &_List::get_ForeignName), L"Feld");
    EXPECT_EQ(Text(item, &_List::get_Value), L"1");
    EXPECT_EQ(TextIn(Call(item.Get(), L"Description")), L"one");
    EXPECT_EQ(Plain(item, &_List::get_Style), lsFields);
    EXPECT_FAILS(fields->Add(Arg(L"F1"), nullptr, nullptr, nullptr, item.Out()), DuplicateKey);
    EXPECT_FALSE(item) << "emptied first";
    EXPECT_DONE(fields->Add(Arg(L"f1"), nullptr, nullptr, nullptr, ComPtr<_List>().Out())) << "keys compare exactly";
    EXPECT_FAILS(fields->Add(nullptr, nullptr, nullptr, nullptr, ComPtr<_List>().Out()), InvalidParameter);
    EXPECT_FAILS(fields->Add(Arg(L"F3"), nullptr, nullptr, nullptr, nullptr), Bare(E_POINTER));
    EXPECT_EQ(Plain(fields, &_Lists::get_Count), 2);
}

TEST_F(ListTestLists, ErrorsNameTheClass) {
    EXPECT_TRUE(FAILED(fields->Remove(Number(1))));
    EXPECT_EQ(TakenSource(), L"Kestrel.Lists");
}

TEST_F(ListTestLists, ItemByPosition) {
    Add(L"F1");
    Add(L"F2");
    EXPECT_EQ(FailureOfItem(Number(1)), Failure{});
    EXPECT_EQ(FailureOfItem(Number(2)), Failure{});
    for (const LONG outside : {0L, -1L, 3L, 0x7FFFFFFFL, -0x7FFFFFFFL})
        EXPECT_EQ(FailureOfItem(Number(outside)), OutOfRange) << outside;
}

TEST_F(ListTestLists, ItemByNumbersOfEveryType) {
    Add(L"F1");
    const auto second = Add(L"F2");
    const auto isSecond = [&](const VARIANT& index) {
        ComPtr<_List> item;
        return fields->get_Item(index, item.Out()) == S_OK && Same(item.Get(), second.Get());
    };
    for (const VARTYPE type : {VT_I1, VT_I2, VT_I4, VT_I8, VT_INT, VT_UI1, VT_UI2, VT_UI4, VT_UI8, VT_UINT, VT_R4,
                               VT_R8, VT_CY, VT_DECIMAL}) {
        Variant index;
        VARIANT two = Number(2);
        Must(VariantChangeType(index.Out(), &two, 0, type));
        EXPECT_TRUE(isSecond(index.Get())) << type;
        VARIANT variable = index.Get();
        EXPECT_TRUE(isSecond(ReferenceTo(variable))) << type << " by reference";
    }
    EXPECT_TRUE(isSecond(Real(1.6))) << "rounded";
    EXPECT_TRUE(isSecond(Real(2.4)));
    EXPECT_EQ(FailureOfItem(Real(1e300)), OutOfRange);
    EXPECT_EQ(FailureOfItem(Truth(true)), OutOfRange) << "true is -1";
}

TEST_F(ListTestLists, ItemByName) {
    const auto item = Add(L"F1");
    Variant key(L"F1");
    for (const VARIANT& index : {key.Get(), ReferenceTo(*key.Out())}) {
        ComPtr<_List> found;
        EXPECT_DONE(fields->get_Item(index, found.Out()));
        EXPECT_TRUE(Same(found.Get(), item.Get()));
    }
    EXPECT_EQ(FailureOfItem(Arg(L"f1")), InvalidCall);
    EXPECT_EQ(FailureOfItem(Arg(L"1")), InvalidCall) << "a text is a key, never a position";
    EXPECT_EQ(FailureOfItem(Arg(L"")), InvalidCall);
    EXPECT_EQ(FailureOfItem(Arg(String(1'000'000, L'x'))), InvalidCall);
}

TEST_F(ListTestLists, ItemByAnythingElse) {
    Add(L"F1");
    VARIANT date = Real(1);
    V_VT(&date) = VT_DATE;
    for (const VARIANT& index : {Variant().Get(), Missing(), Null(), Reference(nullptr), Reference(fields.Get()), date})
        EXPECT_EQ(FailureOfItem(index), InvalidCall) << V_VT(&index);
}

TEST_F(ListTestLists, Remove) {
    Add(L"F1");
    Add(L"F2");
    EXPECT_DONE(fields->Remove(Arg(L"F1")));
    EXPECT_EQ(FailureOfItem(Arg(L"F1")), InvalidCall);
    EXPECT_FAILS(fields->Remove(Arg(L"F1")), InvalidCall);
    EXPECT_FAILS(fields->Remove(Number(2)), OutOfRange);
    EXPECT_DONE(fields->Remove(Number(1)));
    EXPECT_EQ(Plain(fields, &_Lists::get_Count), 0);
}

TEST_F(ListTestLists, AListOfTheOwnersFillingRefusesAdd) {
    const auto used = Object(rule, &_CodeClass::get_UsedFields);
    EXPECT_FAILS(used->Add(Arg(L"F"), nullptr, nullptr, nullptr, ComPtr<_List>().Out()), NotSupported);
}

TEST_F(ListTestLists, DescriptionAsTheDefinitionWritesIt) {
    const auto item = Add(L"F", L"v");
    const std::pair<VARIANT, const wchar_t*> cases[] = {
        {Number(5), L"F,,v,5"}, {Real(1.5), L"F,,v,1.5"},      {Truth(true), L"F,,v,True"},
        {Null(), L"F,,v"},      {Reference(nullptr), L"F,,v"}, {Reference(fields.Get()), L"F,,v"},
        {Missing(), L"F,,v"}};
    for (const auto& [value, record] : cases) {
        Must(item->put_Description(value));
        EXPECT_EQ(Definition(), record) << V_VT(&value);
    }
    Must(item->put_Description(Missing())); // let go of the list that holds the item
}

} // namespace kestrel::test
