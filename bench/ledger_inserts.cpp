// The bare cost beside which the ledger is measured: the INSERTs and the COMMIT that store one code, in a loop, with
// nothing that decides which code it is.
//
// usage: ledger_inserts DATABASE SERIES COUNT    prints the seconds that COUNT codes took
#include <chrono>

#include "hosts/common/Console.h"
#include "hosts/common/HostError.h"
#include "ledger/core/Codes.h"
#include "ledger/core/Schema.h"
#include "ledger/db/Open.h"

namespace {

using namespace std::chrono_literals;

// No rule has it, so the rows are nobody's.
constexpr std::int64_t NoRule = 0;

void StoreOne(ledger::Codes& codes, const std::wstring& series, std::int64_t number) {
    const std::wstring code = series + std::to_wstring(number);
    const ledger::NewCode row{code, L"0123456789abcdef-1", L"{\"Year\":\"2024\"}", {{L"Number", series, number}}};
    codes.Add({&row, 1}, L"issued");
}

int Run(const std::vector<std::wstring>& arguments) {
    if (arguments.size() != 3) throw hosts::HostError(L"usage: ledger_inserts DATABASE SERIES COUNT");
    const std::unique_ptr<ledger::Database> opened = ledger::OpenDatabase(arguments[0], ledger::Patience(30s));
    ledger::Database& database = *opened;
    ledger::PrepareSchema(database, ledger::Patience(30s));
    ledger::Codes codes(database, NoRule);
    const auto begin = std::chrono::steady_clock::now();
    for (std::int64_t number = 1; number <= std::stoll(arguments[2]); ++number)
        ledger::InTransaction(database, ledger::Patience(30s), ledger::OnUniqueKey::Fail, [&] {
            StoreOne(codes, arguments[1], number);
            return true;
        });
    const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - begin;
    hosts::PrintLine(std::to_wstring(seconds.count()));
    return 0;
}

} // namespace

int main() { return hosts::RunProgram(L"ledger_inserts", Run); }
