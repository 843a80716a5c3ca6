// Which file it is that a name stands for, so that one put in its place is told from it.
#pragma once

#include <compare>
#include <cstdint>
#include <optional>
#include <string>

namespace ledger {

struct FileIdentity {
    std::uint64_t volume = 0;
    std::uint64_t file = 0;

    friend bool operator==(const FileIdentity&, const FileIdentity&) = default;
};

// Nothing when there is no such file.
[[nodiscard]] std::optional<FileIdentity> IdentityOf(const std::wstring& path) noexcept;

} // namespace ledger
