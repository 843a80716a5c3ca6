// The base of the model objects that hosts see through automation.
//
// The model knows nothing of automation; it only keeps a place where the automation layer notes the one face that
// stands for this object at present, and whatever must live exactly as long as the object itself (the event
// connections).
#pragma once

#include "common/Counted.h"

namespace kestrel {

class Exposed : public Counted {
  public:
    // The living face, or null; not owned, the face takes itself out when it ends.
    [[nodiscard]] void* Face() const noexcept { return mvarFace; }
    void SetFace(void* face) noexcept { mvarFace = face; }

    // What the automation layer attached, or nothing; shared.
    [[nodiscard]] const Ref<Counted>& Attachment() const noexcept { return mvarAttachment; }
    void SetAttachment(Ref<Counted> attachment) noexcept { mvarAttachment = std::move(attachment); }

  private:
    void* mvarFace = nullptr;
    Ref<Counted> mvarAttachment;
};

} // namespace kestrel
