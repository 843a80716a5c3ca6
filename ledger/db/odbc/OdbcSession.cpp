#include "ledger/db/odbc/OdbcSession.h"

#include <algorithm>
#include <utility>

namespace ledger {

SQLRETURN OdbcSession::Call(Handle& handle, CallThread::Call call) {
    if (!mvarThread || mvarThread->IsStuck()) throw DbError(Fault::Lost, L"an earlier call was never answered");
    const auto end = std::min(mvarDeadline.end, std::chrono::steady_clock::now() + mvarDeadline.each);
    const std::optional<int> code = mvarThread->Run(std::move(call), end);
    if (!code) {
        handle.Abandon();
        throw DbError(Fault::Lost, L"the server does not answer");
    }
    handle.Check(static_cast<SQLRETURN>(*code), &mvarEngine);
    return static_cast<SQLRETURN>(*code);
}

} // namespace ledger
