// Seals: what proves that rows are as they were stored, and stand where they stood.
//
// The seal of a row is the SHA-256 over the seal of the row before it in its chain and the row itself, each part with
// its length before it, so that nothing can move from one part to the next. A chain begins with an empty seal.
#pragma once

#include <initializer_list>
#include <string>

#include "ledger/core/Sha256.h"

namespace ledger {

class SealText {
  public:
    explicit SealText(const std::wstring& before) { Add(before); }

    SealText& Add(const std::wstring& part);
    SealText& Add(std::int64_t number);
    // 64 hexadecimal digits.
    [[nodiscard]] std::wstring Seal() const { return HexOf(Sha256Of(mvarText)); }

  private:
    std::string mvarText;
};

// What stands for a set of sealed rows, whatever their order: how many there are, and the sum of their seals.
class SealSum {
  public:
    void Add(const std::wstring& seal);
    // "12 rows 0123...": the same for the same rows.
    [[nodiscard]] std::wstring Text() const;
    [[nodiscard]] std::int64_t Count() const noexcept { return mvarCount; }

  private:
    std::int64_t mvarCount = 0;
    Sha256Sum mvarSum{};
};

} // namespace ledger
