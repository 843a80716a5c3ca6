// What is looked at when a script has ended, for tests: whether it has left damage behind.
#pragma once

#include <optional>
#include <string>

namespace hosts::script {

struct EndChecks {
    bool heap = false;                    // the process heap is whole
    std::optional<std::wstring> released; // the component in this DLL, if it was loaded, has no object left

    // The exit code, or 3 when the heap is damaged.
    [[nodiscard]] int AfterQuit(int exitCode) const noexcept;
    // The same, or 4 when objects are left. Everything that the script held is gone by then.
    [[nodiscard]] int AfterEnd(int exitCode) const noexcept;
};

} // namespace hosts::script
