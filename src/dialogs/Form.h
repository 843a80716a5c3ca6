// A dialog: a window made from a template of the module, whose controls are found by their identifiers and whose user
// actions run short named handlers.
//
// In the template the text of a form or control that is all digits is its Tag: the number of its text in the string
// table, which LocaliseForm puts in. A form is used on the thread that loads it and lives on the stack of whoever shows
// it. No handler's failure reaches the system: what the model refuses is handed to Refused, anything else ends quietly.
// The system may end the window at any time (with its owner, for instance); the form is then closed.
#pragma once

#include <functional>
#include <map>
#include <optional>
#include <vector>

#include "common/Error.h"
#include "dialogs/Control.h"
#include "dialogs/ControlNames.h"
#include "dialogs/FormLayout.h"
#include "dialogs/ToolTips.h"

namespace kestrel::dialogs {

struct FormControl {
    HWND window = nullptr;
    int id = 0;
    String tag;
    String toolTip;
};

class Form {
  public:
    using Handler = std::function<void()>;

    explicit Form(int templateId) noexcept : mvarTemplate(templateId) {}
    // The window and the controls hold this object's address.
    Form(const Form&) = delete;
    Form& operator=(const Form&) = delete;
    virtual ~Form();

    // Makes the window, hidden, with its texts in place; done once.
    void Load();
    // Loads the form and shows it over the thread's active window, which is disabled meanwhile; returns when the form
    // is closed and unloaded.
    void ShowModal();
    // Ends the form's modal display: it is hidden and unloaded as soon as the handler that runs has returned.
    void Hide() noexcept;
    [[nodiscard]] bool IsHidden() const noexcept { return mvarHidden; }

    // Null before it is loaded and after it has ended.
    [[nodiscard]] HWND Window() const noexcept { return mvarWindow; }
    // The control with that identifier, also one that stands within another.
    [[nodiscard]] HWND Find(int id) const noexcept;
    [[nodiscard]] String Caption() const { return WindowText(mvarWindow); }
    void SetCaption(const String& caption) noexcept { SetWindowTextW(mvarWindow, caption.c_str()); }

    // For LocaliseForm.
    [[nodiscard]] const std::vector<FormControl>& Controls() const noexcept { return mvarControls; }
    [[nodiscard]] const String& Tag() const noexcept { return mvarTag; }
    void SetFont(const String& name, double points);
    [[nodiscard]] const FormLayout& Layout() const noexcept { return mvarLayout; }
    [[nodiscard]] ToolTips& Tips() noexcept { return mvarTips; }
    // What screen readers call the controls.
    [[nodiscard]] ControlNames& AccessibleNames() noexcept { return mvarNames; }

  protected:
    // --- For the forms ---

    virtual void Form_Load() {}
    // When the form is closed, before its window goes.
    virtual void Form_Unload() {}
    // What the form is about has ended: it closes itself.
    [[nodiscard]] virtual bool HasEnded() const noexcept { return false; }
    // The close box or the Escape key.
    virtual void Cancelled() { Hide(); }
    virtual void Refused(const Error&) {}
    // The window has got another size, or its font. Whatever draws with the font before takes the new one here.
    virtual void Form_Resize() {}
    // The system's colours or the look of its controls have changed.
    virtual void Form_ColoursChanged() {}
    // Anything else; a result ends the message.
    virtual std::optional<LRESULT> Handle(UINT message, WPARAM wParam, LPARAM lParam);

    // The handler of a control's or menu item's notification; BN_CLICKED (0) is a click of a button or menu item.
    void On(int id, int notification, Handler handler) { mvarHandlers[{id, notification}] = std::move(handler); }
    void OnClick(int id, Handler handler) { On(id, 0, std::move(handler)); }
    void OnNotify(int id, std::function<std::optional<LRESULT>(NMHDR&)> handler) {
        mvarNotifications[id] = std::move(handler);
    }
    // Where the screen is too low for the form, the control and what stands beside it grow lower, by that many units of
    // the dialog at most. Before the form is loaded.
    void MayGiveWay(int id, int units) noexcept { mvarLayout.MayGiveWay(id, units); }
    // The string number of a control's tool tip.
    void SetToolTipTag(int id, int number) { mvarToolTipTags[id] = number; }
    // Runs a step whose refusal by the model is handed to Refused.
    void Run(const Handler& step);

  private:
    static INT_PTR CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept;
    std::optional<LRESULT> Dispatch(UINT message, WPARAM wParam, LPARAM lParam);
    void Initialise(HWND window);
    void CollectControls();
    void Command(int id, int notification);
    std::optional<LRESULT> Notified(NMHDR& header);
    void ChangeDpi(UINT dpi, const RECT& place);
    void ApplyLayout(UINT dpi);
    void SystemChanged(UINT message, WPARAM wParam, LPARAM lParam);
    void RunLoop();
    void Unload() noexcept;

    int mvarTemplate;
    HWND mvarWindow = nullptr;
    bool mvarHidden = false;
    int mvarQuitCode = 0;
    bool mvarQuit = false;
    String mvarTag;
    std::vector<FormControl> mvarControls;
    std::map<std::pair<int, int>, Handler> mvarHandlers;
    std::map<int, std::function<std::optional<LRESULT>(NMHDR&)>> mvarNotifications;
    std::map<int, int> mvarToolTipTags;
    FormLayout mvarLayout;
    ToolTips mvarTips;
    ControlNames mvarNames;
    String mvarFontName;
    double mvarFontPoints = 0;
};

// Handles what waits in the thread's message queue.
void LetPendingMessagesRun() noexcept;

} // namespace kestrel::dialogs
