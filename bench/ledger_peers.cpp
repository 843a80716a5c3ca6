// Other ways to number documents on a server, each as it is usually written, beside which the ledger is measured:
//
//   counter    a row holds the last number; SELECT ... FOR UPDATE, UPDATE, INSERT, COMMIT
//   lock       the table is locked; the highest number is read, INSERT, COMMIT
//   sequence   the server's sequence gives the number; INSERT, COMMIT
//
// usage: ledger_peers DATABASE WAY prepare   makes the way's tables
//        ledger_peers DATABASE WAY COUNT     stores COUNT codes and prints the seconds that took
#include <functional>
#include <map>

#include "hosts/common/Console.h"
#include "hosts/common/HostError.h"
#include "ledger/core/Stamp.h"
#include "ledger/db/Open.h"

namespace {

using namespace std::chrono_literals;

const ledger::Patience TheirPatience(600s);

std::int64_t NumberOf(ledger::Database& database, const std::wstring& sql) {
    return database.Prepare(sql).First([](const ledger::Statement& row) { return row.Number(1); }).value_or(0);
}

std::int64_t NextOfCounter(ledger::Database& database) {
    const std::int64_t next = NumberOf(database, L"SELECT last FROM peer_counter WHERE id = 1 FOR UPDATE") + 1;
    database.Prepare(L"UPDATE peer_counter SET last = ? WHERE id = 1").Set(next).Execute();
    return next;
}

std::int64_t NextOfLockedTable(ledger::Database& database) {
    database.Run(L"LOCK TABLE peer_lock_codes IN EXCLUSIVE MODE");
    return NumberOf(database, L"SELECT MAX(number) FROM peer_lock_codes") + 1;
}

std::int64_t NextOfSequence(ledger::Database& database) {
    return NumberOf(database, L"SELECT nextval('peer_sequence')");
}

struct Way {
    std::vector<std::wstring> tables; // beside that of its codes
    std::function<std::int64_t(ledger::Database&)> next;
};

const std::map<std::wstring, Way> Ways{
    {L"counter",
     {{L"CREATE TABLE peer_counter (id INTEGER PRIMARY KEY, last BIGINT NOT NULL)",
       L"INSERT INTO peer_counter VALUES (1, 0)"},
      NextOfCounter}},
    {L"lock", {{}, NextOfLockedTable}},
    {L"sequence", {{L"CREATE SEQUENCE peer_sequence"}, NextOfSequence}},
};

std::wstring CodesOf(const std::wstring& way) { return L"peer_" + way + L"_codes"; }

void Prepare(ledger::Database& database, const std::wstring& name, const Way& way) {
    ledger::InTransaction(database, TheirPatience, ledger::OnUniqueKey::Fail, [&] {
        for (const std::wstring& table : way.tables)
            database.Run(table);
        database.Run(L"CREATE TABLE " + CodesOf(name) +
                     L" (number BIGINT NOT NULL UNIQUE, code VARCHAR(64) PRIMARY KEY, stored_at VARCHAR(20) NOT NULL, "
                     L"fields TEXT NOT NULL)");
        return true;
    });
}

void StoreOne(ledger::Database& database, const std::wstring& name, const Way& way) {
    const std::int64_t number = way.next(database);
    const std::wstring digits = std::to_wstring(number);
    database.Prepare(L"INSERT INTO " + CodesOf(name) + L" VALUES (?, ?, ?, ?)")
        .Set(number)
        .Set(L"2024-" + std::wstring(9 - std::min<std::size_t>(digits.size(), 9), L'0') + digits)
        .Set(ledger::NowText())
        .Set(L"{\"Year\":\"2024\"}")
        .Execute();
}

void Store(ledger::Database& database, const std::wstring& name, const Way& way, std::int64_t count) {
    const auto begin = std::chrono::steady_clock::now();
    for (std::int64_t code = 0; code < count; ++code)
        ledger::InTransaction(database, TheirPatience, ledger::OnUniqueKey::Retry, [&] {
            StoreOne(database, name, way);
            return true;
        });
    const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - begin;
    hosts::PrintLine(std::to_wstring(seconds.count()));
}

int Run(const std::vector<std::wstring>& arguments) {
    const auto way = arguments.size() == 3 ? Ways.find(arguments[1]) : Ways.end();
    if (way == Ways.end()) throw hosts::HostError(L"usage: ledger_peers DATABASE counter|lock|sequence prepare|COUNT");
    const auto database = ledger::OpenDatabase(arguments[0], TheirPatience);
    if (arguments[2] == L"prepare")
        Prepare(*database, way->first, way->second);
    else
        Store(*database, way->first, way->second, std::stoll(arguments[2]));
    return 0;
}

} // namespace

int main() { return hosts::RunProgram(L"ledger_peers", Run); }
