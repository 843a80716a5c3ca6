// Lengths and texts at the limits, through every member: what fails does so with an error of the library or the
// platform, and no text of the language's own library reaches a host.
#include <algorithm>
#include <iterator>
#include <limits>
#include <set>

#include "automation/support/Late.h"

namespace kestrel::test {

namespace {

constexpr LONG Most = std::numeric_limits<LONG>::max();
constexpr LONG Least = std::numeric_limits<LONG>::min();

// One of the rounds that each member is called in: what it gives to parameters of each type.
struct Extremes {
    LONG number;
    String text;
    DATE date;
};

std::vector<Extremes> Rounds() {
    const auto separators = [](wchar_t separator) { return String(20'000, separator); };
    return {{0, L"", 0},
            {1, L"1", -657434.0},
            {-1, String(1, L'\0'), -1e300},
            {Most, String(1'000'000, L'9'), 1e300},
            {Least, String(1'000'000, L'A'), 2958466.0},
            {2, separators(L';'), std::numeric_limits<double>::infinity()},
            {3, separators(L','), std::numeric_limits<double>::quiet_NaN()},
            {4, L"#####16\r0=B\r1=3\r5=2147483647\r17\r16\r0=C\r1=3\r5=2147483647\r13=B\r17", 0.5},
            {5, L"2147483647;,2147483647,a,b", 1}};
}

// The members of the library itself that open a dialog or a box, which no test here could answer.
bool NeedsAPerson(const String& name) {
    static const std::set<String> members{L"ShowDesigner", L"ShowFieldManage", L"ShowOptions", L"Save"};
    return members.contains(name);
}

bool IsOfTheStringTable(const String& description) {
    static const std::vector<String> texts{
// NOLINTNEXTLINE(cppcoreguidelines-macro-usage): shared with the resource compiler, which knows macros
#define STRING(id, english, german) L##english, L##german,
#include "resources/strings.inc"
#undef STRING
    };
    return std::any_of(texts.begin(), texts.end(), [&](const String& text) {
        return !text.empty() && description.compare(0, text.size(), text) == 0;
    });
}

// The type that a value passed for the parameter has; references and enumerations by what they refer to.
VARTYPE TypeOf(ITypeInfo& info, const TYPEDESC& described) {
    const TYPEDESC& type = described.vt == VT_PTR ? *described.lptdesc : described;
    if (type.vt != VT_USERDEFINED) return type.vt;
    ComPtr<ITypeInfo> user;
    Must(info.GetRefTypeInfo(type.hreftype, user.Out()));
    TYPEATTR* attributes = nullptr;
    Must(user->GetTypeAttr(&attributes));
    const auto kind = attributes->typekind;
    user->ReleaseTypeAttr(attributes);
    return kind == TKIND_ENUM ? VT_I4 : VT_DISPATCH;
}

class LimitsTest : public ComTest {
  protected:
    // Calls every member of the object's default interface with the values of the round.
    void CallAll(IDispatch* object, const Extremes& round) {
        ComPtr<ITypeInfo> info;
        Must(object->GetTypeInfo(0, LOCALE_USER_DEFAULT, info.Out()));
        TYPEATTR* attributes = nullptr;
        Must(info->GetTypeAttr(&attributes));
        const UINT count = attributes->cFuncs;
        info->ReleaseTypeAttr(attributes);
        for (UINT i = 0; i < count; ++i) {
            FUNCDESC* function = nullptr;
            Must(info->GetFuncDesc(i, &function));
            Bstr name;
            Must(info->GetDocumentation(function->memid, name.Out(), nullptr, nullptr, nullptr));
            constexpr MEMBERID ofIDispatch = 0x60000000;
            if ((function->memid & ofIDispatch) != ofIDispatch && !NeedsAPerson(name.Text()))
                CallOne(object, *info.Get(), *function, name.Text(), round);
            info->ReleaseFuncDesc(function);
        }
    }

    [[nodiscard]] int Calls() const noexcept { return mvarCalls; }

  private:
    void CallOne(IDispatch* object, ITypeInfo& info, const FUNCDESC& function, const String& name,
                 const Extremes& round) {
        std::vector<Variant> values;
        for (SHORT i = 0; i < function.cParams; ++i) {
            const ELEMDESC& parameter = function.lprgelemdescParam[i];
            if ((parameter.paramdesc.wParamFlags & PARAMFLAG_FRETVAL) == 0)
                values.push_back(ValueFor(TypeOf(info, parameter.tdesc), round));
        }
        const auto outcome = Call(object, function, values);
        ++mvarCalls;
        EXPECT_TRUE(outcome.failure.description.empty() || IsOfTheStringTable(outcome.failure.description))
            << testing::PrintToString(name) << ": " << outcome.failure;
        EXPECT_NE(outcome.failure, Bare(E_UNEXPECTED)) << testing::PrintToString(name);
    }

    static Variant ValueFor(VARTYPE type, const Extremes& round) {
        if (type == VT_BSTR || (type == VT_VARIANT && round.number % 2 == 0)) return Variant(round.text);
        Variant value;
        V_VT(value.Out()) = type == VT_VARIANT ? static_cast<VARTYPE>(VT_I4) : type;
        if (type == VT_BOOL)
            V_BOOL(value.Out()) = VARIANT_TRUE;
        else if (type == VT_DATE)
            V_DATE(value.Out()) = round.date;
        else if (type == VT_DISPATCH)
            V_DISPATCH(value.Out()) = nullptr;
        else
            V_I4(value.Out()) = round.number;
        return value;
    }

    static LateResult Call(IDispatch* object, const FUNCDESC& function, const std::vector<Variant>& values) {
        std::vector<VARIANT> reversed;
        reversed.reserve(values.size());
        std::transform(values.rbegin(), values.rend(), std::back_inserter(reversed),
                       [](const Variant& value) { return value.Get(); });
        return CallReversed(object, function.memid, static_cast<WORD>(function.invkind), std::move(reversed));
    }

    int mvarCalls = 0;
};

ComPtr<_Band> Added(const ComPtr<_CodeClass>& rule, StringView name, ::BandStyles style, const VARIANT& length) {
    ComPtr<_Band> band;
    Must(
        rule->Add(Arg(name), style, smNoneSwap, Arg(L"1"), nullptr, length, nullptr, Missing(), Missing(), band.Out()));
    return band;
}

// X, then a number that tracks it.
ComPtr<_Band> NumberOf(const ComPtr<_CodeClass>& rule, LONG length) {
    Added(rule, L"X", bsFixed, Missing());
    auto number = Added(rule, L"N", bsIncreaseNumber, Number(length));
    Must(Object(number, &_Band::get_TrackBands)->Add(Arg(L"X"), Bstr().Out()));
    return number;
}

Failure FailureOfCode(const ComPtr<_CodeClass>& rule) {
    Bstr code;
    Failure early = FailureOf(rule->GetCode(gsNewCode, code.Out()));
    const auto late = Call(rule.Get(), L"GetCode", {Number(gsNewCode)});
    EXPECT_EQ(late.failure, early);
    return early;
}

} // namespace

TEST_F(LimitsTest, EveryMemberFailsWithTheLibrarysOwnErrors) {
    for (const auto& round : Rounds()) {
        SCOPED_TRACE(round.number);
        const auto rule = NewRule();
        const auto number = Added(rule, L"N", bsIncreaseNumber, Number(3));
        const auto fields = Object(rule, &_CodeClass::get_UsrFields);
        const auto relations = Object(rule, &_CodeClass::get_Relations);
        ComPtr<_cNode> node;
        Must(relations->Add(Missing(), tvwFirst, Arg(L"1"), Arg(L"one"), node.Out()));
        const std::vector<ComPtr<IDispatch>> objects{
            number.As<IDispatch>(),     Object(number, &_Band::get_TrackBands).As<IDispatch>(),
            NewBand().As<IDispatch>(),  fields.As<IDispatch>(),
            NewList().As<IDispatch>(),  node.As<IDispatch>(),
            relations.As<IDispatch>(),  NewNames().As<IDispatch>(),
            NewNodes().As<IDispatch>(), rule.As<IDispatch>()};
        for (const auto& object : objects)
            CallAll(object.Get(), round);
        for (const auto& object : objects) // once more on what the first pass has left
            CallAll(object.Get(), round);
    }
    EXPECT_GT(Calls(), 2'000);
}

TEST_F(LimitsTest, GetCodeOfAbsurdLengthsFailsForWantOfMemory) {
    const auto rule = NewRule();
    const auto number = NumberOf(rule, Most);
    EXPECT_EQ(FailureOfCode(rule), Bare(E_OUTOFMEMORY));
    for (const wchar_t* name : {L"A", L"B", L"C"})
        Added(rule, name, bsIncreaseNumber, Number(Most));
    EXPECT_EQ(FailureOfCode(rule), Bare(E_OUTOFMEMORY)) << "a sum beyond 32 bits";
    for (const wchar_t* name : {L"A", L"B", L"C"})
        Must(rule->Remove(Arg(name)));
    if constexpr (sizeof(void*) == 4) {
        Must(number->put_Length(1'000'000'000));
        EXPECT_EQ(FailureOfCode(rule), Bare(E_OUTOFMEMORY)) << "more than the process has";
    }
    Must(number->put_Length(1));
    Must(number->put_Formate(Arg(L"0")));
    EXPECT_EQ(FailureOfCode(rule), Failure{});
}

TEST_F(LimitsTest, ALengthBeyond32BitsOverflows) {
    const auto rule = NewRule();
    NumberOf(rule, Most);
    LONG length = 0;
    EXPECT_FAILS(rule->get_Length(&length), Overflow);
    Bstr code(L"1");
    EXPECT_FAILS(rule->ExpCode(code.Out()), Overflow);
}

TEST_F(LimitsTest, AnImportOfMoreThanMemoryHoldsFailsAtItsFirstRecord) {
    const auto rule = NewRule();
    EXPECT_DONE(rule->Load(Arg(L"#####9\r1" + String(1'000'000, L';')), nullptr));
    EXPECT_EQ(Plain(Object(rule, &_CodeClass::get_Relations), &_cNodes::get_Count), 0);
}

} // namespace kestrel::test
