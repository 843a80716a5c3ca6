// The fixture of the designer's tests: the designer open on the invoice rule.
#pragma once

#include <optional>

#include "dialogs/frmDesigners.h"
#include "dialogs/support/DialogTest.h"

namespace kestrel::test {

class DesignerTest : public DialogTest {
  protected:
    DesignerTest() : rule(InvoiceRule()) { Open(); }
    void Open() {
        form.emplace(*rule);
        screen.emplace(Show(*form));
    }
    void Reopen(const Ref<CodeClass>& other) {
        form.reset();
        rule = other;
        Open();
    }
    void Select(int band) { form->RefreshBands(rule.Get(), band - 1); }

    Ref<CodeClass> rule;
    std::optional<dialogs::frmDesigners> form;
    std::optional<Screen> screen;
};

} // namespace kestrel::test
