#include "hosts/common/TextSource.h"

#include <fcntl.h>
#include <io.h>

#include <windows.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <string_view>
#include <utility>

#include "hosts/common/HostError.h"
#include "hosts/common/Utf8.h"

namespace hosts {

namespace {

using File = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;

constexpr std::size_t PieceSize = 65536;
constexpr std::string_view MarkUtf8 = "\xEF\xBB\xBF";
constexpr std::string_view MarkUtf16Little = "\xFF\xFE";
constexpr std::string_view MarkUtf16Big = "\xFE\xFF";
constexpr unsigned CodePageUtf8 = 65001;

[[noreturn]] void FailToRead(const std::wstring& name) { throw HostError(L"cannot read \"" + name + L"\" to its end"); }

// The bytes that are there, as many as there is room for; none at the end.
std::string_view ReadPiece(std::FILE* file, std::array<char, PieceSize>& room, const std::wstring& name) {
    const std::size_t size = std::fread(room.data(), 1, room.size(), file);
    if (std::ferror(file) != 0) FailToRead(name);
    return {room.data(), size};
}

// A file that goes away when it is closed, however the program ends.
File TemporaryFile() {
    std::array<wchar_t, MAX_PATH + 1> folder{};
    std::array<wchar_t, MAX_PATH + 1> path{};
    const bool isNamed = GetTempPathW(static_cast<DWORD>(folder.size()), folder.data()) != 0 &&
                         GetTempFileNameW(folder.data(), L"led", 0, path.data()) != 0;
    File file(isNamed ? _wfopen(path.data(), L"w+bTD") : nullptr, std::fclose);
    if (!file) throw HostError(L"cannot keep standard input in a temporary file; check TEMP");
    return file;
}

File StandardInput(const std::wstring& name) {
    static_cast<void>(_setmode(_fileno(stdin), _O_BINARY));
    File copy = TemporaryFile();
    std::array<char, PieceSize> room{};
    for (;;) {
        const std::string_view piece = ReadPiece(stdin, room, name);
        if (piece.empty()) break;
        if (std::fwrite(piece.data(), 1, piece.size(), copy.get()) != piece.size()) FailToRead(name);
    }
    std::rewind(copy.get());
    return copy;
}

File OpenFile(const std::wstring& path) {
    std::error_code error;
    if (std::filesystem::is_directory(path, error)) throw HostError(L"\"" + path + L"\" is a folder, not a file");
    File file(_wfopen(path.c_str(), L"rb"), std::fclose);
    if (!file) throw HostError(L"cannot open \"" + path + L"\"; check the path and the right to read it");
    return file;
}

std::wstring FromUtf16(std::string_view bytes, bool bigEndian) {
    std::wstring text;
    text.reserve(bytes.size() / 2);
    for (std::size_t at = 0; at + 1 < bytes.size(); at += 2) {
        const unsigned first = static_cast<unsigned char>(bytes[at]);
        const unsigned second = static_cast<unsigned char>(bytes[at + 1]);
        text.push_back(static_cast<wchar_t>(bigEndian ? first << 8 | second : second << 8 | first));
    }
    return text;
}

std::size_t FirstBadLine(std::string_view bytes) {
    std::size_t line = 1;
    while (!bytes.empty()) {
        const std::size_t end = std::min(bytes.find('\n'), bytes.size() - 1) + 1;
        if (!FromUtf8(bytes.substr(0, end))) return line;
        bytes.remove_prefix(end);
        ++line;
    }
    return line;
}

// Where what follows the last line feed begins; 0 without one. There is none before `from`.
std::size_t EndOfLines(std::string_view bytes, std::size_t from, std::string_view lineFeed) {
    const std::size_t unit = lineFeed.size();
    for (std::size_t end = bytes.size() / unit * unit; end >= from + unit; end -= unit)
        if (bytes.substr(end - unit, unit) == lineFeed) return end;
    return 0;
}

} // namespace

TextSource::TextSource(const std::wstring& path, std::optional<unsigned> codePage)
    : mvarName(path == L"-" ? L"standard input" : path), mvarCodePage(codePage),
      mvarFile(path == L"-" ? StandardInput(mvarName) : OpenFile(path)) {}

void TextSource::Rewind() {
    std::rewind(mvarFile.get());
    mvarEncoding.reset();
    mvarRest.clear();
    mvarLines = 0;
}

std::wstring TextSource::Next() {
    const std::string bytes = NextBytes();
    std::wstring text = Decoded(bytes);
    mvarLines += static_cast<std::size_t>(std::ranges::count(text, L'\n'));
    return text;
}

std::string TextSource::NextBytes() {
    using namespace std::string_view_literals;
    std::string bytes = std::exchange(mvarRest, {});
    std::array<char, PieceSize> room{};
    for (;;) {
        const std::string_view piece = ReadPiece(mvarFile.get(), room, mvarName);
        const std::size_t from = bytes.size() / 2 * 2; // where whole characters begin in every encoding
        bytes += piece;
        if (!mvarEncoding) mvarEncoding = EncodingOf(bytes);
        if (piece.empty()) return bytes;
        const std::string_view lineFeed = *mvarEncoding == Encoding::Utf16Little ? "\n\0"sv
                                          : *mvarEncoding == Encoding::Utf16Big  ? "\0\n"sv
                                                                                 : "\n"sv;
        const std::size_t end = EndOfLines(bytes, std::min(from, bytes.size()), lineFeed);
        if (end == 0) continue;
        mvarRest = bytes.substr(end);
        bytes.resize(end);
        return bytes;
    }
}

// Takes the byte order mark off; a code page has none.
TextSource::Encoding TextSource::EncodingOf(std::string& first) const {
    if (mvarCodePage && *mvarCodePage != CodePageUtf8) return Encoding::CodePage;
    const auto takes = [&first](std::string_view mark) {
        const bool isThere = first.starts_with(mark);
        if (isThere) first.erase(0, mark.size());
        return isThere;
    };
    if (takes(MarkUtf16Little)) return Encoding::Utf16Little;
    if (takes(MarkUtf16Big)) return Encoding::Utf16Big;
    takes(MarkUtf8);
    return Encoding::Utf8;
}

std::wstring TextSource::Decoded(const std::string& bytes) const {
    if (*mvarEncoding == Encoding::Utf16Little || *mvarEncoding == Encoding::Utf16Big)
        return FromUtf16(bytes, *mvarEncoding == Encoding::Utf16Big);
    if (*mvarEncoding == Encoding::CodePage) {
        if (auto text = FromCodePage(bytes, *mvarCodePage)) return *std::move(text);
        throw HostError(L"\"" + mvarName + L"\" is not in code page " + std::to_wstring(*mvarCodePage));
    }
    if (auto text = FromUtf8(bytes)) return *std::move(text);
    throw HostError(L"\"" + mvarName + L"\" is not UTF-8 (line " + std::to_wstring(mvarLines + FirstBadLine(bytes)) +
                    L"); save it as UTF-8 or name its code page");
}

} // namespace hosts
