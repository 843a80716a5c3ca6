#include "ledger/core/pattern/CompletePattern.h"

#include <algorithm>
#include <cwctype>
#include <map>
#include <set>

#include "hosts/common/Text.h"
#include "ledger/core/formulas/Formula.h"
#include "ledger/core/formulas/Functions.h"

namespace ledger {

namespace {

using hosts::Folded;

bool IsBound(PartKind kind) { return kind == PartKind::Field || kind == PartKind::Macro || kind == PartKind::Formula; }

// The words of a formula: functions, fields, bands and numbers alike.
std::vector<std::wstring> WordsOf(const std::wstring& formula) {
    std::vector<std::wstring> words(1);
    for (const wchar_t character : formula) {
        if (character == L' ' || character == L'(' || character == L')' || character == L'"')
            words.emplace_back();
        else
            words.back() += static_cast<wchar_t>(std::towlower(character));
    }
    std::erase(words, std::wstring());
    return words;
}

// Check digits are made of bands, when all of them have their values. What is no formula of the ledger is none of them.
bool IsCheckDigit(const std::wstring& formula) {
    try {
        return FunctionOf(ParseFormula(formula)).TakesBands();
    } catch (const hosts::HostError&) {
        return false;
    }
}

class Names {
  public:
    [[nodiscard]] bool Take(const std::wstring& name) { return mvarTaken.insert(Folded(name)).second; }
    // The name, or with the first number behind it that makes it a new one.
    std::wstring TakeLike(const std::wstring& name) {
        if (Take(name)) return name;
        std::size_t& count = mvarCounts.try_emplace(Folded(name), 1).first->second;
        for (;;) {
            std::wstring numbered = name + L" " + std::to_wstring(++count);
            if (Take(numbered)) return numbered;
        }
    }

  private:
    std::set<std::wstring> mvarTaken;
    std::map<std::wstring, std::size_t> mvarCounts; // so that a thousand bands of one name are numbered in one pass
};

// ------------------------------------------------------------------------------------------- fields, macros, formulas

class Items {
  public:
    explicit Items(Pattern& pattern) : mvarPattern(pattern) {}

    void Complete() {
        for (const PatternPart& part : mvarPattern)
            if (part.kind == PartKind::Field) mvarFields.insert(part.text);
        for (const PatternPart& part : mvarPattern)
            if (part.kind == PartKind::Macro) AddMacro(part, std::wstring());
        for (const PatternPart& part : mvarPattern)
            if (part.kind == PartKind::Formula && !part.text.empty()) AddMacro(part, part.formula);
        for (PatternPart& part : mvarPattern)
            if (part.kind == PartKind::Formula && part.text.empty()) NameFormula(part);
    }

  private:
    void AddMacro(const PatternPart& part, const std::wstring& formula) {
        if (mvarFields.contains(part.text))
            throw PatternError(part.position,
                               L"\"" + part.text + L"\" is a field already; give the macro or formula another name");
        const auto [known, isNew] = mvarFormulas.try_emplace(part.text, formula);
        if (!isNew && known->second != formula)
            throw PatternError(part.position,
                               L"\"" + part.text + L"\" is something else already; give the formula another name");
    }

    // The same formula twice is one macro.
    void NameFormula(PatternPart& part) {
        const std::wstring function = part.formula.substr(0, part.formula.find(L'('));
        part.text = function;
        for (std::size_t count = 2; !Fits(part); ++count)
            part.text = function + L" " + std::to_wstring(count);
        mvarFormulas.emplace(part.text, part.formula);
    }

    [[nodiscard]] bool Fits(const PatternPart& part) const {
        if (mvarFields.contains(part.text)) return false;
        const auto known = mvarFormulas.find(part.text);
        return known == mvarFormulas.end() || known->second == part.formula;
    }

    Pattern& mvarPattern;
    std::set<std::wstring> mvarFields;
    std::map<std::wstring, std::wstring> mvarFormulas; // by the macros' names; empty: a macro without one
};

// ------------------------------------------------------------------------------------------------------- bands

std::wstring NameLike(const PatternPart& part) {
    switch (part.kind) {
    case PartKind::Text: return L"Text";
    case PartKind::Number: return L"Number";
    case PartKind::Letter: return L"Letter";
    default: return part.text;
    }
}

void NameBands(Pattern& pattern) {
    Names names;
    for (const PatternPart& part : pattern)
        if (!part.name.empty() && !names.Take(part.name))
            throw PatternError(part.position, L"there are two bands with the name \"" + part.name + L"\"");
    for (PatternPart& part : pattern)
        if (part.name.empty()) part.name = names.TakeLike(NameLike(part));
}

// ------------------------------------------------------------------------------------------------- tracked bands

class Tracking {
  public:
    explicit Tracking(Pattern& pattern) : mvarPattern(pattern) {
        for (const PatternPart& part : pattern) {
            mvarBands.emplace(Folded(part.name), part.name);
            if (IsBound(part.kind)) mvarOfItem[Folded(part.text)].push_back(part.name);
        }
    }

    void Complete() {
        std::vector<PatternName> usual;
        const std::set<std::wstring> counted = CountedFormulas();
        for (const PatternPart& part : mvarPattern)
            if (IsBound(part.kind) && !counted.contains(part.name)) usual.push_back({part.name, part.position});
        for (PatternPart& part : mvarPattern) {
            if (part.tracked)
                part.tracked = Resolved(part);
            else if (part.kind == PartKind::Number)
                part.tracked = usual;
        }
    }

  private:
    // The bands whose formulas are check digits, or are computed of a number or of such a formula.
    [[nodiscard]] std::set<std::wstring> CountedFormulas() const {
        std::set<std::wstring> words; // that stand for numbers
        for (const PatternPart& part : mvarPattern)
            if (part.kind == PartKind::Number) words.insert(Folded(part.name));
        std::set<std::wstring> counted;
        for (bool found = true; found;) {
            found = false;
            for (const PatternPart& part : mvarPattern) {
                if (part.kind != PartKind::Formula || counted.contains(part.name)) continue;
                const auto isCounted = [&words](const std::wstring& word) { return words.contains(word); };
                if (!IsCheckDigit(part.formula) && std::ranges::none_of(WordsOf(part.formula), isCounted)) continue;
                counted.insert(part.name);
                words.insert({Folded(part.name), Folded(part.text)});
                found = true;
            }
        }
        return counted;
    }

    [[nodiscard]] std::vector<PatternName> Resolved(const PatternPart& part) const {
        std::vector<PatternName> resolved;
        for (const PatternName& tracked : *part.tracked)
            for (const std::wstring& name : BandsOf(tracked))
                Add(part, {name, tracked.position}, resolved);
        return resolved;
    }

    [[nodiscard]] std::vector<std::wstring> BandsOf(const PatternName& tracked) const {
        const auto band = mvarBands.find(Folded(tracked.name));
        if (band != mvarBands.end()) return {band->second};
        const auto item = mvarOfItem.find(Folded(tracked.name));
        if (item != mvarOfItem.end()) return item->second;
        std::wstring known;
        for (const PatternPart& part : mvarPattern)
            if (IsBound(part.kind)) known += (known.empty() ? L"" : L", ") + part.name;
        throw PatternError(tracked.position, L"\"" + tracked.name + L"\" is no band or field of this pattern" +
                                                 (known.empty() ? std::wstring() : L"; there are: " + known));
    }

    static void Add(const PatternPart& part, PatternName name, std::vector<PatternName>& resolved) {
        if (name.name == part.name) throw PatternError(name.position, L"the band cannot track itself");
        const auto isSame = [&name](const PatternName& other) { return other.name == name.name; };
        if (std::ranges::none_of(resolved, isSame)) resolved.push_back(std::move(name));
    }

    Pattern& mvarPattern;
    std::map<std::wstring, std::wstring> mvarBands;               // by their folded names
    std::map<std::wstring, std::vector<std::wstring>> mvarOfItem; // the bands of a field or macro
};

// ------------------------------------------------------------------------------------------------------ layers

void CheckLayers(const Pattern& pattern) {
    std::map<std::size_t, const PatternPart*> layers;
    for (const PatternPart& part : pattern) {
        if (part.layer == 0) continue;
        const PatternPart* const other = layers.try_emplace(part.layer, &part).first->second;
        if (other != &part)
            throw PatternError(part.position, L"there are two bands for layer " + std::to_wstring(part.layer));
        if (layers.begin()->second->file != part.file)
            throw PatternError(part.position, L"all layers of a rule stand in one file; another one is in \"" +
                                                  layers.begin()->second->file + L"\"");
    }
    std::size_t expected = 1;
    for (const auto& [layer, part] : layers)
        if (layer != expected++)
            throw PatternError(part->position, L"layer " + std::to_wstring(expected - 1) +
                                                   L" is missing: layers are numbered from 1 on");
}

} // namespace

void CompletePattern(Pattern& pattern) {
    CheckLayers(pattern);
    Items(pattern).Complete();
    NameBands(pattern);
    Tracking(pattern).Complete();
}

} // namespace ledger
