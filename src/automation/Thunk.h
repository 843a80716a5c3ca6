// How a late-bound call reaches a member of a face: a function that the compiler makes from the member's own signature.
//
// A face lists its members by their dispatch ids: Reads and Answers for those whose last parameter is the result, Puts,
// PutsObject and Does for those that have none.
#pragma once

#include <tuple>
#include <utility>

#include "automation/Answer.h"

namespace kestrel {

struct Thunk {
    DISPID id;
    INVOKEKIND kind;
    std::size_t parameters; // without the result
    bool takesAnyValue;     // its last parameter is a VARIANT
    // Calls the member of the face with the arguments, one for each parameter. The result code is the member's; what it
    // answered goes to `result`, which is empty before and may be null. A failed member leaves an empty value of its
    // type there, as the platform's dispatcher does: a script engine may look at it before it reports the failure.
    // Fails with ComFailure as the conversions do.
    HRESULT (*call)(void* face, const BoundArguments& arguments, VARIANT* result);
};

namespace thunks {

template <class Signature>
struct SignatureOf;
template <class Face, class... Parameters>
struct SignatureOf<HRESULT (STDMETHODCALLTYPE Face::*)(Parameters...) noexcept> {
    using Class = Face;
    using All = std::tuple<Parameters...>;
    static constexpr std::size_t Count = sizeof...(Parameters);
    static_assert(Count <= BoundArguments::Most + 1, "no room for the arguments and a result");
};

// One argument of several: what stands first is converted first.
template <std::size_t Place, class Parameter>
struct Placed : Argument<Parameter> {
    explicit Placed(const BoundArguments& arguments) : Argument<Parameter>(arguments[Place]) {}
};

template <class Signature, class Places>
struct Arguments;
template <class Signature, std::size_t... Place>
struct Arguments<Signature, std::index_sequence<Place...>>
    : Placed<Place, std::tuple_element_t<Place, typename Signature::All>>... {
    template <std::size_t At>
    using Part = Placed<At, std::tuple_element_t<At, typename Signature::All>>;

    explicit Arguments([[maybe_unused]] const BoundArguments& given) : Part<Place>(given)... {}

    template <class Member, class... Result>
    HRESULT Call(void* face, Member member, Result... result) {
        const HRESULT answer =
            (static_cast<typename Signature::Class*>(face)->*member)(Part<Place>::Pass()..., result...);
        if (SUCCEEDED(answer)) (Part<Place>::WriteBack(), ...);
        return answer;
    }
};

template <auto Method>
struct Caller {
    using Signature = SignatureOf<decltype(Method)>;

    static HRESULT Run(void* face, const BoundArguments& given, VARIANT*) {
        Arguments<Signature, std::make_index_sequence<Signature::Count>> arguments(given);
        return arguments.Call(face, Method);
    }

    static HRESULT RunForResult(void* face, const BoundArguments& given, VARIANT* result) {
        using Last = std::tuple_element_t<Signature::Count - 1, typename Signature::All>;
        Arguments<Signature, std::make_index_sequence<Signature::Count - 1>> arguments(given);
        Answer<std::remove_pointer_t<Last>> answer;
        const HRESULT outcome = arguments.Call(face, Method, answer.Out());
        if (result != nullptr) answer.Give(*result);
        return outcome;
    }
};

template <auto Method>
constexpr bool TakesAnyValue() {
    using Signature = SignatureOf<decltype(Method)>;
    return std::is_same_v<std::tuple_element_t<Signature::Count - 1, typename Signature::All>, VARIANT>;
}

template <auto Method>
constexpr std::size_t Parameters = SignatureOf<decltype(Method)>::Count;

} // namespace thunks

template <auto Method>
constexpr Thunk Reads(DISPID id) noexcept {
    return {id, INVOKE_PROPERTYGET, thunks::Parameters<Method> - 1, false, &thunks::Caller<Method>::RunForResult};
}
template <auto Method>
constexpr Thunk Puts(DISPID id) noexcept {
    return {id, INVOKE_PROPERTYPUT, thunks::Parameters<Method>, thunks::TakesAnyValue<Method>(),
            &thunks::Caller<Method>::Run};
}
template <auto Method>
constexpr Thunk PutsObject(DISPID id) noexcept {
    return {id, INVOKE_PROPERTYPUTREF, thunks::Parameters<Method>, false, &thunks::Caller<Method>::Run};
}
template <auto Method>
constexpr Thunk Does(DISPID id) noexcept {
    return {id, INVOKE_FUNC, thunks::Parameters<Method>, false, &thunks::Caller<Method>::Run};
}
template <auto Method>
constexpr Thunk Answers(DISPID id) noexcept {
    return {id, INVOKE_FUNC, thunks::Parameters<Method> - 1, false, &thunks::Caller<Method>::RunForResult};
}

} // namespace kestrel
