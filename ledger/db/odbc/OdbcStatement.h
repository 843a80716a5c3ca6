// A statement through ODBC.
#pragma once

#include <deque>

#include "ledger/db/Statement.h"
#include "ledger/db/odbc/OdbcSession.h"

namespace ledger {

class OdbcStatement final : public Statement {
  public:
    OdbcStatement(OdbcSession& session, const std::wstring& sql);

    Statement& Set(const std::wstring& text) override;
    Statement& Set(std::int64_t number) override;
    void Execute() override;
    [[nodiscard]] std::int64_t Changed() const override;
    bool Fetch() override;
    [[nodiscard]] std::wstring Text(unsigned column) const override;
    [[nodiscard]] std::optional<std::int64_t> NumberIfAny(unsigned column) const override;
    void Close() noexcept override;
    // Whether the last execution failed.
    [[nodiscard]] bool HasFailed() const noexcept { return mvarFailed; }

  private:
    struct Parameter {
        std::wstring text;
        std::int64_t number = 0;
        SQLLEN length = 0;
    };

    Parameter& NextParameter();
    void Bind(SQLSMALLINT cType, SQLSMALLINT sqlType, std::size_t size, void* value, Parameter& parameter) const;

    OdbcSession& mvarSession;
    Handle mvarHandle;
    std::deque<Parameter> mvarParameters; // the driver reads them in place
    std::size_t mvarSet = 0;
    bool mvarFailed = false;
};

} // namespace ledger
