// A ledger as one page that needs nothing but a browser: no script, nothing from elsewhere, in light and dark, wide and
// narrow.
#pragma once

#include <string>

#include "ledger/core/Report.h"

namespace ledger {

// Rules come one after the other, each with its series behind it.
class ReportPage {
  public:
    explicit ReportPage(std::wstring madeAt) : mvarMadeAt(std::move(madeAt)) {}

    // Findings of a rule, or of none: an empty name.
    void AddFindings(const std::wstring& rule, const std::vector<Finding>& findings);
    void AddRule(const AuditReport& audit);
    // Of the rule added last. The first hundred of a rule have a picture, the others a line.
    void AddSeries(const SeriesReport& report);
    [[nodiscard]] std::wstring Text() const;

  private:
    void EndRule();

    std::wstring mvarMadeAt;
    std::wstring mvarFindings;
    std::wstring mvarRules;
    std::wstring mvarCards; // of the rule added last
    std::wstring mvarRest;
    std::size_t mvarShown = 0;
    std::int64_t mvarCodes = 0;
    std::int64_t mvarFound = 0;
};

} // namespace ledger
