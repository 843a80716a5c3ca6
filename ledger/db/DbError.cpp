#include "ledger/db/DbError.h"

#include "hosts/common/Text.h"

namespace ledger {

namespace {

std::wstring Advice(Fault kind) {
    switch (kind) {
    case Fault::UniqueKey: return L"the database holds a row with that key already";
    case Fault::Conflict: return L"other programs kept changing the same data; try again";
    case Fault::Busy:
        return L"another program holds the database; try again when it is done, or wait longer (--patience)";
    case Fault::Lost: return L"the database cannot be reached; check --database and whether its server is running";
    case Fault::Refused: return L"the server refuses the login; check the names and the password in --database";
    case Fault::Standby:
        return L"the server takes no changes; it follows another one or is set read-only: name the one that leads";
    case Fault::ReadOnly: return L"the database takes no changes; check the rights on its file, folder or login";
    case Fault::Full: return L"no space is left for the database; free some, nothing was stored of what was under way";
    case Fault::NoDatabase: return L"the file is no database or is damaged; check --database";
    case Fault::Replaced:
        return L"the database file was deleted or replaced while it was in use; nothing of what was under way is in "
               L"the "
               L"file of that name";
    case Fault::Text: return L"the database cannot hold a character of the values; its encoding should be UTF-8";
    case Fault::Other: return L"the database refused";
    }
    return L"the database refused";
}

} // namespace

DbError::DbError(Fault kind, const std::wstring& text)
    : HostError(Advice(kind) + L" (" + hosts::OneLine(text) + L")"), mvarKind(kind) {}

bool DbError::MayRetry() const noexcept {
    return mvarKind == Fault::Conflict || mvarKind == Fault::Busy || NeedsConnection();
}

bool DbError::NeedsConnection() const noexcept { return mvarKind == Fault::Lost || mvarKind == Fault::Standby; }

} // namespace ledger
