// The codes issued so far, in the order of their issue, and in a file when one is named.
#pragma once

#include <cstdio>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

namespace hosts {

class IssuedCodes {
  public:
    // Codes in memory only.
    IssuedCodes() = default;
    // The codes of a file, one a line; it is made when there is none. Nobody else can write to it as long as this
    // lives. Fails with HostError when the file cannot be read or written, or when another program holds it.
    explicit IssuedCodes(const std::wstring& path);

    // The last one issued that the pattern matches; empty when there is none.
    [[nodiscard]] std::wstring LastMatching(std::wstring_view pattern) const;
    [[nodiscard]] bool Contains(const std::wstring& code) const { return mvarKnown.contains(code); }
    // Is in the file when this returns; fails with HostError when it cannot be.
    void Add(const std::wstring& code);

  private:
    struct Close {
        void operator()(std::FILE* file) const noexcept { static_cast<void>(std::fclose(file)); }
    };

    void Remember(const std::wstring& code);

    std::vector<std::wstring> mvarCodes;
    std::unordered_set<std::wstring> mvarKnown;
    std::unique_ptr<std::FILE, Close> mvarFile;
};

// Whether the code is as long as the pattern and agrees with it where the pattern has no "?".
[[nodiscard]] bool Matches(std::wstring_view code, std::wstring_view pattern) noexcept;

} // namespace hosts
