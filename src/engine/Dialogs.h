// The port through which a rule opens its dialogs. Each call returns when the user has closed the dialog.
#pragma once

#include <cstdint>

#include "common/String.h"

namespace kestrel {

class CodeClass;

class Dialogs {
  public:
    virtual ~Dialogs() = default;

    // An empty title keeps the dialog's own caption.
    virtual void ShowDesigner(CodeClass& rule, const String& title) = 0;
    virtual void ShowFieldManage(CodeClass& rule, const String& title) = 0;
    virtual void ShowOptions(CodeClass& rule, const String& title) = 0;

    // Position: 1 before the relative band, 2 after it, 3 at the end; anything else fails with 2003. The relative name
    // is empty in a rule without bands.
    virtual void ShowAddBand(CodeClass& rule, const String& relativeName, int position) = 0;
    // The key is empty when no node is selected. With modify, the node itself is edited and the relationship not used.
    virtual void ShowAddRelation(CodeClass& rule, std::int32_t bandIndex, const String& relativeKey, int relationship,
                                 bool modify) = 0;
};

} // namespace kestrel
