// MariaDB, alone or in a Galera cluster
#include <algorithm>
#include <iterator>

#include "ledger/db/odbc/Engine.h"

namespace ledger {

namespace {

struct KnownNative {
    long native;
    Fault kind;
};

const KnownNative KnownNatives[] = {
    {1062, Fault::UniqueKey}, {1205, Fault::Busy},    {1213, Fault::Conflict}, {1020, Fault::Conflict},
    {3101, Fault::Conflict},  {1047, Fault::Lost},    {1053, Fault::Lost},     {1927, Fault::Lost},
    {2002, Fault::Lost},      {2003, Fault::Lost},    {2006, Fault::Lost},     {2013, Fault::Lost},
    {1080, Fault::Lost},      {1317, Fault::Lost},    {1040, Fault::Lost},     {4150, Fault::Lost},
    {1290, Fault::Standby},   {1792, Fault::Standby}, {1836, Fault::Standby},  {1114, Fault::Full},
    {1021, Fault::Full},      {1366, Fault::Text},    {1969, Fault::Busy},     {1192, Fault::Conflict},
    {1305, Fault::Conflict}, // the savepoint is gone, and the transaction with it
};

std::wstring ConnectionString(const std::wstring& given) { return WithSetting(given, L"CharSet", L"utf8mb4"); }

std::vector<std::wstring> Settings(std::chrono::milliseconds each) {
    const auto seconds = std::max<std::int64_t>(std::chrono::duration_cast<std::chrono::seconds>(each).count(), 1);
    const std::wstring text = std::to_wstring(seconds);
    const auto idle = std::chrono::ceil<std::chrono::seconds>(std::max(each, ShortestIdle)).count();
    return {L"SET SESSION TRANSACTION ISOLATION LEVEL SERIALIZABLE",
            // A text that does not fit is refused, not cut.
            L"SET SESSION sql_mode = 'STRICT_ALL_TABLES,NO_BACKSLASH_ESCAPES,NO_ENGINE_SUBSTITUTION'",
            L"SET SESSION innodb_lock_wait_timeout = " + text,
            // A relative of the product does not know the second one, and takes it for a comment.
            L"SET SESSION lock_wait_timeout = " + text + L" /*M!100300 , SESSION idle_transaction_timeout = " +
                std::to_wstring(idle) + L" */",
            // In a cluster each node sees what every other one had committed when the transaction began.
            L"SET SESSION wsrep_sync_wait = 7"};
}

Fault Classify(const std::wstring&, long native, const std::wstring&) {
    const auto* number = std::ranges::find(KnownNatives, native, &KnownNative::native);
    return number == std::end(KnownNatives) ? Fault::Other : number->kind;
}

EngineFact DurabilityOf(const OdbcEngine::Ask& ask) {
    const std::wstring flush = ask(L"SELECT @@innodb_flush_log_at_trx_commit");
    const std::wstring nodes = ask(L"SELECT VARIABLE_VALUE FROM information_schema.GLOBAL_STATUS WHERE VARIABLE_NAME = "
                                   L"'WSREP_CLUSTER_SIZE'");
    EngineFact fact{L"durability", L"innodb_flush_log_at_trx_commit " + flush, {}, false};
    if (flush == L"1") return fact;
    fact.warning =
        L"a commit can be lost with the power after it was reported; set innodb_flush_log_at_trx_commit to 1";
    fact.losesCommits = nodes.empty() || nodes == L"0" || nodes == L"1";
    if (!fact.losesCommits) fact.warning += L" (while other nodes live, they have it)";
    return fact;
}

EngineFact ClusterOf(const OdbcEngine::Ask& ask) {
    if (ask(L"SELECT @@wsrep_on") != L"1") return {L"cluster", L"none", {}, false};
    const std::wstring state = ask(L"SELECT VARIABLE_VALUE FROM information_schema.GLOBAL_STATUS WHERE VARIABLE_NAME = "
                                   L"'WSREP_CLUSTER_STATUS'");
    const std::wstring nodes = ask(L"SELECT VARIABLE_VALUE FROM information_schema.GLOBAL_STATUS WHERE VARIABLE_NAME = "
                                   L"'WSREP_CLUSTER_SIZE'");
    EngineFact fact{L"cluster", nodes + L" nodes, " + state, {}, false};
    if (nodes == L"1" || nodes == L"2")
        fact.warning = L"with fewer than three nodes the loss of one can stop the cluster; bring the others back";
    return fact;
}

EngineFact ReplicasOf(const OdbcEngine::Ask& ask) {
    const std::wstring replicas =
        ask(L"SELECT COUNT(*) FROM information_schema.PROCESSLIST WHERE COMMAND LIKE 'Binlog Dump%'");
    EngineFact fact{L"replicas", replicas, {}, false};
    if (replicas == L"0" || replicas.empty()) return fact;
    fact.warning =
        L"a replica that takes over may lack codes that were printed, and they come again; use a Galera cluster";
    fact.losesCommits = true;
    return fact;
}

std::vector<EngineFact> Facts(const OdbcEngine::Ask& ask) {
    const bool readOnly = ask(L"SELECT @@global.read_only") == L"1";
    return {{L"engine", L"MariaDB " + ask(L"SELECT VERSION()"), {}, false},
            {L"role", readOnly ? L"read-only" : L"takes changes",
             readOnly ? L"this server takes no changes; name the one that leads" : L"", false},
            DurabilityOf(ask),
            {L"isolation", ask(L"SELECT @@tx_isolation"), {}, false},
            ClusterOf(ask),
            ReplicasOf(ask)};
}

} // namespace

const OdbcEngine& MariaDb() {
    static const OdbcEngine engine = {
        L"MariaDB",
        ConnectionString,
        Settings,
        Classify,
        {L"SET TRANSACTION ISOLATION LEVEL REPEATABLE READ", L"START TRANSACTION WITH CONSISTENT SNAPSHOT, READ ONLY",
         L"SAVEPOINT begun"},
        {L"SAVEPOINT begun"},
        // A node of a cluster that ends a transaction for that of another node tells nobody now and then, and goes on:
        // what came after that moment would be stored without what came before it.
        L"RELEASE SAVEPOINT begun",
        L"VARCHAR(%n) CHARACTER SET utf8mb4 COLLATE utf8mb4_nopad_bin",
        L"LONGTEXT CHARACTER SET utf8mb4 COLLATE utf8mb4_nopad_bin",
        L" ENGINE=InnoDB",
        nullptr,
        L"",
        nullptr,
        false,
        // Another node knows nothing of what was only read here.
        true,
        true,
        true,
        true,
        Facts};
    return engine;
}

} // namespace ledger
