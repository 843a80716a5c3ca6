// Want of memory while a member runs and raises events: whichever allocation of the component fails, the call fails
// with it, the process lives on, and a host that could not be asked has agreed to nothing.
#include "automation/support/FailingAllocations.h"
#include "automation/support/Library.h"
#include "automation/support/Sink.h"

namespace kestrel::test {

namespace {

class WantOfMemoryTest : public ComTest {
  protected:
    // Runs the operation again and again on what prepare() makes, with a host that listens to its events, each time
    // with a later allocation failing, until none is left to fail. Each run is judged: judge(subject, result). Returns
    // how many runs failed for want of memory; what the language has a reserve for, an exception's own memory, does no
    // harm.
    template <class Prepare, class Operation, class Judge>
    int FailEach(const Prepare& prepare, const IID& events, const Sink::Handler& handler, const Operation& operation,
                 const Judge& judge) {
        constexpr int enough = 10'000;
        int failures = 0;
        for (int spared = 0; spared < enough; ++spared) {
            const auto subject = prepare();
            const Advised host(subject.Get(), events, handler);
            HRESULT result = S_OK;
            const bool failed = mvarAllocations.Fails(spared, [&] { result = operation(subject); });
            SCOPED_TRACE("after " + std::to_string(spared) + " allocations");
            judge(subject, result);
            EXPECT_EQ(Bare(result), Bare(SUCCEEDED(result) ? result : E_OUTOFMEMORY));
            if (!failed) return failures;
            failures += FAILED(result) ? 1 : 0;
        }
        ADD_FAILURE() << "no end of allocations";
        return enough;
    }

    // PREFIX- and a number of five digits that begins at 10001.
    static ComPtr<_CodeClass> Rule() {
        auto rule = NewRule();
        const auto add = [&rule](const wchar_t* name, ::BandStyles style, const wchar_t* value, const VARIANT& length) {
            ComPtr<_Band> band;
            Must(rule->Add(Arg(name), style, ::smNoneSwap, Arg(value), nullptr, length, nullptr, Missing(), Missing(),
                           band.Out()));
            return band;
        };
        add(L"A long name of a band", ::bsFixed, L"PREFIX-", Missing());
        const auto number = add(L"Number", ::bsIncreaseNumber, L"10001", Number(5));
        Must(Object(number, &_Band::get_TrackBands)->Add(Arg(L"A long name of a band"), Bstr().Out()));
        return rule;
    }

  private:
    LoadedLibrary mvarLibrary{LibraryPath()};
    FailingAllocations mvarAllocations{mvarLibrary.Module()};
};

// Refuses what the event of that id asks about.
Sink::Handler VetoOf(DISPID id) {
    return [id](const EventCall& call) {
        if (call.Id() == id) {
            call.Flag(1) = VARIANT_TRUE;
            call.SetText(2, L"because it is needed by somebody else");
        }
        return S_OK;
    };
}

// The refusal is what should come of it.
HRESULT UnlessRefused(HRESULT result, const Failure& refusal) {
    return result == static_cast<HRESULT>(refusal.code) ? S_OK : result;
}

} // namespace

TEST_F(WantOfMemoryTest, GetCodeNeverCountsWithoutTheHost) {
    Bstr code;
    const auto answer = [](const EventCall& call) {
        if (call.Id() == 11) call.SetText(1, L"PREFIX-20041");
        return S_OK;
    };
    const auto issue = [&code](const auto& rule) {
        code = Bstr();
        return rule->GetCode(::gsNewCode, code.Out());
    };
    const int failed = FailEach(Rule, __uuidof(__CodeClass), answer, issue, [&code](const auto&, HRESULT result) {
        EXPECT_EQ(code.Text(), SUCCEEDED(result) ? L"PREFIX-20042" : L"");
    });
    EXPECT_GT(failed, 5);
}

TEST_F(WantOfMemoryTest, RemoveTakesNoItemThatTheHostKeeps) {
    const auto prepare = [] {
        auto fields = Object(NewRule(), &_CodeClass::get_UsrFields);
        Must(fields->Add(Arg(L"A long name of a field"), nullptr, nullptr, nullptr, ComPtr<_List>().Out()));
        return fields;
    };
    const int failed = FailEach(
        prepare, __uuidof(__Lists), VetoOf(2),
        [](const auto& fields) { return UnlessRefused(fields->Remove(Number(1)), DropFailed); },
        [](const auto& fields, HRESULT) { EXPECT_EQ(Plain(fields, &_Lists::get_Count), 1); });
    EXPECT_GT(failed, 3);
}

TEST_F(WantOfMemoryTest, RemoveTakesNoBandThatTheHostKeeps) {
    const int failed = FailEach(
        Rule, __uuidof(__CodeClass), VetoOf(8), [](const auto& rule) { return rule->Remove(Number(1)); },
        [](const auto& rule, HRESULT) { EXPECT_EQ(Plain(rule, &_CodeClass::get_Count), 2); });
    EXPECT_GT(failed, 3);
}

TEST_F(WantOfMemoryTest, AddTakesNoNameThatTheHostRefuses) {
    const int failed = FailEach(
        NewNames, __uuidof(__Names), VetoOf(2),
        [](const auto& names) {
            return UnlessRefused(names->Add(Arg(L"A long name of a band"), Bstr().Out()), AddFailed);
        },
        [](const auto& names, HRESULT) { EXPECT_EQ(Plain(names, &_Names::get_Count), 0); });
    EXPECT_GT(failed, 3);
}

TEST_F(WantOfMemoryTest, AChangeIsToldOrTheCallFails) {
    int told = 0;
    const auto note = [&told](const EventCall&) {
        ++told;
        return S_OK;
    };
    const auto add = [](const auto& tree, StringView text) {
        return tree->Add(Missing(), ::tvwFirst, Arg(text), Arg(text), ComPtr<_cNode>().Out());
    };
    const int failed = FailEach(
        NewNodes, __uuidof(__cNodes), note,
        [&](const auto& tree) {
            told = 0;
            return add(tree, L"A long code");
        },
        [&](const auto& tree, HRESULT result) {
            EXPECT_EQ(told, SUCCEEDED(result) ? 1 : told);
            EXPECT_EQ(add(tree, L"Another one"), S_OK);
        });
    EXPECT_GT(failed, 3);
}

TEST_F(WantOfMemoryTest, LoadReadsTheWholeOrFails) {
    const String definition = Text(Rule(), &_CodeClass::get_Definition);
    const int failed = FailEach(
        NewRule, __uuidof(__CodeClass), [](const EventCall&) { return S_OK; },
        [&definition](const auto& rule) { return rule->Load(Arg(definition), nullptr); },
        [&definition](const auto& rule, HRESULT result) {
            EXPECT_TRUE(FAILED(result) || Text(rule, &_CodeClass::get_Definition) == definition);
            EXPECT_EQ(rule->Load(Arg(definition), nullptr), S_OK);
            EXPECT_EQ(Text(rule, &_CodeClass::get_Definition), definition) << "the next time";
        });
    EXPECT_GT(failed, 30);
}

} // namespace kestrel::test
