// kledger: issues codes by rules and keeps them in a database.
#include "hosts/common/Console.h"
#include "hosts/common/Text.h"
#include "ledger/cli/ExitCode.h"
#include "ledger/cli/Options.h"
#include "ledger/core/Schema.h"
#include "ledger/db/Open.h"

namespace {

int RunCommand(const ledger::Invocation& invocation) {
    const hosts::Apartment apartment;
    if (invocation.alone) return invocation.alone(ledger::Output(invocation.json));
    const ledger::Patience patience(invocation.patience);
    const std::unique_ptr<ledger::Database> database =
        ledger::OpenDatabase(invocation.database, patience, invocation.ifNone);
    if (!invocation.anySchema) ledger::PrepareSchema(*database, patience, invocation.ifNone);
    ledger::Session session{*database, patience, ledger::Output(invocation.json)};
    return invocation.command(session);
}

int Run(const std::vector<std::wstring>& arguments) {
    const ledger::Invocation invocation = ledger::ParseArguments(arguments);
    if (!invocation.command && !invocation.alone) return invocation.exitCode;
    try {
        return RunCommand(invocation);
    } catch (const ledger::DbError& error) {
        hosts::ReportLine(L"kledger: " + hosts::Shown(error.Message()));
        const bool isRequest = error.Kind() == ledger::Fault::Other || error.Kind() == ledger::Fault::UniqueKey ||
                               error.Kind() == ledger::Fault::Text;
        return isRequest ? ledger::ExitFailed : ledger::ExitDatabase;
    } catch (const hosts::OutputError& error) {
        hosts::ReportLine(L"kledger: " + hosts::Shown(error.Message()));
        return ledger::ExitStopped;
    }
}

} // namespace

int main() { return hosts::RunProgram(L"kledger", Run); }
