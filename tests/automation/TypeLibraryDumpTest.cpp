// Types by other names, which the component's own type library does not hold, but another compiler's would.
#include "automation/support/TypeLibraryDump.h"
#include "automation/support/Com.h"

namespace kestrel::test {

namespace {

// A type library in memory, made as a compiler makes it; it never becomes a file.
class MadeLibrary {
  public:
    MadeLibrary() { Must(CreateTypeLib2(SYS_WIN32, L"made.tlb", mvarLibrary.Out())); }

    ComPtr<ICreateTypeInfo> Add(TYPEKIND kind, const wchar_t* name) {
        ComPtr<ICreateTypeInfo> type;
        Must(mvarLibrary->CreateTypeInfo(const_cast<LPOLESTR>(name), kind, type.Out())); // only read
        return type;
    }
    ComPtr<ICreateTypeInfo> AddAlias(const wchar_t* name, TYPEDESC of, const ComPtr<ICreateTypeInfo>& referred = {}) {
        auto alias = Add(TKIND_ALIAS, name);
        if (referred) of = Use(alias, referred);
        Must(alias->SetTypeDescAlias(&of));
        return alias;
    }
    // How `user` refers to another type of the library.
    static TYPEDESC Use(const ComPtr<ICreateTypeInfo>& user, const ComPtr<ICreateTypeInfo>& type) {
        TYPEDESC use{};
        use.vt = VT_USERDEFINED;
        Must(user->AddRefTypeInfo(type.As<ITypeInfo>().Get(), &use.hreftype));
        return use;
    }
    [[nodiscard]] ComPtr<ITypeLib> Library() const { return mvarLibrary.As<ITypeLib>(); }

  private:
    ComPtr<ICreateTypeLib2> mvarLibrary;
};

TYPEDESC PlainType(VARTYPE type) {
    TYPEDESC description{};
    description.vt = type;
    return description;
}

ELEMDESC Input(TYPEDESC type) {
    ELEMDESC element{};
    element.tdesc = type;
    element.paramdesc.wParamFlags = PARAMFLAG_FIN;
    return element;
}

// Paint(shade, tone, written, words, helper): an alias of an enumeration, an alias of that, a reference to it, an alias
// of a plain type, and an alias of a pointer to an object.
class TypeLibraryDumpTest : public ComTest {
  protected:
    TypeLibraryDumpTest() {
        const auto colours = made.Add(TKIND_ENUM, L"Colours");
        const auto shades = made.AddAlias(L"Shades", {}, colours);
        const auto tones = made.AddAlias(L"Tones", {}, shades);
        const auto words = made.AddAlias(L"Words", PlainType(VT_BSTR));
        const auto painters = made.Add(TKIND_INTERFACE, L"Painters");
        const auto painter = made.Add(TKIND_ALIAS, L"Painter");
        TYPEDESC object = MadeLibrary::Use(painter, painters);
        TYPEDESC pointer = PlainType(VT_PTR);
        pointer.lptdesc = &object;
        Must(painter->SetTypeDescAlias(&pointer));
        Must(painters->SetGuid(Painters));

        TYPEDESC tone = MadeLibrary::Use(painters, tones);
        TYPEDESC reference = PlainType(VT_PTR);
        reference.lptdesc = &tone;
        ELEMDESC parameters[] = {Input(MadeLibrary::Use(painters, shades)), Input(tone), Input(reference),
                                 Input(MadeLibrary::Use(painters, words)), Input(MadeLibrary::Use(painters, painter))};
        FUNCDESC function{};
        function.memid = 1;
        function.funckind = FUNC_PUREVIRTUAL;
        function.invkind = INVOKE_FUNC;
        function.callconv = CC_STDCALL;
        function.elemdescFunc.tdesc = PlainType(VT_VOID);
        function.cParams = static_cast<SHORT>(std::size(parameters));
        function.lprgelemdescParam = parameters;
        Must(painters->AddFuncDesc(0, &function));
        std::array<const wchar_t*, 6> names{L"Paint", L"shade", L"tone", L"written", L"words", L"helper"};
        Must(painters->SetFuncAndParamNames(0, const_cast<LPOLESTR*>(names.data()), 6)); // only read
    }

    static constexpr GUID Painters{0x5FCF66A2, 0x4BF4, 0x4628, {0xAC, 0x4C, 0x29, 0xA5, 0x9E, 0x8E, 0x09, 0xEF}};
    MadeLibrary made;
};

} // namespace

TEST_F(TypeLibraryDumpTest, NamesWhatIsBehindAliases) {
    const std::string dump = Dump(*made.Library().Get());
    EXPECT_NE(dump.find("Paint([in] Colours shade, [in] Colours tone, [in] Colours* written, [in] BSTR words, "
                        "[in] Painters* helper)"),
              std::string::npos)
        << dump;
    EXPECT_NE(dump.find("alias Shades {00000000-0000-0000-0000-000000000000} of Colours"), std::string::npos) << dump;
}

} // namespace kestrel::test
