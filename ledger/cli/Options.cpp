#include "ledger/cli/Options.h"

#include "KestrelVersion.h"
#include "hosts/common/Console.h"
#include "hosts/common/Text.h"
#include "hosts/common/Utf8.h"
#include "ledger/cli/CommandLine.h"
#include "ledger/cli/ExitCode.h"
#include "ledger/cli/Suggestions.h"

namespace ledger {

namespace {

class Parser {
  public:
    Parser() {
        App().require_subcommand(1);
        App().fallthrough();
        App().allow_windows_style_options(false); // a path may begin with "/"
        AddText(&App(), "-d,--database", Asked().database,
                "an SQLite file (ledger.db), or an ODBC connection string; issue, adopt, rule new and rule import make "
                "a ledger where there is none");
        App().set_version_flag("--version", "kledger " KESTREL_VERSION);
        App().get_option("--database")->envname("KLEDGER_DATABASE");
        App().add_flag("--json", Asked().json, "print one JSON object a line");
        App()
            .add_option("--patience", mvarPatience, "seconds to go on trying when the database is busy or away (30)")
            ->check(CLI::Range(0, 3600));
        AddRuleCommands(mvarLine);
        AddCodeCommands(mvarLine);
        AddAudit();
        AddCare();
    }

    Invocation Parse(const std::vector<std::wstring>& arguments) {
        std::vector<std::string> reversed;
        for (const std::wstring& argument : arguments)
            for (std::string& part : WholeArguments(hosts::ToUtf8(argument)))
                reversed.insert(reversed.begin(), std::move(part));
        try {
            App().parse(reversed);
            Asked().patience = std::chrono::seconds(mvarPatience);
        } catch (const CLI::Success& help) { // asked for
            Asked().command = nullptr;
            App().exit(help);
        } catch (const CLI::ParseError& error) {
            Asked().command = nullptr;
            Asked().exitCode = ExitUsage;
            const std::wstring unknown = UnknownArgument(App());
            hosts::ReportLine(L"kledger: " + (unknown.empty() ? hosts::OneLine(Wide(error.what())) : unknown) +
                              L"; try kledger --help");
        }
        return Asked();
    }

  private:
    // "--name=" has an empty value; the library would take the next argument for it.
    static std::vector<std::string> WholeArguments(std::string argument) {
        const bool isEmpty =
            argument.starts_with("--") && argument.size() > 3 && argument.find('=') == argument.size() - 1;
        if (!isEmpty) return {std::move(argument)};
        argument.pop_back();
        return {std::move(argument), std::string()};
    }

    [[nodiscard]] CLI::App& App() noexcept { return mvarLine.App(); }
    [[nodiscard]] Invocation& Asked() noexcept { return mvarLine.Asked(); }

    void AddAudit() {
        const auto options = std::make_shared<AuditOptions>();
        CLI::App* command = mvarLine.Add<AuditOptions>(
            App(), "audit", "check every row and every chain of one rule, or of all", AuditRule, options);
        AddRule(command, options->rule);
        AddWarn(command, options->warnPercent);
        AddText(command, "--write-heads", options->writeHeads, "write the newest seal of each chain to a file");
        AddText(command, "--against", options->against,
                "such a file: prove that what was there then is there unchanged");
        command->add_flag("--repair", options->repair, "put right first what can be without guessing");
    }

    void AddCare() {
        const auto none = std::make_shared<std::wstring>();
        mvarLine.Add<std::wstring>(
            App(), "doctor", "show what this database promises and what is left open",
            [](Session& session, const std::wstring&) { return Doctor(session); }, none);
        CLI::App* command = mvarLine.Add<std::wstring>(
            App(), "upgrade", "bring a ledger of an older version up; back it up before",
            [](Session& session, const std::wstring&) { return Upgrade(session); }, none);
        command->parse_complete_callback([this] { Asked().anySchema = true; });
        CLI::App* lease = App().add_subcommand("lease", "numbers that programs have set aside");
        lease->require_subcommand(1);
        lease->fallthrough();
        const auto options = std::make_shared<LeaseOptions>();
        command = mvarLine.Add<LeaseOptions>(*lease, "close", "close leases whose programs are gone from this machine",
                                             CloseLeases, options);
        AddRule(command, options->rule);
        AddText(command, "--owner", options->owner, "close those of this MACHINE:PROCESS, on whatever machine it was");
    }

    CommandLine mvarLine;
    int mvarPatience = 30;
};

} // namespace

Invocation ParseArguments(const std::vector<std::wstring>& arguments) { return Parser().Parse(arguments); }

} // namespace ledger
