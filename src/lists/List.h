// A named item: a user field, a user macro, or the name of a band that converts in layers.
//
// Invariants: Name is set once and never empty from then on; ForeignName is never empty once Name is set.
#pragma once

#include "common/Enumerations.h"
#include "common/Exposed.h"
#include "common/FreeValue.h"

namespace kestrel {

class List final : public Exposed {
  public:
    // The item's name, its key in the collection that holds it; empty until set.
    [[nodiscard]] const String& Name() const noexcept { return mvarName; }
    // Stores the text without blanks at its ends; it becomes the ForeignName too when there is none yet. A second set
    // fails with 2001, an empty text with 2003.
    void SetName(const String& name);

    // The name shown to people.
    [[nodiscard]] const String& ForeignName() const noexcept { return mvarForeignName; }
    // Stores the text without blanks at its ends; an empty text fails with 2003.
    void SetForeignName(const String& foreignName);

    [[nodiscard]] const String& Value() const noexcept { return mvarValue; }
    void SetValue(const String& value) { mvarValue = value; }

    // What the host described the item with, shared; nothing when it did not.
    [[nodiscard]] const Ref<FreeValue>& Description() const noexcept { return mvarDescription; }
    void SetDescription(Ref<FreeValue> description) { mvarDescription = std::move(description); }

    // The kind of the collection that made the item.
    [[nodiscard]] ListStyles Style() const noexcept { return mvarStyle; }
    void SetListStyle(ListStyles style) noexcept { mvarStyle = style; }

  private:
    String mvarName;
    String mvarForeignName;
    String mvarValue;
    Ref<FreeValue> mvarDescription;
    ListStyles mvarStyle = lsMulriple;
};

} // namespace kestrel
