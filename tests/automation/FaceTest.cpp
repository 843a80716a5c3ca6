// What every object has in common: identity, class information, support of errors, checks of out-pointers.
#include <set>

#include "automation/support/Library.h"
#include "automation/support/Sink.h"

namespace kestrel::test {

namespace {

struct PublicClass {
    const wchar_t* name;
    const CLSID& clsid;
    const IID& iid;
    const IID* events;
};

const PublicClass Classes[] = {
    {L"CodeClass", __uuidof(::CodeClass), __uuidof(_CodeClass), &__uuidof(__CodeClass)},
    {L"Band", __uuidof(::Band), __uuidof(_Band), &__uuidof(__Band)},
    {L"cNodes", __uuidof(::cNodes), __uuidof(_cNodes), &__uuidof(__cNodes)},
    {L"cNode", __uuidof(::cNode), __uuidof(_cNode), nullptr},
    {L"Lists", __uuidof(::Lists), __uuidof(_Lists), &__uuidof(__Lists)},
    {L"List", __uuidof(::List), __uuidof(_List), nullptr},
    {L"Names", __uuidof(::Names), __uuidof(_Names), &__uuidof(__Names)},
};

// One object of the class; Lists come from a rule only.
ComPtr<IDispatch> ObjectOfClass(const PublicClass& kind) {
    if (kind.iid == __uuidof(_Lists)) return Object(NewRule(), &_CodeClass::get_UsrFields).As<IDispatch>();
    ComPtr<IDispatch> object;
    Must(CoCreateInstance(kind.clsid, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch, object.OutVoid()));
    return object;
}

class FaceTest : public ComTest, public testing::WithParamInterface<PublicClass> {
  protected:
    const ComPtr<IDispatch> object = ObjectOfClass(GetParam());
};

std::string NameOf(const testing::TestParamInfo<PublicClass>& info) {
    const String name = info.param.name;
    return std::string(name.begin(), name.end());
}

// Calls a member through its place in the vtable with one null pointer.
HRESULT CallWithNull(IUnknown* object, std::size_t slot) {
    using Method = HRESULT(STDMETHODCALLTYPE*)(IUnknown*, void*);
    return reinterpret_cast<Method>((*reinterpret_cast<void***>(object))[slot])(object, nullptr);
}

} // namespace

INSTANTIATE_TEST_SUITE_P(FaceTest, FaceTest, testing::ValuesIn(Classes), NameOf);

TEST_P(FaceTest, IsOneObjectByEveryInterface) {
    const IID interfaces[] = {IID_IUnknown,          IID_IDispatch,         GetParam().iid,
                              IID_ISupportErrorInfo, IID_IProvideClassInfo, IID_IProvideClassInfo2};
    for (const IID& from : interfaces) {
        ComPtr<IUnknown> first;
        ASSERT_EQ(object->QueryInterface(from, first.OutVoid()), S_OK);
        for (const IID& to : interfaces) {
            ComPtr<IUnknown> second;
            ASSERT_EQ(first->QueryInterface(to, second.OutVoid()), S_OK);
            EXPECT_TRUE(Same(second.Get(), object.Get()));
        }
    }
}

TEST_P(FaceTest, RefusesInterfacesThatItHasNot) {
    void* other = this;
    EXPECT_EQ(object->QueryInterface(IID_IPersist, &other), E_NOINTERFACE);
    EXPECT_EQ(other, nullptr);
    EXPECT_EQ(object->QueryInterface(IID_IUnknown, nullptr), E_POINTER);
    const bool hasPoints = static_cast<bool>(object.As<IConnectionPointContainer>());
    EXPECT_EQ(hasPoints, GetParam().events != nullptr);
}

TEST_P(FaceTest, DescribesItsClass) {
    const auto provider = object.As<IProvideClassInfo2>();
    ComPtr<ITypeInfo> info;
    ASSERT_EQ(provider->GetClassInfo(info.Out()), S_OK);
    TYPEATTR* attributes = nullptr;
    Must(info->GetTypeAttr(&attributes));
    EXPECT_EQ(attributes->guid, GetParam().clsid);
    EXPECT_EQ(attributes->typekind, TKIND_COCLASS);
    info->ReleaseTypeAttr(attributes);
    EXPECT_EQ(provider->GetClassInfo(nullptr), E_POINTER);
}

TEST_P(FaceTest, NamesItsEvents) {
    const auto provider = object.As<IProvideClassInfo2>();
    GUID events = IID_IUnknown;
    if (GetParam().events != nullptr) {
        EXPECT_EQ(provider->GetGUID(GUIDKIND_DEFAULT_SOURCE_DISP_IID, &events), S_OK);
        EXPECT_EQ(events, *GetParam().events);
    } else {
        EXPECT_EQ(provider->GetGUID(GUIDKIND_DEFAULT_SOURCE_DISP_IID, &events), E_NOINTERFACE);
        EXPECT_EQ(events, GUID_NULL);
    }
    EXPECT_EQ(provider->GetGUID(GUIDKIND_DEFAULT_SOURCE_DISP_IID + 1, &events), E_INVALIDARG);
    EXPECT_EQ(provider->GetGUID(GUIDKIND_DEFAULT_SOURCE_DISP_IID, nullptr), E_POINTER);
}

TEST_P(FaceTest, SupportsErrorInformationForItsInterface) {
    const auto support = object.As<ISupportErrorInfo>();
    EXPECT_EQ(support->InterfaceSupportsErrorInfo(GetParam().iid), S_OK);
    EXPECT_EQ(support->InterfaceSupportsErrorInfo(IID_IProvideClassInfo), S_FALSE);
}

TEST_P(FaceTest, GivesItsTypeInformation) {
    UINT count = 0;
    EXPECT_EQ(object->GetTypeInfoCount(&count), S_OK);
    EXPECT_EQ(count, 1U);
    EXPECT_EQ(object->GetTypeInfoCount(nullptr), E_POINTER);
    ComPtr<ITypeInfo> info;
    ASSERT_EQ(object->GetTypeInfo(0, LOCALE_USER_DEFAULT, info.Out()), S_OK);
    TYPEATTR* attributes = nullptr;
    Must(info->GetTypeAttr(&attributes));
    EXPECT_EQ(attributes->guid, GetParam().iid);
    info->ReleaseTypeAttr(attributes);
    auto* none = reinterpret_cast<ITypeInfo*>(this);
    EXPECT_EQ(object->GetTypeInfo(1, LOCALE_USER_DEFAULT, &none), DISP_E_BADINDEX);
    EXPECT_EQ(none, nullptr);
    EXPECT_EQ(object->GetTypeInfo(0, LOCALE_USER_DEFAULT, nullptr), E_POINTER);
}

TEST_P(FaceTest, EveryReadPropertyChecksItsPointer) {
    ComPtr<ITypeInfo> late;
    Must(object->GetTypeInfo(0, LOCALE_USER_DEFAULT, late.Out()));
    HREFTYPE reference = 0;
    ComPtr<ITypeInfo> early;
    Must(late->GetRefTypeOfImplType(static_cast<UINT>(-1), &reference));
    Must(late->GetRefTypeInfo(reference, early.Out()));
    TYPEATTR* attributes = nullptr;
    Must(early->GetTypeAttr(&attributes));
    ComPtr<IUnknown> direct;
    Must(object->QueryInterface(GetParam().iid, direct.OutVoid()));
    int checked = 0;
    for (UINT i = 0; i < attributes->cFuncs; ++i) {
        FUNCDESC* function = nullptr;
        Must(early->GetFuncDesc(i, &function));
        if (function->invkind == INVOKE_PROPERTYGET && function->cParams == 1) {
            EXPECT_EQ(CallWithNull(direct.Get(), static_cast<std::size_t>(function->oVft) / sizeof(void*)), E_POINTER)
                << "slot " << function->oVft / static_cast<SHORT>(sizeof(void*));
            ++checked;
        }
        early->ReleaseFuncDesc(function);
    }
    early->ReleaseTypeAttr(attributes);
    EXPECT_GT(checked, 0);
}

class FaceTestIdentity : public ComTest {};

TEST_F(FaceTestIdentity, AnObjectIsTheSameAsLongAsSomebodyHoldsIt) {
    const auto rule = NewRule();
    const auto fields = Object(rule, &_CodeClass::get_UsrFields);
    EXPECT_EQ(fields.Get(), Object(rule, &_CodeClass::get_UsrFields).Get());
    ComPtr<_List> item;
    Must(fields->Add(Arg(L"F"), nullptr, nullptr, nullptr, item.Out()));
    ComPtr<_List> again;
    Must(fields->get_Item(Arg(L"F"), again.Out()));
    EXPECT_EQ(item.Get(), again.Get());
}

TEST_F(FaceTestIdentity, WhatNobodyHoldsKeepsItsState) {
    const auto rule = NewRule();
    Must(Object(rule, &_CodeClass::get_UsrFields)->Add(Arg(L"F"), nullptr, Arg(L"1"), nullptr, ComPtr<_List>().Out()));
    ComPtr<_List> item;
    Must(Object(rule, &_CodeClass::get_UsrFields)->get_Item(Number(1), item.Out()));
    EXPECT_EQ(Text(item, &_List::get_Value), L"1");
}

TEST_F(FaceTestIdentity, AChildOutlivesItsOwner) {
    auto rule = NewRule();
    const auto fields = Object(rule, &_CodeClass::get_UsrFields);
    const auto tree = Object(rule, &_CodeClass::get_Relations);
    rule = {};
    EXPECT_DONE(fields->Add(Arg(L"F"), nullptr, nullptr, nullptr, ComPtr<_List>().Out()));
    EXPECT_EQ(Plain(fields, &_Lists::get_Count), 1);
    EXPECT_EQ(Plain(tree, &_cNodes::get_Count), 0);
}

} // namespace kestrel::test
