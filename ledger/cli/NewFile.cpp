#include "ledger/cli/NewFile.h"

#include "ledger/core/Rules.h"

namespace ledger {

NewFile::NewFile(const std::wstring& database) {
    std::error_code error;
    if (!database.empty() && database.find(L'=') == std::wstring::npos && !std::filesystem::exists(database, error))
        mvarFile = database;
}

NewFile::~NewFile() {
    std::error_code error; // nobody is helped by hearing of a file that stays
    if (mvarIsEmpty) std::filesystem::remove(mvarFile, error);
}

void NewFile::LookInto(Database& database) noexcept {
    if (mvarFile.empty()) return;
    try {
        mvarIsEmpty = InSnapshot(database, Patience(std::chrono::seconds(1)),
                                 [&database] { return Rules(database).All().empty(); });
    } catch (const std::exception&) { // what nobody can look into stays
        mvarIsEmpty = false;
    }
}

} // namespace ledger
