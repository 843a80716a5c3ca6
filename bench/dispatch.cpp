// What a call costs through the vtable, through the component's own Invoke, and through the platform's dispatcher
// (ITypeInfo::Invoke and ITypeInfo::GetIDsOfNames on the same type information), side by side in one run.

#include <string>
#include <vector>

#include "automation/support/Late.h"
#include "bench/ComBenchmark.h"

namespace kestrel::bench {
namespace {

constexpr int Runs = 5;
constexpr int Calls = 20000;

template <class Operation>
double Nanoseconds(const Operation& operation) {
    const Microseconds best = BestOf(Runs, [&] {
        for (int i = 0; i < Calls; ++i)
            operation();
    });
    return best * 1000 / Calls;
}

// One member, called in the three ways and looked up in the two.
struct Costs {
    double vtable;
    double invoke;
    double platformInvoke;
    double names;
    double platformNames;
};

class Subject {
  public:
    // The arguments as late-bound calls pass them: last first.
    Subject(IDispatch* object, const wchar_t* name, WORD flags = DISPATCH_PROPERTYGET,
            std::vector<VARIANT> arguments = {})
        : mvarObject(object), mvarName(name), mvarId(test::IdOf(object, name)), mvarFlags(flags),
          mvarArguments(std::move(arguments)) {
        test::Must(object->GetTypeInfo(0, LOCALE_USER_DEFAULT, mvarInfo.Out()));
    }

    void Invoke() const {
        Variant result;
        DISPPARAMS params = Params();
        EXCEPINFO exception{};
        UINT failedArgument = 0;
        test::Must(mvarObject->Invoke(mvarId, IID_NULL, LOCALE_USER_DEFAULT, mvarFlags, &params, result.Out(),
                                      &exception, &failedArgument));
        Use(result);
    }
    void PlatformInvoke() const {
        Variant result;
        DISPPARAMS params = Params();
        EXCEPINFO exception{};
        UINT failedArgument = 0;
        test::Must(mvarInfo->Invoke(mvarObject, mvarId, mvarFlags, &params, result.Out(), &exception, &failedArgument));
        Use(result);
    }
    void LookUp() const { Use(test::IdOf(mvarObject, mvarName)); }
    void PlatformLookUp() const {
        auto* name = const_cast<LPOLESTR>(mvarName); // only read
        DISPID id = DISPID_UNKNOWN;
        test::Must(mvarInfo->GetIDsOfNames(&name, 1, &id));
        Use(id);
    }

  private:
    [[nodiscard]] DISPPARAMS Params() const {
        // Calls only read them.
        return {const_cast<VARIANT*>(mvarArguments.data()), nullptr, static_cast<UINT>(mvarArguments.size()), 0};
    }

    IDispatch* mvarObject;
    const wchar_t* mvarName;
    DISPID mvarId;
    WORD mvarFlags;
    std::vector<VARIANT> mvarArguments;
    ComPtr<ITypeInfo> mvarInfo;
};

template <class Direct>
Costs Measured(const Subject& subject, const Direct& direct) {
    return {Nanoseconds(direct), Nanoseconds([&] { subject.Invoke(); }), Nanoseconds([&] { subject.PlatformInvoke(); }),
            Nanoseconds([&] { subject.LookUp(); }), Nanoseconds([&] { subject.PlatformLookUp(); })};
}

void Print(const char* member, const Costs& costs) {
    std::printf("%-26s %8.1f %8.1f %10.1f %6.2f   %8.1f %10.1f %6.2f\n", member, costs.vtable, costs.invoke,
                costs.platformInvoke, costs.invoke / costs.platformInvoke, costs.names, costs.platformNames,
                costs.names / costs.platformNames);
}

// With an empty tree nothing moves: the cost is that of the call.
void DragNothing(const ComPtr<_cNodes>& tree) { test::Must(tree->Drag(test::Number(1), tvwLast, test::Number(1))); }

int Run() {
    const auto rule = test::NewRule();
    const auto list = test::NewList();
    const auto tree = test::NewNodes();
    test::Must(list->put_Value(test::Arg(L"a value")));
    std::printf("nanoseconds per call          vtable   Invoke   platform  ratio      names   platform  ratio\n");
    const auto count = Measured(Subject(rule.Get(), L"Count"), [&] { Use(test::Plain(rule, &_CodeClass::get_Count)); });
    const auto value = Measured(Subject(list.Get(), L"Value"), [&] { Use(test::Text(list, &_List::get_Value)); });
    const auto drag = Measured(
        Subject(tree.Get(), L"Drag", DISPATCH_METHOD, {test::Number(1), test::Number(tvwLast), test::Number(1)}),
        [&] { DragNothing(tree); });
    const auto late = Measured(Subject(rule.Get(), L"AllowSimpleStyle"),
                               [&] { Use(test::Plain(rule, &_CodeClass::get_AllowSimpleStyle)); });
    Print("CodeClass.Count", count);
    Print("CodeClass.AllowSimpleStyle", late);
    Print("List.Value", value);
    Print("cNodes.Drag (1, 1, 1)", drag);
    Verdicts verdicts;
    verdicts.AtMost("Invoke of a number without arguments / the platform's", count.invoke / count.platformInvoke, 0.25);
    verdicts.AtMost("Invoke of a text without arguments / the platform's", value.invoke / value.platformInvoke, 0.25);
    verdicts.AtMost("Invoke of a method with three arguments / the platform's", drag.invoke / drag.platformInvoke, 0.4);
    for (const auto& [name, costs] : {std::pair{"Count", count}, {"AllowSimpleStyle", late}, {"Drag", drag}})
        verdicts.AtMost("GetIDsOfNames / the platform's (" + std::string(name) + ")", costs.names / costs.platformNames,
                        0.05);
    return verdicts.ExitCode();
}

} // namespace
} // namespace kestrel::bench

int main() { return kestrel::bench::RunComBenchmark(kestrel::bench::Run); }
