// A host for readers in other processes: shows one dialog on the invoice rule and ends when it is closed.
// usage: dialog_host DIALOG LANGUAGE
// DIALOG: one of support/ShowDialog.h, or strip: the designer with more bands than it can show at once; LANGUAGE:
// English, German. Every question is answered with yes.
#include <windows.h>

#include <objbase.h>

#include "common/Ports.h"
#include "dialogs/WindowsDialogs.h"
#include "dialogs/support/ShowDialog.h"
#include "dialogs/support/TableStrings.h"
#include "platform/PlatformPorts.h"
#include "support/StandIns.h"

int wmain(int argc, wchar_t** argv) {
    using namespace kestrel;
    using namespace kestrel::test;
    if (argc != 3 || FAILED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED))) return 2;
    {
        InstallPlatformPorts();
        const bool german = StringView(argv[2]) == L"German";
        static const TableStrings strings(german ? Language::German : Language::English);
        static ScriptedPrompts prompts;
        static dialogs::WindowsDialogs windows;
        InstallPorts({&strings, &TheText(), &prompts, &windows});
        const auto rule = InvoiceRule();
        const bool strip = StringView(argv[1]) == L"strip";
        if (strip) AddCounters(*rule, 6);
        ShowDialog(*rule, strip ? L"designer" : argv[1]);
    }
    CoUninitialize();
    return 0;
}
