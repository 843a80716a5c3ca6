#include "platform/MessagePrompts.h"

#include <array>
#include <vector>

#include "platform/Module.h"
#include "platform/SystemLibrary.h"

namespace kestrel {

namespace {

// Whether people can see windows of this process: nobody sees those of a service, a scheduled task or a web server, and
// a box there would wait for ever.
bool HasVisibleStation() noexcept {
    USEROBJECTFLAGS flags{};
    return !GetUserObjectInformationW(GetProcessWindowStation(), UOI_FLAGS, &flags, sizeof(flags), nullptr) ||
           (flags.dwFlags & WSF_VISIBLE) != 0;
}

// The button pressed; 0 when nobody could press any.
int Show(const String& text, UINT style) {
    if (!HasVisibleStation()) return 0;
    const HWND owner = GetActiveWindow();
    // Without an owner the host's windows would stay open to input while the box waits.
    const UINT modality = owner == nullptr ? MB_TASKMODAL : 0;
    return MessageBoxW(owner, text.c_str(), ApplicationName(ModulePath(nullptr)).c_str(), style | modality);
}

// What Windows reads a file's version with. The library is none of those that are taken from the system's folder even
// when imported, so it is no import.
class VersionReader {
  public:
    // The text that the file tells of itself; empty when it tells none.
    [[nodiscard]] String Description(const String& path) const {
        const auto block = BlockOf(path);
        const auto translation = block.empty() ? Value() : ValueIn(block, L"\\VarFileInfo\\Translation");
        if (translation.size < 2 * sizeof(WORD)) return {};
        const auto* languageAndCodePage = static_cast<const WORD*>(translation.start);
        std::array<wchar_t, 64> query{};
        wsprintfW(query.data(), L"\\StringFileInfo\\%04x%04x\\FileDescription", languageAndCodePage[0],
                  languageAndCodePage[1]);
        const auto description = ValueIn(block, query.data());
        // The size counts characters and the terminating NUL.
        return description.size < 2 ? String() : String(static_cast<const wchar_t*>(description.start));
    }

  private:
    struct Value {
        const void* start = nullptr;
        UINT size = 0;
    };

    [[nodiscard]] std::vector<BYTE> BlockOf(const String& path) const {
        if (mvarSize == nullptr || mvarRead == nullptr || mvarQuery == nullptr) return {};
        DWORD unused = 0;
        std::vector<BYTE> block(mvarSize(path.c_str(), &unused));
        if (block.empty() || !mvarRead(path.c_str(), 0, static_cast<DWORD>(block.size()), block.data())) return {};
        return block;
    }

    [[nodiscard]] Value ValueIn(const std::vector<BYTE>& block, const wchar_t* query) const {
        void* start = nullptr;
        UINT size = 0;
        return mvarQuery(block.data(), query, &start, &size) ? Value{start, size} : Value();
    }

    SystemLibrary mvarLibrary{L"version.dll"};
    decltype(&GetFileVersionInfoSizeW) mvarSize =
        mvarLibrary.Find<decltype(&GetFileVersionInfoSizeW)>("GetFileVersionInfoSizeW");
    decltype(&GetFileVersionInfoW) mvarRead = mvarLibrary.Find<decltype(&GetFileVersionInfoW)>("GetFileVersionInfoW");
    decltype(&VerQueryValueW) mvarQuery = mvarLibrary.Find<decltype(&VerQueryValueW)>("VerQueryValueW");
};

} // namespace

String ApplicationName(const String& programPath) {
    const String description = Trim(VersionReader().Description(programPath));
    return description.empty() ? programPath.substr(programPath.find_last_of(L'\\') + 1) : description;
}

bool MessagePrompts::Ask(const String& question) { return Show(question, MB_YESNO | MB_ICONQUESTION) == IDYES; }

bool MessagePrompts::AskDefaultNo(const String& question) {
    return Show(question, MB_YESNO | MB_ICONQUESTION | MB_DEFBUTTON2) == IDYES;
}

void MessagePrompts::Inform(const String& text) { Show(text, MB_OK | MB_ICONINFORMATION); }

void MessagePrompts::Warn(const String& text) { Show(text, MB_OK | MB_ICONEXCLAMATION); }

} // namespace kestrel
