// Keeps the library loaded: every object that a host can hold owns one of these.
#pragma once

#include <atomic>

namespace kestrel {

class ModuleLock {
  public:
    ModuleLock() noexcept { ++Count(); }
    ModuleLock(const ModuleLock&) noexcept : ModuleLock() {}
    ModuleLock& operator=(const ModuleLock&) noexcept = default; // each object stays counted once
    ~ModuleLock() { --Count(); }

    static void Lock() noexcept { ++Count(); }
    static void Unlock() noexcept { --Count(); }
    [[nodiscard]] static bool IsLocked() noexcept { return Count() != 0; }

  private:
    static std::atomic<long>& Count() noexcept {
        static std::atomic<long> count{0};
        return count;
    }
};

} // namespace kestrel
