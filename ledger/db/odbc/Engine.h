// What ODBC databases do differently: one description per engine.
#pragma once

#include <chrono>
#include <functional>
#include <string>
#include <vector>

#include "ledger/db/Database.h"

namespace ledger {

// A transaction whose program is cut off, or waits no more for an answer, holds its rows until the server ends it:
// after as long as the program waits for a call, so that its next attempt need not wait for them. Not sooner than this,
// for a machine may stand still for a moment.
constexpr std::chrono::milliseconds ShortestIdle{10'000};

struct OdbcEngine {
    const wchar_t* product; // what the driver calls the server
    // The user's connection string with what the ledger needs in it.
    std::wstring (*connectionString)(const std::wstring& given);
    // Run once on each new connection; each call of it may take so long.
    std::vector<std::wstring> (*settings)(std::chrono::milliseconds each);
    // What a failure means; Fault::Other where this engine's codes say nothing of it.
    Fault (*classify)(const std::wstring& state, long native, const std::wstring& text);
    // Run at the beginning of a transaction that does not define tables.
    std::vector<const wchar_t*> beginRead;
    std::vector<const wchar_t*> beginWrite;
    // A statement that works only in the transaction that began: run before its COMMIT where a server can end a
    // transaction without telling the program, whose next statements then begin another one; null elsewhere.
    const wchar_t* assertSame;
    // Types for texts: of up to %n characters, and longer ones.
    const wchar_t* shortText;
    const wchar_t* longText;
    const wchar_t* tableEnd; // after the last bracket of a table definition
    // A lock on a table that keeps writers out, before and after its name; null where rows do it.
    const wchar_t* lockTable;
    const wchar_t* lockMode;
    const wchar_t* confirm; // what Database::Confirm asks; null where a row that is seen is stored everywhere
    // A connection is left to the end of the process, which closes it: the driver does more than that when it is told
    // to.
    bool leavesAtExit;
    bool entersByWriting;
    // A prepared statement that failed waits for ever for an answer when it is executed again: the server leaves out
    // what it has told of the columns before, and the driver has forgotten it.
    bool failureSpoils;
    // The server takes the key for as good as an index whose first column is not the key's, and reads all of the rule
    // by it.
    bool wantsRuleFirst;
    bool needsCatalogue; // tables are looked for in the current database only when it is named
    // What the server tells of itself, through a function that returns the first column of a query's first row, or
    // nothing when the server does not know it.
    using Ask = std::function<std::wstring(const std::wstring& sql)>;
    std::vector<EngineFact> (*facts)(const Ask& ask);
};

[[nodiscard]] const OdbcEngine& Postgres();
[[nodiscard]] const OdbcEngine& MariaDb();

// The engine that a connection string is for, as its driver's name tells, or that of its data source (DSN=...); null
// when neither does. Fails with DbError.
[[nodiscard]] const OdbcEngine* EngineOf(const std::wstring& connectionString);

// Whether the text has the name in it, in any letter case.
[[nodiscard]] bool Names(const std::wstring& text, const std::wstring& name);

// The connection string with a setting added, unless it says something of it already.
[[nodiscard]] std::wstring WithSetting(const std::wstring& connectionString, const std::wstring& name,
                                       const std::wstring& value);

// What the connection string says of a setting; empty when it says nothing.
[[nodiscard]] std::wstring ValueOf(const std::wstring& connectionString, const std::wstring& name);

// What the driver manager itself reports, whatever the engine.
[[nodiscard]] Fault FaultOfDriver(const std::wstring& state, const std::wstring& text);

} // namespace ledger
