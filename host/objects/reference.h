/// A counted reference to a host object, released when it goes out of scope.
#pragma once

#include <cstddef>
#include <type_traits>
#include <utility>

namespace pxkhost {

template <class T>
class Ref {
  public:
    Ref() = default;
    Ref(std::nullptr_t) {}
    Ref(const Ref& other) : object_(other.object_) {
        if (object_ != nullptr) object_->retain();
    }
    Ref(Ref&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
    template <class U>
    requires std::is_convertible_v<U*, T*> Ref(Ref<U> other)
    noexcept : object_(other.detach()) {}
    Ref& operator=(Ref other) noexcept {
        std::swap(object_, other.object_);
        return *this;
    }
    ~Ref() {
        if (object_ != nullptr) object_->release();
    }

    /// Takes over a reference that the caller holds.
    static Ref adopt(T* object) {
        Ref reference;
        reference.object_ = object;
        return reference;
    }

    /// Takes a reference of its own; nil gives an empty reference.
    static Ref share(T* object) {
        if (object != nullptr) object->retain();
        return adopt(object);
    }

    /// Hands the reference to the caller and is empty afterwards.
    T* detach() noexcept { return std::exchange(object_, nullptr); }

    T* get() const { return object_; }
    T* operator->() const { return object_; }
    T& operator*() const { return *object_; }
    explicit operator bool() const { return object_ != nullptr; }
    bool operator==(const Ref&) const = default;

  private:
    T* object_ = nullptr;
};

}  // namespace pxkhost
