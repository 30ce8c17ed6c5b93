// Collections whose elements have a position.
#pragma once

#include "core/Collection.h"

namespace korb {

/// Keeps the elements in one block of cells. The cells in use stand together, from `start` on. A cell is an element or,
/// boxed, a pointer to an element that lives on the heap; a null pointer is tolerated. What it does is told of the
/// collection alone, which knows its form.
class IndexedForm : public CollectionForm {
public:
  /// `exact`: the block is never larger than its contents.
  constexpr IndexedForm(bool boxed, bool exact) : CollectionForm(Kind::kIndexed), boxed_(boxed), exact_(exact) {}

  static void place(const CollectionBase &all, CollectionIterator &it, bool at_end);
  static void *step(const CollectionBase &all, CollectionIterator &it, bool forward);
  static void *add(CollectionBase &all, const void *value, bool in_front);
  static void clear(CollectionBase &all);
  static bool remove_current(CollectionBase &all, CollectionIterator &it);

  /// Removes `n` elements from one end; 1 to count.
  static void remove_ends(CollectionBase &all, int32_t n, bool in_front);
  /// `n` is 1 to count - 1.
  static void rotate_left(CollectionBase &all, int32_t n);
  /// Position of `it`, or -1 when there is no element under it.
  static int32_t index(const CollectionBase &all, const CollectionIterator &it);
  /// Element `i`; out of range is a fatal report.
  static void *checked_element(const CollectionBase &all, int32_t i);
  static void *element_or_null(const CollectionBase &all, intptr_t i);
  static void check_index(const CollectionBase &all, int32_t i);
  static void reserve(CollectionBase &all, int32_t n);
  static void set_count(CollectionBase &all, int32_t n);
  static void *append(CollectionBase &all, const void *value);
  static void *insert(CollectionBase &all, int32_t i, const void *value);
  static void remove_range(CollectionBase &all, int32_t first, int32_t last);
  static void remove_at(CollectionBase &all, int32_t i);
  static void move_down(CollectionBase &all, int32_t from, int32_t to);
  static void move_up(CollectionBase &all, int32_t from, int32_t to);
  static void swap(CollectionBase &all, int32_t i, int32_t j);
  static void sort(CollectionBase &all, int (*compare)(const void *, const void *));

private:
  static const IndexedForm &of(const CollectionBase &all) { return *static_cast<const IndexedForm *>(all.form_); }
  static size_t cell_size(const CollectionBase &all);
  static uint8_t *cell(const CollectionBase &all, int32_t i);
  /// Element `i`, which must be in range.
  static void *element(const CollectionBase &all, int32_t i);
  /// Moves the bytes of `n` cells; what is left behind means nothing.
  static void shift(const CollectionBase &all, int32_t from, int32_t to, int32_t n);
  static void swap_cells(const CollectionBase &all, int32_t i, int32_t j);
  static void sink(const CollectionBase &all, int32_t i, int32_t n, int (*compare)(const void *, const void *));
  static void construct(CollectionBase &all, int32_t i, const void *from);
  static void destroy(CollectionBase &all, int32_t first, int32_t n);
  static void rebuild(CollectionBase &all, int32_t capacity, int32_t start, int32_t rotation);
  static void open(CollectionBase &all, int32_t i, bool at_tail);
  static void *put(CollectionBase &all, int32_t i, bool at_tail, const void *value);

  bool boxed_;
  bool exact_;
};

/// What Array and Vector have in common. Positions count from 0.
template <class T>
class IndexedCollection : public Collection<T> {
public:
  /// Element `i`. Out of range is a fatal report.
  T &at(int32_t i) { return *this->typed(IndexedForm::checked_element(*this, i)); }
  const T &at(int32_t i) const { return const_cast<IndexedCollection *>(this)->at(i); }
  T &checked_at(int32_t i) { return at(i); }
  const T &checked_at(int32_t i) const { return at(i); }
  /// Fatal report, with the element's type name, when `i` is out of range.
  void check_index(int32_t i) const { IndexedForm::check_index(*this, i); }
  /// Element `i`, or null when out of range.
  T *element_or_null(int32_t i) { return this->typed(IndexedForm::element_or_null(*this, i)); }
  const T *element_or_null(int32_t i) const { return this->typed(IndexedForm::element_or_null(*this, i)); }

  // What every collection has, by name.
  T *first_value() { return element_or_null(0); }
  const T *first_value() const { return element_or_null(0); }
  T *last_value() { return element_or_null(this->count - 1); }
  const T *last_value() const { return element_or_null(this->count - 1); }
  T *append(const T &value) {
    static_assert(std::is_copy_constructible_v<T>);
    return this->typed(IndexedForm::append(*this, &value));
  }
  void clear() { IndexedForm::clear(*this); }
  bool remove_last() {
    const bool any = this->count > 0;
    remove_at(this->count - 1);
    return any;
  }

  /// Removes the elements from `first` to `last`, both included, as far as they exist.
  void remove_range(int32_t first, int32_t last) { IndexedForm::remove_range(*this, first, last); }
  void remove_at(int32_t i) { IndexedForm::remove_at(*this, i); }
  /// A new default-constructed element at the end.
  T &append_slot() { return *this->typed(IndexedForm::append(*this, nullptr)); }
  /// A new element before element `i`, which is limited to 0..count: default-constructed, or a copy.
  T &insert_slot(int32_t i) { return *this->typed(IndexedForm::insert(*this, i, nullptr)); }
  /// A null `value` leaves the new element default-constructed.
  T *insert_copy(int32_t i, const T *value) { return this->typed(IndexedForm::insert(*this, i, value)); }
  T *insert(int32_t i, const T &value) {
    static_assert(std::is_copy_constructible_v<T>);
    return insert_copy(i, &value);
  }
  /// Removes element `i` and returns a copy of it; out of range a default value, and nothing changes.
  T take_at(int32_t i) {
    const T *element = element_or_null(i);
    if (!element)
      return T();
    T taken(*element);
    remove_at(i);
    return taken;
  }

  /// Adds default-constructed elements or removes elements at the end until there are `n`; below 1 clears.
  void set_count(int32_t n) { IndexedForm::set_count(*this, n); }
  /// `n` default-constructed elements and nothing of before.
  void reset_count(int32_t n) {
    this->clear();
    set_count(n);
  }
  /// Takes element `from` out and puts it back at `to`, after it. Both are limited to valid positions; `from` not
  /// below `to` does nothing.
  void move_down(int32_t from, int32_t to) { IndexedForm::move_down(*this, from, to); }
  /// Takes element `to` out and puts it back at `from`, before it. Limits as with move_down.
  void move_up(int32_t from, int32_t to) { IndexedForm::move_up(*this, from, to); }
  /// Does nothing when either is out of range.
  void swap(int32_t i, int32_t j) { IndexedForm::swap(*this, i, j); }
  /// Sorts; equal elements end in any order. `compare` gets pointers to cells: to elements in an Array and in a Vector
  /// of scalars, to pointers to elements in any other Vector.
  void sort(int (*compare)(const void *, const void *)) { IndexedForm::sort(*this, compare); }
  /// Forgets the contents without freeing them, for an owner that has given them away.
  void reset_fields() {
    this->count = 0;
    this->cells_ = {};
  }

protected:
  constexpr explicit IndexedCollection(const IndexedForm &form) : Collection<T>(form) {}
  ~IndexedCollection() = default;
};

} // namespace korb
