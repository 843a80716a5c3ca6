#include "common/PlainText.h"

#include <array>

namespace kestrel {

namespace {

enum Kind : std::uint8_t { Plain = 0, Small = 1, Separator = 2, Other = 4 };

struct Character {
    std::uint8_t kind = Other;
    std::uint8_t lowered = 0;
};

constexpr std::size_t AsciiCount = 128;

constexpr std::array<Character, AsciiCount> AsciiTable() {
    std::array<Character, AsciiCount> table{};
    for (std::size_t code = 0; code < AsciiCount; ++code) {
        const bool isCapital = code >= 'A' && code <= 'Z';
        const bool isSmall = code >= 'a' && code <= 'z';
        const bool isPrintable = code >= ' ' && code <= '~';
        int kind = isSmall ? Small : Plain;
        if (code == ',' || code == ';' || code == '\r') kind |= Separator;
        if (!isPrintable) kind |= Other;
        table[code] = {static_cast<std::uint8_t>(kind), static_cast<std::uint8_t>(code + (isCapital ? 'a' - 'A' : 0))};
    }
    return table;
}

constexpr auto Ascii = AsciiTable();

// Characters are weighed by powers of this; four at a time, so that the processor need not wait for each.
constexpr std::uint64_t Weight = 0x9E3779B97F4A7C15U;
constexpr std::uint64_t Weight2 = Weight * Weight;
constexpr std::uint64_t Weight3 = Weight2 * Weight;
constexpr std::uint64_t Weight4 = Weight3 * Weight;

// The characters, lowered where they are ASCII, as numbers; and all their kinds together.
class Look {
  public:
    explicit Look(StringView text) noexcept : mvarHash(text.size()) {
        if (text.empty()) return;
        const std::size_t last = text.size() - 1;
        std::size_t i = 0;
        for (; i + 4 <= last; i += 4)
            mvarHash = mvarHash * Weight4 + (Lowered(text[i]) * Weight3 + Lowered(text[i + 1]) * Weight2) +
                       (Lowered(text[i + 2]) * Weight + Lowered(text[i + 3]));
        for (; i < last; ++i)
            mvarHash = mvarHash * Weight + Lowered(text[i]);
        mvarHash = Mixed(mvarHash) + Lowered(text[last]);
    }

    [[nodiscard]] std::uint64_t Hash() const noexcept { return mvarHash; }
    [[nodiscard]] bool Has(Kind kind) const noexcept { return (mvarKinds & kind) != 0; }

  private:
    // What tells texts apart comes down into the lower half.
    static std::uint64_t Mixed(std::uint64_t hash) noexcept { return (hash ^ hash >> 32U) * Weight >> 24U; }

    std::uint64_t Lowered(wchar_t character) noexcept {
        const auto code = static_cast<std::uint32_t>(character); // NOLINT(bugprone-signed-char-misuse): never negative
        const Character known = code < AsciiCount ? Ascii[code] : Character{};
        mvarKinds |= known.kind;
        return code < AsciiCount ? known.lowered : code;
    }

    std::uint64_t mvarHash;
    unsigned mvarKinds = Plain;
};

} // namespace

PlainLook LookAt(StringView text) noexcept {
    const Look look(text);
    return {look.Hash(), !look.Has(Other), look.Has(Small), look.Has(Separator)};
}

} // namespace kestrel
