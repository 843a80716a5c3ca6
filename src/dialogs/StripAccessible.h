// The band strip as screen readers see it: a list whose items are the boxes. Items have no objects of their own, they
// are children of the list by their numbers from 1.
#pragma once

#include <functional>
#include <vector>

#include "common/String.h"
#include "dialogs/AccessibleWindow.h"

namespace kestrel::dialogs {

// What the strip tells of itself. Boxes are counted from 0, places are the screen's.
class StripContent {
  public:
    [[nodiscard]] virtual String Caption() const = 0;
    // What an item's default action is called.
    [[nodiscard]] virtual String ActionName() const = 0;
    [[nodiscard]] virtual int BoxCount() const = 0;
    [[nodiscard]] virtual String BoxName(int box) const = 0;
    [[nodiscard]] virtual RECT BoxPlace(int box) const = 0;
    // What can be seen of the strip, scrolled as it is.
    [[nodiscard]] virtual RECT VisiblePlace() const = 0;
    // -1 when no box is selected.
    [[nodiscard]] virtual int SelectedBox() const = 0;
    [[nodiscard]] virtual bool HasFocus() const = 0;
    // As if the box were clicked: the strip takes the keyboard and, if the box is still there, the box is selected.
    virtual void ChooseBox(int box) = 0;
    virtual void TakeFocus() = 0;

  protected:
    ~StripContent() = default;
};

class StripAccessible final : public AccessibleWindow {
  public:
    // The content is asked until Disconnect.
    StripAccessible(HWND window, StripContent& content) noexcept : AccessibleWindow(window), mvarContent(content) {}

    STDMETHODIMP get_accChildCount(LONG* count) noexcept override;
    STDMETHODIMP get_accChild(VARIANT child, IDispatch** object) noexcept override;
    STDMETHODIMP get_accName(VARIANT child, BSTR* name) noexcept override;
    STDMETHODIMP get_accValue(VARIANT child, BSTR* value) noexcept override;
    STDMETHODIMP get_accDescription(VARIANT child, BSTR* description) noexcept override;
    STDMETHODIMP get_accRole(VARIANT child, VARIANT* role) noexcept override;
    STDMETHODIMP get_accState(VARIANT child, VARIANT* state) noexcept override;
    STDMETHODIMP get_accHelp(VARIANT child, BSTR* help) noexcept override;
    STDMETHODIMP get_accKeyboardShortcut(VARIANT child, BSTR* shortcut) noexcept override;
    STDMETHODIMP get_accFocus(VARIANT* child) noexcept override;
    STDMETHODIMP get_accSelection(VARIANT* children) noexcept override;
    STDMETHODIMP get_accDefaultAction(VARIANT child, BSTR* action) noexcept override;
    STDMETHODIMP accSelect(LONG flags, VARIANT child) noexcept override;
    STDMETHODIMP accLocation(LONG* left, LONG* top, LONG* width, LONG* height, VARIANT child) noexcept override;
    STDMETHODIMP accNavigate(LONG direction, VARIANT start, VARIANT* end) noexcept override;
    STDMETHODIMP accHitTest(LONG left, LONG top, VARIANT* child) noexcept override;
    STDMETHODIMP accDoDefaultAction(VARIANT child) noexcept override;
    STDMETHODIMP put_accName(VARIANT child, BSTR name) noexcept override;
    STDMETHODIMP put_accValue(VARIANT child, BSTR value) noexcept override;

  protected:
    // Readers count the items themselves.
    [[nodiscard]] bool Enumerates() const noexcept override { return false; }

  private:
    // Whether the child is the list itself or one of its items.
    [[nodiscard]] bool IsKnown(const VARIANT& child) const;
    [[nodiscard]] LONG FocusedChild() const;
    [[nodiscard]] LONG StateOf(LONG child) const;
    template <class Body>
    HRESULT AnswerFor(const VARIANT& child, Body body) const noexcept;
    // What has no such text: neither the list nor its items.
    HRESULT NoText(const VARIANT& child, BSTR* text) const noexcept;
    HRESULT Choose(LONG child) const;

    StripContent& mvarContent;
};

// What happened to the children of the list when its items were replaced.
struct ItemEvent {
    DWORD event;
    LONG child; // CHILDID_SELF: the list as a whole
    friend bool operator==(const ItemEvent& left, const ItemEvent& right) noexcept = default;
};
// The events that tell readers so, given the names of all items before and after: a name that changed in its place, an
// order that changed, items that came or went at the end of the numbers.
[[nodiscard]] std::vector<ItemEvent> EventsBetween(const std::vector<String>& before, const std::vector<String>& after);

} // namespace kestrel::dialogs
