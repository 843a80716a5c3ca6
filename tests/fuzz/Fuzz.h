// What the fuzzers share: input as text, and requirements whose breach ends the run with the reason.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "common/Error.h"
#include "support/StandIns.h"

namespace kestrel::test {

// One character per byte, so that inputs can be read and written as plain text.
[[nodiscard]] inline String TextOf(const std::uint8_t* data, std::size_t size) { return String(data, data + size); }

inline void Require(bool holds, const char* what) {
    if (holds) return;
    static_cast<void>(std::fprintf(stderr, "does not hold: %s\n", what));
    std::abort();
}

// Requires that a check has found no fault.
inline void RequireWhole(const std::string& fault) { Require(fault.empty(), fault.c_str()); }

// Whether the operation succeeded; failing with an Error is its right, anything else ends the run.
template <class Operation>
bool Succeeds(const Operation& operation) {
    try {
        operation();
        return true;
    } catch (const Error& error) {
        Require(!error.Description().empty(), "each error has a text");
        return false;
    }
}

} // namespace kestrel::test
