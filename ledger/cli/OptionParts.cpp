#include "ledger/cli/OptionParts.h"

#include "hosts/common/Utf8.h"
#include "ledger/core/RuleCalendar.h"

namespace ledger {

std::wstring Wide(const std::string& text) { return hosts::FromOwnUtf8(text); }

std::vector<std::wstring> Wide(const std::vector<std::string>& texts) {
    std::vector<std::wstring> wide;
    wide.reserve(texts.size());
    for (const std::string& text : texts)
        wide.push_back(Wide(text));
    return wide;
}

void AddText(CLI::App* command, const std::string& name, std::wstring& target, const std::string& help, bool required) {
    auto* option = command->add_option_function<std::string>(
        name, [&target](const std::string& text) { target = Wide(text); }, help);
    option->required(required)->type_name("TEXT");
}

void AddTexts(CLI::App* command, const std::string& name, std::vector<std::wstring>& target, const std::string& type,
              const std::string& help) {
    command
        ->add_option_function<std::vector<std::string>>(
            name, [&target](const std::vector<std::string>& texts) { target = Wide(texts); }, help)
        ->type_name(type)
        ->allow_extra_args(false);
}

void AddFields(CLI::App* command, std::vector<std::wstring>& target) {
    AddTexts(command, "-f,--field", target, "NAME=VALUE",
             "a value of a field or macro of the rule, as often as needed");
}

void AddPolicy(CLI::App* command, std::wstring& policy, std::optional<std::int64_t>& leaseSize) {
    AddText(command, "--policy", policy, "gapless: no number is ever skipped; fast: numbers in blocks");
    command->get_option("--policy")->check(CLI::IsMember({"gapless", "fast"}));
    command->add_option("--lease", leaseSize, "numbers in a block of the fast policy (100)")
        ->check(CLI::Range(1, 1'000'000));
}

void AddDesigned(CLI::App* command, std::vector<std::wstring>& fields, std::vector<std::wstring>& macros) {
    AddTexts(command, "--field", fields, "NAME", "a field for the designer to offer, as often as needed");
    AddTexts(command, "--macro", macros, "NAME", "a macro, likewise");
}

void AddDateFormat(CLI::App* command, std::wstring& target) {
    AddText(command, "--date-format", target, "how dates are written, such as dd.mm.yyyy (ISO 8601: 2026-04-12)");
}

void AddRule(CLI::App* command, std::wstring& target) {
    AddText(command, "-r,--rule", target, "the rule; may be left out where it is clear which");
}

void AddFileFormat(CLI::App* command, wchar_t& separator, std::optional<unsigned>& codePage) {
    command
        ->add_option_function<std::string>(
            "--separator",
            [&separator](const std::string& text) { separator = text == "tab" ? L'\t' : Wide(text).front(); },
            "what stands between fields: one character, or tab")
        ->type_name("CHAR")
        ->check([](const std::string& text) {
            return text == "tab" || Wide(text).size() == 1 ? std::string() : std::string("one character, or tab");
        });
    command->add_option("--code-page", codePage, "the file's code page, where it is not Unicode (1252, 850, ...)");
}

void AddSettings(CLI::App* command, SettingOptions& target) {
    command->add_option("--step", target.step, "from one number of a series to the next (1)")
        ->check(CLI::Range(1, 1'000'000'000));
    command->add_flag("--reuse,!--no-reuse", target.reuse, "give the numbers of void codes again, the lowest first");
    command
        ->add_option_function<std::string>(
            "--series", [&target](const std::string& text) { target.series = Wide(text); },
            "count separately by the values of this field, which the codes do not show; empty: by none")
        ->type_name("FIELD");
    command
        ->add_option_function<std::string>(
            "--week-begins", [&target](const std::string& text) { target.week = WeekDayOf(Wide(text)); },
            "the day that weeks begin on (monday)")
        ->type_name("DAY")
        ->check([](const std::string& text) {
            return WeekDayOf(Wide(text)) ? std::string() : std::string("a day such as sunday");
        });
}

void AddWarn(CLI::App* command, unsigned& percent) {
    command->add_option("--warn", percent, "percent of a series' numbers that must be left (10)")
        ->check(CLI::Range(0, 100));
}

} // namespace ledger
