// The two places where exceptions end in the dialogs: at the boundary to the system, which none may cross, and around a
// step whose refusal by the model is an answer.
#pragma once

#include <optional>

#include "common/Error.h"

namespace kestrel::dialogs {

// What a window procedure or callback returns: the body's result, or the fallback when the body fails.
template <class Result, class Body>
Result Guarded(Result fallback, Body body) noexcept {
    try {
        return body();
    } catch (...) {
        return fallback; // nothing that the caller, the system, could do with it
    }
}

// The model's refusal of the step; nothing when the step was done.
template <class Body>
std::optional<Error> Trapped(Body body) {
    try {
        body();
        return std::nullopt;
    } catch (const Error& error) {
        return error;
    }
}

} // namespace kestrel::dialogs
