// The options of commands about codes.
#include "ledger/cli/CommandLine.h"

#include "ledger/cli/CodesCommand.h"
#include "ledger/cli/ReportCommand.h"

namespace ledger {

namespace {

void AddIssue(CommandLine& line) {
    const auto options = std::make_shared<IssueOptions>();
    CLI::App* command = line.Add<IssueOptions>(line.App(), "issue", "issue codes and store them", IssueCodes, options);
    command->parse_complete_callback(
        [&line, options] { line.Asked().ifNone = options->dryRun ? IfNone::Refuse : IfNone::Make; });
    AddText(command, "file", options->file,
            "CSV: the first line names the fields, each further one is a record; - is standard input. A file "
            "without such "
            "columns is a list, and each of its lines gets a code. Without a file --field makes one record");
    AddRule(command, options->rule);
    AddFields(command, options->fields);
    AddDateFormat(command, options->dateFormat);
    AddFileFormat(command, options->separator, options->codePage);
    command->add_flag("--keep", options->keepOtherColumns, "store columns that the rule does not know with the code");
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

void AddSingleCodes(CommandLine& line) {
    const auto preview = std::make_shared<PreviewOptions>();
    CLI::App* command =
        line.Add<PreviewOptions>(line.App(), "preview", "show the next codes, store nothing", PreviewCommand, preview);
    AddRule(command, preview->rule);
    AddFields(command, preview->fields);
    AddDateFormat(command, preview->dateFormat);
    command->add_option("-n,--count", preview->count, "how many (1)")->check(CLI::Range(1, 100'000));
    const auto explain = std::make_shared<CodeOptions>();
    command = line.Add<CodeOptions>(line.App(), "explain", "take a code apart", ExplainCommand, explain);
    AddText(command, "code", explain->code, "the code", true);
    AddRule(command, explain->rule);
    const auto voided = std::make_shared<CodeOptions>();
    command = line.Add<CodeOptions>(
        line.App(), "void", "mark a code as void; it is kept, and only a rule with --reuse gives its number again",
        VoidCode, voided);
    AddText(command, "code", voided->code, "the code", true);
    AddText(command, "--reason", voided->reason, "why", true);
    AddRule(command, voided->rule);
    const auto found = std::make_shared<FindOptions>();
    command = line.Add<FindOptions>(line.App(), "find", "show the code of a request", FindTicket, found);
    AddText(command, "--ticket", found->ticket, "the key of the request, or the ticket that kledger made for it", true);
    AddRule(command, found->rule);
}

CLI::App* AddWish(CommandLine& line, CLI::App& parent, const std::string& name, const std::string& help,
                  Command<CodesOptions> run, const std::shared_ptr<CodesOptions>& options) {
    CLI::App* command = line.Add<CodesOptions>(parent, name, help, run, options);
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

void AddCodesCommands(CommandLine& line) {
    CLI::App* codes = line.App().add_subcommand("codes", "look at the codes that there are");
    codes->require_subcommand(1);
    codes->fallthrough();
    AddWish(line, *codes, "list", "show codes, in the order of rules and codes", ListCodes,
            std::make_shared<CodesOptions>());
    const auto found = std::make_shared<CodesOptions>();
    CLI::App* command = AddWish(line, *codes, "find", "show the codes that fit a pattern", FindCodes, found);
    AddText(command, "pattern", found->wish.pattern, "of the code: * stands for any characters, ? for one", true);
    const auto exported = std::make_shared<CodesOptions>();
    command = AddWish(line, *codes, "export", "print codes as CSV, or with --json as JSON", ExportCodes, exported);
    AddText(command, "--out", exported->file, "a file instead of standard output");
}

void AddReport(CommandLine& line) {
    const auto options = std::make_shared<ReportOptions>();
    CLI::App* command = line.Add<ReportOptions>(
        line.App(), "report", "show each series: how full it is, since when, until when", ReportLedger, options);
    AddRule(command, options->rule);
    AddText(command, "--html", options->html, "a file for a page with pictures, for any browser");
    AddWarn(command, options->warnPercent);
}

void AddAdopt(CommandLine& line) {
    const auto options = std::make_shared<AdoptOptions>();
    CLI::App* command =
        line.Add<AdoptOptions>(line.App(), "adopt", "take over codes that were issued elsewhere", AdoptCodes, options);
    line.MakesLedger(command);
    command
        ->add_option_function<std::vector<std::string>>(
            "what", [options](const std::vector<std::string>& texts) { options->what = Wide(texts); },
            "the codes; or a file, CSV with a column named Code, or nothing but a code in each line; - is standard "
            "input")
        ->required()
        ->type_name("CODE... | FILE");
    AddText(command, "--column", options->column, "the column with the codes (Code, or the first one)");
    AddRule(command, options->rule);
    AddFileFormat(command, options->separator, options->codePage);
}

} // namespace

void AddCodeCommands(CommandLine& line) {
    AddIssue(line);
    AddSingleCodes(line);
    AddCodesCommands(line);
    AddReport(line);
    AddAdopt(line);
}

} // namespace ledger
