// What a call costs through the vtable, through the component's own Invoke, and through the platform's dispatcher
// (ITypeInfo::Invoke and ITypeInfo::GetIDsOfNames on the same type information), side by side in one run.

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

// One member without arguments, called in the three ways and looked up in the two.
struct Costs {
    double vtable;
    double invoke;
    double platformInvoke;
    double names;
    double platformNames;
};

class Subject {
  public:
    Subject(IDispatch* object, const wchar_t* name)
        : mvarObject(object), mvarName(name), mvarId(test::IdOf(object, name)) {
        test::Must(object->GetTypeInfo(0, LOCALE_USER_DEFAULT, mvarInfo.Out()));
    }

    void Invoke() const {
        Variant result;
        DISPPARAMS none{};
        test::Must(mvarObject->Invoke(mvarId, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_PROPERTYGET, &none, result.Out(),
                                      nullptr, nullptr));
        Use(result);
    }
    void PlatformInvoke() const {
        Variant result;
        DISPPARAMS none{};
        EXCEPINFO exception{};
        UINT failedArgument = 0;
        test::Must(mvarInfo->Invoke(mvarObject, mvarId, DISPATCH_PROPERTYGET, &none, result.Out(), &exception,
                                    &failedArgument));
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
    IDispatch* mvarObject;
    const wchar_t* mvarName;
    DISPID mvarId;
    ComPtr<ITypeInfo> mvarInfo;
};

template <class Direct>
Costs Measured(const Subject& subject, const Direct& direct) {
    return {Nanoseconds(direct), Nanoseconds([&] { subject.Invoke(); }), Nanoseconds([&] { subject.PlatformInvoke(); }),
            Nanoseconds([&] { subject.LookUp(); }), Nanoseconds([&] { subject.PlatformLookUp(); })};
}

void Print(const char* member, const Costs& costs) {
    std::printf("%-22s %8.1f %8.1f %10.1f %6.2f   %8.1f %10.1f %6.2f\n", member, costs.vtable, costs.invoke,
                costs.platformInvoke, costs.invoke / costs.platformInvoke, costs.names, costs.platformNames,
                costs.names / costs.platformNames);
}

int Run() {
    const auto rule = test::NewRule();
    const auto list = test::NewList();
    test::Must(list->put_Value(test::Arg(L"a value")));
    std::printf("nanoseconds per call      vtable   Invoke   platform  ratio      names   platform  ratio\n");
    Print("CodeClass.Count",
          Measured(Subject(rule.Get(), L"Count"), [&] { Use(test::Plain(rule, &_CodeClass::get_Count)); }));
    Print("CodeClass.Definition",
          Measured(Subject(rule.Get(), L"Definition"), [&] { Use(test::Text(rule, &_CodeClass::get_Definition)); }));
    Print("List.Value", Measured(Subject(list.Get(), L"Value"), [&] { Use(test::Text(list, &_List::get_Value)); }));
    return 0;
}

} // namespace
} // namespace kestrel::bench

int main() { return kestrel::bench::RunComBenchmark(kestrel::bench::Run); }
