// What a window is to a screen reader: the system's object for it, of which a derived class changes what the system
// cannot know. Readers may hold it longer than the window lives; every call then answers CO_E_OBJNOTCONNECTED. It is
// used on the thread of its window only: other threads and processes reach it through COM. Nothing is thrown out of it.
#pragma once

#include <windows.h>

#include <oleacc.h>

#include "dialogs/Guard.h"
#include "platform/ComObject.h"
#include "platform/ComPtr.h"

namespace kestrel::dialogs {

class AccessibleWindow : public ComObject<IAccessible, IEnumVARIANT, IOleWindow> {
  public:
    // Called once, when the window or what it shows ends.
    virtual void Disconnect() noexcept { mvarStandard = {}; }

    STDMETHODIMP QueryInterface(REFIID riid, void** object) noexcept override;

    // --- IDispatch, by the type information of the system ---
    STDMETHODIMP GetTypeInfoCount(UINT* count) noexcept override;
    STDMETHODIMP GetTypeInfo(UINT index, LCID locale, ITypeInfo** info) noexcept override;
    STDMETHODIMP GetIDsOfNames(REFIID riid, LPOLESTR* names, UINT count, LCID locale, DISPID* ids) noexcept override;
    STDMETHODIMP Invoke(DISPID member, REFIID riid, LCID locale, WORD flags, DISPPARAMS* arguments, VARIANT* result,
                        EXCEPINFO* exception, UINT* failedArgument) noexcept override;

    // --- IAccessible ---
    STDMETHODIMP get_accParent(IDispatch** parent) noexcept override;
    STDMETHODIMP get_accChildCount(LONG* count) noexcept override;
    STDMETHODIMP get_accChild(VARIANT child, IDispatch** object) noexcept override;
    STDMETHODIMP get_accName(VARIANT child, BSTR* name) noexcept override;
    STDMETHODIMP get_accValue(VARIANT child, BSTR* value) noexcept override;
    STDMETHODIMP get_accDescription(VARIANT child, BSTR* description) noexcept override;
    STDMETHODIMP get_accRole(VARIANT child, VARIANT* role) noexcept override;
    STDMETHODIMP get_accState(VARIANT child, VARIANT* state) noexcept override;
    STDMETHODIMP get_accHelp(VARIANT child, BSTR* help) noexcept override;
    STDMETHODIMP get_accHelpTopic(BSTR* file, VARIANT child, LONG* topic) noexcept override;
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

    // --- IEnumVARIANT, of the children; offered where the system's object offers it ---
    STDMETHODIMP Next(ULONG count, VARIANT* children, ULONG* fetched) noexcept override;
    STDMETHODIMP Skip(ULONG count) noexcept override;
    STDMETHODIMP Reset() noexcept override;
    STDMETHODIMP Clone(IEnumVARIANT** copy) noexcept override;

    // --- IOleWindow ---
    STDMETHODIMP GetWindow(HWND* window) noexcept override;
    STDMETHODIMP ContextSensitiveHelp(BOOL enter) noexcept override;

  protected:
    explicit AccessibleWindow(HWND window) noexcept;

    [[nodiscard]] HWND Window() const noexcept { return mvarWindow; }
    [[nodiscard]] bool IsConnected() const noexcept { return static_cast<bool>(mvarStandard); }
    // Runs what answers a call, while there is something to answer about.
    template <class Body>
    HRESULT Answer(Body body) const noexcept {
        return IsConnected() ? Guarded<HRESULT>(E_UNEXPECTED, body) : CO_E_OBJNOTCONNECTED;
    }
    // Whether the system's object enumerates the children that this object has.
    [[nodiscard]] virtual bool Enumerates() const noexcept;

  private:
    // Lets the system's object answer, which the call may end.
    template <class Body>
    HRESULT Pass(Body body) const noexcept {
        const ComPtr<IAccessible> standard = mvarStandard;
        return standard ? body(*standard.Get()) : CO_E_OBJNOTCONNECTED;
    }
    template <class Body>
    HRESULT PassToChildren(Body body) const noexcept;

    HWND mvarWindow;
    ComPtr<IAccessible> mvarStandard; // null when disconnected
};

} // namespace kestrel::dialogs
