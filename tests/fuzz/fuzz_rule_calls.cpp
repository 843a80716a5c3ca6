// Any sequence of calls on a rule, by the host and by handlers of its events: the rule is whole after each.
#include <algorithm>
#include <array>

#include "fuzz/Fuzz.h"
#include "support/Checks.h"

namespace kestrel::test {

namespace {

// The input as a stream of choices; 0 when it is used up.
class Choices {
  public:
    Choices(const std::uint8_t* data, std::size_t size) noexcept : mvarData(data), mvarSize(size) {}

    [[nodiscard]] bool Left() const noexcept { return mvarSize > 0; }
    [[nodiscard]] int Below(int count) noexcept {
        if (mvarSize == 0) return 0;
        --mvarSize;
        return *mvarData++ % count;
    }
    [[nodiscard]] bool Yes() noexcept { return Below(2) == 1; }
    template <int Count>
    [[nodiscard]] String OneOf(const std::array<const wchar_t*, Count>& texts) noexcept {
        return texts[static_cast<std::size_t>(Below(Count))];
    }

  private:
    const std::uint8_t* mvarData;
    std::size_t mvarSize;
};

class Session {
  public:
    Session(const std::uint8_t* data, std::size_t size) : mvarChoices(data, size) {
        auto& rule = *mvarRule;
        const auto maybeCall = [this] { MaybeCallWithin(); };
        mvarHandlers.push_back(rule.BandsChanged.Subscribe(maybeCall));
        mvarHandlers.push_back(rule.FieldsChanged.Subscribe(maybeCall));
        mvarHandlers.push_back(rule.LayeredBandsChanged.Subscribe(maybeCall));
        mvarHandlers.push_back(rule.RelationsChanged.Subscribe(maybeCall));
        mvarHandlers.push_back(rule.BeforeDropBand.Subscribe([this](const String&, bool& cancel, const String&) {
            MaybeCallWithin();
            cancel = mvarChoices.Below(8) == 7;
        }));
        mvarHandlers.push_back(rule.GetLastCode.Subscribe([this](const String& filter, String& value) {
            MaybeCallWithin();
            if (mvarChoices.Yes()) value = filter;
            std::replace(value.begin(), value.end(), L'?', L'1');
        }));
        mvarHandlers.push_back(rule.SaveRequested.Subscribe([this](const String&, bool& achieved) {
            MaybeCallWithin();
            achieved = mvarChoices.Yes();
        }));
        mvarStandIns.prompts.whileAsking = maybeCall;
    }

    void Run() {
        while (mvarChoices.Left()) {
            mvarStandIns.prompts.answer = mvarChoices.Below(4) != 0;
            Succeeds([this] { Call(); });
            RequireWhole(FaultOf(*mvarRule));
            RequireWhole(DanglingOf(*mvarRule));
            RequireWhole(FaultOf(mvarRule->UsrFields()));
            RequireWhole(FaultOf(mvarRule->LayeredBands()));
            if (mvarRule->ExistingRelations()) RequireWhole(FaultOf(*mvarRule->ExistingRelations()));
        }
        CheckDefinition();
    }

  private:
    [[nodiscard]] String Name() { return mvarChoices.OneOf<8>({L"A", L"b", L"C", L"d", L"B", L"E", L"", L" f "}); }
    [[nodiscard]] String Text() { return mvarChoices.OneOf<8>({L"1", L"x", L"07", L"a", L"", L"Zz", L"000", L">"}); }
    [[nodiscard]] int Number() { return mvarChoices.Below(8) - 1; }
    [[nodiscard]] IndexKey Place() {
        const int kind = mvarChoices.Below(3);
        if (kind == 0) return {};
        return kind == 1 ? IndexKey(Number()) : IndexKey(Name());
    }
    [[nodiscard]] Ref<Band> ABand() { return mvarRule->Band(mvarChoices.Below(mvarRule->Count() + 1)); }
    [[nodiscard]] Ref<List> AField() {
        auto& list = mvarChoices.Yes() ? mvarRule->UsrFields() : mvarRule->UsrMacros();
        return list.Count() == 0 ? nullptr : list.Item(mvarChoices.Below(list.Count()) + 1);
    }

    void MaybeCallWithin() {
        if (mvarDepth >= 3 || mvarChoices.Below(4) != 3) return;
        ++mvarDepth;
        Succeeds([this] { Call(); });
        --mvarDepth;
    }

    void Call() {
        switch (mvarChoices.Below(6)) {
        case 0: return CallRule();
        case 1: return CallBand();
        case 2: return CallReferences();
        case 3: return CallLists();
        case 4: return CallTree(mvarRule->Relations());
        default: return CallWhole();
        }
    }

    void CallRule() {
        switch (mvarChoices.Below(4)) {
        case 0: return AddBand();
        case 1: return mvarRule->Remove(Place());
        case 2: return mvarRule->Drag(Place(), Place(), Place());
        default: return AddBand();
        }
    }

    void AddBand() {
        NewBand band{.name = Name(), .style = Number()};
        if (mvarChoices.Yes()) band.swapMode = Number();
        if (mvarChoices.Yes()) band.defaultValue = Text();
        if (mvarChoices.Yes()) band.length = Number();
        if (mvarChoices.Yes()) band.dataField = AField();
        if (mvarChoices.Yes()) band.before = Place();
        if (mvarChoices.Below(4) == 3) band.after = Place();
        mvarRule->Add(band);
    }

    void CallBand() {
        const auto band = ABand();
        switch (mvarChoices.Below(9)) {
        case 0: return band->SetSwapMode(Number());
        case 1: return band->SetDefault(Text());
        case 2: return band->SetLength(Number());
        case 3: return band->SetFormate(Text());
        case 4: return band->SetValue(Text());
        case 5: return band->SetInitStart(Text());
        case 6: return band->SetInitEnd(Text());
        case 7: return band->SetIncrMode(Number());
        default: return band->SetName(Name());
        }
    }

    void CallReferences() {
        const auto band = ABand();
        switch (mvarChoices.Below(4)) {
        case 0: return band->SetTrigerBand(mvarChoices.Yes() ? ABand() : nullptr);
        case 1: return band->SetDataField(AField());
        case 2:
            if (const auto tree = band->Relations()) CallTree(*tree);
            return;
        default:
            if (const auto names = band->TrackBands()) names->Add(Name());
        }
    }

    void CallLists() {
        const std::array<Lists*, 3> lists = {&mvarRule->UsrFields(), &mvarRule->UsrMacros(), &mvarRule->LayeredBands()};
        auto& list = *lists[static_cast<std::size_t>(mvarChoices.Below(3))];
        switch (mvarChoices.Below(5)) {
        case 0: return list.Remove(Place());
        case 1: return list.MoveItem(Place(), Place(), Place());
        case 2: return list.ClearItems();
        default: list.Add(Name(), Text(), Text());
        }
    }

    void CallTree(cNodes& tree) {
        switch (mvarChoices.Below(6)) {
        case 0: return tree.Remove(Number());
        case 1: return tree.Drag(Number(), Number(), Number());
        case 2: return tree.Node(Number())->SetText(Text());
        case 3: return tree.Node(Number())->SetTag(Text());
        default: tree.Add(mvarChoices.Yes() ? IndexKey(Number()) : IndexKey(), Number(), Text(), Text());
        }
    }

    void CallWhole() {
        switch (mvarChoices.Below(8)) {
        case 0: return mvarRule->Cls();
        case 1: return mvarRule->Load(mvarRule->Definition());
        case 2: return mvarRule->SetCodeUCased(mvarChoices.Yes());
        case 3: return mvarRule->Save();
        case 4: return mvarRule->SetStyle(Number());
        case 5: return mvarRule->ExpCode(Text() + Text());
        default: static_cast<void>(mvarRule->GetCode(Number()));
        }
    }

    // What a rule wrote can be read, and what it then writes comes back the same.
    void CheckDefinition() const {
        const auto loaded = Make<CodeClass>();
        loaded->Load(mvarRule->Definition());
        RequireWhole(FaultOf(*loaded));
        RequireWhole(DanglingOf(*loaded));
        Require(loaded->Count() == mvarRule->Count(), "every band comes back");
        const auto again = Make<CodeClass>();
        again->Load(loaded->Definition());
        Require(again->Definition() == loaded->Definition(), "what a rule wrote reads back the same");
    }

    StandIns mvarStandIns;
    Choices mvarChoices;
    Ref<CodeClass> mvarRule = Make<CodeClass>();
    std::vector<Subscription> mvarHandlers;
    int mvarDepth = 0;
};

} // namespace

} // namespace kestrel::test

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    kestrel::test::Session(data, size).Run();
    return 0;
}
