// The one place where what the model throws becomes a result code and an error object for the host.
#pragma once

#include <type_traits>

#include "automation/ClassFacts.h"

namespace kestrel {

// A failure that has a result code of its own and no text in the string table.
struct ComFailure {
    HRESULT result;
};

inline void Require(HRESULT result) {
    if (FAILED(result)) throw ComFailure{result};
}

inline void RequirePointer(const void* pointer) {
    if (pointer == nullptr) throw ComFailure{E_POINTER};
}

// Runs the body between the host and the model, for its result code. The thread's error object is cleared first, so
// that a failure without one never shows an earlier one's; a failure of the model leaves one that names the class
// (null: the library) as its source. Want of memory (std::bad_alloc, std::length_error) becomes E_OUTOFMEMORY, what
// nobody foresaw E_UNEXPECTED, both without a text: those of the language's library never reach a host.
HRESULT RunGuarded(const ClassFacts* facts, HRESULT (*body)(void*), void* context) noexcept;

// As RunGuarded, for a late-bound call: the member that it reaches clears the error object. Where it reaches none, it
// fails, and what is there then is cleared; DISP_E_EXCEPTION keeps what the member left.
HRESULT RunLateBound(const ClassFacts* facts, HRESULT (*body)(void*), void* context) noexcept;

template <class Body>
HRESULT Guarded(const ClassFacts* facts, Body&& body) noexcept {
    using Callable = std::remove_reference_t<Body>;
    return RunGuarded(
        facts,
        [](void* context) {
            (*static_cast<Callable*>(context))();
            return S_OK;
        },
        &body);
}

// For a body that answers with a result code of its own.
template <class Body>
HRESULT GuardedLateBound(const ClassFacts* facts, Body&& body) noexcept {
    using Callable = std::remove_reference_t<Body>;
    return RunLateBound(
        facts, [](void* context) -> HRESULT { return (*static_cast<Callable*>(context))(); }, &body);
}

} // namespace kestrel
