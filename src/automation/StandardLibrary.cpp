// What the standard library of GCC would bring along for nobody to see: the library shows no text of it to hosts.
#include <version>

#ifdef __GLIBCXX__

#include <cstdlib>
#include <exception>
#include <new>

namespace {

// What no member foresees; hosts see an unexpected failure.
class Unforeseen final : public std::exception {};

} // namespace

// NOLINTBEGIN(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl50-cpp,cert-dcl51-cpp,cert-dcl58-cpp,readability-identifier-naming):
// the library's own functions, whose place these take
namespace __gnu_cxx {

// For an exception that nothing catches. The one of the library's own takes the exception's name apart and writes it to
// a console that a host seldom has; the process ends all the same.
void __verbose_terminate_handler() { std::abort(); }

} // namespace __gnu_cxx

// How the containers say that they cannot do what they were asked. Those of the library keep a text in each exception,
// for which they bring along two kinds of strings. Too much for memory is want of memory, whether or not it was tried.
namespace std {

[[noreturn]] void __throw_bad_alloc() { throw bad_alloc(); }
[[noreturn]] void __throw_bad_array_new_length() { throw bad_alloc(); }
[[noreturn]] void __throw_length_error(const char*) { throw bad_alloc(); }
[[noreturn]] void __throw_logic_error(const char*) { throw Unforeseen(); }
[[noreturn]] void __throw_out_of_range(const char*) { throw Unforeseen(); }
[[noreturn]] void __throw_out_of_range_fmt(const char*, ...) { throw Unforeseen(); }
[[noreturn]] void __throw_bad_function_call() { throw Unforeseen(); }

} // namespace std
// NOLINTEND(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl50-cpp,cert-dcl51-cpp,cert-dcl58-cpp,readability-identifier-naming)

#endif
