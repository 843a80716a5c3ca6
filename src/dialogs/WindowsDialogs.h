// The rule's dialogs as windows: each call makes the form, shows it over the thread's active window, and returns when
// the user has closed it.
#pragma once

#include "engine/Dialogs.h"

namespace kestrel::dialogs {

class WindowsDialogs final : public Dialogs {
  public:
    void ShowDesigner(CodeClass& rule, const String& title) override;
    void ShowFieldManage(CodeClass& rule, const String& title) override;
    void ShowOptions(CodeClass& rule, const String& title) override;
    void ShowAddBand(CodeClass& rule, const String& relativeName, int position) override;
    void ShowAddRelation(CodeClass& rule, std::int32_t bandIndex, const String& relativeKey, int relationship,
                         bool modify) override;
};

} // namespace kestrel::dialogs
