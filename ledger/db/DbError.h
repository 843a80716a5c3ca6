// What a database refused, told apart by what a host can do about it.
#pragma once

#include "hosts/common/HostError.h"

namespace ledger {

enum class Fault {
    UniqueKey,  // a row with that key is there already
    Conflict,   // another transaction was in the way; the whole transaction may be tried again
    Busy,       // another program holds the database; trying again may help
    Lost,       // the connection is gone or cannot be made; whether a commit under way was stored is not known
    Refused,    // the server is there and lets nobody in by that name and password, or has no such database
    Standby,    // the server takes no changes, as one that follows another; that one, or a later time, may
    ReadOnly,   // the database takes no changes
    Full,       // no space left
    NoDatabase, // what was opened is no database, or is damaged
    Replaced,   // the file that was opened is not the one of that name any more
    Text,       // a text that the database cannot hold
    Other
};

class DbError final : public hosts::HostError {
  public:
    // `text` is the engine's own message.
    DbError(Fault kind, const std::wstring& text);

    [[nodiscard]] Fault Kind() const noexcept { return mvarKind; }
    // Whether the same transaction may succeed when it is tried again.
    [[nodiscard]] bool MayRetry() const noexcept;
    // Whether another attempt needs another connection.
    [[nodiscard]] bool NeedsConnection() const noexcept;

  private:
    Fault mvarKind;
};

} // namespace ledger
