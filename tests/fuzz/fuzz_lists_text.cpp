// Any text as a list: names are unique, and what was read is written in a form that reads back the same.
#include "fuzz/Fuzz.h"
#include "support/Checks.h"

namespace kestrel::test {

namespace {

Ref<Lists> FieldList() {
    auto list = Make<Lists>();
    list->SetListStyle(lsFields);
    return list;
}

void CheckRoundTrip(const Lists& list) {
    const String written = list.ListsText();
    const auto again = FieldList();
    Require(Succeeds([&] { again->SetListsText(written); }), "what a list wrote can be read");
    Require(again->ListsText() == written, "what a list wrote reads back the same");
    Require(again->Count() == list.Count(), "each item is written");
}

} // namespace

} // namespace kestrel::test

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace kestrel::test;
    const StandIns standIns;
    const auto list = FieldList();
    const auto text = TextOf(data, size);
    Succeeds([&] { list->SetListsText(text); });
    RequireWhole(FaultOf(*list));
    for (const auto& item : list->Snapshot()) {
        Require(!item->Name().empty() && item->Name() == kestrel::Trim(item->Name()),
                "names are trimmed and not empty");
        Require(!item->ForeignName().empty(), "an item with a name has a foreign name");
    }
    CheckRoundTrip(*list);
    return 0;
}
