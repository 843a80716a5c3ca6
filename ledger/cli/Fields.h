// Records as users give them, checked against a rule.
#pragma once

#include <span>
#include <string>
#include <vector>

#include "hosts/common/Csv.h"
#include "ledger/core/CodeMaker.h"

namespace ledger {

// The names that a record may have.
class FieldNames {
  public:
    // Those of a rule, and what it counts separately by.
    FieldNames(const CodeMaker& maker); // NOLINT(google-explicit-constructor): a rule's names stand for themselves
    // Those of several rules and some more.
    void Add(const std::vector<std::wstring>& names);

    [[nodiscard]] bool Knows(const std::wstring& name) const;
    [[nodiscard]] const std::vector<std::wstring>& All() const noexcept { return mvarNames; }
    // Those that every record must have.
    [[nodiscard]] const std::vector<std::wstring>& Needed() const noexcept { return mvarNeeded; }

  private:
    std::vector<std::wstring> mvarNames;
    std::vector<std::wstring> mvarNeeded;
};

// "Name=Value" texts. Fails with HostError on a text without "=", on a name that the rule does not know and on one
// that comes twice.
[[nodiscard]] FieldValues ParseFields(const FieldNames& known, const std::vector<std::wstring>& texts);

// Fails with HostError when a column is no field or macro of the rule (unless others are kept), or none is.
void CheckColumns(const FieldNames& known, const std::vector<std::wstring>& columns, bool keepOthers);

// The record's fields beside their columns; fails with RecordError when there are more or fewer.
[[nodiscard]] FieldValues PairFields(const std::vector<std::wstring>& columns, const hosts::CsvRecord& record);

// Fails with RecordError on a value that no table can hold as it is: one with a NUL or half a surrogate pair in it.
void RefuseUnfit(const FieldValues& values);

// Has the maker read dates by the pattern; empty leaves ISO 8601. Fails with HostError on a pattern that is none.
void UseDateFormat(CodeMaker& maker, const std::wstring& pattern);

// Those that the rule knows.
[[nodiscard]] FieldValues KnownTo(const FieldNames& known, const FieldValues& values);

} // namespace ledger
