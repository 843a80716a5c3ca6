// The fixture of the dialog tests: the platform's ports with the prompts scripted and the dialogs recorded, so that
// each form is tested by itself. A test that wants the real dialogs below it says so.
#pragma once

#include <gtest/gtest.h>

#include "common/Ports.h"
#include "dialogs/WindowsDialogs.h"
#include "dialogs/support/SampleRule.h"
#include "dialogs/support/Screen.h"
#include "dialogs/support/Show.h"
#include "engine/Dialogs.h"
#include "platform/PlatformPorts.h"
#include "resources/dialogids.h"
#include "support/StandIns.h"

namespace kestrel::test {

// Writes down which dialog was asked for.
class RecordedDialogs final : public Dialogs {
  public:
    void ShowDesigner(CodeClass&, const String& title) override { calls.push_back(L"Designer " + title); }
    void ShowFieldManage(CodeClass&, const String& title) override { calls.push_back(L"FieldManage " + title); }
    void ShowOptions(CodeClass&, const String& title) override { calls.push_back(L"Options " + title); }
    void ShowAddBand(CodeClass&, const String& relativeName, int position) override {
        calls.push_back(L"AddBand " + relativeName + L" " + ToText(position));
    }
    void ShowAddRelation(CodeClass&, std::int32_t bandIndex, const String& relativeKey, int relationship,
                         bool modify) override {
        calls.push_back(L"AddRelation " + ToText(bandIndex) + L" " + relativeKey + L" " +
                        (modify ? L"modify" : ToText(relationship)));
    }
    std::vector<String> calls;
};

class DialogTest : public testing::Test {
  protected:
    DialogTest() {
        InstallPlatformPorts();
        mvarBefore = InstallPorts({&TheStrings(), &TheText(), &prompts, &recorded});
    }
    ~DialogTest() override { InstallPorts(mvarBefore); }

    void UseRealDialogs() { InstallPorts({&TheStrings(), &TheText(), &prompts, &mvarReal}); }

    ScriptedPrompts prompts;
    RecordedDialogs recorded;

  private:
    dialogs::WindowsDialogs mvarReal;
    PortSet mvarBefore;
};

using Texts = std::vector<String>;

} // namespace kestrel::test
