// The processor's time that this program has used: what other programs do meanwhile does not count.
#pragma once

#include <windows.h>

namespace kestrel::test {

[[nodiscard]] inline double Seconds(const FILETIME& time) noexcept {
    return (static_cast<double>(time.dwHighDateTime) * 4294967296.0 + time.dwLowDateTime) / 1e7;
}

[[nodiscard]] inline double ProcessorSeconds() noexcept {
    FILETIME created;
    FILETIME ended;
    FILETIME kernel;
    FILETIME user;
    GetProcessTimes(GetCurrentProcess(), &created, &ended, &kernel, &user);
    return Seconds(kernel) + Seconds(user);
}

} // namespace kestrel::test
