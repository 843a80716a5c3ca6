#include "common/Counted.h"

namespace kestrel {

void Counted::Release() noexcept {
    if (--mvarReferences != 0) return;
    // Weak references end before the destructors run: what a destructor calls must not bring the object back to life.
    if (mvarAnchor != nullptr) mvarAnchor->mvarTarget = nullptr;
    delete this;
}

Counted::~Counted() {
    if (mvarAnchor != nullptr) mvarAnchor->Release();
}

Ref<Counted::Anchor> Counted::SharedAnchor() {
    if (mvarAnchor == nullptr) {
        mvarAnchor = new Anchor(this);
        mvarAnchor->AddRef();
    }
    return Ref<Anchor>(mvarAnchor);
}

} // namespace kestrel
