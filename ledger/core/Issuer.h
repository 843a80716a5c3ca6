// Issues codes by a rule's policy: a code that is handed out is stored, and is nobody else's.
#pragma once

#include <memory>
#include <span>
#include <string>
#include <vector>

#include "ledger/core/CodeMaker.h"
#include "ledger/db/Transaction.h"

namespace ledger {

struct Request {
    FieldValues values;  // of the rule's fields and macros
    std::wstring fields; // what is stored with the code: all of the record as a JSON object
};

struct Outcome {
    std::wstring code;    // empty when the record was refused
    std::wstring refusal; // why
};

class Issuer {
  public:
    virtual ~Issuer() = default;
    Issuer(const Issuer&) = delete; // bound to one connection and one component
    Issuer& operator=(const Issuer&) = delete;

    // How many requests to hand over at once, so that their storing pays.
    [[nodiscard]] virtual std::size_t BatchSize() const noexcept = 0;
    // One outcome per request, in their order. `toCome` counts the requests that will follow, as far as they are known.
    // Fails with HostError when going on makes no sense; nothing of this call is stored then that was not returned.
    [[nodiscard]] virtual std::vector<Outcome> Issue(std::span<const Request> requests, std::size_t toCome) = 0;
    // Gives back what was set aside and not used.
    virtual void Finish() = 0;

  protected:
    Issuer() = default;
};

// What an issuer works with; all of it outlives the issuer.
struct Workplace {
    Database& database;
    const StoredRule& rule;
    CodeMaker& maker;
    Patience patience;
};

// The issuer of the rule's policy.
[[nodiscard]] std::unique_ptr<Issuer> MakeIssuer(const Workplace& workplace);

} // namespace ledger
