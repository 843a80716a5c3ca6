// How much memory a node of a relation tree takes: everything that is allocated for it, its place in the list, its key,
// its texts and, once they were made, the indexes.
#include <cstddef>
#include <cstdlib>
#include <new>

#include "bench/Measure.h"
#include "support/StandIns.h"
#include "support/Trees.h"

// NOLINTBEGIN(cppcoreguidelines-no-malloc,cppcoreguidelines-avoid-non-const-global-variables): these take the place of
// what allocates everything else
namespace {

// What was allocated and not freed; each block remembers its size in front of itself.
std::size_t theBytes = 0;
std::size_t theBlocks = 0;
constexpr std::size_t headSize = alignof(std::max_align_t);

} // namespace

void* operator new(std::size_t size) {
    auto* block = static_cast<std::byte*>(std::malloc(headSize + size));
    if (block == nullptr) throw std::bad_alloc();
    *reinterpret_cast<std::size_t*>(block) = size;
    theBytes += size;
    ++theBlocks;
    return block + headSize;
}

void operator delete(void* memory) noexcept {
    if (memory == nullptr) return;
    auto* block = static_cast<std::byte*>(memory) - headSize;
    theBytes -= *reinterpret_cast<std::size_t*>(block);
    --theBlocks;
    std::free(block);
}

void operator delete(void* memory, std::size_t) noexcept { operator delete(memory); }
// NOLINTEND(cppcoreguidelines-no-malloc,cppcoreguidelines-avoid-non-const-global-variables)

namespace kestrel::bench {

namespace {

using namespace kestrel::test;

template <class Make>
void Print(const char* what, int nodes, Make make) {
    const auto bytes = theBytes;
    const auto blocks = theBlocks;
    const auto tree = make();
    std::printf("%-48s%10d%10.1f%10.2f\n", what, nodes, static_cast<double>(theBytes - bytes) / nodes,
                static_cast<double>(theBlocks - blocks) / nodes);
}

Ref<cNodes> Built(int nodes) {
    auto tree = Make<cNodes>();
    for (int node = 1; node <= nodes; ++node)
        tree->Add({}, tvwFirst, L"c" + ToText(node), L"v" + ToText(node));
    return tree;
}

int Run() {
    const StandIns standIns;
    std::printf("%-48s%10s%10s%10s\n", "trees of one layer", "nodes", "bytes", "blocks per node");
    for (const int nodes : {1'000, 10'000, 100'000}) {
        const String text = FlatText(nodes);
        Print("read from a text", nodes, [&] { return TreeOf(text); });
        Print("built by Add, with the indexes of that", nodes, [&] { return Built(nodes); });
    }
    return 0;
}

} // namespace

} // namespace kestrel::bench

int main() { return kestrel::bench::RunBenchmark(kestrel::bench::Run); }
