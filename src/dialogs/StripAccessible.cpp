#include "dialogs/StripAccessible.h"

#include <algorithm>

#include "platform/Bstr.h"

namespace kestrel::dialogs {

namespace {

int BoxOf(LONG child) noexcept { return static_cast<int>(child) - 1; }
LONG ChildOf(int box) noexcept { return box + 1; }

void Store(VARIANT* target, LONG value) noexcept {
    V_VT(target) = VT_I4;
    V_I4(target) = value;
}

// Nothing, which is an answer.
HRESULT StoreNothing(VARIANT* target) noexcept {
    V_VT(target) = VT_EMPTY;
    return S_FALSE;
}

HRESULT StoreChild(VARIANT* target, LONG child) noexcept {
    Store(target, child);
    return S_OK;
}

std::vector<String> Sorted(std::vector<String> names) {
    std::sort(names.begin(), names.end());
    return names;
}

bool Contains(const RECT& place, POINT point) noexcept { return PtInRect(&place, point) != FALSE; }

} // namespace

bool StripAccessible::IsKnown(const VARIANT& child) const {
    return V_VT(&child) == VT_I4 && V_I4(&child) >= CHILDID_SELF && V_I4(&child) <= mvarContent.BoxCount();
}

template <class Body>
HRESULT StripAccessible::AnswerFor(const VARIANT& child, Body body) const noexcept {
    return Answer([&] { return IsKnown(child) ? body(V_I4(&child)) : E_INVALIDARG; });
}

HRESULT StripAccessible::NoText(const VARIANT& child, BSTR* text) const noexcept {
    if (text == nullptr) return E_INVALIDARG;
    *text = nullptr;
    return AnswerFor(child, [](LONG) { return S_FALSE; });
}

STDMETHODIMP StripAccessible::get_accChildCount(LONG* count) noexcept {
    if (count == nullptr) return E_INVALIDARG;
    *count = 0;
    return Answer([&] {
        *count = mvarContent.BoxCount();
        return S_OK;
    });
}

STDMETHODIMP StripAccessible::get_accChild(VARIANT child, IDispatch** object) noexcept {
    if (object == nullptr) return E_INVALIDARG;
    *object = nullptr;
    return AnswerFor(child, [&](LONG number) -> HRESULT {
        if (number != CHILDID_SELF) return S_FALSE; // asked by its number
        return QueryInterface(__uuidof(IDispatch), reinterpret_cast<void**>(object));
    });
}

STDMETHODIMP StripAccessible::get_accName(VARIANT child, BSTR* name) noexcept {
    if (name == nullptr) return E_INVALIDARG;
    *name = nullptr;
    return AnswerFor(child, [&](LONG number) {
        *name = Bstr(number == CHILDID_SELF ? mvarContent.Caption() : mvarContent.BoxName(BoxOf(number))).Detach();
        return S_OK;
    });
}

STDMETHODIMP StripAccessible::get_accValue(VARIANT child, BSTR* value) noexcept { return NoText(child, value); }

STDMETHODIMP StripAccessible::get_accDescription(VARIANT child, BSTR* description) noexcept {
    return NoText(child, description);
}

STDMETHODIMP StripAccessible::get_accHelp(VARIANT child, BSTR* help) noexcept { return NoText(child, help); }

STDMETHODIMP StripAccessible::get_accKeyboardShortcut(VARIANT child, BSTR* shortcut) noexcept {
    return NoText(child, shortcut);
}

STDMETHODIMP StripAccessible::get_accRole(VARIANT child, VARIANT* role) noexcept {
    if (role == nullptr) return E_INVALIDARG;
    V_VT(role) = VT_EMPTY;
    return AnswerFor(child, [&](LONG number) {
        return StoreChild(role, number == CHILDID_SELF ? ROLE_SYSTEM_LIST : ROLE_SYSTEM_LISTITEM);
    });
}

STDMETHODIMP StripAccessible::get_accState(VARIANT child, VARIANT* state) noexcept {
    if (state == nullptr) return E_INVALIDARG;
    V_VT(state) = VT_EMPTY;
    return AnswerFor(child, [&](LONG number) { return StoreChild(state, StateOf(number)); });
}

LONG StripAccessible::StateOf(LONG child) const {
    LONG state = STATE_SYSTEM_FOCUSABLE;
    if (IsWindowEnabled(Window()) == FALSE || IsWindowEnabled(GetAncestor(Window(), GA_ROOT)) == FALSE)
        state = STATE_SYSTEM_UNAVAILABLE;
    if (IsWindowVisible(Window()) == FALSE) state |= STATE_SYSTEM_INVISIBLE;
    if (mvarContent.HasFocus() && child == FocusedChild()) state |= STATE_SYSTEM_FOCUSED;
    if (child == CHILDID_SELF) return state;
    const int box = BoxOf(child);
    state |= STATE_SYSTEM_SELECTABLE;
    if (box == mvarContent.SelectedBox()) state |= STATE_SYSTEM_SELECTED;
    RECT seen{};
    const RECT place = mvarContent.BoxPlace(box);
    const RECT visible = mvarContent.VisiblePlace();
    if (IntersectRect(&seen, &place, &visible) == FALSE) state |= STATE_SYSTEM_OFFSCREEN;
    return state;
}

// The keyboard works the selected box, and the list where there is none.
LONG StripAccessible::FocusedChild() const {
    return std::clamp<LONG>(ChildOf(mvarContent.SelectedBox()), CHILDID_SELF, mvarContent.BoxCount());
}

STDMETHODIMP StripAccessible::get_accFocus(VARIANT* child) noexcept {
    if (child == nullptr) return E_INVALIDARG;
    V_VT(child) = VT_EMPTY;
    return Answer([&] { return mvarContent.HasFocus() ? StoreChild(child, FocusedChild()) : StoreNothing(child); });
}

STDMETHODIMP StripAccessible::get_accSelection(VARIANT* children) noexcept {
    if (children == nullptr) return E_INVALIDARG;
    V_VT(children) = VT_EMPTY;
    return Answer([&] {
        const LONG selected = FocusedChild();
        return selected != CHILDID_SELF ? StoreChild(children, selected) : StoreNothing(children);
    });
}

STDMETHODIMP StripAccessible::get_accDefaultAction(VARIANT child, BSTR* action) noexcept {
    if (action == nullptr) return E_INVALIDARG;
    *action = nullptr;
    return AnswerFor(child, [&](LONG number) {
        if (number == CHILDID_SELF) return S_FALSE;
        *action = Bstr(mvarContent.ActionName()).Detach();
        return S_OK;
    });
}

HRESULT StripAccessible::Choose(LONG child) const {
    if ((StateOf(child) & STATE_SYSTEM_UNAVAILABLE) != 0) return E_ACCESSDENIED; // as the mouse has no access then
    if (child == CHILDID_SELF)
        mvarContent.TakeFocus();
    else
        mvarContent.ChooseBox(BoxOf(child));
    return S_OK;
}

STDMETHODIMP StripAccessible::accDoDefaultAction(VARIANT child) noexcept {
    return AnswerFor(child,
                     [&](LONG number) { return number != CHILDID_SELF ? Choose(number) : DISP_E_MEMBERNOTFOUND; });
}

// One box is selected at a time, and it is the one that the keyboard works: focus and selection go together.
STDMETHODIMP StripAccessible::accSelect(LONG flags, VARIANT child) noexcept {
    constexpr LONG together = SELFLAG_TAKEFOCUS | SELFLAG_TAKESELECTION;
    return AnswerFor(child, [&](LONG number) {
        if ((flags & ~together) != 0 || flags == 0) return E_INVALIDARG;
        if (number == CHILDID_SELF && flags != SELFLAG_TAKEFOCUS) return E_INVALIDARG;
        return Choose(number);
    });
}

STDMETHODIMP StripAccessible::accLocation(LONG* left, LONG* top, LONG* width, LONG* height, VARIANT child) noexcept {
    if (left == nullptr || top == nullptr || width == nullptr || height == nullptr) return E_INVALIDARG;
    *left = *top = *width = *height = 0;
    return AnswerFor(child, [&](LONG number) {
        const RECT place = number == CHILDID_SELF ? mvarContent.VisiblePlace() : mvarContent.BoxPlace(BoxOf(number));
        *left = place.left;
        *top = place.top;
        *width = place.right - place.left;
        *height = place.bottom - place.top;
        return S_OK;
    });
}

STDMETHODIMP StripAccessible::accNavigate(LONG direction, VARIANT start, VARIANT* end) noexcept {
    if (end == nullptr) return E_INVALIDARG;
    V_VT(end) = VT_EMPTY;
    const bool inwards = direction == NAVDIR_FIRSTCHILD || direction == NAVDIR_LASTCHILD;
    const bool ofList = V_VT(&start) == VT_I4 && V_I4(&start) == CHILDID_SELF;
    if (ofList && !inwards) return AccessibleWindow::accNavigate(direction, start, end); // to the windows beside it
    return AnswerFor(start, [&](LONG number) {
        if (inwards != (number == CHILDID_SELF)) return E_INVALIDARG; // items have no children
        const LONG count = mvarContent.BoxCount();
        LONG target = 0;
        switch (direction) {
        case NAVDIR_FIRSTCHILD: target = 1; break;
        case NAVDIR_LASTCHILD: target = count; break;
        case NAVDIR_NEXT:
        case NAVDIR_RIGHT: target = number + 1; break;
        case NAVDIR_PREVIOUS:
        case NAVDIR_LEFT: target = number - 1; break;
        default: break; // one row: nothing above or below
        }
        return target >= 1 && target <= count ? StoreChild(end, target) : StoreNothing(end);
    });
}

STDMETHODIMP StripAccessible::accHitTest(LONG left, LONG top, VARIANT* child) noexcept {
    if (child == nullptr) return E_INVALIDARG;
    V_VT(child) = VT_EMPTY;
    return Answer([&] {
        const POINT point{left, top};
        if (!Contains(mvarContent.VisiblePlace(), point)) return StoreNothing(child);
        for (int box = 0; box < mvarContent.BoxCount(); ++box)
            if (Contains(mvarContent.BoxPlace(box), point)) return StoreChild(child, ChildOf(box));
        return StoreChild(child, CHILDID_SELF);
    });
}

STDMETHODIMP StripAccessible::put_accName(VARIANT child, BSTR) noexcept {
    return AnswerFor(child, [](LONG) { return DISP_E_MEMBERNOTFOUND; }); // a band is renamed in its box
}

STDMETHODIMP StripAccessible::put_accValue(VARIANT child, BSTR) noexcept {
    return AnswerFor(child, [](LONG) { return DISP_E_MEMBERNOTFOUND; });
}

std::vector<ItemEvent> EventsBetween(const std::vector<String>& before, const std::vector<String>& after) {
    std::vector<ItemEvent> events;
    const auto item = [](std::size_t place) { return static_cast<LONG>(place) + 1; };
    for (std::size_t place = after.size(); place < before.size(); ++place)
        events.push_back({EVENT_OBJECT_DESTROY, item(place)});
    for (std::size_t place = before.size(); place < after.size(); ++place)
        events.push_back({EVENT_OBJECT_CREATE, item(place)});
    const bool onlyMoved = before != after && Sorted(before) == Sorted(after);
    if (before.size() != after.size() || onlyMoved) {
        events.push_back({EVENT_OBJECT_REORDER, CHILDID_SELF}); // readers ask for all items anew
        return events;
    }
    for (std::size_t place = 0; place < after.size(); ++place)
        if (before[place] != after[place]) events.push_back({EVENT_OBJECT_NAMECHANGE, item(place)});
    return events;
}

} // namespace kestrel::dialogs
