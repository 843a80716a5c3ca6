// Whole text files, as people's editors and spreadsheets leave them.
#pragma once

#include <optional>
#include <string>

namespace hosts {

// The whole text of a file, or of standard input, as TextSource reads it; fails as that does.
[[nodiscard]] std::wstring ReadTextFile(const std::wstring& path, std::optional<unsigned> codePage = std::nullopt);

// The text of a rule's definition in a file: line ends of any kind become the carriage returns that the component
// separates lines with, and those at the end of the file go. Fails as ReadTextFile.
[[nodiscard]] std::wstring ReadDefinitionFile(const std::wstring& path);

// Replaces the file; it is written beside its place first, so that a failure leaves the old one. Fails with HostError.
void WriteTextFile(const std::wstring& path, const std::wstring& text);

} // namespace hosts
