#include "hosts/common/TextFile.h"

#include <fcntl.h>
#include <io.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string_view>

#include "hosts/common/HostError.h"
#include "hosts/common/NewFile.h"
#include "hosts/common/Utf8.h"

namespace hosts {

namespace {

constexpr std::string_view MarkUtf8 = "\xEF\xBB\xBF";
constexpr std::string_view MarkUtf16Little = "\xFF\xFE";
constexpr std::string_view MarkUtf16Big = "\xFE\xFF";

std::string ReadBytes(const std::wstring& path) {
    std::error_code error;
    if (std::filesystem::is_directory(path, error)) throw HostError(L"\"" + path + L"\" is a folder, not a file");
    std::ifstream file(std::filesystem::path(path), std::ios::binary);
    if (!file) throw HostError(L"cannot open \"" + path + L"\"; check the path and the right to read it");
    std::string bytes((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
    if (file.bad()) throw HostError(L"cannot read \"" + path + L"\" to its end");
    return bytes;
}

std::string ReadStandardInput() {
    static_cast<void>(_setmode(_fileno(stdin), _O_BINARY));
    std::string bytes;
    std::array<char, 65536> piece{};
    while (const std::size_t size = std::fread(piece.data(), 1, piece.size(), stdin))
        bytes.append(piece.data(), size);
    if (std::ferror(stdin) != 0) throw HostError(L"cannot read standard input to its end");
    return bytes;
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

std::wstring Decode(std::string_view bytes, const std::wstring& path) {
    if (bytes.starts_with(MarkUtf16Little)) return FromUtf16(bytes.substr(2), false);
    if (bytes.starts_with(MarkUtf16Big)) return FromUtf16(bytes.substr(2), true);
    if (bytes.starts_with(MarkUtf8)) bytes.remove_prefix(MarkUtf8.size());
    if (auto text = FromUtf8(bytes)) return *std::move(text);
    throw HostError(L"\"" + path + L"\" is not UTF-8 (line " + std::to_wstring(FirstBadLine(bytes)) +
                    L"); save it as UTF-8 or name its code page");
}

std::wstring TextOf(const std::string& bytes, const std::wstring& path, std::optional<unsigned> codePage) {
    if (!codePage) return Decode(bytes, path);
    constexpr unsigned utf8 = 65001;
    if (*codePage == utf8) return Decode(bytes, path); // its byte order mark is none of the text
    if (auto text = FromCodePage(bytes, *codePage)) return *std::move(text);
    throw HostError(L"\"" + path + L"\" is not in code page " + std::to_wstring(*codePage));
}

} // namespace

std::wstring ReadTextFile(const std::wstring& path, std::optional<unsigned> codePage) {
    return TextOf(ReadBytes(path), path, codePage);
}

std::wstring ReadTextInput(const std::wstring& path, std::optional<unsigned> codePage) {
    if (path != L"-") return ReadTextFile(path, codePage);
    return TextOf(ReadStandardInput(), L"standard input", codePage);
}

std::wstring ReadDefinitionFile(const std::wstring& path) {
    std::wstring text = ReadTextFile(path);
    std::wstring definition;
    definition.reserve(text.size());
    for (std::size_t at = 0; at < text.size(); ++at) {
        if (text[at] == L'\n' && at > 0 && text[at - 1] == L'\r') continue;
        definition.push_back(text[at] == L'\n' ? L'\r' : text[at]);
    }
    definition.erase(definition.find_last_not_of(L'\r') + 1);
    return definition;
}

void WriteTextFile(const std::wstring& path, const std::wstring& text) {
    NewFile file(path);
    file.Write(text);
    file.Keep();
}

} // namespace hosts
