// The band strip: a view (picBkg) over a row of boxes (picBand), one for each band, with the button that appends a band
// (imgButton) after the last box; while a box is dragged, its floating copy (picMove) and the marker of the gap where
// it would land (imgPos). The view scrolls when the boxes do not fit.
//
// The strip knows no rule: it shows the boxes it is given and reports what the user does.
#pragma once

#include <functional>
#include <vector>

#include "dialogs/AccessibleOwner.h"
#include "dialogs/BandBox.h"
#include "dialogs/PictureBox.h"
#include "dialogs/StripAccessible.h"
#include "dialogs/StripLayout.h"

namespace kestrel::dialogs {

class Form;

class BandStrip final : private StripContent {
  public:
    struct Actions {
        std::function<void(int box)> select;
        std::function<void(POINT screen)> menu; // for the selected box
        std::function<void(int box, DropPlace place)> drop;
        std::function<void(int step)> move; // the selected box, one place
        std::function<void()> remove;       // the selected box
    };

    explicit BandStrip(Form& form) noexcept : mvarForm(form) {}
    // The windows hold this object's address.
    BandStrip(const BandStrip&) = delete;
    BandStrip& operator=(const BandStrip&) = delete;

    // Puts the strip into the form's picBkg; once, when the form is loaded.
    void Attach(Actions actions, const String& appendTip);
    // Replaces all boxes and marks the selected one; a drag under way ends without effect.
    void SetBoxes(std::vector<BandBox> boxes, int selected);
    // The findings of each box, in place of those it has; nothing when there are not as many boxes.
    void SetFindings(std::vector<String> findings);
    void Select(int box);
    // Follows a change of the form's font or size.
    void Resize();
    void EnableAppend(bool enabled) const noexcept;
    // Ends a drag without effect and frees the mouse; nothing when none is under way.
    void CancelDrag() noexcept;
    [[nodiscard]] bool IsDragging() const noexcept { return mvarDragged >= 0; }
    [[nodiscard]] const StripLayout& Layout() const noexcept { return mvarLayout; }
    [[nodiscard]] int Offset() const noexcept { return mvarOffset; }
    [[nodiscard]] int Margin() const noexcept;

  private:
    std::optional<LRESULT> ViewMessage(UINT message, WPARAM wParam, LPARAM lParam);
    std::optional<LRESULT> BandMessage(UINT message, WPARAM wParam, LPARAM lParam);
    void PaintBoxes(HDC context, const RECT& client) const;
    void MeasureBoxes();
    void Arrange();
    void SetScrollBar() const noexcept;
    void ScrollTo(int offset);
    [[nodiscard]] int ScrollTarget(int request) const noexcept;
    [[nodiscard]] int ViewWidth() const noexcept;
    [[nodiscard]] int LargestOffset() const noexcept;
    [[nodiscard]] bool KeyDown(unsigned key);
    void ShowTip(int x) const;

    void MouseDown(POINT mouse);
    void MouseDownRight(int x, POINT screen);
    void MouseMove(POINT mouse, bool buttonDown);
    void MouseUp(POINT mouse);
    void Follow(POINT mouse);
    void ScrollWhileDragging();
    // Where the dragged box would land; its own place as long as the hand has only shaken.
    [[nodiscard]] DropPlace LandingAt(POINT mouse) const noexcept;
    [[nodiscard]] bool IsNearPress(POINT mouse) const noexcept;
    void PlaceMarker(int x) const;
    void PlaceCopy() const;
    // --- What screen readers are told (BandStripReaders.cpp) ---
    std::optional<LRESULT> Reader(WPARAM wParam, LPARAM lParam);
    void TellItems(const std::vector<ItemEvent>& events) noexcept;
    void TellSelection() const noexcept;
    void TellFocus() const noexcept;
    [[nodiscard]] std::vector<String> BoxNames() const;
    [[nodiscard]] String Caption() const override;
    [[nodiscard]] String ActionName() const override;
    [[nodiscard]] int BoxCount() const override { return mvarLayout.Count(); }
    [[nodiscard]] String BoxName(int box) const override;
    [[nodiscard]] RECT BoxPlace(int box) const override;
    [[nodiscard]] RECT VisiblePlace() const override;
    [[nodiscard]] int SelectedBox() const override { return mvarSelected; }
    [[nodiscard]] bool HasFocus() const override { return GetFocus() == picBand.Window(); }
    void ChooseBox(int box) override;
    void TakeFocus() override { SetFocus(picBand.Window()); }

    [[nodiscard]] int StripX(int x) const noexcept { return x + mvarOffset; }
    [[nodiscard]] RECT BoxArea(int left, int width) const noexcept;
    [[nodiscard]] int Top() const noexcept;

    Form& mvarForm;
    Actions mvarActions;
    PictureBox picBkg;
    PictureBox picBand;
    PictureBox picMove;
    PictureBox imgPos;
    HWND imgButton = nullptr;
    BandBoxPainter mvarPainter;
    StripLayout mvarLayout;
    std::vector<BandBox> mvarBoxes;
    int mvarSelected = 0;
    int mvarOffset = 0;     // of the view, in pixels
    int mvarDragged = -1;   // the box being dragged, -1 for none
    POINT mvarMouse{};      // within picBand, while a box is dragged
    POINT mvarPress{};      // where the mouse was pressed, within the whole strip
    bool mvarMoved = false; // since then, further than a hand shakes
    AccessibleOwner<StripAccessible> mvarAccessible;
};

} // namespace kestrel::dialogs
