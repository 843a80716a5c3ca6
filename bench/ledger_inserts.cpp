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
    ledger::NewCode row;
    row.row = {code, code, 0, L"issued", 0, L"2024-05-06T07:08:09Z", L"{\"Year\":\"2024\"}"};
    row.numbers.push_back({{L"Number", series, number}, 0, 0, std::wstring(64, L'0')});
    codes.Add({&row, 1});
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
