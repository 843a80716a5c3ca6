#include "hosts/common/TextFile.h"

#include "hosts/common/NewFile.h"
#include "hosts/common/TextSource.h"

namespace hosts {

std::wstring ReadTextFile(const std::wstring& path, std::optional<unsigned> codePage) {
    TextSource source(path, codePage);
    std::wstring text;
    for (;;) {
        const std::wstring lines = source.Next();
        if (lines.empty()) return text;
        text += lines;
    }
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
