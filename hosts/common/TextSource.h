// A text file or standard input, some lines at a time: whatever its length, only so much of it is in memory.
#pragma once

#include <cstddef>
#include <cstdio>
#include <memory>
#include <optional>
#include <string>

namespace hosts {

class TextSource {
  public:
    // The file's text, or standard input's where the path is "-", which is copied into a file that goes with this one.
    // UTF-8, or UTF-16 with a byte order mark, or the code page named. Fails with HostError on a file that cannot be
    // read.
    explicit TextSource(const std::wstring& path, std::optional<unsigned> codePage = std::nullopt);

    // The next lines, none of them broken, without the byte order mark; empty at the end. Fails with HostError on bytes
    // that are not in the encoding, with the number of the first bad line.
    [[nodiscard]] std::wstring Next();
    // Next begins with the first line again.
    void Rewind();

  private:
    enum class Encoding { Utf8, Utf16Little, Utf16Big, CodePage };

    [[nodiscard]] std::string NextBytes();
    [[nodiscard]] Encoding EncodingOf(std::string& first) const;
    [[nodiscard]] std::wstring Decoded(const std::string& bytes) const;

    std::wstring mvarName; // for people
    std::optional<unsigned> mvarCodePage;
    std::unique_ptr<std::FILE, int (*)(std::FILE*)> mvarFile;
    std::optional<Encoding> mvarEncoding; // from the first lines on
    std::string mvarRest;                 // read already, of a line that goes on
    std::size_t mvarLines = 0;            // that Next has returned
};

} // namespace hosts
