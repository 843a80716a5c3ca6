// Every member, called late-bound by the component's own Invoke and by the platform's ITypeInfo::Invoke with every kind
// of argument: same result code, same failure, same failed argument, same answer, same variables afterwards.
//
// Two objects in the same state take the two calls, so that neither call sees what the other did.
#include <algorithm>
#include <functional>
#include <iterator>
#include <memory>
#include <ostream>

#include "automation/support/Late.h"

namespace kestrel::test {

namespace {

// --- The objects ---

struct Subject {
    const char* name;
    std::function<ComPtr<IDispatch>()> make; // what it returns keeps all that it needs
};

ComPtr<_cNodes> Tree() {
    auto tree = NewNodes();
    for (const wchar_t* code : {L"1", L"2", L"3"})
        Must(tree->Add(Missing(), tvwFirst, Arg(code), Arg(code), ComPtr<_cNode>().Out()));
    return tree;
}

// The bands A, a fixed text, and B, a number; a user field F. Nothing tracks another: removing asks no one.
ComPtr<_CodeClass> Rule() {
    auto rule = NewRule();
    Must(Object(rule, &_CodeClass::get_UsrFields)->Add(Arg(L"F"), nullptr, Arg(L"1"), nullptr, ComPtr<_List>().Out()));
    ComPtr<_Band> band;
    Must(rule->Add(Arg(L"A"), bsFixed, smNoneSwap, Arg(L"x"), nullptr, Missing(), nullptr, Missing(), Missing(),
                   band.Out()));
    ComPtr<_Band> number;
    Must(rule->Add(Arg(L"B"), bsIncreaseNumber, smNoneSwap, Arg(L"1"), nullptr, Number(1), nullptr, Missing(),
                   Missing(), number.Out()));
    return rule;
}

// The rules and trees whose parts a test calls: a part alone would lose them.
std::vector<ComPtr<IUnknown>>& Owners() {
    static std::vector<ComPtr<IUnknown>> owners;
    return owners;
}

template <class Owner, class Part>
ComPtr<IDispatch> PartOf(const ComPtr<Owner>& owner, const ComPtr<Part>& part) {
    Owners().push_back(owner.template As<IUnknown>());
    return part.template As<IDispatch>();
}

const std::vector<Subject>& Subjects() {
    static const std::vector<Subject> subjects{
        {"CodeClass", [] { return Rule().As<IDispatch>(); }},
        {"Band",
         [] {
             const auto rule = Rule();
             ComPtr<_Band> band;
             Must(rule->get_Band(Number(2), band.Out()));
             return PartOf(rule, band);
         }},
        {"cNodes", [] { return Tree().As<IDispatch>(); }},
        {"cNode",
         [] {
             const auto tree = Tree();
             ComPtr<_cNode> node;
             Must(tree->get_Node(Number(1), node.Out()));
             return PartOf(tree, node);
         }},
        {"Lists",
         [] {
             const auto rule = Rule();
             return PartOf(rule, Object(rule, &_CodeClass::get_UsrFields));
         }},
        {"List", [] { return NewList().As<IDispatch>(); }},
        {"Names",
         [] {
             const auto names = NewNames();
             Must(names->Add(Arg(L"1"), Bstr().Out()));
             return names.As<IDispatch>();
         }},
    };
    return subjects;
}

// --- The members ---

struct MemberFacts {
    DISPID id = 0;
    INVOKEKIND kind = INVOKE_FUNC;
    String name;
    std::vector<VARTYPE> parameters; // VT_DISPATCH for an object, VT_I4 for an enumeration
    std::vector<bool> byReference;
};

VARTYPE PlainType(ITypeInfo& info, const TYPEDESC& type) {
    if (type.vt != VT_USERDEFINED) return type.vt;
    ComPtr<ITypeInfo> referred;
    Must(info.GetRefTypeInfo(type.hreftype, referred.Out()));
    TYPEATTR* attributes = nullptr;
    Must(referred->GetTypeAttr(&attributes));
    const bool isEnumeration = attributes->typekind == TKIND_ENUM;
    referred->ReleaseTypeAttr(attributes);
    return isEnumeration ? VT_I4 : VT_DISPATCH;
}

void AddParameter(ITypeInfo& info, const ELEMDESC& element, MemberFacts& member) {
    if ((element.paramdesc.wParamFlags & PARAMFLAG_FRETVAL) != 0) return;
    const bool isPointer = element.tdesc.vt == VT_PTR;
    const VARTYPE type = PlainType(info, isPointer ? *element.tdesc.lptdesc : element.tdesc);
    member.parameters.push_back(type);
    member.byReference.push_back(isPointer && type != VT_DISPATCH);
}

std::vector<MemberFacts> MembersOf(ITypeInfo& info) {
    std::vector<MemberFacts> members;
    FUNCDESC* function = nullptr;
    for (UINT i = 0; SUCCEEDED(info.GetFuncDesc(i, &function)); ++i) {
        if ((function->wFuncFlags & FUNCFLAG_FRESTRICTED) == 0) {
            Bstr name;
            UINT count = 0;
            Must(info.GetNames(function->memid, name.Out(), 1, &count));
            MemberFacts member{function->memid, function->invkind, name.Text(), {}, {}};
            for (SHORT p = 0; p < function->cParams; ++p)
                AddParameter(info, function->lprgelemdescParam[p], member);
            members.push_back(std::move(member));
        }
        info.ReleaseFuncDesc(function);
    }
    return members;
}

// These show a window or a box when their arguments fit.
bool OpensAWindow(const MemberFacts& member) { return member.name == L"Save" || member.name.rfind(L"Show", 0) == 0; }

bool IsPut(const MemberFacts& member) { return (member.kind & (INVOKE_PROPERTYPUT | INVOKE_PROPERTYPUTREF)) != 0; }

// --- The arguments ---

// One argument with all that it refers to.
class Value {
  public:
    enum class Kind { Fitting, OtherType, Unfitting, Reference, Missing, Empty, Text };

    Value(Kind kind, VARTYPE type) {
        switch (kind) {
        case Kind::Fitting: Fit(type); break;
        case Kind::OtherType: Set(type == VT_BSTR ? Number(1) : type == VT_BOOL ? Number(-1) : Real(1)); break;
        case Kind::Unfitting: Set(Null()); break;
        case Kind::Reference: Refer(type); break;
        case Kind::Missing: Set(test::Missing()); break;
        case Kind::Empty: break;
        case Kind::Text: mvarArgument = Variant(StringView(L"1")); break;
        }
    }

    [[nodiscard]] VARIANT& Passed() noexcept { return *mvarArgument.Out(); }
    // The argument and what it refers to, as text.
    [[nodiscard]] String Shown() const { return Show(mvarArgument.Get()) + L" -> " + Show(mvarTarget.Get()); }

    [[nodiscard]] static String Show(const VARIANT& value) {
        if (V_VT(&value) == VT_DISPATCH || V_VT(&value) == VT_UNKNOWN)
            return V_UNKNOWN(&value) != nullptr ? L"object" : L"nothing";
        if ((V_VT(&value) & VT_BYREF) != 0) return L"reference " + std::to_wstring(V_VT(&value));
        Variant text;
        if (FAILED(VariantChangeType(text.Out(), const_cast<VARIANT*>(&value), 0, VT_BSTR))) // only read
            return L"type " + std::to_wstring(V_VT(&value));
        return std::to_wstring(V_VT(&value)) + L" " + String(ViewOf(V_BSTR(&text.Get())));
    }

  private:
    void Set(const VARIANT& value) noexcept { *mvarArgument.Out() = value; }
    void Fit(VARTYPE type) {
        switch (type) {
        case VT_BSTR: mvarArgument = Variant(StringView(L"1")); return;
        case VT_BOOL: return Set(Truth(true));
        case VT_DISPATCH: return Set(test::Reference(nullptr));
        case VT_DATE:
            V_VT(mvarArgument.Out()) = VT_DATE;
            V_DATE(mvarArgument.Out()) = 1.5;
            return;
        default: return Set(Number(1));
        }
    }
    // A typed reference to a variable that holds what fits.
    void Refer(VARTYPE type) {
        mvarTarget = std::move(Value(Kind::Fitting, type).mvarArgument);
        V_VT(mvarArgument.Out()) = static_cast<VARTYPE>(VT_BYREF | mvarTarget.Type());
        V_BYREF(mvarArgument.Out()) = &V_NONE(mvarTarget.Out());
    }

    Variant mvarTarget;
    Variant mvarArgument;
};

struct Arguments {
    std::string description;
    std::vector<Value::Kind> kinds; // in the order of the parameters; may be fewer or more
    bool named = false;
};

std::string KindName(Value::Kind kind) {
    static constexpr const char* names[]{"fitting", "other type", "unfitting", "reference", "missing", "empty", "text"};
    return names[static_cast<int>(kind)];
}

// Every kind for each parameter while the others fit; fewer and more than the parameters; all of them named.
std::vector<Arguments> AllArguments(std::size_t parameters, bool isPut) {
    using Kind = Value::Kind;
    std::vector<Arguments> all{{"all fit", std::vector(parameters, Kind::Fitting)}};
    for (std::size_t i = 0; i < parameters; ++i)
        for (const auto kind :
             {Kind::OtherType, Kind::Unfitting, Kind::Reference, Kind::Missing, Kind::Empty, Kind::Text}) {
            Arguments one{"argument " + std::to_string(i + 1) + " " + KindName(kind),
                          std::vector(parameters, Kind::Fitting)};
            one.kinds[i] = kind;
            all.push_back(std::move(one));
        }
    for (std::size_t count = 0; count < parameters; ++count)
        all.push_back({"only " + std::to_string(count), std::vector(count, Kind::Fitting)});
    all.push_back({"one too many", std::vector(parameters + 1, Kind::Fitting)});
    if (!isPut && parameters > 0) all.push_back({"all named", std::vector(parameters, Kind::Fitting), true});
    return all;
}

// --- The two calls ---

struct Outcome {
    HRESULT result;
    SCODE code;
    String description;
    String source;
    String answer;
    std::vector<String> variables;
    bool operator==(const Outcome&) const = default;
};

std::ostream& operator<<(std::ostream& out, const Outcome& outcome) {
    const auto narrow = [](const String& text) { return std::string(text.begin(), text.end()); };
    out << std::hex << "result " << outcome.result << ", code " << outcome.code << ", " << narrow(outcome.description)
        << ", " << narrow(outcome.source) << ", answer " << narrow(outcome.answer);
    for (const auto& variable : outcome.variables)
        out << ", variable " << narrow(variable);
    return out;
}

using Invoker = std::function<HRESULT(DISPPARAMS&, VARIANT&, EXCEPINFO&, UINT&)>;

Outcome Called(const MemberFacts& member, const Arguments& arguments, const Invoker& invoke, UINT& failedArgument) {
    std::vector<std::unique_ptr<Value>> values;
    for (std::size_t i = 0; i < arguments.kinds.size(); ++i)
        values.push_back(std::make_unique<Value>(arguments.kinds[i],
                                                 i < member.parameters.size() ? member.parameters[i] : VARTYPE{VT_I4}));
    std::vector<VARIANT> passed;
    passed.reserve(values.size());
    std::transform(values.rbegin(), values.rend(), std::back_inserter(passed),
                   [](const auto& value) { return value->Passed(); });
    std::vector<DISPID> names;
    if (IsPut(member)) names.push_back(DISPID_PROPERTYPUT);
    for (auto place = values.size(); arguments.named && place > 0; --place)
        names.push_back(static_cast<DISPID>(place - 1));
    if (names.size() > passed.size()) names.clear();
    DISPPARAMS params{passed.data(), names.empty() ? nullptr : names.data(), static_cast<UINT>(passed.size()),
                      static_cast<UINT>(names.size())};
    Variant answer;
    EXCEPINFO exception{};
    Outcome outcome{};
    SetErrorInfo(0, nullptr);
    outcome.result = invoke(params, *answer.Out(), exception, failedArgument);
    Bstr description;
    Bstr source;
    *description.Out() = exception.bstrDescription;
    *source.Out() = exception.bstrSource;
    outcome.code = exception.scode;
    outcome.description = description.Text();
    outcome.source = source.Text();
    outcome.answer = Value::Show(answer.Get());
    for (const auto& value : values)
        outcome.variables.push_back(value->Shown());
    return outcome;
}

class DispatchTest : public ComTest {
  protected:
    void TearDown() override { Owners().clear(); }
};

// As many as no call of the member has. The platform here calls a method all the same and does not find the property.
bool IsWrongInNumber(const MemberFacts& member, const Arguments& arguments) {
    const bool tooMany = arguments.kinds.size() > member.parameters.size();
    const bool goesOn = member.kind == INVOKE_PROPERTYGET && member.parameters.empty();
    return (tooMany && !goesOn) || (IsPut(member) && arguments.kinds.empty());
}

// Where the component takes on purpose what the platform's dispatcher refuses.
bool DiffersOnPurpose(const MemberFacts& member, const Arguments& arguments) {
    for (std::size_t i = 0; i < member.parameters.size() && i < arguments.kinds.size(); ++i) {
        const auto kind = arguments.kinds[i];
        // JScript's null is its only Nothing, and an empty variable of a script is no object either.
        if (member.parameters[i] == VT_DISPATCH && kind != Value::Kind::Fitting) return true;
        // A value is enough for a parameter that the member reads and writes.
        if (member.byReference[i] && kind != Value::Kind::Reference) return true;
    }
    // Arguments of a property without parameters go on to the default member of what it returns.
    return member.kind == INVOKE_PROPERTYGET && member.parameters.empty() && !arguments.kinds.empty();
}

// A call of the test: which object's member with which arguments.
struct Case {
    const Subject& subject;
    ITypeInfo& info;
    const MemberFacts& member;
    const Arguments& arguments;
};

std::ostream& operator<<(std::ostream& out, const Case& call) {
    return out << call.subject.name << "." << std::string(call.member.name.begin(), call.member.name.end()) << " kind "
               << call.member.kind << ": " << call.arguments.description;
}

Outcome OwnOutcome(const Case& call, UINT& failed) {
    const auto object = call.subject.make();
    const auto flags = static_cast<WORD>(call.member.kind);
    const auto invoke = [&](auto& params, auto& answer, auto& exception, auto& argument) {
        return object->Invoke(call.member.id, IID_NULL, LOCALE_USER_DEFAULT, flags, &params, &answer, &exception,
                              &argument);
    };
    return Called(call.member, call.arguments, invoke, failed);
}

Outcome PlatformOutcome(const Case& call) {
    const auto object = call.subject.make();
    const auto flags = static_cast<WORD>(call.member.kind);
    UINT failed = 0;
    const auto invoke = [&](auto& params, auto& answer, auto& exception, auto& argument) {
        return call.info.Invoke(object.Get(), call.member.id, flags, &params, &answer, &exception, &argument);
    };
    return Called(call.member, call.arguments, invoke, failed);
}

// Runs the body for every member of every class with every kind of arguments, and counts the calls.
template <class Body>
int ForEachCase(const Body& body) {
    int count = 0;
    for (const auto& subject : Subjects()) {
        ComPtr<ITypeInfo> info;
        Must(subject.make()->GetTypeInfo(0, LOCALE_USER_DEFAULT, info.Out()));
        for (const auto& member : MembersOf(*info.Get()))
            for (const auto& arguments : AllArguments(member.parameters.size(), IsPut(member))) {
                if (OpensAWindow(member) && arguments.description != "one too many") continue;
                body(Case{subject, *info.Get(), member, arguments});
                ++count;
            }
    }
    return count;
}

} // namespace

TEST_F(DispatchTest, EveryMemberAsThePlatformCallsIt) {
    int differing = 0;
    const int cases = ForEachCase([&](const Case& call) {
        UINT failed = 0;
        if (IsWrongInNumber(call.member, call.arguments))
            EXPECT_EQ(OwnOutcome(call, failed).result, DISP_E_BADPARAMCOUNT) << call;
        else if (DiffersOnPurpose(call.member, call.arguments))
            ++differing;
        else
            EXPECT_EQ(OwnOutcome(call, failed), PlatformOutcome(call)) << call;
    });
    EXPECT_GT(cases - differing, 500) << "of " << cases;
}

TEST_F(DispatchTest, TheArgumentThatDoesNotFitIsNamed) {
    int named = 0;
    static_cast<void>(ForEachCase([&](const Case& call) {
        const auto& kinds = call.arguments.kinds;
        const auto unfitting = std::find(kinds.begin(), kinds.end(), Value::Kind::Unfitting);
        if (unfitting == kinds.end()) return;
        UINT failed = 77;
        if (OwnOutcome(call, failed).result != DISP_E_TYPEMISMATCH) return;
        EXPECT_EQ(failed, static_cast<UINT>(kinds.end() - unfitting) - 1) << call;
        ++named;
    }));
    EXPECT_GT(named, 30);
}

} // namespace kestrel::test
