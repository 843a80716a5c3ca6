// An ODBC handle that frees itself, and the one place where ODBC's return codes become errors.
#pragma once

#include <windows.h>

#include <sql.h>
#include <sqlext.h>
#include <sqlucode.h>

#include "ledger/db/odbc/Engine.h"

namespace ledger {

class Handle {
  public:
    Handle() noexcept = default;
    // A new handle of the type under its parent (null for an environment); fails with DbError.
    Handle(SQLSMALLINT type, SQLHANDLE parent);
    Handle(Handle&& other) noexcept;
    Handle& operator=(Handle&& other) noexcept;
    Handle(const Handle&) = delete; // one handle, one owner
    Handle& operator=(const Handle&) = delete;
    ~Handle();

    [[nodiscard]] SQLHANDLE Get() const noexcept { return mvarHandle; }
    // Leaves it to the end of the process: a call on it is under way, and freeing it would wait for that.
    void Abandon() noexcept { mvarHandle = nullptr; }
    // Fails with DbError, made from the handle's first diagnostic record, unless the code is a success. The engine's
    // codes tell what it means; null where none is known yet.
    void Check(SQLRETURN code, const OdbcEngine* engine = nullptr) const;

  private:
    [[nodiscard]] DbError Failure(const OdbcEngine* engine) const;

    SQLSMALLINT mvarType = 0;
    SQLHANDLE mvarHandle = nullptr;
};

// An environment of the version of ODBC that the ledger uses; fails with DbError.
[[nodiscard]] Handle NewEnvironment();

// The driver manager takes numbers in the place of pointers.
[[nodiscard]] SQLPOINTER AsPointer(std::uintptr_t number);

} // namespace ledger
