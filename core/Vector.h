// An array with spare room at both ends.
#pragma once

#include "core/IndexedCollection.h"

namespace korb {

extern constinit const IndexedForm TheVectorForm;
extern constinit const IndexedForm TheBoxedVectorForm;

/// Insertion is cheap at both ends. Scalars stand in the block itself; an element of any other type is a heap object of
/// its own, which keeps its address for life.
template <class T>
class Vector : public IndexedCollection<T> {
public:
  static constexpr bool is_boxed = !std::is_scalar_v<T>;

  constexpr Vector() : IndexedCollection<T>(is_boxed ? TheBoxedVectorForm : TheVectorForm) {}
  Vector(const Vector &other) : Vector() { copy_from(other); }
  Vector(Vector &&other) noexcept : Vector() { this->take_over(other); }
  ~Vector() { this->clear(); }
  Vector &operator=(const Vector &other) {
    if (this != &other)
      copy_from(other);
    return *this;
  }
  Vector &operator=(Vector &&other) noexcept {
    this->take_over(other);
    return *this;
  }

  /// Replaces the contents by copies of the elements of `other`, which is another vector.
  void copy_from(const Vector &other) {
    this->clear();
    reserve(other.count);
    this->append_all(other);
  }

  /// Makes room for `n` elements in all. A block too small for them, or more than four times too large for more than
  /// 500, is replaced by one with half as much again to spare, around the contents; the count stays.
  void reserve(int32_t n) { IndexedForm::reserve(*this, n); }
  /// Elements that the block has room for.
  int32_t capacity() const { return this->cells_.capacity; }
  /// Free places before the first element.
  int32_t front_room() const { return this->cells_.start; }
};

} // namespace korb
