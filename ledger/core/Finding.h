// What an audit finds.
#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace ledger {

enum class FindingKind {
    Gap,        // numbers that nobody holds and no lease accounts for
    Room,       // a series that runs full
    Duplicate,  // codes that differ in letter case only
    Lost,       // a number whose code is gone
    Uncounted,  // a code without the numbers that its definition gives it
    Changed,    // a row whose seal does not fit
    Act,        // an act in the journal that is gone or changed, or rows of it that are
    Void,       // a void code without its act, or an act without its void code
    Settings,   // a rule or a definition that is not as the journal says
    Definition, // a definition, or a code that refers to one that is not there
    Lease,      // a lease that is not as the journal or its numbers say
    Orphan,     // rows of a rule that is not there
    Fields,     // fields that are no JSON object
    Head        // what was there when the heads were written, and is not any more
};

struct KindOfFinding {
    const wchar_t* name;
    const wchar_t* meaning;
    const wchar_t* remedy;
    bool canBeRepaired; // without guessing, by audit --repair
};

[[nodiscard]] const KindOfFinding& Describe(FindingKind kind);

using Fact = std::pair<std::wstring, std::variant<std::wstring, std::int64_t>>;

struct Finding {
    FindingKind kind = FindingKind::Gap;
    std::wstring text;       // one line, for people
    std::vector<Fact> facts; // the same for programs
};

} // namespace ledger
