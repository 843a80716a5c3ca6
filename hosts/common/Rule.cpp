#include "hosts/common/Rule.h"

#include <algorithm>

namespace hosts {

namespace {

// Published with the component's event interface and fixed.
constexpr DISPID GetLastCodeEvent = 11;

std::vector<std::wstring> TrackedNames(const Dispatch& band) {
    const Dispatch names = band.Object(L"TrackBands");
    std::vector<std::wstring> tracked;
    if (names.Raw() == nullptr) return tracked;
    for (long position = 1; position <= names.Get(L"Count").Number(); ++position) {
        const Variant index(position);
        tracked.push_back(names.Get(L"Item", {&index}).Text());
    }
    return tracked;
}

} // namespace

Rule::Rule() : mvarRule(Dispatch::Create(L"Kestrel.CodeClass")), mvarEvents(mvarRule.Raw()) {}

void Rule::Load(const std::wstring& definition) {
    const Variant text(definition);
    mvarRule.Call(L"Load", {&text});
    if (mvarRule.Get(L"Count").Number() == 0) throw HostError(L"the text defines no band, so it is no rule");
    mvarNames.clear();
    mvarItems.clear();
    ReadNames(L"UsrFields");
    ReadNames(L"UsrMacros");
}

void Rule::ReadNames(const std::wstring& list) {
    const Dispatch items = mvarRule.Object(list);
    const long count = items.Get(L"Count").Number();
    for (long position = 1; position <= count; ++position) {
        mvarItems.push_back(items.Item(Variant(position)));
        mvarNames.push_back(mvarItems.back().Get(L"Name").Text());
    }
}

// NOLINTNEXTLINE(readability-make-member-function-const): what the rule answers is changed
void Rule::OnLastCode(LastCode lastCode) {
    Events().On(GetLastCodeEvent, [lastCode = std::move(lastCode)](const EventArguments& arguments) {
        arguments.SetText(1, lastCode(arguments.Text(0)));
    });
}

std::wstring Rule::GetCode(long style) {
    const Variant argument(style);
    std::wstring code;
    try {
        code = mvarRule.Call(L"GetCode", {&argument}).Text();
    } catch (const DispatchError&) {
        Events().RethrowFailure(); // the cause, where a handler failed
        throw;
    }
    Events().RethrowFailure();
    return code;
}

void Rule::TakeApart(const std::wstring& code) {
    const Variant argument(code);
    mvarRule.Call(L"ExpCode", {&argument});
}

std::size_t Rule::CodeLength() const { return static_cast<std::size_t>(mvarRule.Get(L"Length").Number()); }

std::vector<Band> Rule::Bands() const {
    std::vector<Band> bands;
    std::size_t position = 0;
    const long count = mvarRule.Get(L"Count").Number();
    for (long index = 1; index <= count; ++index) {
        const Dispatch band = mvarRule.Item(Variant(index), L"Band");
        const auto length = static_cast<std::size_t>(band.Get(L"Length").Number());
        bands.push_back({band.Get(L"Name").Text(), static_cast<BandStyle>(band.Get(L"Style").Number()), position,
                         length, TrackedNames(band)});
        position += length;
    }
    return bands;
}

std::wstring Rule::BandValue(const std::wstring& name) const {
    return mvarRule.Item(Variant(name), L"Band").Get(L"Value").Text();
}

const Dispatch* Rule::Find(const std::wstring& name) const {
    const auto found = std::ranges::find(mvarNames, name);
    return found == mvarNames.end() ? nullptr : &mvarItems[static_cast<std::size_t>(found - mvarNames.begin())];
}

bool Rule::Knows(const std::wstring& name) const { return Find(name) != nullptr; }

void Rule::SetValue(const std::wstring& name, const std::wstring& value) {
    const Dispatch* item = Find(name);
    if (item == nullptr) throw HostError(L"the rule has no field or macro " + name);
    item->Put(L"Value", Variant(value));
}

std::wstring Rule::Value(const std::wstring& name) const {
    const Dispatch* item = Find(name);
    return item == nullptr ? std::wstring() : item->Get(L"Value").Text();
}

} // namespace hosts
