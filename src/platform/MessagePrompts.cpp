#include "platform/MessagePrompts.h"

#include <array>
#include <vector>

#include "platform/Module.h"

namespace kestrel {

namespace {

int Show(const String& text, UINT style) {
    const HWND owner = GetActiveWindow();
    // Without an owner the host's windows would stay open to input while the box waits.
    const UINT modality = owner == nullptr ? MB_TASKMODAL : 0;
    return MessageBoxW(owner, text.c_str(), ApplicationName(ModulePath(nullptr)).c_str(), style | modality);
}

std::vector<BYTE> VersionBlock(const String& path) {
    DWORD unused = 0;
    std::vector<BYTE> block(GetFileVersionInfoSizeW(path.c_str(), &unused));
    if (block.empty() || !GetFileVersionInfoW(path.c_str(), 0, static_cast<DWORD>(block.size()), block.data()))
        return {};
    return block;
}

String FileDescription(const String& path) {
    struct Translation {
        WORD language;
        WORD codePage;
    };
    const auto block = VersionBlock(path);
    void* value = nullptr;
    UINT size = 0;
    if (block.empty() || !VerQueryValueW(block.data(), L"\\VarFileInfo\\Translation", &value, &size) ||
        size < sizeof(Translation))
        return {};
    const auto* translation = static_cast<const Translation*>(value);
    std::array<wchar_t, 64> query{};
    wsprintfW(query.data(), L"\\StringFileInfo\\%04x%04x\\FileDescription", translation->language,
              translation->codePage);
    // The size counts characters and the terminating NUL.
    if (!VerQueryValueW(block.data(), query.data(), &value, &size) || size < 2) return {};
    return String(static_cast<const wchar_t*>(value));
}

} // namespace

String ApplicationName(const String& programPath) {
    const String description = Trim(FileDescription(programPath));
    return description.empty() ? programPath.substr(programPath.find_last_of(L'\\') + 1) : description;
}

bool MessagePrompts::Ask(const String& question) { return Show(question, MB_YESNO | MB_ICONQUESTION) == IDYES; }

bool MessagePrompts::AskDefaultNo(const String& question) {
    return Show(question, MB_YESNO | MB_ICONQUESTION | MB_DEFBUTTON2) == IDYES;
}

void MessagePrompts::Inform(const String& text) { Show(text, MB_OK | MB_ICONINFORMATION); }

void MessagePrompts::Warn(const String& text) { Show(text, MB_OK | MB_ICONEXCLAMATION); }

} // namespace kestrel
