// What the user asked the issuer to do.
#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace hosts {

struct CommandLine {
    std::wstring command;                                      // issue, preview or explain
    std::wstring rulePath;                                     // the file of the rule's definition text
    std::wstring subject;                                      // issue: the records; explain: the code
    std::wstring codesPath;                                    // empty: codes are kept in memory
    std::vector<std::pair<std::wstring, std::wstring>> values; // preview: name and value
};

// Nothing when the arguments are none that the usage text shows.
[[nodiscard]] std::optional<CommandLine> ParseCommandLine(const std::vector<std::wstring>& arguments);

inline constexpr const wchar_t* Usage =
    L"kissue issue RULE RECORDS.csv [--codes FILE]      issue a code for each record\n"
    L"kissue preview RULE [--codes FILE] [NAME=VALUE...]  show the next code, issue nothing\n"
    L"kissue explain RULE CODE                          take a code apart\n"
    L"\n"
    L"RULE is a text file with a rule's definition. RECORDS.csv is UTF-8; its first line names the columns, and those\n"
    L"that are named like a field or macro of the rule set it. FILE keeps the codes issued, one a line.\n"
    L"Exit code: 0 all went well, 1 nothing could be done, 2 wrong arguments, 3 some records were refused.";

} // namespace hosts
