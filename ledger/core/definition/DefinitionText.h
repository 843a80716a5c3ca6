// A definition text as people may have written it: what its lines say, each with its number.
//
// The text is read as the component reads it, and nothing of it is left out: a line is an item, the number of one, or
// stray.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace ledger {

// The entries and keys of a definition that are spoken of by name.
namespace entries {
inline constexpr int Name = 0;
inline constexpr int Style = 1;
inline constexpr int Relations = 9;
inline constexpr int DayBegins = 10;
inline constexpr int Fields = 14;
inline constexpr int Macros = 15;
inline constexpr int Band = 16;
inline constexpr int Layers = 17;
} // namespace entries
namespace keys {
inline constexpr int Name = 0;
inline constexpr int Triggered = 10;
inline constexpr int Updated = 11;
inline constexpr int Value = 12;
inline constexpr int Tracked = 13;
inline constexpr int Relations = 14;
inline constexpr int End = 17;
} // namespace keys

struct DefinitionItem {
    std::size_t line = 0; // of the value, from 1
    int entry = 0;
    std::size_t band = 0; // from 1, of a band's value
    int key = 0;          // of a band's value
    std::wstring value;
};

struct StrayLine {
    std::size_t line = 0;
    std::wstring text;
    std::wstring why;
};

struct DefinitionText {
    std::vector<DefinitionItem> items;
    std::vector<std::wstring> bands; // the names
    std::vector<StrayLine> strays;   // what reading passes over, or what is missing
};

[[nodiscard]] DefinitionText ReadDefinitionText(std::wstring_view text);

// "tracked bands of band Number", "fields".
[[nodiscard]] std::wstring NameOfItem(const DefinitionText& text, const DefinitionItem& item);

// The text without the values of fields and macros, which are of the record that a code was made for; every other
// character stays.
[[nodiscard]] std::wstring WithoutValues(const std::wstring& text);

} // namespace ledger
