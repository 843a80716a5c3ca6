#include "dialogs/StatusLine.h"

#include <algorithm>

#include "dialogs/Form.h"
#include "dialogs/Handles.h"

namespace kestrel::dialogs {

namespace {

constexpr int besideSign = 3; // on both sides of the sign

String OnOneLine(String text) {
    std::replace_if(
        text.begin(), text.end(), [](wchar_t each) { return each == L'\r' || each == L'\n'; }, L' ');
    return text;
}

} // namespace

void StatusLine::Attach() {
    mvarBox.Attach(lblStatus.Window(), [this](HDC context, const RECT& area) { Paint(context, area); });
    mvarForm.AccessibleNames().Describe(lblStatus.Window(),
                                        [this] { return mvarForm.Tips().Text(lblStatus.Window()); });
}

void StatusLine::Refuse(const Error& error) {
    mvarTells = false;
    Set(OnOneLine(error.Description()), error.Description(), true);
}

void StatusLine::Tell(const String& text, const String& tip) {
    if (mvarTells) Set(text, tip, false);
}

void StatusLine::Clear() {
    mvarTells = false;
    Set({}, {}, false);
}

void StatusLine::Set(const String& text, const String& tip, bool refusal) {
    mvarIsRefusal = refusal;
    lblStatus.SetText(text);
    mvarForm.Tips().Set(lblStatus.Window(), tip);
    NotifyWinEvent(EVENT_OBJECT_DESCRIPTIONCHANGE, lblStatus.Window(), OBJID_CLIENT, CHILDID_SELF);
    if (mvarBox.Window() != nullptr) mvarBox.Repaint();
}

void StatusLine::Paint(HDC context, RECT area) const {
    FillRect(context, &area, GetSysColorBrush(mvarIsRefusal ? COLOR_INFOBK : COLOR_BTNFACE));
    if (mvarIsRefusal) {
        const int side = area.bottom - area.top;
        const int distance = mvarForm.Layout().Scaled(besideSign);
        DrawIconEx(context, area.left + distance, area.top, LoadIconW(nullptr, IDI_WARNING), side, side, 0, nullptr,
                   DI_NORMAL);
        area.left += side + 2 * distance;
    }
    const Selected font(context, mvarForm.Layout().Font());
    SetBkMode(context, TRANSPARENT);
    SetTextColor(context, GetSysColor(mvarIsRefusal ? COLOR_INFOTEXT : COLOR_BTNTEXT));
    const String text = lblStatus.Text();
    DrawTextW(context, text.c_str(), static_cast<int>(text.size()), &area,
              DT_LEFT | DT_VCENTER | DT_SINGLELINE | DT_NOPREFIX | DT_END_ELLIPSIS);
}

} // namespace kestrel::dialogs
