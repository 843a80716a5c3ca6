// A benchmark that drives the registered component as hosts do.
#pragma once

#include "automation/support/Com.h"
#include "bench/Measure.h"

namespace kestrel::bench {

class Apartment {
  public:
    Apartment() { test::Must(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED)); }
    // Entered once, left once.
    Apartment(const Apartment&) = delete;
    Apartment& operator=(const Apartment&) = delete;
    ~Apartment() { CoUninitialize(); }
};

template <class Body>
[[nodiscard]] int RunComBenchmark(const Body& body) noexcept {
    return RunBenchmark([&body] {
        const Apartment apartment;
        return body();
    });
}

} // namespace kestrel::bench
