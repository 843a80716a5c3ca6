// A test with a database of the embedded engine in a file of its own, which goes with the test.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <string>

#include "ledger/db/Open.h"

// How long these tests wait for the database, which nobody else uses.
inline const ledger::Patience Wait(std::chrono::seconds(1));

class DatabaseFileTest : public testing::Test {
  protected:
    void SetUp() override {
        RemoveFiles(); // a run that was stopped may have left them
        mvarDatabase = Open();
    }
    void TearDown() override {
        mvarDatabase.reset();
        RemoveFiles();
    }

    // A connection more, as another program has one.
    [[nodiscard]] std::unique_ptr<ledger::Database> Open() const {
        return ledger::OpenDatabase(mvarFile.wstring(), Wait);
    }

    std::unique_ptr<ledger::Database> mvarDatabase;

  private:
    void RemoveFiles() const {
        std::error_code error;
        for (const wchar_t* suffix : {L"", L"-wal", L"-shm"})
            std::filesystem::remove(mvarFile.wstring() + suffix, error);
    }

    // Suites run beside each other, the tests of one do not.
    std::filesystem::path mvarFile =
        std::filesystem::temp_directory_path() /
        (std::string(testing::UnitTest::GetInstance()->current_test_info()->test_suite_name()) + ".db");
};
