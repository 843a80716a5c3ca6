#include "ledger/db/sqlite/FileIdentity.h"

#include <windows.h>

namespace ledger {

std::optional<FileIdentity> IdentityOf(const std::wstring& path) noexcept {
    constexpr DWORD shared = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    const HANDLE file = CreateFileW(path.c_str(), 0, shared, nullptr, OPEN_EXISTING, 0, nullptr);
    if (file == INVALID_HANDLE_VALUE) return std::nullopt; // NOLINT(performance-no-int-to-ptr): the platform's constant
    BY_HANDLE_FILE_INFORMATION facts{};
    const BOOL known = GetFileInformationByHandle(file, &facts);
    CloseHandle(file);
    if (known == 0) return std::nullopt;
    constexpr unsigned half = 32;
    return FileIdentity{facts.dwVolumeSerialNumber,
                        static_cast<std::uint64_t>(facts.nFileIndexHigh) << half | facts.nFileIndexLow};
}

} // namespace ledger
