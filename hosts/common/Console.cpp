#include "hosts/common/Console.h"

#include <windows.h>

#include <fcntl.h>
#include <io.h>
#include <shellapi.h>

#include <cstdio>
#include <memory>

#include "hosts/common/HostError.h"
#include "hosts/common/Text.h"
#include "hosts/common/Utf8.h"

namespace hosts {

namespace {

void Write(std::FILE* stream, std::wstring_view text) {
    const std::string bytes = ToUtf8(text);
    if (std::fwrite(bytes.data(), 1, bytes.size(), stream) != bytes.size() && stream == stdout)
        throw OutputError(L"standard output takes nothing any more");
}

struct FreeLocal {
    void operator()(wchar_t** memory) const noexcept { LocalFree(memory); }
};

} // namespace

void PrepareConsole() {
    _setmode(_fileno(stdout), _O_BINARY);
    _setmode(_fileno(stderr), _O_BINARY);
    SetConsoleOutputCP(CP_UTF8);
}

void PrintText(std::wstring_view text) { Write(stdout, text); }

void PrintLine(std::wstring_view line) { PrintText(std::wstring(line) + L'\n'); }

void FlushOut() {
    if (std::fflush(stdout) != 0) throw OutputError(L"standard output takes nothing any more");
}

void ReportText(std::wstring_view text) {
    // There is nowhere left to tell that a report could not be made.
    static_cast<void>(std::fflush(stdout));
    Write(stderr, text);
    static_cast<void>(std::fflush(stderr));
}

void ReportLine(std::wstring_view line) { ReportText(std::wstring(line) + L'\n'); }

std::vector<std::wstring> ProgramArguments() {
    int count = 0;
    const std::unique_ptr<wchar_t*, FreeLocal> arguments(CommandLineToArgvW(GetCommandLineW(), &count));
    if (!arguments) return {};
    return {arguments.get() + 1, arguments.get() + count};
}

int RunProgram(std::wstring_view name, int (*body)(const std::vector<std::wstring>&)) {
    PrepareConsole();
    std::wstring message;
    try {
        const int result = body(ProgramArguments());
        FlushOut();
        return result;
    } catch (const HostError& error) {
        message = OneLine(error.Message());
    } catch (const std::bad_alloc&) {
        message = L"out of memory";
    } catch (const std::exception& error) {
        message = FromOwnUtf8(error.what());
    }
    ReportLine(std::wstring(name) + L": " + message);
    return 1;
}

} // namespace hosts
