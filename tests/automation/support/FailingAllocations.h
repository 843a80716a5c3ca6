// Want of memory inside the component, one allocation at a time: for as long as this lives, the functions that the
// library imports to allocate with are counted, and one of the calls fails as the test says.
#pragma once

#include <windows.h>

#include <vector>

namespace kestrel::test {

class FailingAllocations {
  public:
    // Throws HostError when the library does not import what it allocates with.
    explicit FailingAllocations(HMODULE library);
    // The imports are replaced once and put back once.
    FailingAllocations(const FailingAllocations&) = delete;
    FailingAllocations& operator=(const FailingAllocations&) = delete;
    ~FailingAllocations();

    // Runs the operation; of the allocations that it makes, the one after `spared` others fails. Whether it came to
    // that.
    template <class Operation>
    [[nodiscard]] bool Fails(int spared, const Operation& operation) {
        Arm(spared);
        operation();
        return Disarm();
    }

  private:
    struct Import {
        void** place;
        void* before;
    };

    static void Arm(int spared) noexcept;
    static bool Disarm() noexcept;
    void Replace(HMODULE library, const char* module, const char* name, void* replacement);

    std::vector<Import> mvarImports;
};

} // namespace kestrel::test
