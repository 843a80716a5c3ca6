// A window's side of its object for screen readers: it hands the object out, the same one as long as the window lives,
// and takes it out of service in the end.
#pragma once

#include <optional>

#include "dialogs/AccessibleWindow.h"
#include "dialogs/Oleacc.h"

namespace kestrel::dialogs {

template <class Object>
class AccessibleOwner {
  public:
    AccessibleOwner() noexcept = default;
    // It ends its object.
    AccessibleOwner(const AccessibleOwner&) = delete;
    AccessibleOwner& operator=(const AccessibleOwner&) = delete;
    ~AccessibleOwner() { End(); }

    // What the window does with WM_GETOBJECT; nothing when it is not for the object, or the system cannot hand it out.
    // The object is made when it is first asked for.
    template <class Create>
    std::optional<LRESULT> Answer(WPARAM wParam, LPARAM lParam, Create create) {
        if (static_cast<LONG>(lParam) != OBJID_CLIENT) return std::nullopt;
        if (!mvarObject) mvarObject = ComPtr<Object>(create());
        const LRESULT result = ResultOfObject(wParam, mvarObject.Get());
        return result != 0 ? std::optional<LRESULT>(result) : std::nullopt;
    }
    // Before the window goes.
    void End() noexcept {
        const ComPtr<Object> ended = std::move(mvarObject);
        if (ended) ended->Disconnect();
    }

  private:
    ComPtr<Object> mvarObject;
};

} // namespace kestrel::dialogs
