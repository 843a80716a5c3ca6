// Where the time of an issued code goes: in the component, in the statements, in the COMMIT, in all else.
//
// usage: ledger_parts DATABASE RULE COUNT    issues COUNT codes of the year 2024 by a stored rule that has the field
//                                            Year; prints the seconds of each part, the name before them
#include "bench/TimedDatabase.h"
#include "hosts/common/Console.h"
#include "hosts/common/HostError.h"
#include "ledger/core/Issuer.h"
#include "ledger/core/Rules.h"
#include "ledger/core/Schema.h"
#include "ledger/core/Stamp.h"

namespace {

using namespace std::chrono_literals;
using Seconds = std::chrono::duration<double>;

const ledger::Patience TheirPatience(30s);

ledger::FieldValues Values() { return {{L"Year", L"2024"}}; }

ledger::StoredRule RuleOf(ledger::Database& database, const std::wstring& name) {
    auto rule = ledger::InSnapshot(database, TheirPatience, [&] { return ledger::Rules(database).Find(name); });
    if (!rule) throw hosts::HostError(L"there is no rule \"" + name + L"\"");
    return *std::move(rule);
}

template <class Work>
Seconds SecondsOf(const Work& work) {
    const auto begin = std::chrono::steady_clock::now();
    work();
    return std::chrono::steady_clock::now() - begin;
}

// The same codes made without a ledger: the answer to each question for a number is known.
Seconds ComponentAlone(ledger::CodeMaker& maker, std::int64_t count) {
    return SecondsOf([&] {
        for (std::int64_t number = 1; number <= count; ++number)
            if (maker.Make(Values(), [number](const auto&, const auto&) { return std::optional(number); }).code.empty())
                throw hosts::HostError(L"the rule made no code");
    });
}

void IssueAll(ledger::Issuer& issuer, std::int64_t count) {
    for (std::int64_t left = count; left > 0;) {
        std::vector<ledger::Request> requests(
            std::min<std::size_t>(issuer.BatchSize(), static_cast<std::size_t>(left)));
        for (ledger::Request& request : requests)
            request = {Values(), L"{\"Year\":\"2024\"}", ledger::NewTicket(), false};
        left -= static_cast<std::int64_t>(requests.size());
        for (const ledger::Outcome& outcome : issuer.Issue(requests, static_cast<std::size_t>(left)))
            if (outcome.code.empty()) throw hosts::HostError(outcome.refusal);
    }
    issuer.Finish();
}

void Print(const wchar_t* part, Seconds seconds) {
    hosts::PrintLine(std::wstring(part) + L' ' + std::to_wstring(seconds.count()));
}

int Run(const std::vector<std::wstring>& arguments) {
    if (arguments.size() != 3) throw hosts::HostError(L"usage: ledger_parts DATABASE RULE COUNT");
    const std::int64_t count = std::stoll(arguments[2]);
    const hosts::Apartment apartment;
    const std::unique_ptr<ledger::Database> opened = ledger::OpenDatabase(arguments[0], TheirPatience);
    bench::TimedDatabase database(*opened);
    const ledger::StoredRule rule = RuleOf(*opened, arguments[1]);
    ledger::CodeMaker maker(rule.definition.text, rule.settings);
    const Seconds component = ComponentAlone(maker, count);
    const auto issuer = ledger::MakeIssuer({database, rule, maker, TheirPatience});
    const Seconds whole = SecondsOf([&] { IssueAll(*issuer, count); });
    const auto spent = [&database](bench::Step step) { return Seconds(database.Spent(step)); };
    const Seconds inDatabase =
        spent(bench::Step::Begin) + spent(bench::Step::Read) + spent(bench::Step::Write) + spent(bench::Step::Commit);
    Print(L"component", component);
    Print(L"begin", spent(bench::Step::Begin));
    Print(L"reading", spent(bench::Step::Read));
    Print(L"writing", spent(bench::Step::Write));
    Print(L"commit", spent(bench::Step::Commit));
    Print(L"rest", whole - inDatabase - component);
    return 0;
}

} // namespace

int main() { return hosts::RunProgram(L"ledger_parts", Run); }
