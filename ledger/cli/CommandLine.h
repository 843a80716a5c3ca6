// The command line as it is put together, and what it asked for.
#pragma once

#include <memory>

#include "ledger/cli/OptionParts.h"
#include "ledger/cli/Options.h"

namespace ledger {

template <class Options>
using Command = int (*)(Session&, const Options&);

class CommandLine {
  public:
    [[nodiscard]] CLI::App& App() noexcept { return mvarApp; }
    [[nodiscard]] Invocation& Asked() noexcept { return mvarInvocation; }

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

    // The command makes a ledger where there is none.
    void MakesLedger(CLI::App* command) {
        command->parse_complete_callback([this] { mvarInvocation.ifNone = IfNone::Make; });
    }

  private:
    CLI::App mvarApp{"Issues codes by rules and keeps them in a database, safely for many programs at once.\n"
                     "Exit code: 0 done, 1 nothing could be done, 2 wrong arguments, 3 some records were refused,\n"
                     "4 the audit found something, 5 the database is out of reach, busy, full or read-only,\n"
                     "6 stopped by Ctrl-C, or nobody took the output.",
                     "kledger"};
    Invocation mvarInvocation;
};

// Each adds a group of commands.
void AddRuleCommands(CommandLine& line);
void AddCodeCommands(CommandLine& line);

} // namespace ledger
