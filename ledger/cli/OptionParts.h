// What the options of several commands have in common.
#pragma once

#include <CLI/CLI.hpp>

#include <optional>
#include <string>
#include <vector>

#include "ledger/cli/Commands.h"

namespace ledger {

// The library's texts are UTF-8.
[[nodiscard]] std::wstring Wide(const std::string& text);
[[nodiscard]] std::vector<std::wstring> Wide(const std::vector<std::string>& texts);

// Each adds an option of one meaning; the target lives as long as the command.
void AddText(CLI::App* command, const std::string& name, std::wstring& target, const std::string& help,
             bool required = false);
void AddTexts(CLI::App* command, const std::string& name, std::vector<std::wstring>& target, const std::string& type,
              const std::string& help);
void AddFields(CLI::App* command, std::vector<std::wstring>& target);
void AddPolicy(CLI::App* command, std::wstring& policy, std::optional<std::int64_t>& leaseSize);
void AddDesigned(CLI::App* command, std::vector<std::wstring>& fields, std::vector<std::wstring>& macros);
void AddDateFormat(CLI::App* command, std::wstring& target);
void AddRule(CLI::App* command, std::wstring& target);
void AddFileFormat(CLI::App* command, wchar_t& separator, std::optional<unsigned>& codePage);
void AddSettings(CLI::App* command, SettingOptions& target);
void AddWarn(CLI::App* command, unsigned& percent);

} // namespace ledger
