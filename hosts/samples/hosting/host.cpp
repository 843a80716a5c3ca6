// The smallest host that issues codes safely for many programs at once, by either policy.
//
// usage: hosting_sample DATABASE RULE gapless|fast COUNT TICKET     issues codes of the year 2024, for the requests
// TICKET-1, TICKET-2 and so on; the same requests again get the same codes
#include <algorithm>

#include "hosts/common/Console.h"
#include "hosts/common/Rule.h"
#include "hosts/common/TextFile.h"
#include "ledger/db/Open.h"

namespace {

using namespace ledger;
using namespace std::chrono_literals;

constexpr std::int64_t LeaseSize = 50;

// [tables]
// The first key lets nobody store a code twice. The second one lets nobody take a number of a series twice, also where
// the codes differ in other bands, and its end is the highest number. The ticket is the request's own name: with a key
// on it a request that is made again, because nobody knows whether the first attempt was stored, gets the code that it
// has.
void MakeTables(Database& database) {
    database.Run(L"CREATE TABLE IF NOT EXISTS codes (code VARCHAR(100) NOT NULL PRIMARY KEY, "
                 L"ticket VARCHAR(100) NOT NULL UNIQUE)");
    database.Run(L"CREATE TABLE IF NOT EXISTS numbers (series VARCHAR(100) NOT NULL, number BIGINT NOT NULL, "
                 L"code VARCHAR(100) NOT NULL, PRIMARY KEY (series, number))");
    database.Run(L"CREATE TABLE IF NOT EXISTS leases (series VARCHAR(100) NOT NULL, first_number BIGINT NOT NULL, "
                 L"last_number BIGINT NOT NULL, PRIMARY KEY (series, first_number))");
}
// [tables]

// [store]
// Empty when the request has none yet.
std::wstring CodeOf(Database& database, const std::wstring& ticket) {
    Statement& row = database.Prepare(L"SELECT code FROM codes WHERE ticket = ?");
    row.Set(ticket).Execute();
    return row.Fetch() ? row.Text(1) : std::wstring();
}

void Store(Database& database, const std::wstring& ticket, const std::wstring& series, std::int64_t number,
           const std::wstring& code) {
    database.Prepare(L"INSERT INTO codes (code, ticket) VALUES (?, ?)").Set(code).Set(ticket).Execute();
    database.Prepare(L"INSERT INTO numbers (series, number, code) VALUES (?, ?, ?)")
        .Set(series)
        .Set(number)
        .Set(code)
        .Execute();
}

// The number is what stands in the code where the number band is, here the last six characters.
std::int64_t NumberOf(const std::wstring& code) { return std::stoll(code.substr(code.size() - 6)); }
// [store]

// [gapless]
std::wstring LastCode(Database& database, const std::wstring& series) {
    Statement& row = database.Prepare(L"SELECT code FROM numbers WHERE series = ? AND number = "
                                      L"(SELECT MAX(number) FROM numbers WHERE series = ?)");
    row.Set(series).Set(series).Execute();
    return row.Fetch() ? row.Text(1) : std::wstring();
}

std::wstring IssueGapless(Database& database, hosts::Rule& rule, const std::wstring& ticket) {
    return InTransaction(database, Patience(30s), OnUniqueKey::Retry, [&] {
        if (std::wstring known = CodeOf(database, ticket); !known.empty()) return known;
        std::wstring series;
        rule.OnLastCode([&](const std::wstring& pattern) {
            series = pattern; // a name for the series, not a pattern to search by
            return LastCode(database, series);
        });
        std::wstring code = rule.NextCode();
        Store(database, ticket, series, NumberOf(code), code);
        return code;
    });
}
// [gapless]

// [fast]
std::int64_t Highest(Database& database, const std::wstring& query, const std::wstring& series) {
    Statement& row = database.Prepare(query);
    row.Set(series).Execute();
    return row.Fetch() ? row.Number(1) : 0;
}

// Sets numbers aside; the key on the first one decides between programs that do so at once.
std::int64_t TakeLease(Database& database, const std::wstring& series) {
    return InTransaction(database, Patience(30s), OnUniqueKey::Retry, [&] {
        const std::int64_t first =
            1 + std::max(Highest(database, L"SELECT MAX(number) FROM numbers WHERE series = ?", series),
                         Highest(database, L"SELECT MAX(last_number) FROM leases WHERE series = ?", series));
        database.Prepare(L"INSERT INTO leases (series, first_number, last_number) VALUES (?, ?, ?)")
            .Set(series)
            .Set(first)
            .Set(first + LeaseSize - 1)
            .Execute();
        return first;
    });
}

class FastIssuer {
  public:
    FastIssuer(Database& database, hosts::Rule& rule) : mvarDatabase(database), mvarRule(rule) {}

    std::wstring Issue(const std::wstring& ticket) {
        std::wstring known =
            InTransaction(mvarDatabase, Patience(30s), OnUniqueKey::Fail, [&] { return CodeOf(mvarDatabase, ticket); });
        return known.empty() ? IssueNew(ticket) : known;
    }

  private:
    std::wstring IssueNew(const std::wstring& ticket) {
        std::wstring series;
        mvarRule.OnLastCode([&](const std::wstring& pattern) {
            series = pattern;
            if (mvarSeries != series || mvarNext == mvarEnd) Lease(series);
            return Before(series, mvarNext);
        });
        std::wstring code = mvarRule.NextCode();
        InTransaction(mvarDatabase, Patience(30s), OnUniqueKey::Fail, [&] {
            Store(mvarDatabase, ticket, series, NumberOf(code), code);
            return true;
        });
        ++mvarNext;
        return code;
    }

    void Lease(const std::wstring& series) {
        mvarNext = TakeLease(mvarDatabase, series);
        mvarEnd = mvarNext + LeaseSize;
        mvarSeries = series;
    }

    // The code that would have come before: the component adds one to the number in it.
    static std::wstring Before(const std::wstring& series, std::int64_t number) {
        const std::wstring digits = std::to_wstring(1'000'000 + number - 1).substr(1);
        return series.substr(0, series.size() - digits.size()) + digits;
    }

    Database& mvarDatabase;
    hosts::Rule& mvarRule;
    std::wstring mvarSeries;
    std::int64_t mvarNext = 0;
    std::int64_t mvarEnd = 0;
};
// [fast]

int Run(const std::vector<std::wstring>& arguments) {
    if (arguments.size() != 5) throw hosts::HostError(L"usage: hosting_sample DATABASE RULE gapless|fast COUNT TICKET");
    const hosts::Apartment apartment;
    const std::unique_ptr<Database> opened = OpenDatabase(arguments[0], Patience(30s));
    Database& database = *opened;
    InTransaction(database, Patience(30s), OnUniqueKey::Retry, [&] {
        MakeTables(database);
        return true;
    });
    hosts::Rule rule;
    rule.Load(hosts::ReadDefinitionFile(arguments[1]));
    rule.SetValue(L"Year", L"2024");
    FastIssuer fast(database, rule);
    for (int request = 1; request <= std::stoi(arguments[3]); ++request) {
        const std::wstring ticket = arguments[4] + L"-" + std::to_wstring(request);
        hosts::PrintLine(arguments[2] == L"fast" ? fast.Issue(ticket) : IssueGapless(database, rule, ticket));
        hosts::FlushOut(); // only what is stored is handed out
    }
    return 0;
}

} // namespace

int main() { return hosts::RunProgram(L"hosting_sample", Run); }
