// Issues codes by a rule's policy: a code that is handed out is stored, and is nobody else's; a request gets one code,
// however often it is made.
#pragma once

#include <memory>
#include <span>
#include <string>
#include <vector>

#include "ledger/core/Claims.h"
#include "ledger/core/CodeMaker.h"
#include "ledger/db/Transaction.h"

namespace ledger {

struct Request {
    FieldValues values;   // of the rule's fields and macros
    std::wstring fields;  // what is stored with the code: all of the record as a JSON object
    std::wstring ticket;  // what makes it the same request: given by whoever asks, or one of the ledger's own
    bool isGiven = false; // the ticket was given, so that the request may have been made before
};

// What a series has left behind the number of a code.
struct SeriesRoom {
    std::wstring band;
    std::wstring series;
    std::int64_t left = 0; // numbers
    unsigned percent = 0;  // of all that it could ever give
};

struct Outcome {
    std::wstring code = {};             // empty when the record was refused
    std::wstring refusal = {};          // why
    bool before = false;                // the code was issued by an earlier request with the same ticket
    bool full = false;                  // refused, because a series has no number left
    std::int64_t next = 0;              // the number that would have come then
    std::vector<SeriesRoom> rooms = {}; // of a code with new numbers; those that another rule goes on with are left out
};

// Of a code that was issued just now, with these new numbers of the maker's bands.
[[nodiscard]] Outcome OutcomeOf(const std::wstring& code, const std::vector<NumberHeld>& numbers,
                                const CodeMaker& maker);
[[nodiscard]] Outcome OutcomeOf(const NewCode& code, const CodeMaker& maker);

// Of a record that an issuer could not give a code.
[[nodiscard]] Outcome OutcomeOf(const hosts::RecordError& error);

class Issuer {
  public:
    virtual ~Issuer() = default;
    Issuer(const Issuer&) = delete; // bound to one connection and one component
    Issuer& operator=(const Issuer&) = delete;

    // How many requests to hand over at once, so that their storing pays.
    [[nodiscard]] virtual std::size_t BatchSize() const noexcept = 0;
    // One outcome per request, in their order. `toCome` counts the requests that will follow, as far as they are known.
    // Fails with HostError when going on makes no sense; what is stored then of this call, its tickets tell.
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
    const NumberingScope* scope = nullptr; // of the numbering that the codes are issued by, if any
};

// The issuer of the rule's policy; a rule that numbers nothing has nothing to set aside. Fails with HostError on a
// rule that was retired.
[[nodiscard]] std::unique_ptr<Issuer> MakeIssuer(const Workplace& workplace);

// Fails with RecordError when the rule counts separately by a value that the code does not show, as the series it
// belongs to is then another one's; the code is one that is taken.
void RefuseSharedBetweenSeries(const StoredRule& rule, const std::wstring& code);

// What the code that is stored for the request's ticket means for the request: it gets that code, or is refused because
// it was another request then.
[[nodiscard]] Outcome OutcomeOf(const CodeRow& stored, const Request& request, bool before);

// Why a code is refused that is stored already: nothing in the rule leads on from it.
[[nodiscard]] std::wstring IssuedAlready(const std::wstring& code, const CodeMaker& maker);

} // namespace ledger
