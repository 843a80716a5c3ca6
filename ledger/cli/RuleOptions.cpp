// The options of commands about rules, numberings and numbers.
#include "ledger/cli/CommandLine.h"

#include <filesystem>
#include <regex>

#include "ledger/cli/RuleActsCommand.h"

namespace ledger {

namespace {

void AddRuleMaking(CommandLine& line, CLI::App& rule) {
    const auto made = std::make_shared<NewRuleOptions>();
    CLI::App* command = line.Add<NewRuleOptions>(
        rule, "new", "make a rule of one line such as INV-{Date:yyyy}-{####}; without it the designer opens", NewRule,
        made);
    line.MakesLedger(command);
    AddText(command, "name", made->name, "the rule's name", true);
    command->add_option_function<std::string>(
        "pattern", [made](const std::string& text) { made->pattern = Wide(text); },
        "text, fields {Customer:4}, numbers {####}; see docs/patterns.md");
    AddText(command, "--grow", made->grow,
            "let the number grow past its width, as in 4..9: a rule for each width, and a numbering over them");
    AddPolicy(command, made->policy, made->leaseSize);
    AddFileFormat(command, made->separator, made->codePage);
    AddDesigned(command, made->fields, made->macros);
    AddSettings(command, made->numbering);
    command->add_flag("--capitals", made->settings.capitals, "put the codes of conversions in capitals");
    command->add_option("--year-begins", made->settings.yearBegins, "the month that a year begins with (1)")
        ->check(CLI::Range(1, 12));
    command->add_option("--month-begins", made->settings.monthBegins, "the day that a month begins with (1)")
        ->check(CLI::Range(1, 28));
    AddText(command, "--day-begins", made->settings.dayBegins, "the time that a day begins at, HH:MM (00:00)");
    command->get_option("--day-begins")->check([](const std::string& text) {
        return std::regex_match(text, std::regex("([01][0-9]|2[0-3]):[0-5][0-9]")) ? std::string()
                                                                                   : std::string("HH:MM");
    });
    command->add_flag("--replace", made->replace, "give the rule of this name a new definition");
    command->add_flag("--force", made->force, "store it even if it can issue no code");
    const auto shown = std::make_shared<ShowOptions>();
    command = line.Add<ShowOptions>(rule, "show", "print a rule's bands, its pattern and what is found about it",
                                    ShowRule, shown);
    AddText(command, "rule", shown->rule, "the rule; may be left out where it is clear which");
    AddText(command, "--codes", shown->folder, "write the codes and values that the pattern names into a folder");
    const auto checked = std::make_shared<std::wstring>();
    command = line.Add<std::wstring>(
        rule, "check", "tell what is wrong with a rule, or with a definition text in a file", CheckRule, checked);
    AddText(command, "rule", *checked, "the file or the rule", true);
    command->callback([&line, checked] {
        std::error_code error;
        if (std::filesystem::is_regular_file(*checked, error))
            line.Asked().alone = [checked](const Output& output) { return CheckFile(output, *checked); };
        else
            line.Asked().command = [checked](Session& session) { return CheckRule(session, *checked); };
    });
    const auto designed = std::make_shared<DesignOptions>();
    command = line.Add<DesignOptions>(rule, "design", "open the designer on a rule and store what it saves", DesignRule,
                                      designed);
    AddText(command, "rule", designed->rule, "the rule; may be left out where it is clear which");
    AddDesigned(command, designed->fields, designed->macros);
}

void AddRuleAct(CommandLine& line, CLI::App& parent, const std::string& name, const std::string& help,
                Command<RuleActOptions> run, bool namesAnother) {
    const auto options = std::make_shared<RuleActOptions>();
    CLI::App* command = line.Add<RuleActOptions>(parent, name, help, run, options);
    AddText(command, "rule", options->rule, "the rule", true);
    if (namesAnother) AddText(command, "new", options->newName, "the new name", true);
}

void AddNumberings(CommandLine& line) {
    CLI::App* numbering = line.App().add_subcommand("numbering", "names over several rules");
    numbering->require_subcommand(1);
    numbering->fallthrough();
    const auto added = std::make_shared<NumberingOptions>();
    CLI::App* command = line.Add<NumberingOptions>(
        *numbering, "add", "add a rule to a numbering, behind those that it has", AddToNumbering, added);
    AddText(command, "name", added->name, "the numbering", true);
    AddText(command, "rule", added->rule, "the rule", true);
    AddTexts(command, "--fields", added->fields, "NAME", "a field that the records have and no code shows");
    AddText(command, "--date", added->date, "the field with the record's date");
    AddText(command, "--from", added->from, "the first day that the rule is for");
    AddText(command, "--until", added->until, "the last one");
    AddTexts(command, "--when", added->when, "NAME=VALUE", "what a record must have");
    AddText(command, "--then", added->then,
            "when the rule is full, the next that fits begins anew or goes on counting; stop: the record is refused");
    command->get_option("--then")->check(CLI::IsMember({"stop", "anew", "on"}));
    const auto removed = std::make_shared<NumberingOptions>();
    command = line.Add<NumberingOptions>(*numbering, "remove",
                                         "take a rule out of a numbering, or forget all of it; rules and codes stay",
                                         RemoveFromNumbering, removed);
    AddText(command, "name", removed->name, "the numbering", true);
    AddText(command, "rule", removed->rule, "the rule whose parts go; left out: all of it");
    const auto shown = std::make_shared<std::wstring>();
    command = line.Add<std::wstring>(*numbering, "show", "show the parts of a numbering", ShowNumbering, shown);
    AddText(command, "name", *shown, "the numbering", true);
    const auto none = std::make_shared<std::wstring>();
    line.Add<std::wstring>(
        *numbering, "list", "show the numberings",
        [](Session& session, const std::wstring&) { return ListNumberings(session); }, none);
}

void AddNumbers(CommandLine& line) {
    const auto set = std::make_shared<SetOptions>();
    CLI::App* command =
        line.Add<SetOptions>(*line.App().get_subcommand("rule"), "set", "say how a rule counts", SetRule, set);
    AddText(command, "rule", set->rule, "the rule", true);
    AddSettings(command, set->settings);
    AddNumberings(line);
    const auto next = std::make_shared<NextOptions>();
    command = line.Add<NextOptions>(line.App(), "next", "show the next number of a record's series, or set it",
                                    NextCommand, next);
    AddText(command, "rule", next->rule, "the rule; may be left out where it is clear which");
    AddFields(command, next->fields);
    AddDateFormat(command, next->dateFormat);
    command->add_option("--set", next->set, "leave numbers out: the series goes on with this one");
    AddText(command, "--band", next->band, "the band whose number is set, where the rule has several");
    const auto last = std::make_shared<NextOptions>();
    command = line.Add<NextOptions>(line.App(), "last", "show the last code of a record's series", LastCommand, last);
    AddText(command, "rule", last->rule, "the rule; may be left out where it is clear which");
    AddFields(command, last->fields);
    AddDateFormat(command, last->dateFormat);
}

} // namespace

void AddRuleCommands(CommandLine& line) {
    CLI::App* rule = line.App().add_subcommand("rule", "bring rules in and out");
    rule->require_subcommand(1);
    rule->fallthrough();
    const auto import = std::make_shared<ImportOptions>();
    CLI::App* command =
        line.Add<ImportOptions>(*rule, "import", "store a rule, or a new definition of it", ImportRule, import);
    line.MakesLedger(command);
    AddText(command, "file", import->file, "the rule's definition text", true);
    AddText(command, "--name", import->name, "the rule's name (the file's name without its extension)");
    AddPolicy(command, import->policy, import->leaseSize);
    command->add_flag("--force", import->force, "store it even if it can issue no code");
    AddSettings(command, import->numbering);
    const auto exported = std::make_shared<ExportOptions>();
    command = line.Add<ExportOptions>(*rule, "export", "print a rule's definition text", ExportRule, exported);
    AddText(command, "rule", exported->rule, "the rule");
    AddText(command, "--out", exported->file, "a file instead of standard output");
    const auto none = std::make_shared<std::wstring>();
    line.Add<std::wstring>(
        *rule, "list", "show the rules and how many codes each has",
        [](Session& session, const std::wstring&) { return ListRules(session); }, none);
    const auto history = std::make_shared<std::wstring>();
    command = line.Add<std::wstring>(*rule, "history", "show what was done to a rule, and its definitions", RuleHistory,
                                     history);
    AddText(command, "rule", *history, "the rule; may be left out where it is clear which");
    const auto designed = std::make_shared<DesignOptions>();
    command = line.Add<DesignOptions>(line.App(), "design", "open the designer on a rule and store what it saves",
                                      DesignRule, designed);
    AddRule(command, designed->rule);
    AddDesigned(command, designed->fields, designed->macros);
    AddRuleAct(line, *rule, "rename", "give a rule another name; its codes stay its own", RenameCommand, true);
    AddRuleAct(line, *rule, "copy", "store a rule once more under another name, without its codes", CopyCommand, true);
    AddRuleAct(line, *rule, "remove",
               "remove a rule; one with codes is retired: it issues no more and keeps everything", RemoveCommand,
               false);
    AddRuleAct(line, *rule, "restore", "let a retired rule issue again", RestoreCommand, false);
    AddRuleMaking(line, *rule);
    AddNumbers(line);
}

} // namespace ledger
