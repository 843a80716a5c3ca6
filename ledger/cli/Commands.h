// kledger's commands. Each returns the exit code, prints its results to standard output and fails with HostError.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "ledger/cli/Session.h"

namespace ledger {

struct ImportOptions {
    std::wstring file;
    std::wstring name;   // empty: the file's name without its extension
    std::wstring policy; // empty: as it is, gapless for a new rule
    std::optional<std::int64_t> leaseSize;
};

struct ExportOptions {
    std::wstring rule;
    std::wstring file; // empty: standard output
};

struct IssueOptions {
    std::wstring rule;
    std::wstring file;                // of the records; empty: one record from `fields`
    std::vector<std::wstring> fields; // Name=Value
    wchar_t separator = L',';
    std::optional<unsigned> codePage;
    bool keepOtherColumns = false;
};

struct PreviewOptions {
    std::wstring rule;
    std::vector<std::wstring> fields; // Name=Value
    std::size_t count = 1;
};

struct CodeOptions {
    std::wstring rule;
    std::wstring code;
    std::wstring reason; // of a void one
};

struct AdoptOptions {
    std::wstring rule;
    std::wstring file;
    std::wstring column; // with the codes; empty: the first one
    wchar_t separator = L',';
    std::optional<unsigned> codePage;
};

struct AuditOptions {
    std::wstring rule;
    unsigned warnPercent = 10; // of a band's room that must be left
};

int ImportRule(Session& session, const ImportOptions& options);
int ExportRule(Session& session, const ExportOptions& options);
int ListRules(Session& session);
int IssueCodes(Session& session, const IssueOptions& options);
int PreviewCommand(Session& session, const PreviewOptions& options);
int ExplainCommand(Session& session, const CodeOptions& options);
int AdoptCodes(Session& session, const AdoptOptions& options);
int AuditRule(Session& session, const AuditOptions& options);
int VoidCode(Session& session, const CodeOptions& options);
int DesignRule(Session& session, const std::wstring& name);

} // namespace ledger
