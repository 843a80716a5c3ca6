// The fields and macros that a rule's bands are bound to: the distinct items in band order, the same List objects.
#pragma once

#include <unordered_set>
#include <vector>

#include "bands/Band.h"

namespace kestrel {

class UsedFields {
  public:
    UsedFields() { mvarItems->SetListStyle(lsMulriple); }

    // Owned; of the style that hosts cannot add to.
    [[nodiscard]] Lists& Items() const noexcept { return *mvarItems; }
    // Makes the items anew from the rule's bands in order.
    void Rebuild(const std::vector<Ref<Band>>& bands);
    // Follows a band that came in after all others, in constant time.
    void Append(const Band& band);
    // Whether Append is enough: a host may have taken items out, which only Rebuild brings back.
    [[nodiscard]] bool IsWhole() const noexcept {
        return static_cast<std::size_t>(mvarItems->Count()) == mvarKnown.size();
    }

  private:
    Ref<Lists> mvarItems = Make<Lists>();
    std::unordered_set<const List*> mvarKnown; // the items that were put in since the last Rebuild
};

} // namespace kestrel
