// An index that is made once doing without it has cost as much as making it, so that whoever asks seldom never pays for
// it and whoever asks often pays twice at most.
#pragma once

#include <cstddef>
#include <memory>

namespace kestrel {

template <class Index>
class OnDemand {
  public:
    // So many items were walked for want of the index.
    void Walked(std::size_t items) noexcept { mvarWalked += items; }

    // The index over so many items, made now by make() if that pays; null as long as it does not.
    template <class Maker>
    Index* Get(std::size_t items, Maker make) {
        if (!mvarIndex && items >= LeastItems && mvarWalked >= items) mvarIndex = make();
        return mvarIndex.get();
    }

    // Tells the index of a change; change(index) is false when the index is no good after it.
    template <class Change>
    void Update(Change change) {
        if (mvarIndex && !change(*mvarIndex)) Drop();
    }

    void Drop() noexcept {
        mvarIndex.reset();
        mvarWalked = 0;
    }

  private:
    // Fewer are walked in less time than they are looked up.
    static constexpr std::size_t LeastItems = 32;

    std::unique_ptr<Index> mvarIndex;
    std::size_t mvarWalked = 0;
};

} // namespace kestrel
