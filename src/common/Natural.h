// Natural numbers of any size, with as much arithmetic as reading and writing floating-point numbers takes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace kestrel {

class Natural {
  public:
    explicit Natural(std::uint64_t number = 0);

    // This becomes this * factor + summand.
    void MultiplyAdd(std::uint32_t factor, std::uint32_t summand = 0);
    // This becomes this * 10^exponent, or this * 2^bits.
    void MultiplyByPowerOfTen(std::size_t exponent);
    void ShiftLeft(std::size_t bits);
    // This becomes this - other, which must not be larger.
    void Subtract(const Natural& other);

    [[nodiscard]] Natural Plus(const Natural& other) const;
    // How many bits the number has; 0 has none.
    [[nodiscard]] std::size_t BitLength() const noexcept;
    // Negative, 0 or positive as this is less than, equal to or more than the other.
    [[nodiscard]] int Compare(const Natural& other) const noexcept;

  private:
    void DropLeadingZeros() noexcept;

    std::vector<std::uint32_t> mvarParts; // the least significant first, the last one not 0
};

} // namespace kestrel
