#include "automation/support/TypeLibraryDump.h"

#include <functional>
#include <sstream>

#include "automation/support/Com.h"

namespace kestrel::test {

namespace {

std::string Narrow(BSTR text) {
    const StringView view = ViewOf(text);
    std::string narrow(view.size() * 3, '\0');
    const int size = WideCharToMultiByte(CP_UTF8, 0, view.data(), static_cast<int>(view.size()), narrow.data(),
                                         static_cast<int>(narrow.size()), nullptr, nullptr);
    narrow.resize(static_cast<std::size_t>(size));
    return narrow;
}

std::string GuidText(const GUID& guid) {
    wchar_t text[40];
    StringFromGUID2(guid, text, 40);
    return Narrow(Bstr(text).Get());
}

struct Documentation {
    std::string name;
    std::string help;
};

Documentation DocumentationOf(ITypeInfo& info, MEMBERID member) {
    Bstr name;
    Bstr help;
    Must(info.GetDocumentation(member, name.Out(), help.Out(), nullptr, nullptr));
    return {Narrow(name.Get()), Narrow(help.Get())};
}

std::string Quoted(const std::string& help) { return help.empty() ? "" : "  // " + help; }

std::string TypeName(ITypeInfo& info, const TYPEDESC& type);

// The name of the type, or of the one that it is an alias of.
std::string NameBehindAliases(ITypeInfo& info) {
    TYPEATTR* attributes = nullptr;
    Must(info.GetTypeAttr(&attributes));
    auto name = attributes->typekind == TKIND_ALIAS ? TypeName(info, attributes->tdescAlias)
                                                    : DocumentationOf(info, MEMBERID_NIL).name;
    info.ReleaseTypeAttr(attributes);
    return name;
}

std::string TypeName(ITypeInfo& info, const TYPEDESC& type) {
    switch (type.vt) {
    case VT_PTR: return TypeName(info, *type.lptdesc) + "*";
    case VT_USERDEFINED: {
        ComPtr<ITypeInfo> referred;
        Must(info.GetRefTypeInfo(type.hreftype, referred.Out()));
        return NameBehindAliases(*referred.Get());
    }
    case VT_BSTR: return "BSTR";
    case VT_VARIANT: return "VARIANT";
    case VT_BOOL: return "VARIANT_BOOL";
    case VT_I4: return "long";
    case VT_INT: return "int";
    case VT_DATE: return "DATE";
    case VT_HRESULT: return "HRESULT";
    case VT_VOID: return "void";
    case VT_UNKNOWN: return "IUnknown*";
    case VT_DISPATCH: return "IDispatch*";
    default: return "VT_" + std::to_string(type.vt);
    }
}

std::string ValueText(const VARIANT& value) {
    if (V_VT(&value) == VT_BSTR) return "\"" + Narrow(V_BSTR(&value)) + "\"";
    if (V_VT(&value) == VT_I4) return std::to_string(V_I4(&value));
    return "VT_" + std::to_string(V_VT(&value)) + ":" + std::to_string(V_I4(&value));
}

std::string FlagText(const PARAMDESC& description) {
    std::string text;
    const auto add = [&](USHORT flag, const char* name) {
        if ((description.wParamFlags & flag) != 0) text += (text.empty() ? "" : ", ") + std::string(name);
    };
    add(PARAMFLAG_FIN, "in");
    add(PARAMFLAG_FOUT, "out");
    add(PARAMFLAG_FRETVAL, "retval");
    add(PARAMFLAG_FOPT, "optional");
    if ((description.wParamFlags & PARAMFLAG_FHASDEFAULT) != 0)
        text += ", default " + ValueText(description.pparamdescex->varDefaultValue);
    return "[" + text + "] ";
}

const char* KindText(INVOKEKIND kind) {
    switch (kind) {
    case INVOKE_FUNC: return "method";
    case INVOKE_PROPERTYGET: return "get";
    case INVOKE_PROPERTYPUT: return "put";
    case INVOKE_PROPERTYPUTREF: return "putref";
    }
    return "?";
}

void DumpFunction(ITypeInfo& info, const FUNCDESC& function, std::ostream& out) {
    std::vector<BSTR> raw(static_cast<std::size_t>(function.cParams) + 1, nullptr);
    UINT count = 0;
    Must(info.GetNames(function.memid, raw.data(), static_cast<UINT>(raw.size()), &count));
    std::vector<Bstr> names(raw.size());
    for (std::size_t i = 0; i < raw.size(); ++i)
        *names[i].Out() = raw[i];
    out << "  " << KindText(function.invkind) << " id " << function.memid;
    if (function.funckind != FUNC_DISPATCH) out << " slot " << static_cast<unsigned>(function.oVft) / sizeof(void*);
    if ((function.wFuncFlags & FUNCFLAG_FHIDDEN) != 0) out << " hidden";
    if (const auto others = function.wFuncFlags & ~FUNCFLAG_FHIDDEN; others != 0) out << " flags " << others;
    out << " " << TypeName(info, function.elemdescFunc.tdesc) << " " << Narrow(names[0].Get()) << "(";
    for (std::size_t i = 0; i < static_cast<std::size_t>(function.cParams); ++i) {
        const ELEMDESC& parameter = function.lprgelemdescParam[i];
        out << (i == 0 ? "" : ", ") << FlagText(parameter.paramdesc) << TypeName(info, parameter.tdesc);
        // The right side of a put has no name of its own: the names come from the get of the same id.
        const bool rightSide = (function.invkind & (INVOKE_PROPERTYPUT | INVOKE_PROPERTYPUTREF)) != 0;
        if (!rightSide) out << " " << Narrow(names[i + 1].Get());
    }
    out << ")" << Quoted(DocumentationOf(info, function.memid).help) << "\n";
}

void DumpFunctions(ITypeInfo& info, const TYPEATTR& attributes, std::ostream& out) {
    for (UINT i = 0; i < attributes.cFuncs; ++i) {
        FUNCDESC* function = nullptr;
        Must(info.GetFuncDesc(i, &function));
        DumpFunction(info, *function, out);
        info.ReleaseFuncDesc(function);
    }
}

void DumpConstants(ITypeInfo& info, const TYPEATTR& attributes, std::ostream& out) {
    for (UINT i = 0; i < attributes.cVars; ++i) {
        VARDESC* variable = nullptr;
        Must(info.GetVarDesc(i, &variable));
        out << "  " << DocumentationOf(info, variable->memid).name << " = " << ValueText(*variable->lpvarValue) << "\n";
        info.ReleaseVarDesc(variable);
    }
}

void DumpImplemented(ITypeInfo& info, const TYPEATTR& attributes, std::ostream& out) {
    for (UINT i = 0; i < attributes.cImplTypes; ++i) {
        HREFTYPE reference = 0;
        INT flags = 0;
        ComPtr<ITypeInfo> implemented;
        Must(info.GetRefTypeOfImplType(i, &reference));
        Must(info.GetImplTypeFlags(i, &flags));
        Must(info.GetRefTypeInfo(reference, implemented.Out()));
        out << "  " << ((flags & IMPLTYPEFLAG_FDEFAULT) != 0 ? "default " : "")
            << ((flags & IMPLTYPEFLAG_FSOURCE) != 0 ? "source " : "") << "interface "
            << DocumentationOf(*implemented.Get(), MEMBERID_NIL).name << "\n";
    }
}

// The view of a dual interface that early-bound callers use; nothing for any other type.
ComPtr<ITypeInfo> EarlyBoundView(ITypeInfo& info, const TYPEATTR& attributes) {
    ComPtr<ITypeInfo> early;
    HREFTYPE reference = 0;
    if ((attributes.wTypeFlags & TYPEFLAG_FDUAL) != 0 &&
        SUCCEEDED(info.GetRefTypeOfImplType(static_cast<UINT>(-1), &reference)))
        Must(info.GetRefTypeInfo(reference, early.Out()));
    return early;
}

void DumpFlags(WORD flags, std::ostream& out) {
    const auto show = [&](WORD flag, const char* name) {
        if ((flags & flag) != 0) out << " " << name;
    };
    show(TYPEFLAG_FDUAL, "dual");
    show(TYPEFLAG_FOLEAUTOMATION, "oleautomation");
    show(TYPEFLAG_FDISPATCHABLE, "dispatchable");
    show(TYPEFLAG_FCANCREATE, "creatable");
    show(TYPEFLAG_FHIDDEN, "hidden");
    show(TYPEFLAG_FNONEXTENSIBLE, "nonextensible");
}

void DumpType(ITypeInfo& info, std::ostream& out) {
    static const char* const kinds[] = {"enum",          "record",  "module", "interface",
                                        "dispinterface", "coclass", "alias",  "union"};
    TYPEATTR* attributes = nullptr;
    Must(info.GetTypeAttr(&attributes));
    const auto [name, help] = DocumentationOf(info, MEMBERID_NIL);
    const auto early = EarlyBoundView(info, *attributes);
    out << "\n"
        << (early ? "dual interface" : kinds[attributes->typekind]) << " " << name << " " << GuidText(attributes->guid);
    if (attributes->typekind == TKIND_ALIAS) out << " of " << TypeName(info, attributes->tdescAlias);
    DumpFlags(attributes->wTypeFlags, out);
    out << Quoted(help) << "\n";
    if (attributes->typekind == TKIND_COCLASS) DumpImplemented(info, *attributes, out);
    DumpConstants(info, *attributes, out);
    if (early) {
        TYPEATTR* earlyAttributes = nullptr;
        Must(early->GetTypeAttr(&earlyAttributes));
        out << "  early-bound";
        DumpFlags(earlyAttributes->wTypeFlags, out);
        out << "\n";
        DumpFunctions(*early.Get(), *earlyAttributes, out);
        early->ReleaseTypeAttr(earlyAttributes);
    } else {
        DumpFunctions(info, *attributes, out);
    }
    info.ReleaseTypeAttr(attributes);
}

} // namespace

std::string Dump(ITypeLib& library) {
    std::ostringstream out;
    TLIBATTR* attributes = nullptr;
    Must(library.GetLibAttr(&attributes));
    Bstr name;
    Bstr help;
    Must(library.GetDocumentation(-1, name.Out(), help.Out(), nullptr, nullptr));
    out << "library " << Narrow(name.Get()) << " " << GuidText(attributes->guid) << " version "
        << attributes->wMajorVerNum << "." << attributes->wMinorVerNum << " language " << attributes->lcid
        << Quoted(Narrow(help.Get())) << "\n";
    library.ReleaseTLibAttr(attributes);
    for (UINT i = 0; i < library.GetTypeInfoCount(); ++i) {
        ComPtr<ITypeInfo> info;
        Must(library.GetTypeInfo(i, info.Out()));
        DumpType(*info.Get(), out);
    }
    return out.str();
}

} // namespace kestrel::test
