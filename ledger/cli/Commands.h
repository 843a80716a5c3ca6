// kledger's commands. Each returns the exit code, prints its results to standard output and fails with HostError.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "ledger/cli/Session.h"
#include "ledger/core/Numberings.h"
#include "ledger/core/pattern/RuleBuilder.h"

namespace ledger {

// Of a rule; nothing: as they are.
struct SettingOptions {
    std::optional<std::int64_t> step;
    std::optional<bool> reuse;
    std::optional<std::wstring> series;
    std::optional<int> week; // the day that weeks begin on, 1 for Sunday

    [[nodiscard]] bool Any() const { return step || reuse || series || week; }
};

struct SetOptions {
    std::wstring rule;
    SettingOptions settings;
};

struct NumberingOptions {
    std::wstring name;
    std::wstring rule;
    std::vector<std::wstring> fields; // that only the records have
    std::wstring date;                // the field with the record's date
    std::wstring from;
    std::wstring until;
    std::vector<std::wstring> when; // Name=Value
    std::wstring then;              // stop, anew or on; empty: stop
};

struct NextOptions {
    std::wstring rule;
    std::vector<std::wstring> fields; // Name=Value
    std::optional<std::int64_t> set;
    std::wstring band;       // whose number is set; empty: the only one
    std::wstring dateFormat; // of the fields; empty: ISO 8601
};

struct ImportOptions {
    std::wstring file;
    std::wstring name;   // empty: the file's name without its extension
    std::wstring policy; // empty: as it is, gapless for a new rule
    std::optional<std::int64_t> leaseSize;
    bool force = false; // also a rule that can issue no code
    SettingOptions numbering;
};

struct NewRuleOptions {
    std::wstring name;
    std::optional<std::wstring> pattern; // nothing: the designer opens
    std::wstring grow;                   // digits, such as 4..9; empty: the number keeps its width
    std::wstring policy;                 // empty: gapless, or as it is
    std::optional<std::int64_t> leaseSize;
    PatternSettings settings;
    wchar_t separator = L',';         // of the files with codes
    std::optional<unsigned> codePage; // likewise
    std::vector<std::wstring> fields; // for the designer
    std::vector<std::wstring> macros;
    SettingOptions numbering;
    bool replace = false; // the rule that there is
    bool force = false;   // also a rule that can issue no code
};

struct ShowOptions {
    std::wstring rule;
    std::wstring folder; // for the files of the pattern; empty: none are written
};

struct DesignOptions {
    std::wstring rule;
    std::vector<std::wstring> fields; // to add
    std::vector<std::wstring> macros;
};

struct ExportOptions {
    std::wstring rule;
    std::wstring file; // empty: standard output
};

struct IssueOptions {
    std::wstring rule;
    std::wstring file;                // of the records, "-" for standard input; empty: one record from `fields`
    std::size_t count = 1;            // codes for that one record
    std::vector<std::wstring> fields; // Name=Value
    wchar_t separator = L',';
    std::optional<unsigned> codePage;
    bool keepOtherColumns = false;
    std::wstring key;          // of the one record of `fields`; empty: none was given
    std::wstring keyColumn;    // of the file; empty: none was given
    std::wstring dateFormat;   // of the records; empty: ISO 8601
    bool dryRun = false;       // tell what would be issued, and store nothing
    unsigned warnPercent = 10; // of a series' numbers that must be left
    bool quiet = false;        // the codes alone
};

struct FindOptions {
    std::wstring rule; // empty: all
    std::wstring ticket;
};

struct LeaseOptions {
    std::wstring rule;
    std::wstring owner; // machine:process; empty: every owner
};

struct PreviewOptions {
    std::wstring rule;
    std::vector<std::wstring> fields; // Name=Value
    std::size_t count = 1;
    std::wstring dateFormat; // of the fields; empty: ISO 8601
};

struct CodeOptions {
    std::wstring rule;
    std::wstring code;
    std::wstring reason; // of a void one
};

struct AdoptOptions {
    std::wstring rule;
    std::vector<std::wstring> what; // the codes, or one file of them, or "-" for standard input
    std::wstring column;            // with the codes; empty: the one named Code, or the first one
    wchar_t separator = L',';
    std::optional<unsigned> codePage;
};

struct AuditOptions {
    std::wstring rule;
    unsigned warnPercent = 10; // of a band's room that must be left
    std::wstring writeHeads;   // a file for the newest seals; empty: none
    std::wstring against;      // such a file of before; empty: none
    bool repair = false;
};

// The numbering of that name, if there is one.
[[nodiscard]] std::optional<Numbering> FindNumbering(Session& session, const std::wstring& name);
int AddToNumbering(Session& session, const NumberingOptions& options);
int RemoveFromNumbering(Session& session, const NumberingOptions& options);
int ListNumberings(Session& session);
int ShowNumbering(Session& session, const std::wstring& name);
int SetRule(Session& session, const SetOptions& options);
int NextCommand(Session& session, const NextOptions& options);
int LastCommand(Session& session, const NextOptions& options);
int ImportRule(Session& session, const ImportOptions& options);
int ExportRule(Session& session, const ExportOptions& options);
int ListRules(Session& session);
int IssueCodes(Session& session, const IssueOptions& options);
int PreviewCommand(Session& session, const PreviewOptions& options);
int ExplainCommand(Session& session, const CodeOptions& options);
int AdoptCodes(Session& session, const AdoptOptions& options);
int AuditRule(Session& session, const AuditOptions& options);
int VoidCode(Session& session, const CodeOptions& options);
int FindTicket(Session& session, const FindOptions& options);
int RuleHistory(Session& session, const std::wstring& name);
int CloseLeases(Session& session, const LeaseOptions& options);
int Doctor(Session& session);
int Upgrade(Session& session);
int DesignRule(Session& session, const DesignOptions& options);
int NewRule(Session& session, const NewRuleOptions& options);
int DesignNewRule(Session& session, const NewRuleOptions& options);
int CheckRule(Session& session, const std::wstring& name);
int CheckFile(const Output& output, const std::wstring& file);
int ShowRule(Session& session, const ShowOptions& options);

} // namespace ledger
