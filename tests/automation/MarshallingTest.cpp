// Objects across apartments: carried by the automation runtime by means of the registered interfaces.
#include <thread>

#include "automation/support/Late.h"
#include "automation/support/Sink.h"

namespace kestrel::test {

namespace {

// "A-" and a number that counts for as long as that stands before it.
ComPtr<_CodeClass> CountingRule() {
    auto rule = NewRule();
    Must(rule->Add(Arg(L"Prefix"), bsFixed, smNoneSwap, Arg(L"A-"), nullptr, Missing(), nullptr, Missing(), Missing(),
                   ComPtr<_Band>().Out()));
    ComPtr<_Band> number;
    Must(rule->Add(Arg(L"Number"), bsIncreaseNumber, smNoneSwap, Arg(L"1"), nullptr, Number(3), Arg(L"000"), Missing(),
                   Missing(), number.Out()));
    Must(Object(number, &_Band::get_TrackBands)->Add(Arg(L"Prefix"), Bstr().Out()));
    return rule;
}

// Asks for a code, whose last one a handler names that this thread connects; the thread that the handler is called on.
DWORD ThreadOfTheHandler(const ComPtr<_CodeClass>& rule) {
    DWORD called = 0;
    const Advised sink(rule.Get(), __uuidof(__CodeClass), [&called](const EventCall& call) {
        called = GetCurrentThreadId();
        call.SetText(1, L"A-041");
        return S_OK;
    });
    Bstr code;
    EXPECT_EQ(rule->GetCode(gsNewCode, code.Out()), S_OK);
    EXPECT_EQ(code.Text(), L"A-042");
    return called;
}

// Whether calls go to the component straight away, not to what carries them to another thread.
bool IsOfTheComponent(IUnknown* object) {
    HMODULE module = nullptr;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                       *reinterpret_cast<LPCWSTR*>(object), &module);
    return module == GetModuleHandleW(L"Kestrel.dll");
}

class MarshallingTest : public ComTest {
  protected:
    // Runs the body in another apartment with a proxy of the object, while this one answers its calls.
    template <class Interface, class Body>
    static void Elsewhere(const ComPtr<Interface>& object, Body body) {
        ComPtr<IStream> stream;
        Must(CoMarshalInterThreadInterfaceInStream(__uuidof(Interface), object.Get(), stream.Out()));
        IStream* const carried = stream.Detach();
        const DWORD home = GetCurrentThreadId();
        std::thread thread([&] {
            CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
            {
                ComPtr<Interface> proxy;
                EXPECT_EQ(CoGetInterfaceAndReleaseStream(carried, __uuidof(Interface), proxy.OutVoid()), S_OK);
                if (proxy) body(proxy);
            }
            CoUninitialize();
            PostThreadMessageW(home, WM_QUIT, 0, 0);
        });
        MSG message;
        while (GetMessageW(&message, nullptr, 0, 0) > 0)
            DispatchMessageW(&message);
        thread.join();
    }
};

} // namespace

TEST_F(MarshallingTest, EarlyAndLateBound) {
    const auto names = NewNames();
    Elsewhere(names, [&](const ComPtr<_Names>& proxy) {
        EXPECT_NE(proxy.Get(), names.Get());
        Bstr text;
        EXPECT_EQ(proxy->Add(Arg(L"a"), text.Out()), S_OK);
        EXPECT_EQ(text.Text(), L"a");
        EXPECT_EQ(NumberIn(Call(proxy.Get(), L"Count")), 1);
    });
    EXPECT_EQ(Plain(names, &_Names::get_Count), 1);
}

TEST_F(MarshallingTest, ObjectsAndReferences) {
    const auto tree = NewNodes();
    Elsewhere(tree, [](const ComPtr<_cNodes>& proxy) {
        ComPtr<_cNode> node;
        EXPECT_EQ(proxy->Add(Missing(), tvwFirst, Arg(L"01"), Arg(L"North"), node.Out()), S_OK);
        if (!node) return;
        EXPECT_EQ(Text(node, &_cNode::get_Key), L"N1");
        ::ConvStyles style = csCodeToValue;
        Bstr value(L"01");
        Bstr key;
        EXPECT_EQ(proxy->Conversion(&style, value.Out(), Missing(), key.Out()), S_OK);
        EXPECT_EQ(value.Text(), L"North");
        EXPECT_EQ(key.Text(), L"N1");
    });
}

// The thread that connected its handler gets the event, while it waits for its own call, and answers by reference.
TEST_F(MarshallingTest, EventsComeToTheThreadThatAskedForThem) {
    Elsewhere(CountingRule(),
              [](const ComPtr<_CodeClass>& proxy) { EXPECT_EQ(ThreadOfTheHandler(proxy), GetCurrentThreadId()); });
}

// A thread without messages, such as the main one of a program that does not say otherwise: COM gives the rule a thread
// of its own.
TEST_F(MarshallingTest, ARuleOfAThreadWithoutMessagesHasAThreadOfItsOwn) {
    std::thread thread([] {
        CoInitializeEx(nullptr, COINIT_MULTITHREADED);
        {
            const auto rule = CountingRule();
            EXPECT_FALSE(IsOfTheComponent(rule.Get()));
            EXPECT_NE(ThreadOfTheHandler(rule), GetCurrentThreadId());
        }
        CoUninitialize();
    });
    thread.join();
    EXPECT_TRUE(IsOfTheComponent(NewRule().Get()));
}

TEST_F(MarshallingTest, AnObjectOfAnotherApartmentIsForeign) {
    const auto rule = NewRule();
    ComPtr<_List> field;
    Must(Object(rule, &_CodeClass::get_UsrFields)->Add(Arg(L"F"), nullptr, nullptr, nullptr, field.Out()));
    Elsewhere(field, [](const ComPtr<_List>& proxy) {
        const auto local = NewRule();
        EXPECT_EQ(local->Add(Arg(L"B"), bsUsrField, smNoneSwap, nullptr, proxy.Get(), Missing(), nullptr, Missing(),
                             Missing(), ComPtr<_Band>().Out()),
                  static_cast<HRESULT>(InvalidParameter.code));
    });
}

} // namespace kestrel::test
