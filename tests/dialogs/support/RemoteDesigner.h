// The designer of another program, read and worked from outside.
#pragma once

#include "dialogs/support/Reader.h"
#include "dialogs/support/SampleRule.h"
#include "dialogs/support/Screen.h"
#include "resources/dialogids.h"

namespace kestrel::test {

// The name of a band as a reader says it, less what is found about the band.
[[nodiscard]] inline String WithoutFindings(const String& name) { return name.substr(0, name.find(L", [")); }

struct RemoteDesigner {
    explicit RemoteDesigner(const String& language, const wchar_t* dialog = L"designer", const String& folder = {})
        : host(dialog, language, folder), screen(host.Window()), strip(Strip()) {}
    [[nodiscard]] HWND Strip() const { return screen.Control(ID_picBand); }
    void Key(unsigned key) const { SendMessageW(Strip(), WM_KEYDOWN, key, 0); }
    // What the control says; another process is not told by the functions that read one's own windows.
    [[nodiscard]] String Text(int id) const {
        wchar_t text[128] = {};
        SendMessageW(screen.Control(id), WM_GETTEXT, 128, reinterpret_cast<LPARAM>(text));
        return text;
    }
    void Edit(int id, const wchar_t* text) const {
        SendMessageW(screen.Control(id), WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text));
        SendMessageW(screen.Window(), WM_COMMAND, MAKEWPARAM(id, EN_KILLFOCUS), 0);
    }

    DialogHost host;
    Screen screen;
    Reading strip;
};

} // namespace kestrel::test
