#include "ledger/cli/Suggestions.h"

#include <algorithm>

#include "hosts/common/Nearest.h"
#include "hosts/common/Text.h"
#include "ledger/cli/OptionParts.h"

namespace ledger {

namespace {

// The innermost command that was understood.
const CLI::App& Chosen(const CLI::App& app) {
    const auto chosen = app.get_subcommands();
    return chosen.empty() ? app : Chosen(*chosen.front());
}

std::vector<std::wstring> OptionsOf(const CLI::App& command) {
    std::vector<std::wstring> names;
    for (const CLI::App* app = &command; app != nullptr; app = app->get_parent())
        for (const CLI::Option* option : app->get_options())
            for (const std::string& name : option->get_lnames())
                names.push_back(Wide("--" + name));
    return names;
}

void AddCommands(const CLI::App& app, const std::wstring& before, std::vector<std::wstring>& names) {
    for (const CLI::App* command : app.get_subcommands([](const CLI::App*) { return true; })) {
        const std::wstring name = before + Wide(command->get_name());
        names.push_back(name);
        AddCommands(*command, name + L' ', names);
    }
}

// Somebody who leaves out the first of two words is understood as well.
std::wstring NearestCommand(const CLI::App& command, const std::wstring& word) {
    std::vector<std::wstring> names;
    AddCommands(command, {}, names);
    const auto byLastWord =
        std::ranges::find_if(names, [&word](const std::wstring& name) { return name.ends_with(L' ' + word); });
    return byLastWord != names.end() ? *byLastWord : hosts::NearestOf(word, names).value_or(L"");
}

} // namespace

std::wstring UnknownArgument(const CLI::App& app) {
    const std::vector<std::string> unknown = app.remaining(true);
    if (unknown.empty()) return {};
    const CLI::App& command = Chosen(app);
    const std::wstring argument = Wide(unknown.front());
    const std::wstring shown = L'"' + hosts::Shown(argument) + L'"';
    std::wstring nearest;
    std::wstring text;
    if (argument.starts_with(L"-")) {
        nearest = hosts::NearestOf(argument.substr(0, argument.find(L'=')), OptionsOf(command)).value_or(L"");
        text = shown + L" is no option here";
    } else if (command.get_subcommands([](const CLI::App*) { return true; }).empty()) {
        return shown + L" is one argument too many";
    } else {
        nearest = NearestCommand(command, argument);
        text = shown + L" is no command";
    }
    return nearest.empty() ? text : text + L"; did you mean " + nearest + L"?";
}

} // namespace ledger
