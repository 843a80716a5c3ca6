// What a host prints: UTF-8, whatever the console's code page, with bare line feeds.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace hosts {

// Once at the start of a program; line ends stay as written and a console shows UTF-8.
void PrepareConsole();

// A line to standard output; buffered until FlushOut or the end of the program. Fails with HostError when nobody takes
// the output any more.
void PrintLine(std::wstring_view line);
// The same without ending the line.
void PrintText(std::wstring_view text);
void FlushOut();

// A line to standard error, after what was printed so far.
void ReportLine(std::wstring_view line);
void ReportText(std::wstring_view text);

// The program's own arguments, without its name.
[[nodiscard]] std::vector<std::wstring> ProgramArguments();

// Runs a program's body: what it throws becomes one line "NAME: message" on standard error and exit code 1.
int RunProgram(std::wstring_view name, int (*body)(const std::vector<std::wstring>&));

} // namespace hosts
