// The entry points and class factories.
#include "automation/support/Library.h"

namespace kestrel::test {

namespace {

class ServerTest : public ComTest {
  protected:
    ComPtr<IClassFactory> FactoryOf(REFCLSID clsid) {
        ComPtr<IClassFactory> factory;
        Must(library.GetClassObject(clsid, IID_IClassFactory, factory.OutVoid()));
        return factory;
    }

    LoadedLibrary library{LibraryPath()};
};

const CLSID* const Creatable[] = {&__uuidof(::CodeClass), &__uuidof(::Band), &__uuidof(::cNodes),
                                  &__uuidof(::cNode),     &__uuidof(::List), &__uuidof(::Names)};

} // namespace

TEST_F(ServerTest, MakesEveryClassButLists) {
    for (const CLSID* clsid : Creatable) {
        ComPtr<IDispatch> object;
        EXPECT_EQ(FactoryOf(*clsid)->CreateInstance(nullptr, IID_IDispatch, object.OutVoid()), S_OK);
        EXPECT_TRUE(object);
    }
    ComPtr<IClassFactory> factory;
    EXPECT_EQ(library.GetClassObject(__uuidof(::Lists), IID_IClassFactory, factory.OutVoid()),
              CLASS_E_CLASSNOTAVAILABLE);
    EXPECT_FALSE(factory);
}

TEST_F(ServerTest, RefusesWhatItDoesNotServe) {
    void* object = this;
    EXPECT_EQ(library.GetClassObject(IID_IUnknown, IID_IClassFactory, &object), CLASS_E_CLASSNOTAVAILABLE);
    EXPECT_EQ(object, nullptr);
    EXPECT_EQ(library.GetClassObject(__uuidof(::List), IID_IClassFactory, nullptr), E_POINTER);
    object = this;
    EXPECT_EQ(library.GetClassObject(__uuidof(::List), IID_IPersist, &object), E_NOINTERFACE);
    EXPECT_EQ(object, nullptr);
}

TEST_F(ServerTest, FactoryChecksItsArguments) {
    const auto factory = FactoryOf(__uuidof(::List));
    EXPECT_EQ(factory->CreateInstance(nullptr, IID_IDispatch, nullptr), E_POINTER);
    void* object = this;
    EXPECT_EQ(factory->CreateInstance(factory.Get(), IID_IUnknown, &object), CLASS_E_NOAGGREGATION);
    EXPECT_EQ(object, nullptr);
    object = this;
    EXPECT_EQ(factory->CreateInstance(nullptr, IID_IPersist, &object), E_NOINTERFACE);
    EXPECT_EQ(object, nullptr);
}

// Development tools offer to register only what says so.
TEST_F(ServerTest, SaysThatItRegistersItself) {
    const HRSRC version = FindResourceW(library.Module(), MAKEINTRESOURCEW(VS_VERSION_INFO), RT_VERSION);
    ASSERT_NE(version, nullptr);
    const auto* start = static_cast<const wchar_t*>(LockResource(LoadResource(library.Module(), version)));
    const StringView block(start, SizeofResource(library.Module(), version) / sizeof(wchar_t));
    EXPECT_NE(block.find(StringView(L"OLESelfRegister\0", 16)), StringView::npos);
}

TEST_F(ServerTest, StaysWhileAnythingOfItLives) {
    EXPECT_EQ(library.CanUnloadNow(), S_OK);
    auto factory = FactoryOf(__uuidof(::CodeClass));
    EXPECT_EQ(library.CanUnloadNow(), S_FALSE);
    EXPECT_EQ(factory->LockServer(TRUE), S_OK);
    ComPtr<_CodeClass> rule;
    Must(factory->CreateInstance(nullptr, __uuidof(_CodeClass), rule.OutVoid()));
    EXPECT_EQ(factory->LockServer(FALSE), S_OK);
    factory = {};
    EXPECT_EQ(library.CanUnloadNow(), S_FALSE);
    auto fields = Object(rule, &_CodeClass::get_UsrFields);
    rule = {};
    EXPECT_EQ(library.CanUnloadNow(), S_FALSE);
    auto enumerator = Object(fields, &_Lists::get_NewEnum);
    fields = {};
    EXPECT_EQ(library.CanUnloadNow(), S_FALSE);
    enumerator = {};
    EXPECT_EQ(library.CanUnloadNow(), S_OK);
}

TEST_F(ServerTest, LockAloneKeepsIt) {
    FactoryOf(__uuidof(::Names))->LockServer(TRUE);
    EXPECT_EQ(library.CanUnloadNow(), S_FALSE);
    FactoryOf(__uuidof(::Names))->LockServer(FALSE);
    EXPECT_EQ(library.CanUnloadNow(), S_OK);
}

TEST_F(ServerTest, ListsIsNoClassThatCanBeCreatedByName) {
    CLSID clsid{};
    EXPECT_TRUE(FAILED(CLSIDFromProgID(L"Kestrel.Lists", &clsid)));
    ComPtr<IUnknown> object;
    EXPECT_EQ(CoCreateInstance(__uuidof(::Lists), nullptr, CLSCTX_INPROC_SERVER, IID_IUnknown, object.OutVoid()),
              REGDB_E_CLASSNOTREG);
}

TEST_F(ServerTest, ProgramNamesLeadToTheClasses) {
    const std::pair<const wchar_t*, const CLSID*> names[] = {
        {L"Kestrel.CodeClass", &__uuidof(::CodeClass)}, {L"Kestrel.CodeClass.1", &__uuidof(::CodeClass)},
        {L"Kestrel.Band", &__uuidof(::Band)},           {L"Kestrel.Band.1", &__uuidof(::Band)},
        {L"Kestrel.cNodes", &__uuidof(::cNodes)},       {L"Kestrel.cNodes.1", &__uuidof(::cNodes)},
        {L"Kestrel.cNode", &__uuidof(::cNode)},         {L"Kestrel.cNode.1", &__uuidof(::cNode)},
        {L"Kestrel.List", &__uuidof(::List)},           {L"Kestrel.List.1", &__uuidof(::List)},
        {L"Kestrel.Names", &__uuidof(::Names)},         {L"Kestrel.Names.1", &__uuidof(::Names)}};
    for (const auto& [name, expected] : names) {
        CLSID clsid{};
        EXPECT_EQ(CLSIDFromProgID(name, &clsid), S_OK) << testing::PrintToString(String(name));
        EXPECT_EQ(clsid, *expected) << testing::PrintToString(String(name));
    }
}

} // namespace kestrel::test
