#include "ledger/core/definition/DefinitionText.h"

#include <algorithm>
#include <array>
#include <cwchar>
#include <optional>
#include <utility>

namespace ledger {

namespace {

constexpr std::wstring_view Header = L"#####";
constexpr int LastNumber = 18; // that is not passed over; nothing is read into it
constexpr int AwaitingNumber = -1;

constexpr std::array EntryNames = {L"name of the rule",
                                   L"style of the rule",
                                   L"apply mode",
                                   L"right to add bands",
                                   L"right to drop bands",
                                   L"right to set up",
                                   L"simple style",
                                   L"right to manage fields",
                                   L"capitals",
                                   L"relations of the layers",
                                   L"begin of the day",
                                   L"begin of the week",
                                   L"begin of the month",
                                   L"begin of the year",
                                   L"fields",
                                   L"macros",
                                   L"band",
                                   L"layers"};

constexpr std::array KeyNames = {L"name",          L"style",          L"conversion", L"default",       L"format",
                                 L"length",        L"field",          L"raise mode", L"begin",         L"end",
                                 L"trigger band",  L"date",           L"last value", L"tracked bands", L"relations",
                                 L"right to drop", L"right to change"};

// The number that a line begins with; nothing where it begins with none.
std::optional<double> LeadingNumber(const std::wstring& line) {
    const std::size_t begin = line.find_first_not_of(L" \t");
    if (begin == std::wstring::npos || line.find_first_of(L"0123456789-+.") != begin) return std::nullopt;
    wchar_t* end = nullptr;
    const double number = std::wcstod(line.c_str() + begin, &end);
    return end == line.c_str() + begin ? std::nullopt : std::optional(number);
}

bool IsNumber(double number) { return number >= 0 && number <= LastNumber; }

std::vector<std::wstring> LinesOf(std::wstring_view text) {
    std::vector<std::wstring> lines(1);
    for (const wchar_t character : text) {
        if (character == L'\r')
            lines.emplace_back();
        else
            lines.back() += character;
    }
    return lines;
}

class DefinitionReader {
  public:
    DefinitionText Read(std::wstring_view text) {
        if (!text.starts_with(Header))
            mvarText.strays.push_back(
                {1, std::wstring(text.substr(0, Header.size())), L"is no definition, which begins with #####"});
        if (text.size() <= Header.size()) return std::move(mvarText);
        for (const std::wstring& line : LinesOf(text.substr(Header.size()))) {
            ++mvarLine;
            if (mvarEntry == AwaitingNumber)
                ReadNumber(line);
            else if (mvarEntry == entries::Band)
                ReadBandLine(line);
            else
                ReadValue(line);
        }
        ReadEnd();
        return std::move(mvarText);
    }

  private:
    void Stray(const std::wstring& text, const std::wstring& why) { mvarText.strays.push_back({mvarLine, text, why}); }

    void ReadNumber(const std::wstring& line) {
        const auto number = LeadingNumber(line);
        if (!number)
            Stray(line,
                  L"is no number of an entry; it counts as 0, so that the next line is read as the name of the rule");
        if (!IsNumber(number.value_or(0)))
            return Stray(line, L"is no number of an entry from 0 to 17, and passed over");
        mvarEntry = static_cast<int>(number.value_or(0));
    }

    void ReadValue(const std::wstring& line) {
        const int entry = std::exchange(mvarEntry, AwaitingNumber);
        if (entry == LastNumber) return Stray(line, L"is the value of entry 18, which is none, and passed over");
        mvarText.items.push_back({mvarLine, entry, 0, 0, line});
    }

    void ReadBandLine(const std::wstring& line) {
        const auto equals = line.find(L'=');
        const auto number = LeadingNumber(line.substr(0, equals));
        if (!number || !IsNumber(*number)) return Stray(line, L"is no line of a band, and passed over");
        const int key = static_cast<int>(*number);
        if (key == keys::End) return EndBand(line);
        if (equals == std::wstring::npos) return Stray(line, L"has no = behind the number, and is passed over");
        if (key == LastNumber) return Stray(line, L"is no line of a band, and passed over");
        if (key == keys::Name) BeginBand(line.substr(equals + 1));
        if (!mvarInBand) return Stray(line, L"stands before the name of its band, and is passed over");
        mvarText.items.push_back({mvarLine, entries::Band, mvarText.bands.size(), key, line.substr(equals + 1)});
    }

    void BeginBand(const std::wstring& name) {
        if (mvarInBand) Stray(L"0=" + name, L"begins a band before the one above ended with 17, which is lost");
        mvarText.bands.push_back(name);
        mvarInBand = true;
    }

    void EndBand(const std::wstring& line) {
        if (!mvarInBand) Stray(line, L"ends a band without a name, and is passed over");
        mvarInBand = false;
        mvarEntry = AwaitingNumber;
    }

    void ReadEnd() {
        if (mvarEntry == AwaitingNumber) return;
        if (mvarEntry != entries::Band) return Stray({}, L"the text ends where a value is expected");
        const std::wstring name = mvarInBand ? mvarText.bands.back() : std::wstring();
        Stray({}, L"the text ends in the middle of band \"" + name + L"\", which is lost");
    }

    DefinitionText mvarText;
    std::size_t mvarLine = 0;
    int mvarEntry = AwaitingNumber;
    bool mvarInBand = false;
};

// A record of a list without its value, the third of its fields.
std::wstring WithoutValue(const std::wstring& record) {
    const auto foreign = record.find(L',');
    const auto value = foreign == std::wstring::npos ? foreign : record.find(L',', foreign + 1);
    if (value == std::wstring::npos) return record;
    const auto end = std::min(record.find(L',', value + 1), record.size());
    return record.substr(0, value + 1) + record.substr(end);
}

std::wstring ListWithoutValues(const std::wstring& list) {
    std::wstring without;
    for (std::size_t begin = 0; begin <= list.size();) {
        const std::size_t end = std::min(list.find(L';', begin), list.size());
        without += (begin == 0 ? L"" : L";") + WithoutValue(list.substr(begin, end - begin));
        begin = end + 1;
    }
    return without;
}

} // namespace

DefinitionText ReadDefinitionText(std::wstring_view text) { return DefinitionReader().Read(text); }

std::wstring NameOfItem(const DefinitionText& text, const DefinitionItem& item) {
    if (item.entry != entries::Band) return EntryNames.at(static_cast<std::size_t>(item.entry));
    return std::wstring(KeyNames.at(static_cast<std::size_t>(item.key))) + L" of band " + text.bands[item.band - 1];
}

std::wstring WithoutValues(const std::wstring& text) {
    const DefinitionText read = ReadDefinitionText(text);
    std::vector<std::wstring> lines = LinesOf(text);
    for (const DefinitionItem& item : read.items)
        if (item.entry == entries::Fields || item.entry == entries::Macros)
            lines[item.line - 1] = ListWithoutValues(item.value);
    std::wstring without = lines.front();
    for (std::size_t line = 1; line < lines.size(); ++line)
        without += L'\r' + lines[line];
    return without;
}

} // namespace ledger
