#include "ledger/core/pattern/RuleBuilder.h"

#include <algorithm>
#include <map>

#include "hosts/common/Rule.h"
#include "hosts/common/Text.h"
#include "ledger/core/formulas/FormulaSet.h"

namespace ledger {

namespace {

using hosts::Dispatch;
using hosts::Variant;

using hosts::LayersSwap;
using hosts::NoSwap;
using hosts::SimpleSwap;

// Where a node is added, as the component's type library publishes it.
constexpr long Child = 4;

Variant Missing() {
    Variant missing;
    VARIANT* const raw = missing.Out();
    raw->vt = VT_ERROR;
    raw->scode = DISP_E_PARAMNOTFOUND;
    return missing;
}

hosts::BandStyle StyleOf(PartKind kind) {
    switch (kind) {
    case PartKind::Number: return hosts::BandStyle::Number;
    case PartKind::Letter: return hosts::BandStyle::Letter;
    case PartKind::Field: return hosts::BandStyle::Field;
    case PartKind::Macro:
    case PartKind::Formula: return hosts::BandStyle::Macro;
    case PartKind::Text: break;
    }
    return hosts::BandStyle::Fixed;
}

class Builder {
  public:
    Builder(const Pattern& pattern, const CodeFiles& files) : mvarPattern(pattern), mvarFiles(files) {}

    std::wstring Build(const PatternSettings& settings) {
        AllowEverything();
        ReadTables();
        for (const PatternPart& part : mvarPattern)
            AtItsPlace(part, [this, &part] { AddBand(part); });
        for (const PatternPart& part : mvarPattern)
            AtItsPlace(part, [this, &part] { AddFieldsOf(part); });
        for (const PatternPart& part : mvarPattern)
            AtItsPlace(part, [this, &part] { Track(part); });
        Convert();
        Set(settings);
        return mvarRule.Definition();
    }

  private:
    template <class Step>
    static void AtItsPlace(const PatternPart& part, Step step) {
        try {
            step();
        } catch (const PatternError&) { // it has its own place
            throw;
        } catch (const hosts::HostError& error) {
            throw PatternError(part.position, L"band " + part.name + L": " + hosts::OneLine(error.Message()));
        }
    }

    [[nodiscard]] const Dispatch& Component() const { return mvarRule.Component(); }
    [[nodiscard]] Dispatch Band(const PatternPart& part) const { return Component().Item(Variant(part.name), L"Band"); }

    void AllowEverything() const {
        for (const wchar_t* right : {L"AllowAddBand", L"AllowDropBand", L"AllowSetup", L"AllowFieldManage"})
            Component().Put(right, Variant(true));
    }

    void Set(const PatternSettings& settings) const {
        Component().Put(L"CodeUCased", Variant(settings.capitals));
        Component().Put(L"SeparaOfYear", Variant(settings.yearBegins));
        Component().Put(L"SeparaOfMonth", Variant(settings.monthBegins));
        Component().Put(L"SeparaOfWeek", Variant(settings.weekBegins));
        if (!settings.dayBegins.empty()) Component().Put(L"SeparaOfDay", Variant(settings.dayBegins));
    }

    // ------------------------------------------------------------------------------------------------------- bands

    void AddBand(const PatternPart& part) const {
        const Variant name(part.name);
        const Variant style(static_cast<long>(StyleOf(part.kind)));
        const Variant swap =
            IsBound(part) ? Variant(part.file.empty() || part.layer > 0 ? NoSwap : SimpleSwap) : Missing();
        const Variant begin = IsBound(part) ? Missing() : Variant(part.kind == PartKind::Text ? part.text : part.first);
        const Variant item = IsBound(part) ? Variant(Item(part).Raw()) : Missing();
        const bool isText = part.kind == PartKind::Text || part.kind == PartKind::Letter;
        const Variant length = isText ? Missing() : Variant(static_cast<long>(LengthOf(part)));
        const std::wstring form = part.kind == PartKind::Number ? std::wstring(part.length, L'0') : part.format;
        const Variant format = form.empty() ? Missing() : Variant(form);
        const Dispatch band(Component().Call(L"Add", {&name, &style, &swap, &begin, &item, &length, &format}).Object());
        SetRange(part, band);
    }

    static bool IsBound(const PatternPart& part) {
        return part.kind == PartKind::Field || part.kind == PartKind::Macro || part.kind == PartKind::Formula;
    }

    static void SetRange(const PatternPart& part, const Dispatch& band) {
        if (part.kind == PartKind::Letter) {
            band.Put(L"InitStart", Variant(part.first));
            band.Put(L"InitEnd", Variant(part.last));
            band.Put(L"Value", Variant(part.text));
        } else if (part.kind == PartKind::Number && !part.last.empty()) {
            band.Put(L"InitEnd", Variant(part.last));
        }
    }

    // The field or macro, which several bands may be bound to.
    [[nodiscard]] Dispatch Item(const PatternPart& part) const {
        const Dispatch items = Component().Object(part.kind == PartKind::Field ? L"UsrFields" : L"UsrMacros");
        const Variant name(part.text);
        try {
            return items.Item(name);
        } catch (const hosts::DispatchError&) { // not there yet
            const Variant none(std::wstring_view{});
            const Variant formula(part.formula);
            return Dispatch(items.Call(L"Add", {&name, &none, &none, &formula}).Object());
        }
    }

    [[nodiscard]] bool Has(const wchar_t* list, const std::wstring& name) const {
        try {
            return Component().Object(list).Item(Variant(name)).Raw() != nullptr;
        } catch (const hosts::DispatchError&) { // there is none of that name
            return false;
        }
    }

    // What a formula is computed from stands in no band of its own.
    void AddFieldsOf(const PatternPart& part) const {
        if (part.kind != PartKind::Formula) return;
        for (const std::wstring& item : ReferencesOf(ParseFormula(part.formula)).items) {
            if (Has(L"UsrFields", item) || Has(L"UsrMacros", item)) continue;
            const Variant name(item);
            Component().Object(L"UsrFields").Call(L"Add", {&name});
        }
    }

    void Track(const PatternPart& part) const {
        if (!part.tracked || part.tracked->empty()) return;
        const Dispatch tracked = Band(part).Object(L"TrackBands");
        for (const PatternName& name : *part.tracked) {
            const Variant text(name.name);
            tracked.Call(L"Add", {&text});
        }
    }

    // ------------------------------------------------------------------------------------------------- conversions

    void ReadTables() {
        std::map<std::size_t, const PatternPart*> layers;
        for (const PatternPart& part : mvarPattern) {
            if (part.layer > 0)
                layers[part.layer] = &part;
            else if (!part.file.empty())
                mvarTables.emplace(&part, ReadTable(part, {part.text}));
        }
        std::vector<std::wstring> fields;
        for (const auto& [layer, part] : layers) {
            fields.push_back(part->text);
            mvarLayers.push_back(part);
        }
        if (!fields.empty()) mvarTree = ReadTable(*mvarLayers.front(), fields);
    }

    [[nodiscard]] CodeTable ReadTable(const PatternPart& part, const std::vector<std::wstring>& fields) const {
        try {
            return ReadCodeTable(mvarFiles(part.file), part.file, fields);
        } catch (const hosts::HostError& error) {
            throw PatternError(part.position, hosts::OneLine(error.Message()));
        }
    }

    // Of a converted band as long as its codes are.
    [[nodiscard]] std::size_t LengthOf(const PatternPart& part) const {
        if (part.file.empty()) return part.length;
        const std::size_t codes =
            part.layer > 0 ? mvarTree.lengths[part.layer - 1] : mvarTables.at(&part).lengths.front();
        if (codes == 0)
            throw PatternError(part.position, part.file + L" has nothing in layer " + std::to_wstring(part.layer));
        if (part.length == 0 || part.length == codes || !part.format.empty())
            return part.length == 0 ? codes : part.length;
        throw PatternError(part.position, L"the codes in " + part.file + L" have " +
                                              hosts::Counted(codes, L"character") + L", " +
                                              std::to_wstring(part.length) + L" expected");
    }

    // The layers come in their order, and their tree when all of them are there: any change of them clears it.
    void Convert() const {
        for (const PatternPart* part : mvarLayers)
            Band(*part).Put(L"SwapMode", Variant(LayersSwap));
        if (!mvarLayers.empty())
            AddRelations(Component().Object(L"Relations"), mvarTree.relations, Missing(), Missing());
        for (const auto& [part, table] : mvarTables)
            AddRelations(Band(*part).Object(L"Relations"), table.relations, Missing(), Missing());
    }

    static void AddRelations(const Dispatch& tree, const std::vector<Relation>& relations, const Variant& above,
                             const Variant& relationship) {
        for (const Relation& relation : relations) {
            const Variant code(relation.code);
            const Variant value(relation.value);
            const Dispatch node(tree.Call(L"Add", {&above, &relationship, &code, &value}).Object());
            if (!relation.below.empty()) AddRelations(tree, relation.below, node.Get(L"Key"), Variant(Child));
        }
    }

    hosts::Rule mvarRule;
    const Pattern& mvarPattern;
    const CodeFiles& mvarFiles;
    std::map<const PatternPart*, CodeTable> mvarTables; // of bands with a file of their own
    std::vector<const PatternPart*> mvarLayers;         // in their order
    CodeTable mvarTree;                                 // of them
};

} // namespace

std::wstring BuildDefinition(const Pattern& pattern, const PatternSettings& settings, const CodeFiles& files) {
    return Builder(pattern, files).Build(settings);
}

} // namespace ledger
