#include "ledger/core/definition/Untaken.h"

#include <objbase.h>
#include <oleauto.h>

#include <algorithm>
#include <cmath>
#include <cwchar>
#include <cwctype>
#include <map>
#include <optional>
#include <tuple>

#include "hosts/common/Text.h"
#include "ledger/core/definition/DefinitionText.h"

namespace ledger {

namespace {

using hosts::Folded;
using hosts::Split;
using hosts::Trimmed;

std::optional<double> ValueAsNumber(const std::wstring& text) {
    const std::wstring trimmed = Trimmed(text);
    wchar_t* end = nullptr;
    const double number = std::wcstod(trimmed.c_str(), &end);
    if (trimmed.empty() || *end != L'\0') return std::nullopt;
    return number;
}

std::optional<double> DateOf(std::wstring text) {
    DATE date = 0;
    if (FAILED(VarDateFromStr(text.data(), LOCALE_USER_DEFAULT, 0, &date))) return std::nullopt;
    return date;
}

bool SameNumber(const std::wstring& read, const std::wstring& holds) {
    const auto left = ValueAsNumber(read);
    return left && left == ValueAsNumber(holds);
}

bool SameFlag(const std::wstring& read, const std::wstring& holds) {
    const bool holdsTrue = holds == L"1";
    if (const auto number = ValueAsNumber(read)) return (*number != 0) == holdsTrue;
    const std::wstring word = Folded(Trimmed(read));
    return holdsTrue ? word == L"true" : word == L"false";
}

// To the minute for times of day, to the second for dates.
bool SameDate(const std::wstring& read, const std::wstring& holds, double perDay) {
    const auto left = DateOf(read);
    const auto right = DateOf(holds);
    return left && right && std::floor(*left * perDay + 0.5) == std::floor(*right * perDay + 0.5);
}

bool SameTime(const std::wstring& read, const std::wstring& holds) {
    constexpr double minutes = 24 * 60;
    return SameDate(read, holds, minutes);
}

// What a band takes as a number or letter is written in its own way.
bool SameValue(const std::wstring& read, const std::wstring& holds) {
    return SameNumber(read, holds) || (holds.size() == 1 && Folded(Trimmed(read)) == Folded(holds));
}

bool SameBandValue(int key, const std::wstring& read, const std::wstring& holds) {
    constexpr double seconds = 24 * 60 * 60;
    switch (key) {
    case 1:
    case 2:
    case 5:
    case 7: return SameNumber(read, holds);
    case 3:
    case 8:
    case 9:
    case keys::Value: return SameValue(read, holds);
    case keys::Name:
    case keys::Triggered: return Folded(Trimmed(read)) == Folded(holds);
    case keys::Updated: return SameDate(read, holds, seconds);
    case 15:
    case 16: return SameFlag(read, holds);
    default: return false;
    }
}

bool SameSetting(int entry, const std::wstring& read, const std::wstring& holds) {
    if (entry >= 3 && entry <= 8) return SameFlag(read, holds);
    if (entry == entries::DayBegins) return SameTime(read, holds.empty() ? L"00:00" : holds);
    return SameNumber(read, holds);
}

class Comparison {
  public:
    Comparison(const std::wstring& text, const std::wstring& held)
        : mvarText(ReadDefinitionText(text)), mvarHeld(ReadDefinitionText(held)) {
        for (const DefinitionItem& item : mvarHeld.items)
            mvarHolds[{item.entry, item.band, item.key}] = item.value;
    }

    std::vector<Untaken> Find() {
        FindBands();
        for (const StrayLine& stray : mvarText.strays)
            mvarFound.push_back({stray.line, {}, stray.text, stray.why});
        for (const DefinitionItem& item : mvarText.items)
            Compare(item);
        std::ranges::stable_sort(mvarFound, {}, &Untaken::line);
        return std::move(mvarFound);
    }

  private:
    // Which band of the rule a band of the text became; the first of those with the name, if any.
    void FindBands() {
        std::map<std::wstring, std::size_t> places;
        for (std::size_t place = mvarHeld.bands.size(); place > 0; --place)
            places[Folded(mvarHeld.bands[place - 1])] = place;
        for (const std::wstring& name : mvarText.bands) {
            const auto found = places.find(Folded(Trimmed(name)));
            mvarPlaces.push_back(found == places.end() ? 0 : found->second);
            if (found != places.end()) places.erase(found);
        }
    }

    [[nodiscard]] const std::wstring& Holds(const DefinitionItem& item) const {
        static const std::wstring nothing;
        const std::size_t band = item.band == 0 ? 0 : mvarPlaces[item.band - 1];
        const auto found = mvarHolds.find({item.entry, band, item.key});
        return found == mvarHolds.end() ? nothing : found->second;
    }

    void Report(const DefinitionItem& item, const std::wstring& read, const std::wstring& holds) {
        mvarFound.push_back({item.line, NameOfItem(mvarText, item), read, holds});
    }

    void Compare(const DefinitionItem& item) {
        if (item.band > 0 && mvarPlaces[item.band - 1] == 0) return ReportLost(item);
        const std::wstring& holds = Holds(item);
        if (item.value.empty() || item.value == holds) return;
        if (item.entry == entries::Band) return CompareBand(item, holds);
        if (item.entry == entries::Fields || item.entry == entries::Macros || item.entry == entries::Layers)
            return CompareList(item, holds);
        if (item.entry == entries::Relations) return CompareTree(item, holds);
        if (!SameSetting(item.entry, item.value, holds)) Report(item, item.value, holds);
    }

    // Once for the band, at its name.
    void ReportLost(const DefinitionItem& item) {
        if (item.key == keys::Name) mvarFound.push_back({item.line, L"band " + item.value, item.value, std::wstring()});
    }

    void CompareBand(const DefinitionItem& item, const std::wstring& holds) {
        if (item.key == keys::Tracked) return CompareNames(item, holds);
        if (item.key == keys::Relations) return CompareTree(item, holds);
        if (!SameBandValue(item.key, item.value, holds)) Report(item, item.value, holds);
    }

    void CompareNames(const DefinitionItem& item, const std::wstring& holds) {
        const std::vector<std::wstring> held = Split(holds, L',');
        for (const std::wstring& name : Split(item.value, L','))
            if (std::ranges::find(held, name) == held.end()) Report(item, name, holds);
    }

    // A record at its place: name, display name (empty where it is the name), value, description.
    static std::vector<std::wstring> FieldsOf(const std::wstring& record) {
        std::vector<std::wstring> fields = Split(record, L',');
        constexpr std::size_t count = 4;
        if (fields.size() < count) fields.resize(count);
        fields[0] = Trimmed(fields[0]);
        fields[1] = Trimmed(fields[1]);
        if (Folded(fields[1]) == Folded(fields[0])) fields[1].clear();
        return fields;
    }

    void CompareList(const DefinitionItem& item, const std::wstring& holds) {
        const std::vector<std::wstring> read = Split(item.value, L';');
        std::vector<std::wstring> held = Split(holds, L';');
        held.resize(std::max(held.size(), read.size()));
        for (std::size_t place = 0; place < read.size(); ++place)
            if (FieldsOf(read[place]) != FieldsOf(held[place])) Report(item, read[place], held[place]);
    }

    // The first relation that is not taken stands for all of them. The number in front of them counts what was ever
    // added.
    void CompareTree(const DefinitionItem& item, const std::wstring& holds) {
        const std::vector<std::wstring> read = Split(item.value, L';');
        std::vector<std::wstring> held = Split(holds, L';');
        held.resize(std::max(held.size(), read.size()));
        for (std::size_t place = 0; place < read.size(); ++place)
            if (read[place] != held[place] && (place > 0 || !ValueAsNumber(read[place])))
                return Report(item, read[place], held[place]);
    }

    DefinitionText mvarText;
    DefinitionText mvarHeld;
    std::map<std::tuple<int, std::size_t, int>, std::wstring> mvarHolds;
    std::vector<std::size_t> mvarPlaces; // of the text's bands, from 1; 0: lost
    std::vector<Untaken> mvarFound;
};

} // namespace

std::wstring LineOf(const Untaken& untaken) {
    const std::wstring line = L"line " + std::to_wstring(untaken.line) + L": ";
    const std::wstring read = L"\"" + hosts::Shown(untaken.read) + L"\"";
    if (untaken.what.empty()) return line + (untaken.read.empty() ? L"" : read + L" ") + untaken.holds;
    return line + untaken.what + L": read " + read + L", not taken; the rule holds \"" + hosts::Shown(untaken.holds) +
           L"\"";
}

std::vector<Untaken> FindUntaken(const std::wstring& text, const std::wstring& held) {
    return Comparison(text, held).Find();
}

} // namespace ledger
