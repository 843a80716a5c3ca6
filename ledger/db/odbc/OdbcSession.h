// One connection through ODBC, with its statements and the thread on which its calls wait.
#pragma once

#include <map>

#include "ledger/db/odbc/CallThread.h"
#include "ledger/db/odbc/Handle.h"

namespace ledger {

class OdbcSession {
  public:
    OdbcSession(SQLHENV environment, const OdbcEngine& engine)
        : mvarEngine(engine), mvarConnection(SQL_HANDLE_DBC, environment) {}
    OdbcSession(const OdbcSession&) = delete; // one connection, one owner
    OdbcSession& operator=(const OdbcSession&) = delete;

    [[nodiscard]] SQLHDBC Connection() const noexcept { return mvarConnection.Get(); }
    [[nodiscard]] const OdbcEngine& Engine() const noexcept { return mvarEngine; }
    void Limit(const Deadline& deadline) noexcept { mvarDeadline = deadline; }
    // Calls the driver and checks what it returns for the handle; fails with Fault::Lost when it does not return in
    // time, and abandons the handle. The call owns what it uses, or the session does.
    SQLRETURN Call(Handle& handle, CallThread::Call call);
    SQLRETURN Call(CallThread::Call call) { return Call(mvarConnection, std::move(call)); }
    // Whether a call has never returned: then nothing of the session may be touched or freed any more.
    [[nodiscard]] bool IsStuck() const noexcept { return mvarThread && mvarThread->IsStuck(); }
    // Ends the thread; nothing more can be called.
    void EndThread() noexcept { mvarThread.reset(); }

  private:
    const OdbcEngine& mvarEngine;
    Handle mvarConnection;
    std::unique_ptr<CallThread> mvarThread = std::make_unique<CallThread>();
    Deadline mvarDeadline{std::chrono::steady_clock::time_point::max(), std::chrono::hours(24)};
};

} // namespace ledger
