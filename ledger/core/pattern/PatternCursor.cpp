#include "ledger/core/pattern/PatternCursor.h"

#include <algorithm>

#include "hosts/common/Text.h"

namespace ledger {

namespace {

std::size_t FirstUnfit(std::wstring_view text, std::size_t at) {
    while (at < text.size()) {
        // Two characters are one that is whole, or each is looked at alone.
        const std::size_t count = hosts::IsWhole(text.substr(at, 1)) ? 1 : 2;
        const std::wstring_view character = text.substr(at, count);
        if (hosts::HasControl(character) || !hosts::IsWhole(character)) return at;
        at += character.size();
    }
    return at;
}

} // namespace

bool IsDigit(wchar_t character) noexcept { return character >= L'0' && character <= L'9'; }
bool IsCapital(wchar_t character) noexcept { return character >= L'A' && character <= L'Z'; }
bool IsNameOfFunction(wchar_t character) noexcept {
    return IsDigit(character) || IsCapital(character) || (character >= L'a' && character <= L'z') || character == L'_';
}
bool IsAllDigits(std::wstring_view text) noexcept { return !text.empty() && std::ranges::all_of(text, IsDigit); }

void PatternCursor::Fail(std::size_t position, const std::wstring& message) { throw PatternError(position, message); }

wchar_t PatternCursor::Peek(std::size_t ahead) const noexcept {
    return mvarAt + ahead < mvarText.size() ? mvarText[mvarAt + ahead] : L'\0';
}

void PatternCursor::SkipBlanks() noexcept {
    while (Peek() == L' ')
        ++mvarAt;
}

bool PatternCursor::Take(wchar_t character) noexcept {
    if (!IsNext(character)) return false;
    SkipBlanks();
    ++mvarAt;
    return true;
}

bool PatternCursor::IsNext(wchar_t character) const noexcept {
    const std::size_t next = mvarText.find_first_not_of(L' ', mvarAt);
    return next != std::wstring_view::npos && mvarText[next] == character;
}

bool PatternCursor::AtAs() const noexcept { return mvarText.substr(mvarAt, PatternAs.size()) == PatternAs; }

void PatternCursor::RefuseUnfit(std::wstring_view text, std::size_t position) const {
    if (hosts::HasControl(text) || !hosts::IsWhole(text))
        Fail(FirstUnfit(mvarText, position),
             L"\"" + hosts::Shown(text) + L"\" has a control character or half a character in it; write it without");
}

bool PatternCursor::AtFormula() const noexcept {
    if (!IsNext(L'=')) return false;
    const std::size_t begin =
        std::min(mvarText.find_first_not_of(L' ', mvarText.find(L'=', mvarAt) + 1), mvarText.size());
    std::size_t at = begin;
    while (at < mvarText.size() && IsNameOfFunction(mvarText[at]))
        ++at;
    return at > begin && at < mvarText.size() && mvarText[at] == L'(';
}

std::wstring PatternCursor::ReadDigits() {
    const std::size_t begin = mvarAt;
    while (IsDigit(Peek()))
        ++mvarAt;
    return std::wstring(mvarText.substr(begin, mvarAt - begin));
}

std::wstring PatternCursor::ReadWord(std::wstring_view ends) {
    const std::size_t begin = mvarAt;
    while (!AtEnd() && ends.find(Peek()) == std::wstring_view::npos && !AtAs())
        ++mvarAt;
    return hosts::Trimmed(mvarText.substr(begin, mvarAt - begin));
}

std::wstring PatternCursor::ReadQuotes() {
    const std::size_t opened = mvarAt++;
    std::wstring text;
    while (!AtEnd() && (Peek() != L'"' || Peek(1) == L'"')) {
        mvarAt += Peek() == L'"' ? 1 : 0;
        text += Peek();
        ++mvarAt;
    }
    if (AtEnd()) Fail(opened, L"this quote is never closed; double a quote inside of quotes");
    ++mvarAt;
    RefuseUnfit(text, opened);
    return text;
}

std::wstring PatternCursor::ReadBrackets() {
    const std::size_t begin = mvarAt;
    std::size_t depth = 0;
    wchar_t quote = L'\0'; // the one that is open
    for (; !AtEnd(); ++mvarAt) {
        const wchar_t character = Peek();
        if (character == L',' || character == L';')
            Fail(mvarAt, L"a formula holds no comma and no semicolon; put blanks between its arguments");
        if (quote == L'\0' && (character == L'"' || character == L'\''))
            quote = character;
        else if (quote == character)
            quote = L'\0';
        if (quote != L'\0') continue;
        if (character == L'{' || character == L'}') break;
        if (character == L'(') ++depth;
        if (character == L')' && --depth == 0) {
            ++mvarAt;
            return std::wstring(mvarText.substr(begin, mvarAt - begin));
        }
    }
    Fail(begin, L"the formula's brackets are not closed");
}

} // namespace ledger
