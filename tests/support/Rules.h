// Rules for tests, and a recorder of the events that a rule raises.
#pragma once

#include <vector>

#include "engine/CodeClass.h"
#include "support/Recorders.h"

namespace kestrel::test {

inline Ref<Band> AddFixed(CodeClass& rule, const String& name, const String& text) {
    return rule.Add({.name = name, .style = bsFixed, .defaultValue = text});
}

inline Ref<Band> AddNumber(CodeClass& rule, const String& name, std::int32_t length, const String& start = L"1") {
    return rule.Add({.name = name,
                     .style = bsIncreaseNumber,
                     .defaultValue = start,
                     .length = length,
                     .formate = String(static_cast<std::size_t>(length), L'0')});
}

inline Ref<Band> AddLetter(CodeClass& rule, const String& name, const String& start = L"A") {
    return rule.Add({.name = name, .style = bsIncreaseAlpha, .defaultValue = start});
}

// A band bound to a field that is made when the rule has none of that name.
inline Ref<Band> AddField(CodeClass& rule, const String& name, const String& field, std::int32_t length,
                          int swapMode = smNoneSwap) {
    if (rule.UsrFields().FindItemPosition(field) == 0) rule.UsrFields().Add(field);
    return rule.Add({.name = name,
                     .style = bsUsrField,
                     .swapMode = swapMode,
                     .dataField = rule.UsrFields().Item(field),
                     .length = length});
}

// The same with a macro.
inline Ref<Band> AddMacro(CodeClass& rule, const String& name, const String& macro, std::int32_t length) {
    if (rule.UsrMacros().FindItemPosition(macro) == 0) rule.UsrMacros().Add(macro);
    return rule.Add({.name = name, .style = bsUsrMacro, .dataField = rule.UsrMacros().Item(macro), .length = length});
}

// The names of the bands in order, joined with blanks.
[[nodiscard]] inline String BandsOf(const CodeClass& rule) {
    std::vector<String> names;
    for (const auto& band : rule.Bands())
        names.push_back(band->Name());
    return Join(names, L" ");
}

class RuleRecorder {
  public:
    explicit RuleRecorder(CodeClass& rule) {
        const auto note = [this](const wchar_t* line) { return [this, line] { lines.emplace_back(line); }; };
        mvarHandlers.push_back(rule.BandsChanged.Subscribe(note(L"bands")));
        mvarHandlers.push_back(rule.FieldsChanged.Subscribe(note(L"fields")));
        mvarHandlers.push_back(rule.LayeredBandsChanged.Subscribe(note(L"layers")));
        mvarHandlers.push_back(rule.RelationsChanged.Subscribe(note(L"relations")));
        mvarHandlers.push_back(rule.BeforeDropBand.Subscribe(
            [this](const String& name, bool, const String&) { lines.push_back(L"dropping " + name); }));
        mvarHandlers.push_back(
            rule.AddField.Subscribe([this](const String& name) { lines.push_back(L"add " + name); }));
        mvarHandlers.push_back(
            rule.DropField.Subscribe([this](const String& name) { lines.push_back(L"drop " + name); }));
        mvarHandlers.push_back(rule.BeforeDropField.Subscribe(
            [this](const String&, bool, const String&) { lines.emplace_back(L"before drop field"); }));
        mvarHandlers.push_back(
            rule.LoadRequested.Subscribe([this](const String&, bool) { lines.emplace_back(L"load"); }));
    }

    Lines lines;

  private:
    std::vector<Subscription> mvarHandlers;
};

} // namespace kestrel::test
