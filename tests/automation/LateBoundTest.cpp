// Names and calls by id, with the arguments that scripts and other late-bound hosts pass.
#include "automation/support/Late.h"

namespace kestrel::test {

namespace {

class LateBoundTest : public ComTest {
  protected:
    // The codes 01 North (N1) with 1 East (N2) below it, and 02 South (N3).
    static ComPtr<_cNodes> Tree() {
        auto tree = NewNodes();
        for (const auto& [relative, relationship, text, tag] :
             {std::tuple{Missing(), tvwFirst, L"01", L"North"}, std::tuple{Number(1), tvwChild, L"1", L"East"},
              std::tuple{Missing(), tvwFirst, L"02", L"South"}})
            Must(tree->Add(relative, relationship, Arg(text), Arg(tag), ComPtr<_cNode>().Out()));
        return tree;
    }
};

HRESULT Ids(IDispatch* object, std::vector<const wchar_t*> names, std::vector<DISPID>& ids) {
    ids.assign(names.size(), 77);
    return object->GetIDsOfNames(IID_NULL, const_cast<LPOLESTR*>(names.data()), static_cast<UINT>(names.size()),
                                 LOCALE_USER_DEFAULT, ids.data());
}

} // namespace

// --- Names ---

TEST_F(LateBoundTest, NamesInAnyCase) {
    const auto tree = NewNodes();
    EXPECT_EQ(IdOf(tree.Get(), L"Node"), DISPID_VALUE);
    EXPECT_EQ(IdOf(tree.Get(), L"nODE"), DISPID_VALUE);
    EXPECT_EQ(IdOf(tree.Get(), L"conversion"), 8);
}

TEST_F(LateBoundTest, NamesOfParameters) {
    const auto tree = NewNodes();
    std::vector<DISPID> ids;
    EXPECT_EQ(Ids(tree.Get(), {L"Add", L"TAG", L"Relative", L"text"}, ids), S_OK);
    EXPECT_EQ(ids, (std::vector<DISPID>{1, 3, 0, 2}));
}

TEST_F(LateBoundTest, UnknownNames) {
    const auto tree = NewNodes();
    std::vector<DISPID> ids;
    EXPECT_EQ(Ids(tree.Get(), {L"Nod"}, ids), DISP_E_UNKNOWNNAME);
    EXPECT_EQ(ids, (std::vector<DISPID>{DISPID_UNKNOWN}));
    EXPECT_EQ(Ids(tree.Get(), {L"Add", L"Nonsense", L"Tag"}, ids), DISP_E_UNKNOWNNAME);
    EXPECT_EQ(ids, (std::vector<DISPID>{1, DISPID_UNKNOWN, 3}));
    EXPECT_EQ(Ids(tree.Get(), {L"Nod", L"Tag"}, ids), DISP_E_UNKNOWNNAME);
    EXPECT_EQ(ids, (std::vector<DISPID>{DISPID_UNKNOWN, DISPID_UNKNOWN}));
    EXPECT_EQ(Ids(tree.Get(), {L""}, ids), DISP_E_UNKNOWNNAME);
}

TEST_F(LateBoundTest, LibraryInternalMembersHaveNoName) {
    const auto rule = NewRule();
    std::vector<DISPID> ids;
    for (const wchar_t* name : {L"ShowAddBand", L"ShowAddRelation", L"RaiseAddField", L"RaiseDropField", L"AppendBand"})
        EXPECT_EQ(Ids(rule.Get(), {name}, ids), DISP_E_UNKNOWNNAME);
}

// A script that called Release by name would end an object that others still hold.
TEST_F(LateBoundTest, MembersOfTheBaseInterfacesHaveNoName) {
    const auto rule = NewRule();
    const auto names = NewNames();
    std::vector<DISPID> ids;
    for (const wchar_t* name :
         {L"QueryInterface", L"AddRef", L"Release", L"GetTypeInfoCount", L"GetTypeInfo", L"GetIDsOfNames", L"Invoke"}) {
        EXPECT_EQ(Ids(rule.Get(), {name}, ids), DISP_E_UNKNOWNNAME) << testing::PrintToString(String(name));
        EXPECT_EQ(Ids(names.Get(), {name}, ids), DISP_E_UNKNOWNNAME) << testing::PrintToString(String(name));
    }
}

// The ids that type information gives to the seven.
TEST_F(LateBoundTest, MembersOfTheBaseInterfacesCannotBeCalled) {
    const auto tree = NewNodes();
    for (const DISPID first : {0x60000000, 0x60010000})
        for (DISPID id = first; id < first + 4; ++id)
            EXPECT_EQ(Call(tree.Get(), id, AsValue).result, DISP_E_MEMBERNOTFOUND) << std::hex << id;
}

TEST_F(LateBoundTest, NamesAreCheckedArguments) {
    const auto tree = NewNodes();
    auto* name = const_cast<LPOLESTR>(L"Add");
    DISPID id = 0;
    EXPECT_EQ(tree->GetIDsOfNames(IID_IUnknown, &name, 1, LOCALE_USER_DEFAULT, &id), DISP_E_UNKNOWNINTERFACE);
    EXPECT_EQ(tree->GetIDsOfNames(IID_NULL, nullptr, 1, LOCALE_USER_DEFAULT, &id), E_POINTER);
    EXPECT_EQ(tree->GetIDsOfNames(IID_NULL, &name, 1, LOCALE_USER_DEFAULT, nullptr), E_POINTER);
    // The names are the same in every language.
    EXPECT_EQ(tree->GetIDsOfNames(IID_NULL, &name, 1, MAKELCID(MAKELANGID(LANG_GERMAN, 1), 0), &id), S_OK);
    EXPECT_EQ(tree->GetIDsOfNames(IID_NULL, &name, 1, 0xFFFF, &id), S_OK);
}

// --- Calls ---

TEST_F(LateBoundTest, CallsAreCheckedArguments) {
    const auto tree = Tree();
    DISPPARAMS none{};
    const auto invoke = [&](REFIID riid, DISPID id, WORD flags, DISPPARAMS* params) {
        Variant result;
        return tree->Invoke(id, riid, LOCALE_USER_DEFAULT, flags, params, result.Out(), nullptr, nullptr);
    };
    EXPECT_EQ(invoke(IID_IUnknown, 2, AsValue, &none), DISP_E_UNKNOWNINTERFACE);
    EXPECT_EQ(invoke(IID_NULL, 2, AsValue, nullptr), E_POINTER);
    EXPECT_EQ(invoke(IID_NULL, 999, AsValue, &none), DISP_E_MEMBERNOTFOUND);
    EXPECT_EQ(invoke(IID_NULL, 2, DISPATCH_PROPERTYPUT, &none), DISP_E_MEMBERNOTFOUND) << "Count cannot be set";
    EXPECT_EQ(invoke(IID_NULL, DISPID_NEWENUM, AsValue, &none), DISP_E_MEMBERNOTFOUND) << "an ordinary member here";
    DISPPARAMS broken{nullptr, nullptr, 1, 0};
    EXPECT_EQ(invoke(IID_NULL, 2, AsValue, &broken), E_POINTER);
    VARIANT argument = Number(1);
    DISPPARAMS unnamed{&argument, nullptr, 1, 1};
    EXPECT_EQ(invoke(IID_NULL, 0, AsValue, &unnamed), E_POINTER);
    DISPID name = 0;
    DISPPARAMS tooManyNames{&argument, &name, 1, 2};
    EXPECT_EQ(invoke(IID_NULL, 0, AsValue, &tooManyNames), E_INVALIDARG);
    EXPECT_EQ(invoke(IID_NULL, 2, AsValue, &none), S_OK);
}

TEST_F(LateBoundTest, ResultsAndExceptionsMayBeUnwanted) {
    const auto tree = NewNodes();
    DISPPARAMS none{};
    EXPECT_EQ(tree->Invoke(1, IID_NULL, 0, DISPATCH_METHOD, &none, nullptr, nullptr, nullptr), S_OK);
    EXPECT_TRUE(FAILED(tree->Invoke(1, IID_NULL, 0, DISPATCH_METHOD, &none, nullptr, nullptr, nullptr)));
    EXPECT_EQ(Plain(tree, &_cNodes::get_Count), 1);
}

TEST_F(LateBoundTest, PropertiesAreReadByEitherFlagOfAScript) {
    const auto tree = Tree();
    EXPECT_EQ(NumberIn(Call(tree.Get(), 2, DISPATCH_PROPERTYGET)), 3);
    EXPECT_EQ(NumberIn(Call(tree.Get(), 2, AsValue)), 3);
}

TEST_F(LateBoundTest, DefaultMembers) {
    const auto tree = Tree();
    const auto node = Call(tree.Get(), DISPID_VALUE, AsValue, {Number(3)});
    ASSERT_EQ(node.value.Type(), VT_DISPATCH);
    EXPECT_EQ(TextIn(Call(V_DISPATCH(&node.value.Get()), L"Tag")), L"South");
    const auto names = NewNames();
    Must(names->Add(Arg(L"a"), Bstr().Out()));
    EXPECT_EQ(TextIn(Call(names.Get(), DISPID_VALUE, AsValue, {Number(1)})), L"a");
    const auto item = NewList();
    EXPECT_EQ(Call(item.Get(), DISPID_VALUE, AsValue).result, DISP_E_MEMBERNOTFOUND) << "a List has none";
    EXPECT_EQ(Call(NewNode().Get(), DISPID_VALUE, AsValue).result, DISP_E_MEMBERNOTFOUND) << "a cNode has none";
}

TEST_F(LateBoundTest, ArgumentsGoOnToTheDefaultMemberOfTheResult) {
    const auto rule = NewRule();
    Must(Object(rule, &_CodeClass::get_UsrFields)->Add(Arg(L"F1"), nullptr, Arg(L"v"), nullptr, ComPtr<_List>().Out()));
    const auto field = Call(rule.Get(), L"UsrFields", {Arg(L"F1")});
    ASSERT_EQ(field.value.Type(), VT_DISPATCH);
    EXPECT_EQ(TextIn(Call(V_DISPATCH(&field.value.Get()), L"Value")), L"v");
    EXPECT_EQ(Call(rule.Get(), L"UsrFields", {Arg(L"F2")}).failure, InvalidCall);
    EXPECT_EQ(Call(rule.Get(), L"Name", {Arg(L"F2")}).result, DISP_E_BADPARAMCOUNT) << "a text has no members";
    const auto band = NewBand();
    EXPECT_EQ(Call(band.Get(), L"TrackBands", {Number(1)}).failure.code, ObjectNotSet.code)
        << "Nothing has none either";
}

TEST_F(LateBoundTest, OptionalArgumentsLeftOut) {
    const auto tree = NewNodes();
    EXPECT_EQ(Call(tree.Get(), L"Add").failure, Failure{});
    EXPECT_EQ(Call(tree.Get(), L"Add", {Missing(), Missing(), Arg(L"x"), Arg(L"y")}).failure, Failure{});
    EXPECT_EQ(Call(tree.Get(), L"Add", {Variant().Get(), Missing(), Arg(L"z"), Arg(L"z")}).failure, Failure{})
        << "an empty variable of a script";
    EXPECT_EQ(Call(tree.Get(), L"Add", {Reference(nullptr), Missing(), Arg(L"n"), Arg(L"n")}).failure, Failure{})
        << "Nothing";
    EXPECT_EQ(Plain(tree, &_cNodes::get_Count), 4);
    EXPECT_EQ(Call(tree.Get(), L"Remove").result, DISP_E_BADPARAMCOUNT) << "a required argument";
    EXPECT_EQ(Call(tree.Get(), L"Cls", {Number(1)}).result, DISP_E_BADPARAMCOUNT) << "one too many";
}

TEST_F(LateBoundTest, NamedArguments) {
    const auto tree = NewNodes();
    EXPECT_EQ(Call(tree.Get(), L"Add", {}, {{L"Tag", Arg(L"North")}, {L"Text", Arg(L"01")}}).failure, Failure{});
    EXPECT_EQ(
        Call(tree.Get(), L"Add", {Number(1)}, {{L"Relationship", Number(tvwChild)}, {L"Tag", Arg(L"East")}}).failure,
        Failure{});
    ComPtr<_cNode> child;
    Must(tree->get_Node(Number(2), child.Out()));
    EXPECT_EQ(Text(child, &_cNode::get_Tag), L"East");
    EXPECT_EQ(Plain(child, &_cNode::get_Layer), 1);
}

TEST_F(LateBoundTest, ValuesAreConvertedToTheParameter) {
    const auto band = NewBand();
    EXPECT_EQ(Put(band.Get(), L"Style", Arg(L"3")).failure, Failure{});
    EXPECT_EQ(Put(band.Get(), L"Length", Real(4.0)).failure, Failure{});
    EXPECT_EQ(Put(band.Get(), L"Value", Number(1234)).failure, Failure{});
    EXPECT_EQ(Text(band, &_Band::get_Value), L"1234");
    EXPECT_EQ(Put(band.Get(), L"AllowDroped", Number(0)).failure, Failure{});
    EXPECT_EQ(Plain(band, &_Band::get_AllowDroped), VARIANT_FALSE);
    EXPECT_EQ(Put(band.Get(), L"Length", Arg(L"four")).result, DISP_E_TYPEMISMATCH);
    EXPECT_EQ(Put(band.Get(), L"Length", Null()).result, DISP_E_TYPEMISMATCH);
}

TEST_F(LateBoundTest, VariablesForValues) {
    const auto tree = Tree();
    VARIANT position = Number(3);
    const auto node = Call(tree.Get(), L"Node", {ReferenceTo(position)});
    ASSERT_EQ(node.value.Type(), VT_DISPATCH);
    LONG plain = 3;
    VARIANT reference;
    V_VT(&reference) = VT_BYREF | VT_I4;
    V_I4REF(&reference) = &plain;
    EXPECT_EQ(Call(tree.Get(), L"Node", {reference}).failure, Failure{});
    const auto band = NewBand();
    VARIANT style = Number(bsIncreaseNumber);
    EXPECT_EQ(Put(band.Get(), L"Style", ReferenceTo(style)).failure, Failure{});
    EXPECT_EQ(Plain(band, &_Band::get_Style), bsIncreaseNumber);
}

// --- By-reference parameters ---

TEST_F(LateBoundTest, AVariableOfAScriptGetsTheResult) {
    const auto tree = Tree();
    VARIANT style = Number(csCodeToValue);
    Variant value(L"01");
    EXPECT_EQ(TextIn(Call(tree.Get(), L"Conversion", {ReferenceTo(style), ReferenceTo(*value.Out())})), L"N1");
    EXPECT_EQ(ViewOf(V_BSTR(&value.Get())), L"North");
    EXPECT_EQ(V_VT(&style), VT_I4);
    EXPECT_EQ(V_I4(&style), csCodeToValue);
}

TEST_F(LateBoundTest, AVariableThatHoldsAReferenceGetsTheResult) {
    const auto tree = Tree();
    Variant value(L"01");
    VARIANT inner = ReferenceTo(*value.Out());
    EXPECT_EQ(TextIn(Call(tree.Get(), L"Conversion", {Number(0), ReferenceTo(inner)})), L"N1");
    EXPECT_EQ(ViewOf(V_BSTR(&value.Get())), L"North");
    EXPECT_EQ(V_VT(&inner), VT_BYREF | VT_VARIANT);
}

TEST_F(LateBoundTest, AVariableOfAnotherTypeGetsTheResultInItsType) {
    const auto tree = NewNodes();
    Must(tree->Add(Missing(), tvwFirst, Arg(L"7"), Arg(L"12"), ComPtr<_cNode>().Out()));
    VARIANT style;
    SHORT plainStyle = csCodeToValue;
    V_VT(&style) = VT_BYREF | VT_I2;
    V_I2REF(&style) = &plainStyle;
    VARIANT value;
    double plainValue = 7;
    V_VT(&value) = VT_BYREF | VT_R8;
    V_R8REF(&value) = &plainValue;
    EXPECT_EQ(TextIn(Call(tree.Get(), L"Conversion", {style, value})), L"N1");
    EXPECT_EQ(plainValue, 12);
    EXPECT_EQ(plainStyle, csCodeToValue);
}

TEST_F(LateBoundTest, AVariableThatTheMemberLeavesKeepsItsType) {
    const auto rule = NewRule();
    const auto added =
        Call(rule.Get(), L"Add", {Arg(L"N"), Number(bsIncreaseNumber), Number(0), Arg(L"1")}, {{L"Length", Number(2)}});
    ASSERT_EQ(added.failure, Failure{});
    VARIANT code;
    V_VT(&code) = VT_I2;
    V_I2(&code) = 12;
    EXPECT_EQ(Call(rule.Get(), L"ExpCode", {ReferenceTo(code)}).failure, Failure{});
    EXPECT_EQ(V_VT(&code), VT_I2);
    EXPECT_EQ(V_I2(&code), 12);
    const auto names = NewNames();
    EXPECT_EQ(Call(names.Get(), L"ImportNames", {ReferenceTo(code)}).failure, Failure{});
    EXPECT_EQ(V_VT(&code), VT_I2);
    const auto tree = NewNodes();
    Must(tree->Add(Missing(), tvwFirst, Arg(L"12"), Arg(L"12"), ComPtr<_cNode>().Out()));
    VARIANT style;
    V_VT(&style) = VT_I2;
    V_I2(&style) = csCodeToValue;
    EXPECT_EQ(TextIn(Call(tree.Get(), L"Conversion", {ReferenceTo(style), ReferenceTo(code)})), L"N1");
    EXPECT_EQ(V_VT(&style), VT_I2);
    EXPECT_EQ(V_VT(&code), VT_I2) << "the same value again";
}

TEST_F(LateBoundTest, ATypedReferenceGetsTheResult) {
    const auto tree = Tree();
    Bstr text(L"02");
    VARIANT value;
    V_VT(&value) = VT_BYREF | VT_BSTR;
    V_BSTRREF(&value) = text.Out();
    EXPECT_EQ(TextIn(Call(tree.Get(), L"Conversion", {Number(0), value})), L"N3");
    EXPECT_EQ(text.Text(), L"South");
}

TEST_F(LateBoundTest, AValueForAReferenceIsEnough) {
    const auto tree = Tree();
    EXPECT_EQ(TextIn(Call(tree.Get(), L"Conversion", {Number(1), Arg(L"East"), Arg(L"N1")})), L"N2");
    EXPECT_EQ(TextIn(Call(tree.Get(), L"Conversion", {Arg(L"0"), Number(1), Number(1)})), L"N2");
    const auto names = NewNames();
    EXPECT_EQ(Call(names.Get(), L"ImportNames", {Arg(L"a;b")}).failure, Failure{});
    EXPECT_EQ(Plain(names, &_Names::get_Count), 2);
}

TEST_F(LateBoundTest, AFailureLeavesTheVariable) {
    const auto tree = Tree();
    Variant value(L"unknown");
    const auto outcome = Call(tree.Get(), L"Conversion", {Number(0), ReferenceTo(*value.Out())});
    EXPECT_EQ(outcome.failure, NoRelatedRelation);
    EXPECT_EQ(outcome.source, L"Kestrel.cNodes");
    EXPECT_EQ(ViewOf(V_BSTR(&value.Get())), L"unknown");
    VARIANT null = Null();
    EXPECT_EQ(Call(tree.Get(), L"Conversion", {Number(0), ReferenceTo(null)}).result, DISP_E_TYPEMISMATCH);
    EXPECT_EQ(Call(tree.Get(), L"Conversion", {Number(0), Missing()}).result, DISP_E_PARAMNOTOPTIONAL);
}

TEST_F(LateBoundTest, TheFailedArgumentIsNamed) {
    const auto tree = Tree();
    const auto outcome = Call(tree.Get(), L"Conversion", {Arg(L"zero"), Arg(L"01")});
    EXPECT_EQ(outcome.result, DISP_E_TYPEMISMATCH);
    EXPECT_EQ(outcome.failedArgument, 1U) << "counted from the last argument";
}

// --- Objects ---

TEST_F(LateBoundTest, ObjectsByPutAndByReference) {
    const auto rule = NewRule();
    const auto fields = Object(rule, &_CodeClass::get_UsrFields);
    ComPtr<_List> first;
    ComPtr<_List> second;
    Must(fields->Add(Arg(L"F1"), nullptr, nullptr, nullptr, first.Out()));
    Must(fields->Add(Arg(L"F2"), nullptr, nullptr, nullptr, second.Out()));
    const auto added =
        Call(rule.Get(), L"Add", {Arg(L"B")}, {{L"Style", Number(bsUsrField)}, {L"DataField", Reference(first.Get())}});
    ASSERT_EQ(added.failure, Failure{});
    IDispatch* const band = V_DISPATCH(&added.value.Get());
    EXPECT_EQ(Put(band, L"DataField", Reference(second.Get()), DISPATCH_PROPERTYPUTREF).failure, Failure{});
    EXPECT_TRUE(Same(V_DISPATCH(&Call(band, L"DataField").value.Get()), second.Get()));
    EXPECT_EQ(Put(band, L"DataField", Reference(first.Get()), DISPATCH_PROPERTYPUT).failure, Failure{});
    EXPECT_EQ(Put(band, L"DataField", Reference(second.Get()), DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF).failure,
              Failure{});
    EXPECT_TRUE(Same(V_DISPATCH(&Call(band, L"DataField").value.Get()), second.Get()));
    VARIANT variable = Reference(first.Get());
    EXPECT_EQ(Put(band, L"DataField", ReferenceTo(variable), DISPATCH_PROPERTYPUTREF).failure, Failure{});
}

TEST_F(LateBoundTest, AnObjectLeftOut) {
    const auto rule = NewRule();
    for (const VARIANT& none : {Missing(), Reference(nullptr), Variant().Get()})
        EXPECT_EQ(Call(rule.Get(), L"Add", {Arg(L"B"), Number(bsUsrField), Number(0), Arg(L""), none}).failure,
                  InvalidParameter);
    EXPECT_EQ(Call(rule.Get(), L"Add", {Arg(L"A"), Number(bsFixed), Number(0), Arg(L"x"), Variant().Get()}).failure,
              Failure{});
}

TEST_F(LateBoundTest, ForeignObjectsAreRefused) {
    const auto rule = NewRule();
    const auto band = NewBand();
    const auto refused = [&](VARIANT object) {
        return Put(band.Get(), L"DataField", object, DISPATCH_PROPERTYPUTREF).result;
    };
    EXPECT_EQ(refused(Reference(rule.Get())), DISP_E_TYPEMISMATCH);
    EXPECT_EQ(refused(Arg(L"text")), DISP_E_TYPEMISMATCH);
    EXPECT_EQ(refused(Number(0)), DISP_E_TYPEMISMATCH);
}

TEST_F(LateBoundTest, SetReachesAPropertyOfAnyValue) {
    const auto item = NewList();
    const auto rule = NewRule();
    EXPECT_EQ(Put(item.Get(), L"Description", Reference(rule.Get()), DISPATCH_PROPERTYPUTREF).failure, Failure{});
    EXPECT_TRUE(Same(V_DISPATCH(&Call(item.Get(), L"Description").value.Get()), rule.Get()));
    EXPECT_EQ(Put(item.Get(), L"Value", Reference(rule.Get()), DISPATCH_PROPERTYPUTREF).result, DISP_E_MEMBERNOTFOUND);
}

// --- Errors ---

TEST_F(LateBoundTest, AnErrorNamesItsClassAndText) {
    const auto item = NewList();
    const auto outcome = Put(item.Get(), L"ForeignName", Arg(L"  "));
    EXPECT_EQ(outcome.result, DISP_E_EXCEPTION);
    EXPECT_EQ(outcome.failure, InvalidParameter);
    EXPECT_EQ(outcome.source, L"Kestrel.List");
}

TEST_F(LateBoundTest, AnErrorDoesNotShowAnEarlierText) {
    const auto item = NewList();
    EXPECT_EQ(Put(item.Get(), L"ForeignName", Arg(L"")).failure, InvalidParameter);
    const auto tree = NewNodes();
    EXPECT_EQ(tree->Remove(Number(1)), static_cast<HRESULT>(OutOfRange.code));
    EXPECT_EQ(tree->Conversion(nullptr, nullptr, Missing(), Bstr().Out()), E_POINTER);
    EXPECT_EQ(TakenSource(), L"") << "a failure without a text of its own clears the one before";
    EXPECT_EQ(Put(item.Get(), L"ForeignName", Arg(L"x")).failure, Failure{});
    EXPECT_EQ(TakenSource(), L"");
}

// Whichever way a call by IDispatch ends without a text, what an earlier call left on the thread is gone.
TEST_F(LateBoundTest, NoCallLeavesTheErrorObjectOfAnother) {
    const auto band = NewBand();
    const auto sourceAfter = [](const auto& call) {
        LeaveErrorObject();
        call();
        return TakenSource();
    };
    std::vector<DISPID> ids;
    EXPECT_EQ(sourceAfter([] {}), L"a test") << "this test checks something";
    EXPECT_EQ(sourceAfter([&] { EXPECT_EQ(NumberIn(Call(band.Get(), L"Length")), 1); }), L"");
    EXPECT_EQ(sourceAfter([&] { EXPECT_EQ(Put(band.Get(), L"AllowDroped", Number(0)).result, S_OK); }), L"");
    EXPECT_EQ(sourceAfter([&] { EXPECT_EQ(Put(band.Get(), L"Length", Arg(L"x")).result, DISP_E_TYPEMISMATCH); }), L"");
    EXPECT_EQ(sourceAfter([&] { EXPECT_EQ(Call(band.Get(), 4711, AsValue).result, DISP_E_MEMBERNOTFOUND); }), L"");
    EXPECT_EQ(sourceAfter([&] { EXPECT_EQ(Call(band.Get(), L"Name", {Arg(L"x")}).result, DISP_E_BADPARAMCOUNT); }),
              L"");
    EXPECT_EQ(sourceAfter([&] { EXPECT_EQ(Ids(band.Get(), {L"Nonsense"}, ids), DISP_E_UNKNOWNNAME); }), L"");
}

} // namespace kestrel::test
