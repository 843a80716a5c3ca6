#include "common/Draw.h"

#ifdef _WIN32
#include <cstdlib>
#include <new>
#else
#include <random>
#endif

namespace kestrel {

#ifdef _WIN32
// What the standard library's own source asks as well, without the texts that it brings along.
std::uint32_t Draw() {
    unsigned number = 0;
    if (rand_s(&number) != 0) throw std::bad_alloc();
    return number;
}
#else
std::uint32_t Draw() { return std::random_device()(); }
#endif

} // namespace kestrel
