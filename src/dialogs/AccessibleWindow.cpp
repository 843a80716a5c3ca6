#include "dialogs/AccessibleWindow.h"

#include "dialogs/Oleacc.h"

namespace kestrel::dialogs {

namespace {

// The library that describes IAccessible.
constexpr GUID accessibility{0x1ea4dbf0, 0x3c3b, 0x11cf, {0x81, 0x0c, 0x00, 0xaa, 0x00, 0x38, 0x9b, 0x71}};

HRESULT FindTypeInfo(ComPtr<ITypeInfo>& info) noexcept {
    ComPtr<ITypeLib> library;
    const HRESULT result = LoadRegTypeLib(accessibility, 1, 1, LOCALE_NEUTRAL, library.Out());
    return SUCCEEDED(result) ? library->GetTypeInfoOfGuid(__uuidof(IAccessible), info.Out()) : result;
}

} // namespace

AccessibleWindow::AccessibleWindow(HWND window) noexcept : mvarWindow(window), mvarStandard(StandardObject(window)) {}

STDMETHODIMP AccessibleWindow::QueryInterface(REFIID riid, void** object) noexcept {
    if (riid == __uuidof(IDispatch)) return ComObject::QueryInterface(__uuidof(IAccessible), object);
    if (riid != __uuidof(IEnumVARIANT) || Enumerates()) return ComObject::QueryInterface(riid, object);
    if (object == nullptr) return E_POINTER;
    *object = nullptr;
    return E_NOINTERFACE;
}

bool AccessibleWindow::Enumerates() const noexcept { return static_cast<bool>(mvarStandard.As<IEnumVARIANT>()); }

template <class Body>
HRESULT AccessibleWindow::PassToChildren(Body body) const noexcept {
    const auto children = mvarStandard.As<IEnumVARIANT>();
    return children ? body(*children.Get()) : CO_E_OBJNOTCONNECTED;
}

STDMETHODIMP AccessibleWindow::GetTypeInfoCount(UINT* count) noexcept {
    if (count == nullptr) return E_POINTER;
    *count = 1;
    return S_OK;
}

STDMETHODIMP AccessibleWindow::GetTypeInfo(UINT index, LCID, ITypeInfo** info) noexcept {
    if (info == nullptr) return E_POINTER;
    *info = nullptr;
    if (index != 0) return DISP_E_BADINDEX;
    ComPtr<ITypeInfo> found;
    const HRESULT result = FindTypeInfo(found);
    *info = found.Detach();
    return result;
}

STDMETHODIMP AccessibleWindow::GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids) noexcept {
    ComPtr<ITypeInfo> info;
    const HRESULT result = FindTypeInfo(info);
    return SUCCEEDED(result) ? info->GetIDsOfNames(names, count, ids) : result;
}

STDMETHODIMP AccessibleWindow::Invoke(DISPID member, REFIID, LCID, WORD flags, DISPPARAMS* arguments, VARIANT* result,
                                      EXCEPINFO* exception, UINT* failedArgument) noexcept {
    ComPtr<ITypeInfo> info;
    const HRESULT found = FindTypeInfo(info);
    if (FAILED(found)) return found;
    return info->Invoke(static_cast<IAccessible*>(this), member, flags, arguments, result, exception, failedArgument);
}

STDMETHODIMP AccessibleWindow::get_accParent(IDispatch** parent) noexcept {
    return Pass([&](IAccessible& standard) { return standard.get_accParent(parent); });
}

STDMETHODIMP AccessibleWindow::get_accChildCount(LONG* count) noexcept {
    return Pass([&](IAccessible& standard) { return standard.get_accChildCount(count); });
}

STDMETHODIMP AccessibleWindow::get_accChild(VARIANT child, IDispatch** object) noexcept {
    return Pass([&](IAccessible& standard) { return standard.get_accChild(child, object); });
}

STDMETHODIMP AccessibleWindow::get_accName(VARIANT child, BSTR* name) noexcept {
    return Pass([&](IAccessible& standard) { return standard.get_accName(child, name); });
}

STDMETHODIMP AccessibleWindow::get_accValue(VARIANT child, BSTR* value) noexcept {
    return Pass([&](IAccessible& standard) { return standard.get_accValue(child, value); });
}

STDMETHODIMP AccessibleWindow::get_accDescription(VARIANT child, BSTR* description) noexcept {
    return Pass([&](IAccessible& standard) { return standard.get_accDescription(child, description); });
}

STDMETHODIMP AccessibleWindow::get_accRole(VARIANT child, VARIANT* role) noexcept {
    return Pass([&](IAccessible& standard) { return standard.get_accRole(child, role); });
}

STDMETHODIMP AccessibleWindow::get_accState(VARIANT child, VARIANT* state) noexcept {
    return Pass([&](IAccessible& standard) { return standard.get_accState(child, state); });
}

STDMETHODIMP AccessibleWindow::get_accHelp(VARIANT child, BSTR* help) noexcept {
    return Pass([&](IAccessible& standard) { return standard.get_accHelp(child, help); });
}

STDMETHODIMP AccessibleWindow::get_accHelpTopic(BSTR* file, VARIANT child, LONG* topic) noexcept {
    return Pass([&](IAccessible& standard) { return standard.get_accHelpTopic(file, child, topic); });
}

STDMETHODIMP AccessibleWindow::get_accKeyboardShortcut(VARIANT child, BSTR* shortcut) noexcept {
    return Pass([&](IAccessible& standard) { return standard.get_accKeyboardShortcut(child, shortcut); });
}

STDMETHODIMP AccessibleWindow::get_accFocus(VARIANT* child) noexcept {
    return Pass([&](IAccessible& standard) { return standard.get_accFocus(child); });
}

STDMETHODIMP AccessibleWindow::get_accSelection(VARIANT* children) noexcept {
    return Pass([&](IAccessible& standard) { return standard.get_accSelection(children); });
}

STDMETHODIMP AccessibleWindow::get_accDefaultAction(VARIANT child, BSTR* action) noexcept {
    return Pass([&](IAccessible& standard) { return standard.get_accDefaultAction(child, action); });
}

STDMETHODIMP AccessibleWindow::accSelect(LONG flags, VARIANT child) noexcept {
    return Pass([&](IAccessible& standard) { return standard.accSelect(flags, child); });
}

STDMETHODIMP AccessibleWindow::accLocation(LONG* left, LONG* top, LONG* width, LONG* height, VARIANT child) noexcept {
    return Pass([&](IAccessible& standard) { return standard.accLocation(left, top, width, height, child); });
}

STDMETHODIMP AccessibleWindow::accNavigate(LONG direction, VARIANT start, VARIANT* end) noexcept {
    return Pass([&](IAccessible& standard) { return standard.accNavigate(direction, start, end); });
}

STDMETHODIMP AccessibleWindow::accHitTest(LONG left, LONG top, VARIANT* child) noexcept {
    return Pass([&](IAccessible& standard) { return standard.accHitTest(left, top, child); });
}

STDMETHODIMP AccessibleWindow::accDoDefaultAction(VARIANT child) noexcept {
    return Pass([&](IAccessible& standard) { return standard.accDoDefaultAction(child); });
}

STDMETHODIMP AccessibleWindow::put_accName(VARIANT child, BSTR name) noexcept {
    return Pass([&](IAccessible& standard) { return standard.put_accName(child, name); });
}

STDMETHODIMP AccessibleWindow::put_accValue(VARIANT child, BSTR value) noexcept {
    return Pass([&](IAccessible& standard) { return standard.put_accValue(child, value); });
}

STDMETHODIMP AccessibleWindow::Next(ULONG count, VARIANT* children, ULONG* fetched) noexcept {
    return PassToChildren([&](IEnumVARIANT& standard) { return standard.Next(count, children, fetched); });
}

STDMETHODIMP AccessibleWindow::Skip(ULONG count) noexcept {
    return PassToChildren([&](IEnumVARIANT& standard) { return standard.Skip(count); });
}

STDMETHODIMP AccessibleWindow::Reset() noexcept {
    return PassToChildren([&](IEnumVARIANT& standard) { return standard.Reset(); });
}

STDMETHODIMP AccessibleWindow::Clone(IEnumVARIANT** copy) noexcept {
    return PassToChildren([&](IEnumVARIANT& standard) { return standard.Clone(copy); });
}

STDMETHODIMP AccessibleWindow::GetWindow(HWND* window) noexcept {
    if (window == nullptr) return E_POINTER;
    *window = IsConnected() ? mvarWindow : nullptr;
    return IsConnected() ? S_OK : CO_E_OBJNOTCONNECTED;
}

STDMETHODIMP AccessibleWindow::ContextSensitiveHelp(BOOL) noexcept { return E_NOTIMPL; }

} // namespace kestrel::dialogs
