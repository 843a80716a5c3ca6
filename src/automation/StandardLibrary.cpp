// What the standard library of GCC would bring along for nobody to see: the library shows no text of it to hosts.
#include <version>

#ifdef __GLIBCXX__

#include <cstdlib>

namespace __gnu_cxx { // NOLINT(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp): the name to take the place of

// For an exception that nothing catches. The one of the library's own takes the exception's name apart and writes it to
// a console that a host seldom has; the process ends all the same.
void __verbose_terminate_handler(); // NOLINT(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp): likewise
void __verbose_terminate_handler() {
    std::abort();
} // NOLINT(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp): likewise

} // namespace __gnu_cxx

#endif
