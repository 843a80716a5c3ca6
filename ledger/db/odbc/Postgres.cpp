// PostgreSQL, and what speaks its protocol
#include <algorithm>
#include <iterator>

#include "ledger/db/odbc/Engine.h"

namespace ledger {

namespace {

struct KnownState {
    const wchar_t* state; // how the state begins
    Fault kind;
};

const KnownState KnownStates[] = {
    {L"23505", Fault::UniqueKey}, {L"40001", Fault::Conflict}, {L"40P01", Fault::Conflict}, {L"55P03", Fault::Busy},
    {L"57014", Fault::Busy},      {L"57P0", Fault::Lost},      {L"25P03", Fault::Lost},     {L"53300", Fault::Lost},
    {L"53100", Fault::Full},      {L"25006", Fault::Standby},  {L"22P05", Fault::Text},     {L"22021", Fault::Text},
};

constexpr std::size_t LongestPort = 9; // the driver cuts what is longer, and then knows the first server alone

std::wstring ConnectionString(const std::wstring& given) {
    if (const std::wstring port = ValueOf(given, L"Port"); port.size() > LongestPort)
        throw hosts::HostError(L"the driver does not take \"Port=" + port + L"\"; write it as Pqopt={port=" + port +
                               L"}");
    // The driver sets a savepoint before every statement, two more ways to the server each, so that one that fails
    // undoes itself alone. Here a failure undoes its whole transaction anyway.
    std::wstring text = WithSetting(given, L"Protocol", L"7.4-1");
    // It leaves a log file per process in the temporary folder unless told not to.
    text = WithSetting(text, L"Debug", L"0");
    return WithSetting(text, L"CommLog", L"0");
}

std::vector<std::wstring> Settings(std::chrono::milliseconds each) {
    const std::wstring milliseconds = std::to_wstring(each.count());
    const std::wstring idle = std::to_wstring(std::max(each, ShortestIdle).count());
    return {L"SET SESSION CHARACTERISTICS AS TRANSACTION ISOLATION LEVEL SERIALIZABLE",
            L"SET lock_timeout = " + milliseconds, L"SET idle_in_transaction_session_timeout = " + idle,
            L"SET standard_conforming_strings = on"};
}

// What a server that follows another one says of it has no state of its own.
const wchar_t* const StandbyTexts[] = {L"in a hot standby", L"during recovery"};

Fault Classify(const std::wstring& state, long, const std::wstring& text) {
    const auto stands = [&text](const wchar_t* part) { return text.find(part) != std::wstring::npos; };
    if (std::ranges::any_of(StandbyTexts, stands)) return Fault::Standby;
    const auto* known = std::ranges::find_if(
        KnownStates, [&state](const KnownState& candidate) { return state.starts_with(candidate.state); });
    return known == std::end(KnownStates) ? Fault::Other : known->kind;
}

EngineFact DurabilityOf(const OdbcEngine::Ask& ask) {
    const std::wstring commit = ask(L"SELECT current_setting('synchronous_commit')");
    const std::wstring sync = ask(L"SELECT current_setting('fsync')");
    EngineFact fact{L"durability", L"synchronous_commit " + commit + L", fsync " + sync, {}, false};
    if (commit == L"off" || sync == L"off") {
        fact.warning =
            L"a commit can be lost with the power after it was reported; set synchronous_commit and fsync to on";
        fact.losesCommits = true;
    }
    return fact;
}

// Which of them are synchronous is shown to some logins only, the settings to everybody.
EngineFact StandbysOf(const OdbcEngine::Ask& ask) {
    const std::wstring all = ask(L"SELECT count(*) FROM pg_stat_replication");
    const std::wstring names = ask(L"SELECT current_setting('synchronous_standby_names')");
    const std::wstring commit = ask(L"SELECT current_setting('synchronous_commit')");
    const std::wstring lag = ask(L"SELECT COALESCE(CAST(max(replay_lag) AS text), '0') FROM pg_stat_replication");
    const bool waits = !names.empty() && commit != L"off" && commit != L"local";
    EngineFact fact{
        L"standbys", all + L", commits wait for " + (waits ? names : L"none of them") + L", lag " + lag, {}, false};
    if (all != L"0" && !waits) {
        fact.warning = L"a standby that takes over may lack codes that were printed, and they come again; ";
        fact.warning += names.empty() ? L"name one in synchronous_standby_names" : L"set synchronous_commit to on";
        fact.losesCommits = true;
    }
    if (all == L"0" && waits) fact.warning = L"none is connected, and nothing is stored until one is; bring it back";
    return fact;
}

EngineFact EncodingOf(const OdbcEngine::Ask& ask) {
    const std::wstring encoding = ask(L"SELECT current_setting('server_encoding')");
    return {L"encoding", encoding,
            encoding == L"UTF8" ? L"" : L"records with other characters are refused; make the database with UTF8",
            false};
}

std::vector<EngineFact> Facts(const OdbcEngine::Ask& ask) {
    const bool follows = ask(L"SELECT CASE WHEN pg_is_in_recovery() THEN 'yes' ELSE 'no' END") == L"yes";
    return {{L"engine", L"PostgreSQL " + ask(L"SELECT current_setting('server_version')"), {}, false},
            {L"role", follows ? L"standby" : L"primary",
             follows ? L"this server takes no changes until it is promoted; name the primary" : L"", false},
            DurabilityOf(ask),
            {L"isolation", ask(L"SELECT current_setting('default_transaction_isolation')"), {}, false},
            StandbysOf(ask),
            EncodingOf(ask)};
}

} // namespace

const OdbcEngine& Postgres() {
    static const OdbcEngine engine = {
        L"PostgreSQL",
        ConnectionString,
        Settings,
        Classify,
        // A snapshot; it disturbs nobody and nobody disturbs it.
        {L"SET TRANSACTION ISOLATION LEVEL REPEATABLE READ READ ONLY"},
        {},
        nullptr,
        L"VARCHAR(%n) COLLATE \"C\"",
        L"TEXT COLLATE \"C\"",
        L"",
        L"LOCK TABLE",
        L" IN SHARE ROW EXCLUSIVE MODE",
        // A commit waits for standbys only when the transaction wrote something: this is as little as there is.
        L"SELECT pg_logical_emit_message(true, 'kledger', '')",
        // Its log of communication, which its package switches on, comes back for the last line.
        true,
        false,
        false,
        false,
        false,
        Facts};
    return engine;
}

} // namespace ledger
