// What the standard library of GCC would bring along for nobody to see: the library shows no text of it to hosts.
#include <version>

#ifdef __GLIBCXX__

#include <cstdlib>

// NOLINTBEGIN(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp,readability-identifier-naming): the library's
// own names, whose place these take
namespace __gnu_cxx {

// For an exception that nothing catches. The one of the library's own takes the exception's name apart and writes it to
// a console that a host seldom has; the process ends all the same.
void __verbose_terminate_handler();
void __verbose_terminate_handler() { std::abort(); }

} // namespace __gnu_cxx
// NOLINTEND(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp,readability-identifier-naming)

#endif
