#pragma once

#include <cassert>
#include <memory>
#include <utility>

#include "algebra/VoidPlex.h"

namespace kestol {

/// A VoidPlex of objects of one class that it owns: what is stored is deleted with the container.
/// Keys are positive numbers with gaps; null pointers are not stored. To walk it:
///
///     for (const auto [number, node] : nodes) ...
///
/// in increasing order of number, in constant time per step; storing and taking on the way is safe.
template <class T>
class Plex {
public:
  /// Refuses blockSize < 1.
  explicit Plex(int blockSize) : slots_(blockSize) {}
  ~Plex() {
    for (auto [number, object] : *this) delete object;
  }
  Plex(const Plex&) = delete;
  /// Takes over what is in `other`, which is left empty.
  Plex(Plex&& other) noexcept : slots_(std::move(other.slots_)) {}
  Plex& operator=(const Plex&) = delete;

  int Lowest() const { return slots_.lowest; }    ///< 0 when empty
  int Highest() const { return slots_.highest; }  ///< 0 when empty

  /// The object under `number`, which may be any, or null.
  T* Get(int number) const { return static_cast<T*>(slots_.Get(number)); }

  /// Stores under a free number and returns the object; refuses numbers below 1 and numbers in use.
  T* Insert(int number, std::unique_ptr<T> object) {
    assert(object);
    slots_.Insert(number, object.get());
    return object.release();
  }

  /// Gives the object under `number` away; null when there is none. Highest() stays.
  std::unique_ptr<T> Take(int number) {
    std::unique_ptr<T> object(Get(number));
    if (object) slots_.Set(number, nullptr);
    return object;
  }

  /// Walks the occupied numbers upwards; yields pairs (number, pointer).
  class Iterator {
  public:
    using value_type = std::pair<int, T*>;
    explicit Iterator(const VoidPlex* slots) : slots_(slots) { ++*this; }
    Iterator() = default;
    value_type operator*() const { return {cursor_, object_}; }
    Iterator& operator++() {
      object_ = static_cast<T*>(slots_->Next(cursor_));
      return *this;
    }
    bool operator!=(const Iterator& other) const { return cursor_ != other.cursor_; }

  private:
    const VoidPlex* slots_ = nullptr;
    int cursor_ = 0;
    T* object_ = nullptr;
  };
  Iterator begin() const { return Iterator(&slots_); }
  Iterator end() const { return Iterator(); }

private:
  VoidPlex slots_;
};

}  // namespace kestol
