// The hash of keys in collections: nobody who writes keys can make them fall together, and keys that are numbered in
// the order in which they come still get places next to each other.
//
// A key is a text and the digits at its end, three at most. The text, with the number of those digits, is the
// polynomial of its characters over the prime 2^31 - 1 at a point that each process draws anew: two different texts
// meet at few points of two thousand million, whoever chose them. The digits are added as the number that they are:
// keys that differ in them alone never meet, and lie side by side, so that a large collection is filled and emptied
// through memory that is at hand.
#pragma once

#include <cstdint>

#include "common/String.h"

namespace kestrel {

class KeyHash {
  public:
    // At the point of this process.
    KeyHash();
    // At that point, 2 to 2^31 - 2.
    explicit KeyHash(std::uint32_t point) noexcept : mvarPoint(point) {}

    // Does not fail, and is not declared so: the standard library then keeps each key's hash beside the key.
    [[nodiscard]] std::size_t operator()(const String& key) const;

  private:
    std::uint32_t mvarPoint;
};

} // namespace kestrel
