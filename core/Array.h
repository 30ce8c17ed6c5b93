// An array without spare room.
#pragma once

#include "core/IndexedCollection.h"

namespace korb {

extern constinit const IndexedForm TheArrayForm;

/// A block of exactly `count` elements, side by side. Every change of the count takes a new block, so this is for
/// contents whose number is known before they come: set_count, then fill.
template <class T>
class Array : public IndexedCollection<T> {
public:
  constexpr Array() : IndexedCollection<T>(TheArrayForm) {}
  Array(const Array &other) : Array() { *this = other; }
  Array(Array &&other) noexcept : Array() { this->take_over(other); }
  ~Array() { this->clear(); }
  Array &operator=(const Array &other) {
    if (this != &other) {
      this->reset_count(other.count);
      for (int32_t i = 0; i < other.count; ++i)
        this->at(i) = other.at(i);
    }
    return *this;
  }
  Array &operator=(Array &&other) noexcept {
    this->take_over(other);
    return *this;
  }
};

} // namespace korb
