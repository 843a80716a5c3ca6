// The counted base of every model object, and the two references to one: Ref keeps its object alive, WeakRef does not.
//
// Invariants: an object is created by Make and lives until its last Ref goes; a WeakRef of an object that has ended, or
// is ending, locks to nothing. Counting is not atomic: an object belongs to the thread that created it.
#pragma once

#include <cstddef>
#include <type_traits>
#include <utility>

namespace kestrel {

template <class T>
class Ref;

class Counted {
  public:
    // Identity matters to references, so an object is never copied.
    Counted(const Counted&) = delete;
    Counted& operator=(const Counted&) = delete;

    void AddRef() noexcept { ++mvarReferences; }
    void Release() noexcept;
    // How many references hold the object; 1 means that letting go of one ends it.
    [[nodiscard]] std::size_t References() const noexcept { return mvarReferences; }

    // What weak references share: it outlives the object and tells whether that has ended.
    class Anchor;
    [[nodiscard]] Ref<Anchor> SharedAnchor();

  protected:
    Counted() noexcept = default;
    virtual ~Counted();

  private:
    std::size_t mvarReferences = 0;
    Anchor* mvarAnchor = nullptr; // one reference held, let go when the object ends
};

template <class T>
class Ref {
  public:
    Ref() noexcept = default;
    Ref(std::nullptr_t) noexcept {} // NOLINT(google-explicit-constructor): nothing is a reference like any other
    explicit Ref(T* object) noexcept : mvarObject(object) {
        if (mvarObject != nullptr) mvarObject->AddRef();
    }
    Ref(const Ref& other) noexcept : Ref(other.mvarObject) {}
    Ref(Ref&& other) noexcept : mvarObject(std::exchange(other.mvarObject, nullptr)) {}
    template <class U, class = std::enable_if_t<std::is_convertible_v<U*, T*>>>
    Ref(const Ref<U>& other) noexcept : Ref(other.Get()) {} // NOLINT(google-explicit-constructor): as pointers convert
    ~Ref() {
        if (mvarObject != nullptr) mvarObject->Release();
    }
    Ref& operator=(Ref other) noexcept {
        std::swap(mvarObject, other.mvarObject);
        return *this;
    }

    [[nodiscard]] T* Get() const noexcept { return mvarObject; }
    T* operator->() const noexcept { return mvarObject; }
    T& operator*() const noexcept { return *mvarObject; }
    explicit operator bool() const noexcept { return mvarObject != nullptr; }
    friend bool operator==(const Ref& left, const Ref& right) noexcept { return left.mvarObject == right.mvarObject; }
    friend bool operator==(const Ref& left, const T* right) noexcept { return left.mvarObject == right; }

  private:
    T* mvarObject = nullptr;
};

class Counted::Anchor final : public Counted {
  public:
    explicit Anchor(Counted* target) noexcept : mvarTarget(target) {}
    [[nodiscard]] Counted* Target() const noexcept { return mvarTarget; } // null when it has ended

  private:
    friend class Counted;
    Counted* mvarTarget;
};

template <class T>
class WeakRef {
  public:
    WeakRef() noexcept = default;
    explicit WeakRef(T* object) : mvarAnchor(object != nullptr ? object->SharedAnchor() : Ref<Counted::Anchor>()) {}
    explicit WeakRef(const Ref<T>& object) : WeakRef(object.Get()) {}

    // The object with a reference on it, or nothing when none was set or it has ended.
    [[nodiscard]] Ref<T> Lock() const noexcept {
        return mvarAnchor ? Ref<T>(static_cast<T*>(mvarAnchor->Target())) : Ref<T>();
    }

  private:
    Ref<Counted::Anchor> mvarAnchor; // of a T
};

template <class T, class... Args>
[[nodiscard]] Ref<T> Make(Args&&... args) {
    return Ref<T>(new T(std::forward<Args>(args)...));
}

} // namespace kestrel
