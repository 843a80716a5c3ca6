// What a database refused, told apart by what a host can do about it.
#pragma once

#include "hosts/common/HostError.h"

namespace ledger {

enum class Fault {
    UniqueKey,  // a row with that key is there already
    Conflict,   // another transaction was in the way; the whole transaction may be tried again
    Busy,       // another program holds the database; trying again may help
    Lost,       // the connection is gone or cannot be made; whether a commit under way was stored is not known
    ReadOnly,   // the database takes no changes
    Full,       // no space left
    NoDatabase, // what was opened is no database, or is damaged
    Other
};

class DbError final : public hosts::HostError {
  public:
    // `state` is the five characters of the standard, `native` the engine's own number, `text` the driver's message.
    DbError(const std::wstring& state, long native, const std::wstring& text);

    [[nodiscard]] Fault Kind() const noexcept { return mvarKind; }
    [[nodiscard]] const std::wstring& State() const noexcept { return mvarState; }
    // Whether the same transaction may succeed when it is tried again, on a new connection after Lost.
    [[nodiscard]] bool MayRetry() const noexcept;

  private:
    DbError(Fault kind, std::wstring state, const std::wstring& text);

    Fault mvarKind;
    std::wstring mvarState;
};

} // namespace ledger
