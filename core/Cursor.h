// A walk over any collection.
#pragma once

#include "core/Collection.h"

namespace korb {

/// Attach, then `advance` as a loop condition and `value` in the body. The collection must outlive the walk.
template <class T>
class Cursor {
public:
  Cursor() = default;
  explicit Cursor(Collection<T> &collection) { attach(&collection); }

  /// Points in front of the first element of `collection`, or at nothing when it is null.
  void attach(Collection<T> *collection) {
    set(collection);
    if (collection)
      collection->begin(state_);
  }
  /// Points behind the last element.
  void attach_at_end(Collection<T> *collection) {
    set(collection);
    if (collection)
      collection->end(state_);
  }

  /// Moves to the next element; false when there is none.
  bool advance() {
    if (collection_)
      value_ = collection_->next(state_);
    return value_ != nullptr;
  }
  /// Moves to the previous element; false when there is none.
  bool retreat() {
    if (collection_)
      value_ = collection_->prev(state_);
    return value_ != nullptr;
  }

  /// The element under the cursor, or null.
  T *value() const { return value_; }
  /// Its position in an indexed collection; -1 elsewhere and when there is none.
  int32_t index() const { return value_ ? collection_->index_of(state_) : -1; }

private:
  void set(Collection<T> *collection) {
    collection_ = collection;
    value_ = nullptr;
  }

  Collection<T> *collection_ = nullptr;
  CollectionIterator state_;
  T *value_ = nullptr;
};

} // namespace korb
