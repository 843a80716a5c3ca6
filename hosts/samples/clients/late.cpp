// The program of this folder in C++, late bound: makes a rule, answers what it asks, issues codes by ticket, takes
// codes apart. Every language here prints the same lines. Members are called by their names through IDispatch, as
// scripts do: that needs no type library, and goes on working with every later version of the component.
#include <algorithm>
#include <cstdio>
#include <initializer_list>
#include <vector>

#include "Kestrel.h"

namespace {

using namespace kestrel;

constexpr LONG bsFixed = 0, bsUsrField = 2, bsIncreaseNumber = 3, smNoneSwap = 0, gsNewCode = 1;
constexpr DISPID getLastCode = 11;
constexpr IID ruleEvents = {0x5FCF6617, 0x4BF4, 0x4628, {0xAC, 0x4C, 0x29, 0xA5, 0x9E, 0x8E, 0x09, 0xEF}};

// A value that goes to a member or comes from it.
class Value {
  public:
    Value() noexcept { VariantInit(&mvarValue); }
    Value(const std::wstring& text) : Value() {
        Text copy(text);
        V_VT(&mvarValue) = VT_BSTR;
        std::swap(V_BSTR(&mvarValue), *copy.Held());
    }
    Value(const wchar_t* text) : Value(std::wstring(text)) {}
    Value(LONG number) noexcept : mvarValue(Number(number)) {}
    Value(const VARIANT& plain) noexcept : mvarValue(plain) {}
    // Some headers declare what is only read without const.
    Value(const Value& other) : Value() { Check(VariantCopy(&mvarValue, const_cast<VARIANT*>(&other.mvarValue))); }
    Value& operator=(const Value&) = delete; // a value is given once
    ~Value() { VariantClear(&mvarValue); }

    VARIANT* Out() noexcept { return &mvarValue; }
    [[nodiscard]] const VARIANT& Raw() const noexcept { return mvarValue; }
    [[nodiscard]] std::wstring AsText() const {
        return V_VT(&mvarValue) == VT_BSTR ? std::wstring(V_BSTR(&mvarValue)) : std::wstring();
    }
    [[nodiscard]] LONG AsNumber() const noexcept { return V_VT(&mvarValue) == VT_I4 ? V_I4(&mvarValue) : 0; }

  private:
    VARIANT mvarValue = {};
};

// An object by the names of its members. What it refuses is thrown with its own words.
class Late {
  public:
    explicit Late(Object<IDispatch> object) noexcept : mvarObject(std::move(object)) {}
    explicit Late(const Value& object) : mvarObject(V_DISPATCH(&object.Raw())) { mvarObject->AddRef(); }

    [[nodiscard]] IDispatch* Raw() const noexcept { return mvarObject.Get(); }
    [[nodiscard]] Value AsValue() const {
        VARIANT object;
        V_VT(&object) = VT_DISPATCH;
        V_DISPATCH(&object) = mvarObject.Get();
        mvarObject->AddRef();
        return Value(object);
    }
    Value Call(const wchar_t* name, std::initializer_list<Value> values = {}) const {
        return Invoke(name, DISPATCH_METHOD | DISPATCH_PROPERTYGET, values);
    }
    void Put(const wchar_t* name, const Value& value) const { Invoke(name, DISPATCH_PROPERTYPUT, {value}); }

  private:
    Value Invoke(const wchar_t* name, WORD kind, std::initializer_list<Value> values) const {
        DISPID id = 0;
        std::wstring asked = name;
        LPOLESTR names = asked.data();
        Check(mvarObject->GetIDsOfNames(IID_NULL, &names, 1, LOCALE_USER_DEFAULT, &id));
        std::vector<VARIANT> arguments; // the last one first
        for (const Value& value : values)
            arguments.insert(arguments.begin(), value.Raw());
        DISPID put = DISPID_PROPERTYPUT;
        const bool puts = kind == DISPATCH_PROPERTYPUT;
        DISPPARAMS given = {arguments.data(), puts ? &put : nullptr, static_cast<UINT>(arguments.size()),
                            puts ? 1U : 0U};
        Value result;
        EXCEPINFO error = {};
        const HRESULT done = mvarObject->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, kind, &given,
                                                puts ? nullptr : result.Out(), &error, nullptr);
        if (done == DISP_E_EXCEPTION) throw Said(error);
        Check(done);
        return result;
    }

    static Failure Said(const EXCEPINFO& error) {
        Failure failure{error.scode, error.bstrDescription == nullptr ? L"" : error.bstrDescription};
        SysFreeString(error.bstrDescription);
        SysFreeString(error.bstrSource);
        SysFreeString(error.bstrHelpFile);
        return failure;
    }

    Object<IDispatch> mvarObject;
};

class Client {
  public:
    Client()
        : mvarRule(Create<IDispatch>(L"Kestrel.CodeClass")),
          mvarYear(Late(mvarRule.Call(L"UsrFields")).Call(L"Add", {L"Year"})), mvarEvents(mvarRule.Raw(), ruleEvents) {
        mvarEvents.On(getLastCode, [this](const Arguments& arguments) { AnswerLastCode(arguments); });
        const Value none = Missing();
        mvarRule.Call(L"Add", {L"Prefix", bsFixed, smNoneSwap, L"INV-"});
        mvarRule.Call(L"Add", {L"Year", bsUsrField, smNoneSwap, L"", mvarYear.AsValue(), LONG{4}});
        mvarRule.Call(L"Add", {L"Dash", bsFixed, smNoneSwap, L"-"});
        const Late number(
            mvarRule.Call(L"Add", {L"Number", bsIncreaseNumber, smNoneSwap, L"1", none, LONG{5}, L"00000"}));
        Late(number.Call(L"TrackBands")).Call(L"Add", {L"Year"});
    }

    void IssueFor(const std::wstring& ticket, const wchar_t* year) {
        if (!mvarIssued.contains(ticket)) {
            mvarYear.Put(L"Value", year);
            mvarIssued[ticket] = mvarRule.Call(L"GetCode", {gsNewCode}).AsText();
        }
        std::printf("%ls: %ls\n", ticket.c_str(), mvarIssued[ticket].c_str());
    }

    void TakeApart(const wchar_t* code) const {
        try {
            mvarRule.Call(L"ExpCode", {code});
            const Late number(mvarRule.Call(L"Band", {L"Number"}));
            std::printf("%ls: year %ls, number %ls\n", code, mvarYear.Call(L"Value").AsText().c_str(),
                        number.Call(L"Value").AsText().c_str());
        } catch (const Failure& failure) {
            std::printf("%ls: refused with %ld, %ls\n", code, HRESULT_CODE(failure.result),
                        failure.description.c_str());
        }
    }

    void StoreAndLoad() const {
        const Late copy(Create<IDispatch>(L"Kestrel.CodeClass"));
        copy.Call(L"Load", {mvarRule.Call(L"Definition")});
        std::printf("stored and loaded: %ld bands\n", copy.Call(L"Count").AsNumber());
    }

  private:
    // The last code issued that fits the filter, in which "?" is any character. The component adds one to its number.
    void AnswerLastCode(const Arguments& arguments) const {
        const std::wstring filter = arguments.TextAt(0);
        std::printf("asked for the last code like %ls\n", filter.c_str());
        std::wstring last;
        for (const auto& [ticket, code] : mvarIssued)
            if (code.substr(0, 9) == filter.substr(0, 9)) last = std::max(last, code);
        arguments.SetTextAt(1, last);
    }

    Late mvarRule;
    Late mvarYear;
    std::map<std::wstring, std::wstring> mvarIssued; // what a program keeps in its database: the code of each ticket
    Events mvarEvents;
};

void Run() {
    const Apartment apartment;
    Client client;
    client.IssueFor(L"order 1", L"2026");
    client.IssueFor(L"order 2", L"2026");
    client.IssueFor(L"order 3", L"2027");
    client.IssueFor(L"order 2", L"2026"); // the same request again gets the same code
    client.TakeApart(L"INV-2026-00002");
    client.TakeApart(L"ABC-2026-00002");
    client.StoreAndLoad();
}

} // namespace

int main() {
    try {
        Run();
        return 0;
    } catch (const kestrel::Failure& failure) {
        static_cast<void>(std::fprintf(stderr, "%ls (0x%08lX)\n", failure.description.c_str(),
                                       static_cast<unsigned long>(failure.result)));
        return 1;
    }
}
