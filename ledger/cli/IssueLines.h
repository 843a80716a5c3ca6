// The records that codes are issued for: one from the command line, once or several times, or those of a file, of which
// only those at hand are in memory.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "hosts/common/Csv.h"
#include "hosts/common/TextSource.h"
#include "ledger/cli/Commands.h"
#include "ledger/cli/Fields.h"

namespace ledger {

struct IssueLine {
    std::size_t number = 0; // of the file, or of the repetition
    FieldValues values;
    std::wstring key;
    bool isGiven = false; // the key; otherwise it is the ledger's own
    std::wstring refusal; // why it cannot even be tried
};

class IssueLines {
  public:
    // Reads all of a file once. Fails with HostError on what makes it unfit as a whole, and on a record of the command
    // line that cannot be tried. Names and options outlive it.
    IssueLines(const FieldNames& known, const IssueOptions& options);
    IssueLines(const IssueLines&) = delete; // one file, read once
    IssueLines& operator=(const IssueLines&) = delete;

    // How many there are.
    [[nodiscard]] std::size_t Count() const noexcept { return mvarCount; }
    // The next ones, in their order, as many as there are; none at the end. Fails with HostError on a file that
    // changed.
    [[nodiscard]] std::vector<IssueLine> Next(std::size_t most);

  private:
    using Reader = std::function<std::optional<IssueLine>()>;

    [[nodiscard]] Reader ReaderOf(const FieldNames& known, const IssueOptions& options);
    [[nodiscard]] static Reader Repetition(const FieldNames& known, const IssueOptions& options);
    [[nodiscard]] Reader ListReader(const FieldValues& given);
    [[nodiscard]] Reader RecordReader(const FieldNames& known, const IssueOptions& options, const FieldValues& given);
    [[nodiscard]] hosts::CsvReader::Pieces Pieces();

    std::optional<hosts::TextSource> mvarSource; // of a file
    bool mvarIsList = false;
    Reader mvarReader;
    std::size_t mvarCount = 0;
    std::size_t mvarGiven = 0; // by Next
};

} // namespace ledger
