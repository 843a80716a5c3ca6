// What the script host is asked to do, from its command line.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "hosts/script/BoxAnswers.h"
#include "hosts/script/EndChecks.h"

namespace hosts::script {

enum class Language { VBScript, JScript };

struct Options {
    Language language = Language::VBScript;
    std::vector<std::wstring> includes; // files run before the script, in their order
    std::wstring script;
    std::vector<std::wstring> arguments; // what the script finds in WScript.Arguments
    EndChecks checks;
    std::optional<Answer> answer; // what message boxes are answered with, where nobody sits at the screen
};

// How to call the program, on one line.
[[nodiscard]] std::wstring Usage();
// The same with what each option does, several lines.
[[nodiscard]] std::wstring Help();
// Whether help is asked for, before any script is named.
[[nodiscard]] bool AsksForHelp(const std::vector<std::wstring>& arguments);

// By the file's extension, .vbs or .js in any letter case; nothing for any other.
[[nodiscard]] std::optional<Language> LanguageOf(const std::wstring& path);

// Fails with HostError, naming what is wrong, on an unknown option, a missing script, a file of an unknown language and
// files of two languages.
[[nodiscard]] Options ParseOptions(const std::vector<std::wstring>& arguments);

} // namespace hosts::script
