#include "dialogs/BandBox.h"

#include <algorithm>

#include "dialogs/Handles.h"
#include "dialogs/SampleText.h"

namespace kestrel::dialogs {

namespace {

constexpr int narrowest = 84;
constexpr int widest = 170;
constexpr int padding = 12;
constexpr int gap = 2; // on each side, so that boxes stand apart
constexpr int markSide = 10;

int WidthIn(HDC context, const String& text) noexcept {
    SIZE extent{};
    GetTextExtentPoint32W(context, text.c_str(), static_cast<int>(text.size()), &extent);
    return extent.cx;
}

int TextWidth(HDC context, const BandBox& box) {
    return std::max({WidthIn(context, box.name), WidthIn(context, box.style), WidthIn(context, box.sample)});
}

void FillWith(HDC context, const RECT& area, int colour) noexcept {
    FillRect(context, &area, GetSysColorBrush(colour));
}

// A filled corner, at the top on the right, where no text comes.
void PaintMark(HDC context, const RECT& box, int side, int colour) noexcept {
    const Selected pen(context, GetStockObject(NULL_PEN));
    const Selected brush(context, GetSysColorBrush(colour));
    const POINT corner[] = {{box.right - side, box.top}, {box.right, box.top}, {box.right, box.top + side}};
    Polygon(context, corner, 3);
}

} // namespace

BandBox BoxOf(const Band& band) {
    const bool fixed = band.Style() == bsFixed;
    return {band.Name(), StyleName(band.Style()), fixed ? band.Default() : SampleText(band)};
}

String TextOf(const BandBox& box) { return box.name + L"\r\n" + box.style + L"\r\n" + box.sample; }

String TipOf(const BandBox& box, bool clips) {
    if (!clips) return box.findings;
    return box.findings.empty() ? TextOf(box) : TextOf(box) + L"\r\n" + box.findings;
}

String SpokenText(const BandBox& box) {
    String spoken;
    for (const String* text : {&box.name, &box.style, &box.sample, &box.findings}) {
        if (!spoken.empty() && !text->empty()) spoken += L", ";
        spoken += *text;
    }
    std::erase(spoken, L'\r'); // a line break has two characters and becomes one blank
    std::replace(spoken.begin(), spoken.end(), L'\n', L' ');
    return spoken;
}

void PrintCentered(HDC context, RECT area, const String& text) noexcept {
    DrawTextW(context, text.c_str(), static_cast<int>(text.size()), &area,
              DT_CENTER | DT_VCENTER | DT_SINGLELINE | DT_NOPREFIX | DT_END_ELLIPSIS);
}

BandBoxPainter::BandBoxPainter(HWND window, HFONT font, int dpi) noexcept
    : mvarWindow(window), mvarFont(font), mvarDpi(dpi) {
    const WindowContext context(window);
    const Selected selected(context.Get(), font);
    TEXTMETRICW metrics{};
    GetTextMetricsW(context.Get(), &metrics);
    mvarLineHeight = metrics.tmHeight;
}

std::vector<int> BandBoxPainter::WidthsOf(const std::vector<BandBox>& boxes) const {
    const WindowContext context(mvarWindow);
    const Selected font(context.Get(), mvarFont);
    std::vector<int> widths;
    widths.reserve(boxes.size());
    for (const auto& box : boxes)
        widths.push_back(
            std::clamp(TextWidth(context.Get(), box) + 2 * Scaled(padding), Scaled(narrowest), Scaled(widest)));
    return widths;
}

bool BandBoxPainter::Clips(const BandBox& box) const {
    const WindowContext context(mvarWindow);
    const Selected font(context.Get(), mvarFont);
    return TextWidth(context.Get(), box) + 2 * Scaled(padding) > Scaled(widest);
}

void BandBoxPainter::Paint(HDC context, const RECT& area, const BandBox& box, bool selected, bool focused) const {
    const Selected font(context, mvarFont);
    RECT inner{area.left + Scaled(gap), area.top, area.right - Scaled(gap), area.bottom};
    FillWith(context, inner, selected ? COLOR_HIGHLIGHT : COLOR_BTNFACE);
    FrameRect(context, &inner, GetSysColorBrush(selected ? COLOR_WINDOWTEXT : COLOR_BTNSHADOW));
    SetBkMode(context, TRANSPARENT);
    SetTextColor(context, GetSysColor(selected ? COLOR_HIGHLIGHTTEXT : COLOR_BTNTEXT));
    RECT line{inner.left + Scaled(4), inner.top + Scaled(6), inner.right - Scaled(4), 0};
    for (const String* text : {&box.name, &box.style, &box.sample}) {
        line.bottom = line.top + mvarLineHeight;
        if (line.bottom > inner.bottom) break; // the box is cut
        PrintCentered(context, line, *text);
        line.top = line.bottom;
    }
    RECT focus = inner;
    InflateRect(&focus, -Scaled(2), -Scaled(2));
    if (selected && focused) DrawFocusRect(context, &focus);
    // Over the frame of the focus, which would make another pattern of it.
    if (!box.findings.empty())
        PaintMark(context, inner, Scaled(markSide), selected ? COLOR_HIGHLIGHTTEXT : COLOR_HIGHLIGHT);
}

} // namespace kestrel::dialogs
