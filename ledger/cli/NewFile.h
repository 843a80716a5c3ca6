// The file of a ledger that a command makes, and that goes again when the command has stored no rule in it.
#pragma once

#include <filesystem>

#include "ledger/db/Open.h"

namespace ledger {

class NewFile {
  public:
    // Before the database of that name is opened. Nothing is new about one that is there, or is no file.
    explicit NewFile(const std::wstring& database);
    NewFile(const NewFile&) = delete; // removes the file once
    NewFile& operator=(const NewFile&) = delete;
    // After the database was closed. A file that another program has open by now stays.
    ~NewFile();

    // Looks whether the ledger has a rule; while nobody has looked it stays.
    void LookInto(Database& database) noexcept;

  private:
    std::filesystem::path mvarFile; // empty: it is not new
    bool mvarIsEmpty = false;
};

} // namespace ledger
