// Connection points, and sinks that answer, fail, leave and destroy.
#include <array>

#include "automation/support/Late.h"
#include "automation/support/Sink.h"

namespace kestrel::test {

namespace {

constexpr HRESULT SinkFailure = static_cast<HRESULT>(0x800A03E8);

class EventsTest : public ComTest {
  protected:
    void TearDown() override { EXPECT_EQ(Sink::Living(), 0) << "a sink was not let go"; }

    static HRESULT Add(const ComPtr<_Names>& names, StringView text) { return names->Add(Arg(text), Bstr().Out()); }
    static HRESULT Add(const ComPtr<_cNodes>& tree, StringView text) {
        return tree->Add(Missing(), tvwFirst, Arg(text), Arg(text), ComPtr<_cNode>().Out());
    }
};

HRESULT Nothing(const EventCall&) { return S_OK; }

} // namespace

// --- Connection points ---

TEST_F(EventsTest, AClassWithEventsHasOnePoint) {
    const auto names = NewNames();
    const auto container = names.As<IConnectionPointContainer>();
    ComPtr<IEnumConnectionPoints> points;
    ASSERT_EQ(container->EnumConnectionPoints(points.Out()), S_OK);
    std::array<ComPtr<IConnectionPoint>, 2> found;
    ULONG fetched = 0;
    EXPECT_EQ(points->Next(2, found[0].Out(), &fetched), S_FALSE);
    ASSERT_EQ(fetched, 1U);
    IID events{};
    EXPECT_EQ(found[0]->GetConnectionInterface(&events), S_OK);
    EXPECT_EQ(events, __uuidof(__Names));
    EXPECT_EQ(found[0]->GetConnectionInterface(nullptr), E_POINTER);
    ComPtr<IConnectionPointContainer> back;
    EXPECT_EQ(found[0]->GetConnectionPointContainer(back.Out()), S_OK);
    EXPECT_TRUE(Same(back.Get(), names.Get()));
    EXPECT_EQ(found[0]->GetConnectionPointContainer(nullptr), E_POINTER);
    EXPECT_EQ(container->EnumConnectionPoints(nullptr), E_POINTER);
}

TEST_F(EventsTest, OtherPointsAreNotFound) {
    const auto container = NewNames().As<IConnectionPointContainer>();
    auto* point = reinterpret_cast<IConnectionPoint*>(this);
    EXPECT_EQ(container->FindConnectionPoint(__uuidof(__Lists), &point), CONNECT_E_NOCONNECTION);
    EXPECT_EQ(point, nullptr);
    EXPECT_EQ(container->FindConnectionPoint(__uuidof(__Names), nullptr), E_POINTER);
}

TEST_F(EventsTest, AdviseChecksItsArguments) {
    const auto point = PointOf(NewNames().Get(), __uuidof(__Names));
    const ComPtr<Sink> sink(new Sink(__uuidof(__Names), Nothing));
    DWORD cookie = 99;
    EXPECT_EQ(point->Advise(nullptr, &cookie), E_POINTER);
    EXPECT_EQ(cookie, 0U);
    EXPECT_EQ(point->Advise(sink.Get(), nullptr), E_POINTER);
    EXPECT_EQ(point->Advise(NewNames().As<IProvideClassInfo>().Get(), &cookie), S_OK) << "IDispatch alone is a sink";
    EXPECT_EQ(point->Unadvise(cookie), S_OK);
    const ComPtr<IUnknown> noSink(point.As<IUnknown>());
    EXPECT_EQ(point->Advise(noSink.Get(), &cookie), CONNECT_E_CANNOTCONNECT);
    EXPECT_EQ(cookie, 0U);
    EXPECT_EQ(point->Unadvise(0), CONNECT_E_NOCONNECTION);
    EXPECT_EQ(point->EnumConnections(nullptr), E_POINTER);
}

TEST_F(EventsTest, CookiesAreNeverUsedAgain) {
    const auto names = NewNames();
    const auto point = PointOf(names.Get(), __uuidof(__Names));
    const ComPtr<Sink> sink(new Sink(__uuidof(__Names), Nothing));
    DWORD first = 0;
    DWORD second = 0;
    Must(point->Advise(sink.Get(), &first));
    Must(point->Unadvise(first));
    Must(point->Advise(sink.Get(), &second));
    EXPECT_NE(first, second);
    EXPECT_EQ(point->Unadvise(first), CONNECT_E_NOCONNECTION);
    EXPECT_EQ(PointOf(NewNames().Get(), __uuidof(__Names))->Unadvise(second), CONNECT_E_NOCONNECTION);
    EXPECT_EQ(point->Unadvise(second), S_OK);
}

TEST_F(EventsTest, ConnectionsAreEnumerated) {
    const auto names = NewNames();
    const Advised first(names.Get(), __uuidof(__Names), Nothing);
    const Advised second(names.Get(), __uuidof(__Names), Nothing, &IID_IDispatch);
    ComPtr<IEnumConnections> connections;
    ASSERT_EQ(PointOf(names.Get(), __uuidof(__Names))->EnumConnections(connections.Out()), S_OK);
    std::array<CONNECTDATA, 3> found{};
    ULONG fetched = 0;
    EXPECT_EQ(connections->Next(3, found.data(), &fetched), S_FALSE);
    ASSERT_EQ(fetched, 2U);
    EXPECT_EQ(found[0].dwCookie, first.Cookie());
    EXPECT_EQ(found[1].dwCookie, second.Cookie());
    for (ULONG i = 0; i < fetched; ++i)
        EXPECT_TRUE(static_cast<bool>(ComPtr<IUnknown>::Attach(found[i].pUnk)));
}

// --- What sinks see and answer ---

TEST_F(EventsTest, SinksOfTheEventInterfaceAndOfDispatchAreCalled) {
    const auto names = NewNames();
    int calls = 0;
    const auto count = [&calls](const EventCall&) {
        ++calls;
        return S_OK;
    };
    const Advised first(names.Get(), __uuidof(__Names), count);
    const Advised second(names.Get(), __uuidof(__Names), count, &IID_IDispatch);
    EXPECT_DONE(Add(names, L"a"));
    EXPECT_EQ(calls, 2);
}

TEST_F(EventsTest, NamesBeforeAddPassesTheNameByValue) {
    const auto names = NewNames();
    const Advised sink(names.Get(), __uuidof(__Names), [](const EventCall& call) {
        EXPECT_EQ(call.Id(), 2);
        EXPECT_EQ(call.Count(), 3U);
        EXPECT_EQ(V_VT(&call.Raw(0)), VT_BSTR);
        EXPECT_EQ(ViewOf(V_BSTR(&call.Raw(0))), L"a");
        EXPECT_EQ(call.Flag(1), VARIANT_FALSE);
        EXPECT_EQ(call.Text(2), L"");
        call.Flag(1) = VARIANT_TRUE;
        call.SetText(2, L" Not now.");
        return S_OK;
    });
    EXPECT_FAILS(Add(names, L"a"), AddFailed.Followed(L" Not now."));
    EXPECT_EQ(Plain(names, &_Names::get_Count), 0);
}

TEST_F(EventsTest, EachSinkSeesWhatTheOneBeforeLeft) {
    const auto names = NewNames();
    const Advised first(names.Get(), __uuidof(__Names), [](const EventCall& call) {
        call.Flag(1) = 1; // any truth is a truth
        call.SetText(2, L"one");
        return S_OK;
    });
    const Advised second(names.Get(), __uuidof(__Names), [](const EventCall& call) {
        EXPECT_EQ(call.Flag(1), 1);
        call.SetText(2, call.Text(2) + L", two");
        return S_OK;
    });
    EXPECT_FAILS(Add(names, L"a"), AddFailed.Followed(L"one, two"));
}

TEST_F(EventsTest, ASinkMayEmptyATextAltogether) {
    const auto names = NewNames();
    const Advised sink(names.Get(), __uuidof(__Names), [](const EventCall& call) {
        call.Flag(1) = VARIANT_TRUE;
        const Bstr old = [&] {
            Bstr taken;
            std::swap(*taken.Out(), *V_BSTRREF(&call.Raw(2)));
            return taken;
        }();
        return S_OK; // the reference now holds null
    });
    EXPECT_FAILS(Add(names, L"a"), AddFailed);
}

TEST_F(EventsTest, ListsEventsByReference) {
    const auto fields = Object(NewRule(), &_CodeClass::get_UsrFields);
    std::vector<DISPID> ids;
    const Advised sink(fields.Get(), __uuidof(__Lists), [&ids](const EventCall& call) {
        ids.push_back(call.Id());
        if (call.Id() == 1) {
            EXPECT_EQ(call.Count(), 0U);
        } else {
            EXPECT_EQ(call.Text(0), L"F");
            EXPECT_EQ(call.Flag(1), VARIANT_FALSE);
            EXPECT_EQ(call.Text(2), L"");
        }
        if (call.Id() == 3) {
            EXPECT_EQ(call.Count(), 4U);
            EXPECT_EQ(call.Number(3), 1);
            call.Number(3) = 7; // read back by nothing
        }
        return S_OK;
    });
    Must(fields->Add(Arg(L"F"), nullptr, nullptr, nullptr, ComPtr<_List>().Out()));
    EXPECT_EQ(ids, (std::vector<DISPID>{3, 1}));
    ids.clear();
    Must(fields->Remove(Number(1)));
    EXPECT_EQ(ids, (std::vector<DISPID>{2, 1}));
}

TEST_F(EventsTest, ListsVetoes) {
    const auto fields = Object(NewRule(), &_CodeClass::get_UsrFields);
    Must(fields->Add(Arg(L"F"), nullptr, nullptr, nullptr, ComPtr<_List>().Out()));
    const Advised sink(fields.Get(), __uuidof(__Lists), [](const EventCall& call) {
        if (call.Id() == 1) return S_OK;
        call.Flag(1) = VARIANT_TRUE;
        call.SetText(2, L" No.");
        return S_OK;
    });
    EXPECT_FAILS(fields->Remove(Arg(L"F")), DropFailed.Followed(L" No."));
    EXPECT_FAILS(fields->Add(Arg(L"G"), nullptr, nullptr, nullptr, ComPtr<_List>().Out()), AddFailed.Followed(L" No."));
    EXPECT_EQ(Plain(fields, &_Lists::get_Count), 1);
}

TEST_F(EventsTest, TheRuleGuardsItsListsBeforeHostsDo) {
    const auto rule = NewRule();
    const auto fields = Object(rule, &_CodeClass::get_UsrFields);
    ComPtr<_List> field;
    Must(fields->Add(Arg(L"F"), nullptr, nullptr, nullptr, field.Out()));
    Must(rule->Add(Arg(L"B"), bsUsrField, smNoneSwap, nullptr, field.Get(), Missing(), nullptr, Missing(), Missing(),
                   ComPtr<_Band>().Out()));
    const Advised sink(fields.Get(), __uuidof(__Lists), [](const EventCall& call) {
        if (call.Id() != 2) return S_OK;
        EXPECT_EQ(call.Flag(1), VARIANT_TRUE);
        EXPECT_EQ(call.Text(2), L"The field [F] is bounded to the following Band:\r\n\r\nB");
        call.Flag(1) = VARIANT_FALSE; // a host may know better
        return S_OK;
    });
    EXPECT_DONE(fields->Remove(Arg(L"F")));
}

TEST_F(EventsTest, TreeChangesNameParentAndNode) {
    const auto tree = NewNodes();
    std::vector<String> seen;
    const Advised sink(tree.Get(), __uuidof(__cNodes), [&seen](const EventCall& call) {
        EXPECT_EQ(call.Id(), 1);
        seen.push_back(call.Text(0) + L"/" + call.Text(1));
        call.SetText(0, L"changed by the sink");
        return S_OK;
    });
    ComPtr<_cNode> root;
    Must(tree->Add(Missing(), tvwFirst, Arg(L"1"), Arg(L"a"), root.Out()));
    Must(tree->Add(Number(1), tvwChild, Arg(L"1"), Arg(L"b"), ComPtr<_cNode>().Out()));
    Must(root->put_Text(Arg(L"2")));
    Must(tree->Remove(Number(2)));
    Must(tree->RemoveItem(Number(1)));
    Must(tree->Cls());
    EXPECT_EQ(seen, (std::vector<String>{L"/N1", L"N1/N2", L"/N1", L"N1/N1", L"/"}));
}

TEST_F(EventsTest, RuleEventsHaveTheirIds) {
    const auto rule = NewRule();
    std::vector<DISPID> ids;
    const Advised sink(rule.Get(), __uuidof(__CodeClass), [&ids](const EventCall& call) {
        ids.push_back(call.Id());
        return S_OK;
    });
    Must(Object(rule, &_CodeClass::get_UsrMacros)->Add(Arg(L"M"), nullptr, Arg(L"m"), nullptr, ComPtr<_List>().Out()));
    ComPtr<_List> macro;
    Must(Object(rule, &_CodeClass::get_UsrMacros)->get_Item(Number(1), macro.Out()));
    Must(rule->Add(Arg(L"B"), bsUsrMacro, smLayersSwap, nullptr, macro.Get(), Missing(), nullptr, Missing(), Missing(),
                   ComPtr<_Band>().Out()));
    Must(Add(Object(rule, &_CodeClass::get_Relations), L"m"));
    Must(Object(rule, &_CodeClass::get_Relations)->Cls());
    Must(rule->Remove(Arg(L"B")));
    // FieldsChanged; BandsChanged and LayeredBandsChanged; RelationsChanged twice; BeforeDropBand and both changes.
    EXPECT_EQ(ids, (std::vector<DISPID>{3, 4, 9, 10, 10, 8, 9, 4}));
}

TEST_F(EventsTest, TheHostNamesTheLastCode) {
    const auto rule = NewRule();
    Must(rule->Add(Arg(L"P"), bsFixed, smNoneSwap, Arg(L"AB"), nullptr, Missing(), nullptr, Missing(), Missing(),
                   ComPtr<_Band>().Out()));
    ComPtr<_Band> number;
    Must(rule->Add(Arg(L"N"), bsIncreaseNumber, smNoneSwap, Arg(L"1"), nullptr, Number(4), Arg(L"0000"), Missing(),
                   Missing(), number.Out()));
    Must(Add(Object(number, &_Band::get_TrackBands), L"P"));
    const Advised sink(rule.Get(), __uuidof(__CodeClass), [](const EventCall& call) {
        if (call.Id() != 11) return S_OK;
        EXPECT_EQ(call.Text(0), L"AB????");
        EXPECT_EQ(call.Text(1), L"");
        call.SetText(1, L"AB0041");
        return S_OK;
    });
    Bstr code;
    EXPECT_DONE(rule->GetCode(gsNewCode, code.Out()));
    EXPECT_EQ(code.Text(), L"AB0042");
}

TEST_F(EventsTest, ABandHasItsPoint) {
    const Advised sink(NewBand().Get(), __uuidof(__Band), Nothing);
    EXPECT_NE(sink.Cookie(), 0U);
}

// --- Sinks that misbehave ---

TEST_F(EventsTest, AFailingSinkStopsNeitherTheNextNorTheCall) {
    const auto tree = NewNodes();
    int calls = 0;
    const Advised failing(tree.Get(), __uuidof(__cNodes), [&calls](const EventCall&) {
        ++calls;
        LeaveErrorObject();
        return SinkFailure;
    });
    const Advised next(tree.Get(), __uuidof(__cNodes), [&calls](const EventCall&) {
        ++calls;
        return S_OK;
    });
    EXPECT_EQ(Add(tree, L"1"), S_OK);
    ComPtr<IErrorInfo> left;
    EXPECT_EQ(GetErrorInfo(0, left.Out()), S_FALSE) << "the sink's error is not the host's";
    EXPECT_EQ(calls, 2);
}

TEST_F(EventsTest, ASinkMayUnadviseItself) {
    const auto tree = NewNodes();
    int calls = 0;
    std::unique_ptr<Advised> sink;
    sink = std::make_unique<Advised>(tree.Get(), __uuidof(__cNodes), [&](const EventCall&) {
        ++calls;
        sink->End();
        return S_OK;
    });
    Must(Add(tree, L"1"));
    Must(Add(tree, L"2"));
    EXPECT_EQ(calls, 1);
}

TEST_F(EventsTest, ASinkMayUnadviseTheNext) {
    const auto tree = NewNodes();
    int later = 0;
    std::unique_ptr<Advised> next;
    const Advised first(tree.Get(), __uuidof(__cNodes), [&](const EventCall&) {
        next->End();
        return S_OK;
    });
    next = std::make_unique<Advised>(tree.Get(), __uuidof(__cNodes), [&later](const EventCall&) {
        ++later;
        return S_OK;
    });
    Must(Add(tree, L"1"));
    EXPECT_EQ(later, 0);
}

TEST_F(EventsTest, ASinkAdvisedDuringAnEventIsCalledByTheNextOne) {
    const auto tree = NewNodes();
    int later = 0;
    std::unique_ptr<Advised> added;
    const Advised first(tree.Get(), __uuidof(__cNodes), [&](const EventCall&) {
        if (!added)
            added = std::make_unique<Advised>(tree.Get(), __uuidof(__cNodes), [&later](const EventCall&) {
                ++later;
                return S_OK;
            });
        return S_OK;
    });
    Must(Add(tree, L"1"));
    EXPECT_EQ(later, 0);
    Must(Add(tree, L"2"));
    EXPECT_EQ(later, 1);
}

TEST_F(EventsTest, ASinkMayReleaseTheObject) {
    auto tree = NewNodes();
    ComPtr<_cNode> node;
    std::unique_ptr<Advised> sink;
    sink = std::make_unique<Advised>(tree.Get(), __uuidof(__cNodes), [&](const EventCall&) {
        sink->Forget();
        tree = {};
        return S_OK;
    });
    _cNodes* const last = tree.Get();
    EXPECT_EQ(last->Add(Missing(), tvwFirst, Arg(L"1"), Arg(L"a"), node.Out()), S_OK);
    EXPECT_FALSE(tree);
    ASSERT_TRUE(node);
    EXPECT_EQ(Plain(node, &_cNode::get_Index), 0) << "its tree has ended";
}

TEST_F(EventsTest, ASinkMayReleaseTheObjectInALateBoundCall) {
    auto rule = NewRule();
    std::unique_ptr<Advised> sink;
    sink = std::make_unique<Advised>(rule.Get(), __uuidof(__CodeClass), [&](const EventCall&) {
        sink->Forget();
        rule = {};
        return S_OK;
    });
    EXPECT_EQ(Call(rule.Get(), L"Add", {Arg(L"B"), Number(bsFixed), Number(0), Arg(L"x")}).failure, Failure{});
    EXPECT_FALSE(rule);
}

TEST_F(EventsTest, ASinkMayChangeTheObject) {
    const auto tree = NewNodes();
    bool inside = false;
    const Advised sink(tree.Get(), __uuidof(__cNodes), [&](const EventCall&) {
        if (!std::exchange(inside, true)) Must(tree->Cls());
        return S_OK;
    });
    ComPtr<_cNode> node;
    EXPECT_EQ(tree->Add(Missing(), tvwFirst, Arg(L"1"), Arg(L"a"), node.Out()), S_OK);
    EXPECT_EQ(Plain(tree, &_cNodes::get_Count), 0);
}

TEST_F(EventsTest, ASinkMayCallAMemberThatFails) {
    const auto tree = NewNodes();
    const Advised sink(tree.Get(), __uuidof(__cNodes), [&](const EventCall&) {
        EXPECT_FAILS(tree->Remove(Arg(L"unknown")), InvalidCall);
        return S_OK;
    });
    EXPECT_DONE(Add(tree, L"1"));
}

// --- Whose sinks they are ---

TEST_F(EventsTest, SinksBelongToTheObjectNotToTheFaceOfTheMoment) {
    const auto rule = NewRule();
    int calls = 0;
    const auto count = [&calls](const EventCall&) {
        ++calls;
        return S_OK;
    };
    const DWORD cookie = [&] {
        DWORD advised = 0;
        const auto fields = Object(rule, &_CodeClass::get_UsrFields);
        Must(PointOf(fields.Get(), __uuidof(__Lists))
                 ->Advise(ComPtr<Sink>(new Sink(__uuidof(__Lists), count)).Get(), &advised));
        return advised;
    }();
    const auto fields = Object(rule, &_CodeClass::get_UsrFields);
    Must(fields->Add(Arg(L"F"), nullptr, nullptr, nullptr, ComPtr<_List>().Out()));
    EXPECT_EQ(calls, 2);
    EXPECT_EQ(PointOf(fields.Get(), __uuidof(__Lists))->Unadvise(cookie), S_OK);
}

TEST_F(EventsTest, SinksLeftBehindAreReleasedWithTheObject) {
    {
        const auto names = NewNames();
        Advised sink(names.Get(), __uuidof(__Names), Nothing);
        sink.Forget();
        EXPECT_EQ(Sink::Living(), 1);
    }
    EXPECT_EQ(Sink::Living(), 0);
}

TEST_F(EventsTest, APointKeepsItsObject) {
    const auto point = PointOf(NewNames().Get(), __uuidof(__Names));
    ComPtr<IConnectionPointContainer> container;
    ASSERT_EQ(point->GetConnectionPointContainer(container.Out()), S_OK);
    EXPECT_TRUE(static_cast<bool>(container.As<_Names>()));
}

} // namespace kestrel::test
