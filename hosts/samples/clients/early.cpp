// The program of this folder in C++, early bound: makes a rule, answers what it asks, issues codes by ticket, takes
// codes apart. Every language here prints the same lines. It is written against the two headers of the SDK and calls
// the component by its vtables, which is the quickest way.
#include <algorithm>
#include <cstdio>

#include "Kestrel.h"

namespace {

using namespace kestrel;

constexpr DISPID getLastCode = 11;

class Client {
  public:
    Client() : mvarRule(Create<_CodeClass>(L"Kestrel.CodeClass")), mvarEvents(mvarRule.Get(), __uuidof(__CodeClass)) {
        mvarEvents.On(getLastCode, [this](const Arguments& arguments) { AnswerLastCode(arguments); });
        Object<_Lists> fields;
        Check(mvarRule->get_UsrFields(fields.Out()));
        Check(fields->Add(Text(L"Year").Get(), nullptr, nullptr, nullptr, mvarYear.Out()));
        AddBand(L"Prefix", bsFixed, L"INV-");
        AddBand(L"Year", bsUsrField, L"", 4, L"", mvarYear.Get());
        AddBand(L"Dash", bsFixed, L"-");
        mvarNumber = AddBand(L"Number", bsIncreaseNumber, L"1", 5, L"00000");
        Object<_Names> tracked;
        Check(mvarNumber->get_TrackBands(tracked.Out()));
        Text key;
        Check(tracked->Add(Text(L"Year").Get(), key.Out()));
    }

    void IssueFor(const std::wstring& ticket, const wchar_t* year) {
        if (!mvarIssued.contains(ticket)) {
            Check(mvarYear->put_Value(Text(year).Get()));
            Text code;
            Check(mvarRule->GetCode(gsNewCode, code.Out()));
            mvarIssued[ticket] = code.Value();
        }
        std::printf("%ls: %ls\n", ticket.c_str(), mvarIssued[ticket].c_str());
    }

    void TakeApart(const wchar_t* code) {
        try {
            Text given(code);
            Text year;
            Text number;
            Check(mvarRule->ExpCode(given.Held()));
            Check(mvarYear->get_Value(year.Out()));
            Check(mvarNumber->get_Value(number.Out()));
            std::printf("%ls: year %ls, number %ls\n", code, year.Get(), number.Get());
        } catch (const Failure& failure) {
            std::printf("%ls: refused with %ld, %ls\n", code, HRESULT_CODE(failure.result),
                        failure.description.c_str());
        }
    }

    void StoreAndLoad() const {
        Text definition;
        Check(mvarRule->get_Definition(definition.Out()));
        VARIANT stored;
        V_VT(&stored) = VT_BSTR;
        V_BSTR(&stored) = definition.Get();
        const auto copy = Create<_CodeClass>(L"Kestrel.CodeClass");
        Check(copy->Load(stored, nullptr));
        LONG count = 0;
        Check(copy->get_Count(&count));
        std::printf("stored and loaded: %ld bands\n", count);
    }

  private:
    Object<_Band> AddBand(const wchar_t* name, BandStyles style, const wchar_t* value, LONG length = 0,
                          const wchar_t* format = L"", _List* field = nullptr) {
        Object<_Band> band;
        Check(mvarRule->Add(Text(name).Get(), style, smNoneSwap, Text(value).Get(), field,
                            length == 0 ? Missing() : Number(length), Text(format).Get(), Missing(), Missing(),
                            band.Out()));
        return band;
    }

    // The last code issued that fits the filter, in which "?" is any character. The component adds one to its number.
    void AnswerLastCode(const Arguments& arguments) const {
        const std::wstring filter = arguments.TextAt(0);
        std::printf("asked for the last code like %ls\n", filter.c_str());
        std::wstring last;
        for (const auto& [ticket, code] : mvarIssued)
            if (code.substr(0, 9) == filter.substr(0, 9)) last = std::max(last, code);
        arguments.SetTextAt(1, last);
    }

    Object<_CodeClass> mvarRule;
    Object<_List> mvarYear;
    Object<_Band> mvarNumber;
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
