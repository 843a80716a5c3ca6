// Whole text files, as people's editors and spreadsheets leave them.
#pragma once

#include <optional>
#include <string>

namespace hosts {

// The text of the file without its byte order mark: UTF-8, or UTF-16 with a byte order mark, or the code page named.
// Fails with HostError on a file that cannot be read or is in another encoding, with the number of the first bad line.
[[nodiscard]] std::wstring ReadTextFile(const std::wstring& path, std::optional<unsigned> codePage = std::nullopt);

// The same, where "-" names standard input.
[[nodiscard]] std::wstring ReadTextInput(const std::wstring& path, std::optional<unsigned> codePage = std::nullopt);

// The text of a rule's definition in a file: line ends of any kind become the carriage returns that the component
// separates lines with, and those at the end of the file go. Fails as ReadTextFile.
[[nodiscard]] std::wstring ReadDefinitionFile(const std::wstring& path);

// Replaces the file; it is written beside its place first, so that a failure leaves the old one. Fails with HostError.
void WriteTextFile(const std::wstring& path, const std::wstring& text);

} // namespace hosts
