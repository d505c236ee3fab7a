#pragma once

#include <iterator>
#include <memory>
#include <utility>

#include "algebra/VoidPlex.h"

/// A VoidPlex of objects of one class that it owns: what is stored is deleted with the container.
/// Keys are positive numbers with gaps.
template <class T>
class Plex {
public:
  explicit Plex(int blockSize) : slots_(blockSize) {}
  ~Plex() {
    for (auto [number, object] : *this) delete object;
  }
  Plex(const Plex&) = delete;
  Plex& operator=(const Plex&) = delete;

  int Lowest() const { return slots_.lowest; }    ///< 0 when empty
  int Highest() const { return slots_.highest; }  ///< 0 when empty

  /// The object under `number`, or null.
  T* Get(int number) const { return static_cast<T*>(slots_.Get(number)); }

  /// Stores under a free number; refuses numbers below 1 and numbers in use.
  T* Insert(int number, std::unique_ptr<T> object) {
    slots_.Insert(number, object.get());
    return object.release();
  }

  /// Gives the object under `number` away; null when there is none.
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
