#include "dialogs/ControlNames.h"

#include <commctrl.h>

#include <algorithm>

#include "dialogs/AccessibleOwner.h"
#include "dialogs/Control.h"
#include "dialogs/Subclass.h"
#include "platform/Bstr.h"

namespace kestrel::dialogs {

namespace {

// The kinds of controls whose own text is no name.
constexpr const wchar_t* namelessClasses[] = {WC_COMBOBOXW, WC_LISTBOXW, WC_LISTVIEWW, WC_TREEVIEWW, UPDOWN_CLASSW};

bool HasClass(HWND window, const wchar_t* name) noexcept {
    wchar_t actual[32] = {};
    GetClassNameW(window, actual, 32);
    return lstrcmpiW(actual, name) == 0;
}

bool IsNameless(HWND window) noexcept {
    return std::any_of(std::begin(namelessClasses), std::end(namelessClasses),
                       [window](const wchar_t* name) { return HasClass(window, name); });
}

bool IsFrame(HWND window) noexcept {
    return HasClass(window, WC_BUTTONW) && (GetWindowLongW(window, GWL_STYLE) & BS_TYPEMASK) == BS_GROUPBOX;
}

// What the system cannot know of a control; nothing where the system's own answer holds.
struct Told {
    std::function<String()> name;
    std::function<String()> description;
};

// The system's object for a control, under another name or with a description.
class NamedObject final : public AccessibleWindow {
  public:
    NamedObject(HWND window, Told told) : AccessibleWindow(window), mvarTold(std::move(told)) {}

    STDMETHODIMP get_accName(VARIANT child, BSTR* name) noexcept override {
        if (!mvarTold.name || !IsSelf(child)) return AccessibleWindow::get_accName(child, name);
        return Tell(mvarTold.name, name);
    }
    STDMETHODIMP get_accDescription(VARIANT child, BSTR* description) noexcept override {
        if (!mvarTold.description || !IsSelf(child)) return AccessibleWindow::get_accDescription(child, description);
        return Tell(mvarTold.description, description);
    }

  private:
    static bool IsSelf(const VARIANT& child) noexcept { return V_VT(&child) == VT_I4 && V_I4(&child) == CHILDID_SELF; }

    HRESULT Tell(const std::function<String()>& source, BSTR* text) noexcept {
        if (text == nullptr) return E_INVALIDARG;
        *text = nullptr;
        return Answer([&] {
            *text = Bstr(source()).Detach();
            return S_OK;
        });
    }

    Told mvarTold;
};

} // namespace

class ControlNames::NamedControl final : public Subclass {
  public:
    NamedControl(HWND window, Told told) : mvarTold(std::move(told)) { Attach(window); }

  protected:
    std::optional<LRESULT> Handle(UINT message, WPARAM wParam, LPARAM lParam) override {
        if (message == WM_DESTROY) mvarObject.End();
        if (message != WM_GETOBJECT) return std::nullopt;
        return mvarObject.Answer(wParam, lParam, [this] { return new NamedObject(Window(), mvarTold); });
    }

  private:
    Told mvarTold;
    AccessibleOwner<NamedObject> mvarObject;
};

ControlNames::ControlNames() noexcept = default;
ControlNames::~ControlNames() = default;

String WithoutAccessKey(const String& text) {
    String plain;
    for (std::size_t place = 0; place < text.size(); ++place) {
        if (text[place] == L'&' && place + 1 < text.size()) ++place; // two stand for one
        plain += text[place];
    }
    return plain;
}

String NameBefore(HWND control) {
    const auto box =
        reinterpret_cast<HWND>(HasClass(control, UPDOWN_CLASSW) ? SendMessageW(control, UDM_GETBUDDY, 0, 0) : 0);
    const HWND before = GetWindow(box != nullptr ? box : control, GW_HWNDPREV);
    const bool tells = HasClass(before, WC_STATICW) || IsFrame(before);
    return WithoutAccessKey(WindowText(tells ? before : GetParent(control)));
}

void ControlNames::NameAll(HWND form) {
    for (HWND child = GetWindow(form, GW_CHILD); child != nullptr; child = GetWindow(child, GW_HWNDNEXT))
        if (IsNameless(child)) Name(child, {});
}

void ControlNames::Name(HWND control, const String& name) {
    const auto told = [control, name] { return name.empty() ? NameBefore(control) : name; };
    mvarControls.push_back(std::make_unique<NamedControl>(control, Told{told, {}}));
}

void ControlNames::Describe(HWND control, std::function<String()> description) {
    mvarControls.push_back(std::make_unique<NamedControl>(control, Told{{}, std::move(description)}));
}

} // namespace kestrel::dialogs
