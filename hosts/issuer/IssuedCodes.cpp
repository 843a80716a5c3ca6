#include "hosts/issuer/IssuedCodes.h"

#include <share.h>

#include <algorithm>

#include "hosts/common/HostError.h"
#include "hosts/common/TextFile.h"
#include "hosts/common/Utf8.h"

namespace hosts {

bool Matches(std::wstring_view code, std::wstring_view pattern) noexcept {
    const auto agrees = [](wchar_t character, wchar_t wanted) { return wanted == L'?' || character == wanted; };
    return code.size() == pattern.size() && std::equal(code.begin(), code.end(), pattern.begin(), agrees);
}

IssuedCodes::IssuedCodes(const std::wstring& path) : mvarFile(_wfsopen(path.c_str(), L"ab", _SH_DENYWR)) {
    if (!mvarFile)
        throw HostError(L"cannot write to \"" + path + L"\"; check the path, and whether another program holds it");
    const std::wstring text = ReadTextFile(path);
    for (std::size_t begin = 0; begin < text.size();) {
        const std::size_t end = std::min(text.find_first_of(L"\r\n", begin), text.size());
        if (end > begin) Remember(text.substr(begin, end - begin));
        begin = end + 1;
    }
}

std::wstring IssuedCodes::LastMatching(std::wstring_view pattern) const {
    const auto matches = [pattern](const std::wstring& code) { return Matches(code, pattern); };
    const auto found = std::find_if(mvarCodes.rbegin(), mvarCodes.rend(), matches);
    return found == mvarCodes.rend() ? std::wstring() : *found;
}

void IssuedCodes::Add(const std::wstring& code) {
    if (mvarFile) {
        const std::string line = ToUtf8(code) + '\n';
        if (std::fwrite(line.data(), 1, line.size(), mvarFile.get()) != line.size() || std::fflush(mvarFile.get()) != 0)
            throw HostError(L"cannot store code " + code + L"; check the space left on the disk");
    }
    Remember(code);
}

void IssuedCodes::Remember(const std::wstring& code) {
    mvarCodes.push_back(code);
    mvarKnown.insert(code);
}

} // namespace hosts
