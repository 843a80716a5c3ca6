#include "hosts/issuer/CommandLine.h"

namespace hosts {

namespace {

// Takes "--codes FILE" out of the arguments; false when the file is missing.
bool TakeCodesPath(std::vector<std::wstring>& arguments, std::wstring& path) {
    for (auto argument = arguments.begin(); argument != arguments.end(); ++argument) {
        if (*argument != L"--codes") continue;
        if (argument + 1 == arguments.end()) return false;
        path = *(argument + 1);
        arguments.erase(argument, argument + 2);
        return true;
    }
    return true;
}

bool AddValue(CommandLine& line, const std::wstring& argument) {
    const std::size_t equals = argument.find(L'=');
    if (equals == std::wstring::npos || equals == 0) return false;
    line.values.emplace_back(argument.substr(0, equals), argument.substr(equals + 1));
    return true;
}

} // namespace

std::optional<CommandLine> ParseCommandLine(const std::vector<std::wstring>& arguments) {
    std::vector<std::wstring> rest = arguments;
    CommandLine line;
    if (!TakeCodesPath(rest, line.codesPath) || rest.size() < 2) return std::nullopt;
    line.command = rest[0];
    line.rulePath = rest[1];
    if (line.command == L"preview") {
        for (std::size_t at = 2; at < rest.size(); ++at)
            if (!AddValue(line, rest[at])) return std::nullopt;
        return line;
    }
    if ((line.command != L"issue" && line.command != L"explain") || rest.size() != 3) return std::nullopt;
    line.subject = rest[2];
    return line;
}

} // namespace hosts
