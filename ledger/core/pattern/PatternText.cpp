// The text of a pattern, as it is read.
//
//   pattern = { text | "{" band [ " as " name ] "}" }
//   text    = any characters; "{{" stands for a brace that opens, "}}" for one that closes
//   band    = number | letter | field | formula | fixed
//   number  = "#" { "#" } [ ":" range ] [ tracks ]       a digit for each "#"
//   range   = first | [ first ] ".." last                 first is 1 where it is not said; without last to the end
//   letter  = first ".." last [ ":" letter ] [ tracks ]   capital letters; the one that the rule holds, or the first
//   tracks  = "/" [ name { "," name } ]                   bands or fields; "/" alone tracks nothing
//   field   = [ "@" ] name ( form | [ form ] codes )      "@": a macro
//   formula = [ name ] "=" function "(" arguments ")" [ form ] [ codes ]
//   form    = ":" length | ":" format [ ":" length ]      a length is digits that do not begin with 0
//   codes   = "=" file [ "|" layer ]                      a file of codes and values; of a layer where several bands
//                                                         share a tree
//   fixed   = quoted                                      fixed text that is a band of its own
//
// Arguments stand apart by blanks and may be formulas themselves. A name, format or file is quoted, with quotes in it
// doubled, where it holds what ends it otherwise: a brace, " as ", and for names : = / | , at any place, # or @ or = in
// front; for formats : and =; for files | and a function's name and "(" in front. Blanks around all of these do not
// count. Names hold no comma and no semicolon, formulas neither: a definition does not bring them back.

#include "ledger/core/pattern/PatternText.h"

#include <algorithm>

#include "hosts/common/Text.h"
#include "ledger/core/formulas/Functions.h"
#include "ledger/core/pattern/CompletePattern.h"
#include "ledger/core/pattern/FormatLength.h"
#include "ledger/core/pattern/PatternCursor.h"

namespace ledger {

namespace {

constexpr std::size_t LongestPattern = 10'000;
constexpr std::size_t LongestName = 120; // as the tables of a ledger hold it
constexpr std::size_t MostLengthDigits = 3;

std::wstring WithoutZeros(std::wstring_view digits) {
    const auto first = digits.find_first_not_of(L'0');
    return first == std::wstring_view::npos ? L"0" : std::wstring(digits.substr(first));
}

bool IsBelow(const std::wstring& left, const std::wstring& right) {
    return left.size() != right.size() ? left.size() < right.size() : left < right;
}

class PatternReader : PatternCursor {
  public:
    explicit PatternReader(std::wstring_view text) : PatternCursor(text) {}

    Pattern Read() {
        if (Text().size() > LongestPattern)
            throw PatternError(LongestPattern, L"a pattern has at most " + std::to_wstring(LongestPattern) +
                                                   L" characters; this one has " + std::to_wstring(Text().size()));
        while (!AtEnd()) {
            if (Peek() == L'{' && Peek(1) != L'{')
                ReadBand();
            else
                ReadText();
        }
        if (mvarParts.empty()) Fail(0, L"the pattern is empty; write one such as INV-{Date:yyyy}-{####}");
        return std::move(mvarParts);
    }

  private:
    // ------------------------------------------------------------------------------------------------- fixed text

    void ReadText() {
        PatternPart part;
        part.position = At();
        while (!AtEnd() && (Peek() != L'{' || Peek(1) == L'{')) {
            const wchar_t character = Peek();
            if (character == L'{' || character == L'}') {
                if (Peek(1) != character)
                    Fail(At(), L"this brace closes nothing; write }} where the code shall have a brace");
                Advance();
            }
            part.text += character;
            Advance();
        }
        RefuseUnfit(part.text, part.position);
        mvarParts.push_back(std::move(part));
    }

    // ------------------------------------------------------------------------------------------------------ bands

    void ReadBand() {
        mvarOpened = At();
        Advance();
        SkipBlanks();
        PatternPart part;
        part.position = mvarOpened;
        ReadContent(part);
        if (AtAs()) {
            Advance(PatternAs.size());
            part.name = ReadName();
        }
        if (!Take(L'}')) FailUnexpected();
        mvarParts.push_back(std::move(part));
    }

    void ReadContent(PatternPart& part) {
        const wchar_t next = Peek();
        if (next == L'}') Fail(At(), L"a band is empty; write a field such as {Customer:4} or a number such as {####}");
        if (next == L'#') return ReadNumber(part);
        if (IsCapital(next) && Peek(1) == L'.' && Peek(2) == L'.') return ReadLetter(part);
        if (next == L'=') return ReadFormula(part);
        if (next == L'"') return ReadQuoted(part);
        ReadBound(part);
    }

    [[noreturn]] void FailUnexpected() const {
        if (AtEnd()) Fail(mvarOpened, L"this brace is never closed; write }} at the end of a band, or {{ for a brace");
        Fail(At(), std::wstring(L"\"") + Peek() + L"\" is not expected here; a band ends with } or with \" as NAME}\"");
    }

    void ReadNumber(PatternPart& part) {
        part.kind = PartKind::Number;
        for (; Peek() == L'#'; Advance())
            ++part.length;
        if (part.length > MostDigits)
            Fail(part.position, L"the number has " + std::to_wstring(part.length) +
                                    L" digits; a ledger counts in up to " + std::to_wstring(MostDigits));
        part.first = L"1";
        if (Take(L':')) ReadRange(part);
        ReadTracks(part);
    }

    void ReadRange(PatternPart& part) {
        SkipBlanks();
        const std::size_t position = At();
        const std::wstring first = ReadDigits();
        if (!first.empty()) part.first = Bounded(first, part.length, position);
        SkipBlanks();
        if (Peek() == L'.' && Peek(1) == L'.') {
            Advance(2);
            SkipBlanks();
            const std::size_t end = At();
            part.last = Bounded(ReadDigits(), part.length, end);
            if (IsBelow(part.last, part.first))
                Fail(end, L"the last number " + part.last + L" lies below the first one, " + part.first);
        } else if (first.empty()) {
            Fail(position, L"a number's range is expected, such as 1000 or 1000..4999");
        }
    }

    static std::wstring Bounded(const std::wstring& digits, std::size_t room, std::size_t position) {
        if (digits.empty()) Fail(position, L"a number is expected, such as 1000");
        std::wstring number = WithoutZeros(digits);
        if (number.size() > room)
            Fail(position, number + L" has " + hosts::Counted(number.size(), L"digit") + L"; the band has " +
                               std::to_wstring(room));
        return number;
    }

    void ReadLetter(PatternPart& part) {
        part.kind = PartKind::Letter;
        part.length = 1;
        part.first = Peek();
        Advance(3);
        part.last = ReadCapital(part.first, L"Z");
        part.text = part.first;
        if (Take(L':')) part.text = ReadCapital(part.first, part.last);
        ReadTracks(part);
    }

    std::wstring ReadCapital(const std::wstring& from, const std::wstring& to) {
        SkipBlanks();
        std::wstring letter(1, Peek());
        if (letter < from || letter > to) Fail(At(), L"a letter from " + from + L" to " + to + L" is expected");
        Advance();
        return letter;
    }

    void ReadTracks(PatternPart& part) {
        if (!Take(L'/')) return;
        part.tracked.emplace();
        if (IsNext(L'}') || AtAs()) return;
        do {
            SkipBlanks();
            const std::size_t position = At();
            part.tracked->push_back({ReadName(), position});
        } while (Take(L','));
    }

    void ReadQuoted(PatternPart& part) {
        const std::size_t begin = At();
        const std::wstring text = ReadQuotes();
        if (IsNext(L':') || IsNext(L'=')) {
            GoTo(begin);
            return ReadBound(part);
        }
        if (text.empty()) Fail(begin, L"the fixed text is empty");
        part.text = text;
    }

    void ReadBound(PatternPart& part) {
        part.kind = Take(L'@') ? PartKind::Macro : PartKind::Field;
        SkipBlanks();
        const std::size_t position = At();
        part.text = ReadName();
        if (Peek() == L'/') Fail(At(), L"only numbers and letters track bands, such as {###/Country}");
        if (AtFormula()) {
            if (part.kind == PartKind::Macro) Fail(part.position, L"a formula makes its macro itself; leave out the @");
            return ReadFormula(part);
        }
        ReadForm(part);
        ReadCodes(part);
        if (part.length > 0 || !part.file.empty()) return;
        if (!IsNext(L'}') && !AtAs()) FailUnexpected();
        const std::wstring& name = part.text;
        Fail(position, L"say how long " + name + L" is, as in {" + name + L":4}, how it is written, as in {" + name +
                           L":yyyy}, or where its codes are, as in {" + name + L"=codes.csv}");
    }

    // -------------------------------------------------------------------------------------------------- formulas

    void ReadFormula(PatternPart& part) {
        const std::size_t equals = At();
        if (!AtFormula()) Fail(equals, L"a formula is expected, such as {=year(Date)} or {Year=year(Date)}");
        part.kind = PartKind::Formula;
        Take(L'=');
        SkipBlanks();
        const std::size_t position = At();
        part.formula = ReadBrackets();
        RefuseUnfit(part.formula, position);
        ReadForm(part);
        ReadCodes(part);
        if (part.length > 0 || !part.file.empty()) return;
        RefuseNoFormula(part.formula, position);
        part.length = FormulaLengthOf(part.formula).value_or(0);
        if (part.length == 0) Fail(position, L"say how long the result is, as in {=" + part.formula + L":4}");
    }

    // What is no formula has no length, either, and says so first.
    static void RefuseNoFormula(const std::wstring& formula, std::size_t position) {
        try {
            static_cast<void>(ledger::LengthOf(ParseFormula(formula)));
        } catch (const hosts::HostError& error) {
            Fail(position, hosts::OneLine(error.Message()));
        }
    }

    // ---------------------------------------------------------------------------------------- lengths and formats

    void ReadForm(PatternPart& part) {
        if (!Take(L':')) return;
        SkipBlanks();
        const std::size_t position = At();
        const bool isQuoted = Peek() == L'"';
        const std::wstring form = isQuoted ? ReadQuotes() : ReadWord(L":={}\"");
        if (form.empty()) Fail(position, L"a length or a format is expected, such as 4 or yyyy");
        if (!isQuoted && IsAllDigits(form) && form.front() != L'0') {
            part.length = LengthOf(form, position);
            return;
        }
        RefuseUnfit(form, position);
        part.format = form;
        if (Take(L':')) {
            SkipBlanks();
            const std::size_t at = At();
            part.length = LengthOf(ReadDigits(), at);
            return;
        }
        part.length = FixedLengthOf(form).value_or(0);
        if (part.length > LongestPatternCode) Fail(position, L"the format writes more than a code holds");
        if (part.length == 0 && !IsNext(L'='))
            Fail(position, L"how long the format \"" + form +
                               L"\" writes a value is not the same for all: say it behind, as in " + form + L":9");
    }

    // 0 for what is no number from 1 on, or is more than a code holds.
    static std::size_t CountOf(const std::wstring& digits) {
        const bool fits = !digits.empty() && digits.size() <= MostLengthDigits && digits.front() != L'0';
        const std::size_t count = fits ? std::stoul(digits) : 0;
        return count > LongestPatternCode ? 0 : count;
    }

    static std::size_t LengthOf(const std::wstring& digits, std::size_t position) {
        const std::size_t length = CountOf(digits);
        if (length == 0) Fail(position, L"a length from 1 to " + std::to_wstring(LongestPatternCode) + L" is expected");
        return length;
    }

    void ReadCodes(PatternPart& part) {
        if (!Take(L'=')) return;
        SkipBlanks();
        const std::size_t position = At();
        part.file = Peek() == L'"' ? ReadQuotes() : ReadWord(L"|{}");
        if (part.file.empty()) Fail(position, L"a file with codes and values is expected, such as codes.csv");
        if (!Take(L'|')) return;
        SkipBlanks();
        const std::size_t at = At();
        part.layer = CountOf(ReadDigits());
        if (part.layer == 0) Fail(at, L"a layer from 1 on is expected, such as 1");
    }

    // ------------------------------------------------------------------------------------------- names and quotes

    std::wstring ReadName() {
        SkipBlanks();
        const std::size_t position = At();
        std::wstring name = Peek() == L'"' ? hosts::Trimmed(ReadQuotes()) : ReadWord(L":=/|,{}\"");
        if (name.empty()) {
            if (AtEnd()) FailUnexpected();
            Fail(position, L"a name is expected");
        }
        if (name.size() > LongestName)
            Fail(position, L"the name has " + std::to_wstring(name.size()) + L" characters; a ledger keeps up to " +
                               std::to_wstring(LongestName));
        if (name.find_first_of(L",;") != std::wstring::npos)
            Fail(position,
                 L"the name \"" + name + L"\" holds a comma or semicolon, which a definition does not bring back");
        RefuseUnfit(name, position);
        return name;
    }

    std::size_t mvarOpened = 0; // the brace of the band that is read
    Pattern mvarParts;
};

} // namespace

Pattern ParsePattern(std::wstring_view text) {
    Pattern pattern = PatternReader(text).Read();
    CompletePattern(pattern);
    return pattern;
}

} // namespace ledger
