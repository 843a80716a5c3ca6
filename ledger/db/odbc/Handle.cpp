#include "ledger/db/odbc/Handle.h"

#include <array>
#include <utility>

namespace ledger {

Handle::Handle(SQLSMALLINT type, SQLHANDLE parent) : mvarType(type) {
    if (!SQL_SUCCEEDED(SQLAllocHandle(type, parent, &mvarHandle)))
        throw DbError(Fault::Other, L"no ODBC handle; is the ODBC driver manager installed?");
}

Handle::Handle(Handle&& other) noexcept
    : mvarType(other.mvarType), mvarHandle(std::exchange(other.mvarHandle, nullptr)) {}

Handle& Handle::operator=(Handle&& other) noexcept {
    std::swap(mvarType, other.mvarType);
    std::swap(mvarHandle, other.mvarHandle);
    return *this;
}

Handle::~Handle() {
    if (mvarHandle != nullptr) SQLFreeHandle(mvarType, mvarHandle);
}

void Handle::Check(SQLRETURN code, const OdbcEngine* engine) const {
    if (!SQL_SUCCEEDED(code) && code != SQL_NO_DATA) throw Failure(engine);
}

SQLPOINTER AsPointer(std::uintptr_t number) {
    return reinterpret_cast<SQLPOINTER>(number); // NOLINT(performance-no-int-to-ptr): the interface's own way
}

Handle NewEnvironment() {
    Handle environment(SQL_HANDLE_ENV, SQL_NULL_HANDLE);
    environment.Check(SQLSetEnvAttr(environment.Get(), SQL_ATTR_ODBC_VERSION, AsPointer(SQL_OV_ODBC3), 0));
    return environment;
}

DbError Handle::Failure(const OdbcEngine* engine) const {
    std::array<SQLWCHAR, 6> state{};
    std::array<SQLWCHAR, 1024> text{};
    SQLINTEGER native = 0;
    SQLSMALLINT length = 0;
    const SQLRETURN code = SQLGetDiagRecW(mvarType, mvarHandle, 1, state.data(), &native, text.data(),
                                          static_cast<SQLSMALLINT>(text.size()), &length);
    if (!SQL_SUCCEEDED(code)) return {Fault::Other, L"the driver gives no reason"};
    const Fault known = engine == nullptr ? Fault::Other : engine->classify(state.data(), native, text.data());
    return {known == Fault::Other ? FaultOfDriver(state.data(), text.data()) : known, text.data()};
}

} // namespace ledger
