#include "hosts/script/Options.h"

#include <filesystem>

#include <windows.h>

#include "hosts/common/HostError.h"

namespace hosts::script {

namespace {

using Position = std::vector<std::wstring>::const_iterator;

bool IsOption(const std::wstring& argument) { return argument.starts_with(L"--"); }

Language KnownLanguageOf(const std::wstring& path) {
    const std::optional<Language> language = LanguageOf(path);
    if (!language) throw HostError(L"\"" + path + L"\" is neither .vbs nor .js");
    return *language;
}

// Moves on to the value of the option.
const std::wstring& ValueOf(Position& at, Position end) {
    const std::wstring& option = *at;
    if (++at == end) throw HostError(option + L" stands without its value; " + Usage());
    return *at;
}

Answer AnswerFrom(const std::wstring& text) {
    if (text == L"yes") return Answer::Yes;
    if (text == L"no") return Answer::No;
    throw HostError(L"boxes are answered with yes or no, not with \"" + text + L"\"");
}

// Moves past the options; what stands there then is the script.
void ReadOptions(Position& at, Position end, Options& options) {
    for (; at != end && IsOption(*at); ++at) {
        if (*at == L"--check-heap") {
            options.checks.heap = true;
        } else if (*at == L"--check-released") {
            options.checks.released = ValueOf(at, end);
        } else if (*at == L"--include") {
            options.includes.push_back(ValueOf(at, end));
        } else if (*at == L"--answer") {
            options.answer = AnswerFrom(ValueOf(at, end));
        } else {
            throw HostError(L"there is no option " + *at + L"; " + Usage());
        }
    }
}

} // namespace

std::wstring Usage() {
    return L"usage: kscript [--check-heap] [--check-released DLL] [--answer yes|no] "
           L"[--include FILE]... SCRIPT.vbs|SCRIPT.js [ARGUMENT]...";
}

std::wstring Help() {
    return Usage() +
           L"\n\n"
           L"Runs a script and hands it the arguments. WScript.CreateObject(name, prefix) connects the events of an\n"
           L"object to subs that are named after the prefix and the event.\n\n"
           L"  --include FILE         runs the file before the script; may stand several times\n"
           L"  --answer yes|no        answers message boxes so, says which, and closes dialogs\n"
           L"  --check-heap           fails when the script has damaged the memory of the program\n"
           L"  --check-released DLL   fails when objects of the library are left at the end\n"
           L"  --help                 prints this\n\n"
           L"Exit codes: that of WScript.Quit, else 0; 1 for an error of the script, 2 for a wrong call.";
}

bool AsksForHelp(const std::vector<std::wstring>& arguments) {
    return !arguments.empty() && (arguments.front() == L"--help" || arguments.front() == L"-h");
}

std::optional<Language> LanguageOf(const std::wstring& path) {
    const std::wstring extension = std::filesystem::path(path).extension().wstring();
    if (lstrcmpiW(extension.c_str(), L".vbs") == 0) return Language::VBScript;
    if (lstrcmpiW(extension.c_str(), L".js") == 0) return Language::JScript;
    return std::nullopt;
}

Options ParseOptions(const std::vector<std::wstring>& arguments) {
    Options options;
    auto at = arguments.begin();
    ReadOptions(at, arguments.end(), options);
    if (at == arguments.end()) throw HostError(L"no script is named; " + Usage());
    options.script = *at;
    options.language = KnownLanguageOf(options.script);
    for (const std::wstring& include : options.includes) {
        if (KnownLanguageOf(include) != options.language)
            throw HostError(L"\"" + include + L"\" and \"" + options.script + L"\" are in two languages");
    }
    options.arguments.assign(at + 1, arguments.end());
    return options;
}

} // namespace hosts::script
