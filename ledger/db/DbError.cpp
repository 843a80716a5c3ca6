#include "ledger/db/DbError.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "hosts/common/Text.h"

namespace ledger {

namespace {

struct KnownState {
    const wchar_t* state; // how the state begins
    Fault kind;
};

const KnownState KnownStates[] = {
    {L"23505", Fault::UniqueKey}, {L"40001", Fault::Conflict}, {L"40P01", Fault::Conflict},
    {L"55P03", Fault::Busy},      {L"57P0", Fault::Lost},      {L"08", Fault::Lost},
    {L"53300", Fault::Lost},      {L"53100", Fault::Full},     {L"25006", Fault::ReadOnly},
};

// The embedded engine has no states of its own, only result numbers, which mean something else with other engines.
struct KnownNative {
    long native;
    Fault kind;
};

const KnownNative KnownNatives[] = {
    {5, Fault::Busy},  {6, Fault::Busy},        {8, Fault::ReadOnly},    {13, Fault::Full},
    {14, Fault::Lost}, {11, Fault::NoDatabase}, {26, Fault::NoDatabase},
};

// Drivers report an ended connection under the general state as well.
const wchar_t* const LostTexts[] = {L"connection has been lost", L"server closed the connection",
                                    L"no connection to the server", L"connection dead"};

bool Contains(const std::wstring& text, const wchar_t* part) { return text.find(part) != std::wstring::npos; }

Fault Classify(const std::wstring& state, long native, const std::wstring& text) {
    const auto* known = std::ranges::find_if(
        KnownStates, [&state](const KnownState& candidate) { return state.starts_with(candidate.state); });
    if (known != std::end(KnownStates)) return known->kind;
    if (Contains(text, L"UNIQUE constraint failed")) return Fault::UniqueKey;
    if (std::ranges::any_of(LostTexts, [&text](const wchar_t* part) { return Contains(text, part); }))
        return Fault::Lost;
    if (!text.starts_with(L"[SQLite]")) return Fault::Other;
    const auto* number = std::ranges::find(KnownNatives, native, &KnownNative::native);
    return number != std::end(KnownNatives) ? number->kind : Fault::Other;
}

std::wstring Advice(Fault kind) {
    switch (kind) {
    case Fault::UniqueKey: return L"the database holds a row with that key already";
    case Fault::Conflict: return L"other programs kept changing the same data; try again";
    case Fault::Busy:
        return L"another program holds the database; try again when it is done, or wait longer (--patience)";
    case Fault::Lost: return L"the database cannot be reached; check --database and whether its server is running";
    case Fault::ReadOnly: return L"the database takes no changes; check the rights on its file, folder or login";
    case Fault::Full: return L"no space is left for the database; free some, nothing was stored of what was under way";
    case Fault::NoDatabase: return L"the file is no database or is damaged; check --database";
    case Fault::Other: return L"the database refused";
    }
    return L"the database refused";
}

} // namespace

DbError::DbError(const std::wstring& state, long native, const std::wstring& text)
    : DbError(Classify(state, native, text), state, text) {}

DbError::DbError(Fault kind, std::wstring state, const std::wstring& text)
    : HostError(Advice(kind) + L" (" + hosts::OneLine(text) + L")"), mvarKind(kind), mvarState(std::move(state)) {}

bool DbError::MayRetry() const noexcept {
    return mvarKind == Fault::Conflict || mvarKind == Fault::Busy || mvarKind == Fault::Lost;
}

} // namespace ledger
