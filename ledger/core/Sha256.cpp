#include "ledger/core/Sha256.h"

#include <windows.h>

#include <bcrypt.h>

#include "hosts/common/HostError.h"

namespace ledger {

namespace {

void RefuseFailure(NTSTATUS status) {
    if (status < 0) throw hosts::HostError(L"Windows provides no SHA-256 (bcrypt.dll)");
}

BCRYPT_ALG_HANDLE Provider() {
    static const BCRYPT_ALG_HANDLE provider = [] {
        BCRYPT_ALG_HANDLE opened = nullptr;
        RefuseFailure(BCryptOpenAlgorithmProvider(&opened, BCRYPT_SHA256_ALGORITHM, nullptr, 0));
        return opened;
    }();
    return provider;
}

// One computation; ended with this.
class Computation {
  public:
    Computation() { RefuseFailure(BCryptCreateHash(Provider(), &mvarHash, nullptr, 0, nullptr, 0, 0)); }
    Computation(const Computation&) = delete; // one computation
    Computation& operator=(const Computation&) = delete;
    ~Computation() { BCryptDestroyHash(mvarHash); }

    [[nodiscard]] Sha256Sum Of(std::string_view bytes) {
        // The declaration takes no constant bytes.
        auto* const data = reinterpret_cast<PUCHAR>(const_cast<char*>(bytes.data()));
        Sha256Sum sum{};
        RefuseFailure(BCryptHashData(mvarHash, data, static_cast<ULONG>(bytes.size()), 0));
        RefuseFailure(BCryptFinishHash(mvarHash, sum.data(), static_cast<ULONG>(sum.size()), 0));
        return sum;
    }

  private:
    BCRYPT_HASH_HANDLE mvarHash = nullptr;
};

} // namespace

Sha256Sum Sha256Of(std::string_view bytes) { return Computation().Of(bytes); }

std::wstring HexOf(const Sha256Sum& sum) {
    constexpr const wchar_t* digits = L"0123456789abcdef";
    constexpr unsigned low = 0xF;
    std::wstring text;
    for (const std::uint8_t byte : sum) {
        text.push_back(digits[byte >> 4U]);
        text.push_back(digits[byte & low]);
    }
    return text;
}

} // namespace ledger
