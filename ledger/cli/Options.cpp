#include "ledger/cli/Options.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <filesystem>
#include <memory>
#include <regex>

#include "KestrelVersion.h"
#include "hosts/common/Console.h"
#include "hosts/common/Text.h"
#include "hosts/common/Utf8.h"
#include "ledger/cli/CodesCommand.h"
#include "ledger/cli/ExitCode.h"
#include "ledger/cli/ReportCommand.h"
#include "ledger/cli/RuleActsCommand.h"
#include "ledger/cli/Suggestions.h"

namespace ledger {

namespace {

// The library's texts are UTF-8.
std::wstring Wide(const std::string& text) { return hosts::FromOwnUtf8(text); }

std::vector<std::wstring> Wide(const std::vector<std::string>& texts) {
    std::vector<std::wstring> wide;
    wide.reserve(texts.size());
    for (const std::string& text : texts)
        wide.push_back(Wide(text));
    return wide;
}

void AddText(CLI::App* command, const std::string& name, std::wstring& target, const std::string& help,
             bool required = false) {
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
}

void AddWarn(CLI::App* command, unsigned& percent) {
    command->add_option("--warn", percent, "percent of a series' numbers that must be left (10)")
        ->check(CLI::Range(0, 100));
}

template <class Options>
using Command = int (*)(Session&, const Options&);

class Parser {
  public:
    Parser() {
        mvarApp.require_subcommand(1);
        mvarApp.fallthrough();
        mvarApp.allow_windows_style_options(false); // a path may begin with "/"
        AddText(&mvarApp, "-d,--database", mvarInvocation.database,
                "an SQLite file (ledger.db), or an ODBC connection string; issue, adopt, rule new and rule import make "
                "a ledger where there is none");
        mvarApp.set_version_flag("--version", "kledger " KESTREL_VERSION);
        mvarApp.get_option("--database")->envname("KLEDGER_DATABASE");
        mvarApp.add_flag("--json", mvarInvocation.json, "print one JSON object a line");
        mvarApp
            .add_option("--patience", mvarPatience, "seconds to go on trying when the database is busy or away (30)")
            ->check(CLI::Range(0, 3600));
        AddRuleCommands();
        AddNumbers();
        AddIssue();
        AddCodeCommands();
        AddCodesCommands();
        AddReport();
        AddAdopt();
        AddAudit();
        AddCare();
    }

    Invocation Parse(const std::vector<std::wstring>& arguments) {
        std::vector<std::string> reversed;
        for (const std::wstring& argument : arguments)
            for (std::string& part : WholeArguments(hosts::ToUtf8(argument)))
                reversed.insert(reversed.begin(), std::move(part));
        try {
            mvarApp.parse(reversed);
            mvarInvocation.patience = std::chrono::seconds(mvarPatience);
        } catch (const CLI::Success& help) { // asked for
            mvarInvocation.command = nullptr;
            mvarApp.exit(help);
        } catch (const CLI::ParseError& error) {
            mvarInvocation.command = nullptr;
            mvarInvocation.exitCode = ExitUsage;
            const std::wstring unknown = UnknownArgument(mvarApp);
            hosts::ReportLine(L"kledger: " + (unknown.empty() ? hosts::OneLine(Wide(error.what())) : unknown) +
                              L"; try kledger --help");
        }
        return mvarInvocation;
    }

  private:
    void MakesLedger(CLI::App* command) {
        command->parse_complete_callback([this] { mvarInvocation.ifNone = IfNone::Make; });
    }

    // "--name=" has an empty value; the library would take the next argument for it.
    static std::vector<std::string> WholeArguments(std::string argument) {
        const bool isEmpty =
            argument.starts_with("--") && argument.size() > 3 && argument.find('=') == argument.size() - 1;
        if (!isEmpty) return {std::move(argument)};
        argument.pop_back();
        return {std::move(argument), std::string()};
    }

    // A command whose options live as long as what is made of them.
    template <class Options>
    CLI::App* Add(CLI::App& parent, const std::string& name, const std::string& help, Command<Options> run,
                  const std::shared_ptr<Options>& options) {
        CLI::App* command = parent.add_subcommand(name, help);
        command->fallthrough();
        command->callback([this, run, options] {
            mvarInvocation.command = [run, options](Session& session) { return run(session, *options); };
        });
        return command;
    }

    void AddRuleCommands() {
        CLI::App* rule = mvarApp.add_subcommand("rule", "bring rules in and out");
        rule->require_subcommand(1);
        rule->fallthrough();
        const auto import = std::make_shared<ImportOptions>();
        CLI::App* command =
            Add<ImportOptions>(*rule, "import", "store a rule, or a new definition of it", ImportRule, import);
        MakesLedger(command);
        AddText(command, "file", import->file, "the rule's definition text", true);
        AddText(command, "--name", import->name, "the rule's name (the file's name without its extension)");
        AddPolicy(command, import->policy, import->leaseSize);
        command->add_flag("--force", import->force, "store it even if it can issue no code");
        AddSettings(command, import->numbering);
        const auto exported = std::make_shared<ExportOptions>();
        command = Add<ExportOptions>(*rule, "export", "print a rule's definition text", ExportRule, exported);
        AddText(command, "rule", exported->rule, "the rule");
        AddText(command, "--out", exported->file, "a file instead of standard output");
        const auto none = std::make_shared<std::wstring>();
        Add<std::wstring>(
            *rule, "list", "show the rules and how many codes each has",
            [](Session& session, const std::wstring&) { return ListRules(session); }, none);
        const auto history = std::make_shared<std::wstring>();
        command = Add<std::wstring>(*rule, "history", "show what was done to a rule, and its definitions", RuleHistory,
                                    history);
        AddText(command, "rule", *history, "the rule; may be left out where it is clear which");
        const auto designed = std::make_shared<DesignOptions>();
        command = Add<DesignOptions>(mvarApp, "design", "open the designer on a rule and store what it saves",
                                     DesignRule, designed);
        AddRule(command, designed->rule);
        AddDesigned(command, designed->fields, designed->macros);
        AddRuleAct(*rule, "rename", "give a rule another name; its codes stay its own", RenameCommand, true);
        AddRuleAct(*rule, "copy", "store a rule once more under another name, without its codes", CopyCommand, true);
        AddRuleAct(*rule, "remove", "remove a rule; one with codes is retired: it issues no more and keeps everything",
                   RemoveCommand, false);
        AddRuleAct(*rule, "restore", "let a retired rule issue again", RestoreCommand, false);
        AddRuleMaking(*rule);
    }

    void AddRuleMaking(CLI::App& rule) {
        const auto made = std::make_shared<NewRuleOptions>();
        CLI::App* command = Add<NewRuleOptions>(
            rule, "new", "make a rule of one line such as INV-{Date:yyyy}-{####}; without it the designer opens",
            NewRule, made);
        MakesLedger(command);
        AddText(command, "name", made->name, "the rule's name", true);
        AddText(command, "pattern", made->pattern, "text, fields {Customer:4}, numbers {####}; see docs/patterns.md");
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
        command = Add<ShowOptions>(rule, "show", "print a rule's bands, its pattern and what is found about it",
                                   ShowRule, shown);
        AddText(command, "rule", shown->rule, "the rule; may be left out where it is clear which");
        AddText(command, "--codes", shown->folder, "write the codes and values that the pattern names into a folder");
        const auto checked = std::make_shared<std::wstring>();
        command = Add<std::wstring>(
            rule, "check", "tell what is wrong with a rule, or with a definition text in a file", CheckRule, checked);
        AddText(command, "rule", *checked, "the file or the rule", true);
        command->callback([this, checked] {
            std::error_code error;
            if (std::filesystem::is_regular_file(*checked, error))
                mvarInvocation.alone = [checked](const Output& output) { return CheckFile(output, *checked); };
            else
                mvarInvocation.command = [checked](Session& session) { return CheckRule(session, *checked); };
        });
        const auto designed = std::make_shared<DesignOptions>();
        command = Add<DesignOptions>(rule, "design", "open the designer on a rule and store what it saves", DesignRule,
                                     designed);
        AddText(command, "rule", designed->rule, "the rule; may be left out where it is clear which");
        AddDesigned(command, designed->fields, designed->macros);
    }

    void AddRuleAct(CLI::App& parent, const std::string& name, const std::string& help, Command<RuleActOptions> run,
                    bool namesAnother) {
        const auto options = std::make_shared<RuleActOptions>();
        CLI::App* command = Add<RuleActOptions>(parent, name, help, run, options);
        AddText(command, "rule", options->rule, "the rule", true);
        if (namesAnother) AddText(command, "new", options->newName, "the new name", true);
    }

    void AddNumberings() {
        CLI::App* numbering = mvarApp.add_subcommand("numbering", "names over several rules");
        numbering->require_subcommand(1);
        numbering->fallthrough();
        const auto added = std::make_shared<NumberingOptions>();
        CLI::App* command = Add<NumberingOptions>(
            *numbering, "add", "add a rule to a numbering, behind those that it has", AddToNumbering, added);
        AddText(command, "name", added->name, "the numbering", true);
        AddText(command, "rule", added->rule, "the rule", true);
        AddTexts(command, "--fields", added->fields, "NAME", "a field that the records have and no code shows");
        AddText(command, "--date", added->date, "the field with the record's date");
        AddText(command, "--from", added->from, "the first day that the rule is for");
        AddText(command, "--until", added->until, "the last one");
        AddTexts(command, "--when", added->when, "NAME=VALUE", "what a record must have");
        AddText(
            command, "--then", added->then,
            "when the rule is full, the next that fits begins anew or goes on counting; stop: the record is refused");
        command->get_option("--then")->check(CLI::IsMember({"stop", "anew", "on"}));
        const auto removed = std::make_shared<std::wstring>();
        command = Add<std::wstring>(*numbering, "remove", "forget a numbering; its rules and codes stay",
                                    RemoveNumbering, removed);
        AddText(command, "name", *removed, "the numbering", true);
        const auto shown = std::make_shared<std::wstring>();
        command = Add<std::wstring>(*numbering, "show", "show the parts of a numbering", ShowNumbering, shown);
        AddText(command, "name", *shown, "the numbering", true);
        const auto none = std::make_shared<std::wstring>();
        Add<std::wstring>(
            *numbering, "list", "show the numberings",
            [](Session& session, const std::wstring&) { return ListNumberings(session); }, none);
    }

    void AddNumbers() {
        const auto set = std::make_shared<SetOptions>();
        CLI::App* command =
            Add<SetOptions>(*mvarApp.get_subcommand("rule"), "set", "say how a rule counts", SetRule, set);
        AddText(command, "rule", set->rule, "the rule", true);
        AddSettings(command, set->settings);
        AddNumberings();
        const auto next = std::make_shared<NextOptions>();
        command = Add<NextOptions>(mvarApp, "next", "show the next number of a record's series, or set it", NextCommand,
                                   next);
        AddText(command, "rule", next->rule, "the rule; may be left out where it is clear which");
        AddFields(command, next->fields);
        command->add_option("--set", next->set, "leave numbers out: the series goes on with this one");
        AddText(command, "--band", next->band, "the band whose number is set, where the rule has several");
        const auto last = std::make_shared<NextOptions>();
        command = Add<NextOptions>(mvarApp, "last", "show the last code of a record's series", LastCommand, last);
        AddText(command, "rule", last->rule, "the rule; may be left out where it is clear which");
        AddFields(command, last->fields);
    }

    void AddIssue() {
        const auto options = std::make_shared<IssueOptions>();
        CLI::App* command = Add<IssueOptions>(mvarApp, "issue", "issue codes and store them", IssueCodes, options);
        command->parse_complete_callback(
            [this, options] { mvarInvocation.ifNone = options->dryRun ? IfNone::Refuse : IfNone::Make; });
        AddText(command, "file", options->file,
                "CSV: the first line names the fields, each further one is a record; - is standard input. A file "
                "without such "
                "columns is a list, and each of its lines gets a code. Without a file --field makes one record");
        AddRule(command, options->rule);
        AddFields(command, options->fields);
        AddDateFormat(command, options->dateFormat);
        AddFileFormat(command, options->separator, options->codePage);
        command->add_flag("--keep", options->keepOtherColumns,
                          "store columns that the rule does not know with the code");
        AddText(command, "--key", options->key,
                "what makes the record the same request: the same key gets the same code, whenever it is asked again");
        AddText(command, "--key-column", options->keyColumn, "the column of the file with such keys");
        command->add_option("-n,--count", options->count, "how many codes for the one record (1)")
            ->check(CLI::Range(1, 1'000'000));
        command->add_flag("--dry-run", options->dryRun, "store nothing, and show what would be issued and refused");
        command->add_flag("-q,--quiet", options->quiet,
                          "show the codes alone, without fields, progress, warnings and summary");
        AddWarn(command, options->warnPercent);
        // An empty one is a mistake of the caller's, who would take the request for one with a key.
        for (const char* name : {"--key", "--key-column"})
            command->get_option(name)->check(
                [](const std::string& text) { return text.empty() ? std::string("it is empty") : std::string(); });
    }

    void AddCodeCommands() {
        const auto preview = std::make_shared<PreviewOptions>();
        CLI::App* command =
            Add<PreviewOptions>(mvarApp, "preview", "show the next codes, store nothing", PreviewCommand, preview);
        AddRule(command, preview->rule);
        AddFields(command, preview->fields);
        AddDateFormat(command, preview->dateFormat);
        command->add_option("-n,--count", preview->count, "how many (1)")->check(CLI::Range(1, 100'000));
        const auto explain = std::make_shared<CodeOptions>();
        command = Add<CodeOptions>(mvarApp, "explain", "take a code apart", ExplainCommand, explain);
        AddText(command, "code", explain->code, "the code", true);
        AddRule(command, explain->rule);
        const auto voided = std::make_shared<CodeOptions>();
        command =
            Add<CodeOptions>(mvarApp, "void", "mark a code as void; it is kept and never used again", VoidCode, voided);
        AddText(command, "code", voided->code, "the code", true);
        AddText(command, "--reason", voided->reason, "why", true);
        AddRule(command, voided->rule);
        const auto found = std::make_shared<FindOptions>();
        command = Add<FindOptions>(mvarApp, "find", "show the code of a request", FindTicket, found);
        AddText(command, "--ticket", found->ticket, "the key of the request, or the ticket that kledger made for it",
                true);
        AddRule(command, found->rule);
    }

    CLI::App* AddWish(CLI::App& parent, const std::string& name, const std::string& help, Command<CodesOptions> run,
                      const std::shared_ptr<CodesOptions>& options) {
        CLI::App* command = Add<CodesOptions>(parent, name, help, run, options);
        CodeWish& wish = options->wish;
        AddText(command, "-r,--rule", wish.rule, "those of one rule");
        AddText(command, "--series", wish.series, "those numbered in a series, as audit names it");
        AddText(command, "--state", wish.state, "issued, adopted or void");
        AddText(command, "--since", wish.since, "stored at that time (UTC) or later: 2024, 2024-05, 2024-05-31, ...");
        AddText(command, "--until", wish.until, "stored before the end of that time (UTC)");
        AddText(command, "--ticket", wish.ticket, "the one with that key or ticket");
        AddFields(command, options->fields);
        return command;
    }

    void AddCodesCommands() {
        CLI::App* codes = mvarApp.add_subcommand("codes", "look at the codes that there are");
        codes->require_subcommand(1);
        codes->fallthrough();
        AddWish(*codes, "list", "show codes, in the order of rules and codes", ListCodes,
                std::make_shared<CodesOptions>());
        const auto found = std::make_shared<CodesOptions>();
        CLI::App* command = AddWish(*codes, "find", "show the codes that fit a pattern", FindCodes, found);
        AddText(command, "pattern", found->wish.pattern, "of the code: * stands for any characters, ? for one", true);
        const auto exported = std::make_shared<CodesOptions>();
        command = AddWish(*codes, "export", "print codes as CSV, or with --json as JSON", ExportCodes, exported);
        AddText(command, "--out", exported->file, "a file instead of standard output");
    }

    void AddReport() {
        const auto options = std::make_shared<ReportOptions>();
        CLI::App* command = Add<ReportOptions>(
            mvarApp, "report", "show each series: how full it is, since when, until when", ReportLedger, options);
        AddRule(command, options->rule);
        AddText(command, "--html", options->html, "a file for a page with pictures, for any browser");
        AddWarn(command, options->warnPercent);
    }

    void AddAdopt() {
        const auto options = std::make_shared<AdoptOptions>();
        CLI::App* command =
            Add<AdoptOptions>(mvarApp, "adopt", "take over codes that were issued elsewhere", AdoptCodes, options);
        MakesLedger(command);
        command
            ->add_option_function<std::vector<std::string>>(
                "what", [options](const std::vector<std::string>& texts) { options->what = Wide(texts); },
                "the codes; or a file, CSV with a column of codes; - is standard input")
            ->required()
            ->type_name("CODE... | FILE");
        AddText(command, "--column", options->column, "the column with the codes (the first one)");
        AddRule(command, options->rule);
        AddFileFormat(command, options->separator, options->codePage);
    }

    void AddAudit() {
        const auto options = std::make_shared<AuditOptions>();
        CLI::App* command = Add<AuditOptions>(
            mvarApp, "audit", "check every row and every chain of one rule, or of all", AuditRule, options);
        AddRule(command, options->rule);
        AddWarn(command, options->warnPercent);
        AddText(command, "--write-heads", options->writeHeads, "write the newest seal of each chain to a file");
        AddText(command, "--against", options->against,
                "such a file: prove that what was there then is there unchanged");
        command->add_flag("--repair", options->repair, "put right first what can be without guessing");
    }

    void AddCare() {
        const auto none = std::make_shared<std::wstring>();
        Add<std::wstring>(
            mvarApp, "doctor", "show what this database promises and what is left open",
            [](Session& session, const std::wstring&) { return Doctor(session); }, none);
        CLI::App* command = Add<std::wstring>(
            mvarApp, "upgrade", "bring a ledger of an older version up; back it up before",
            [](Session& session, const std::wstring&) { return Upgrade(session); }, none);
        command->parse_complete_callback([this] { mvarInvocation.anySchema = true; });
        CLI::App* lease = mvarApp.add_subcommand("lease", "numbers that programs have set aside");
        lease->require_subcommand(1);
        lease->fallthrough();
        const auto options = std::make_shared<LeaseOptions>();
        command = Add<LeaseOptions>(*lease, "close", "close leases whose programs are gone from this machine",
                                    CloseLeases, options);
        AddRule(command, options->rule);
        AddText(command, "--owner", options->owner, "close those of this MACHINE:PROCESS, on whatever machine it was");
    }

    CLI::App mvarApp{"Issues codes by rules and keeps them in a database, safely for many programs at once.\n"
                     "Exit code: 0 done, 1 nothing could be done, 2 wrong arguments, 3 some records were refused,\n"
                     "4 the audit found something, 5 the database is out of reach, busy, full or read-only,\n"
                     "6 stopped by Ctrl-C, or nobody took the output.",
                     "kledger"};
    Invocation mvarInvocation;
    int mvarPatience = 30;
};

} // namespace

Invocation ParseArguments(const std::vector<std::wstring>& arguments) { return Parser().Parse(arguments); }

} // namespace ledger
