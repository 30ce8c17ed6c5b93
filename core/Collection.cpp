#include "core/Collection.h"

#include <cstring>
#include <utility>

#include "core/Failure.h"
#include "core/IndexedCollection.h"
#include "core/List.h"
#include "core/Random.h"

namespace korb {

void MakeElement(const ElementType &type, void *at, const void *from) {
  if (type.construct)
    type.construct(at, from);
  else if (from)
    memcpy(at, from, static_cast<size_t>(type.size));
  else
    memset(at, 0, static_cast<size_t>(type.size));
}

void CollectionBase::place(CollectionIterator &it, bool at_end) const {
  is_indexed() ? IndexedForm::place(*this, it, at_end) : linked().place(*this, it, at_end);
}

void *CollectionBase::step(CollectionIterator &it, bool forward) const {
  return is_indexed() ? IndexedForm::step(*this, it, forward) : linked().step(*this, it, forward);
}

void *CollectionBase::look(intptr_t place) const {
  return is_indexed() ? IndexedForm::element_or_null(*this, place) : linked().look(*this, place);
}

void CollectionBase::clear() {
  is_indexed() ? IndexedForm::clear(*this) : linked().clear(*this);
}

bool CollectionBase::remove_current(CollectionIterator &it) {
  return is_indexed() ? IndexedForm::remove_current(*this, it) : linked().remove_current(*this, it);
}

bool CollectionBase::begin(CollectionIterator &it) const {
  place(it, false);
  return count > 0;
}

bool CollectionBase::end(CollectionIterator &it) const {
  place(it, true);
  return count > 0;
}

void *CollectionBase::end_raw(CollectionIterator &it, bool at_end) const {
  if (count < 1)
    return nullptr;
  place(it, at_end);
  return step(it, !at_end);
}

void *CollectionBase::end_value_raw(bool at_end) const {
  CollectionIterator it;
  return end_raw(it, at_end);
}

void *CollectionBase::random_raw() const {
  CollectionIterator it;
  void *element = end_raw(it, false);
  for (int32_t steps = RandomNumber(count); steps > 0; --steps)
    element = step(it, true);
  return element;
}

bool CollectionBase::remove_ends(int32_t n, bool in_front) {
  if (n > count)
    n = count;
  if (n < 1)
    return false;
  if (is_indexed()) {
    IndexedForm::remove_ends(*this, n, in_front);
    return true;
  }
  for (; n > 0; --n) {
    CollectionIterator it;
    end_raw(it, !in_front);
    remove_current(it);
  }
  return true;
}

int32_t CollectionBase::index_of(const CollectionIterator &it) const {
  return is_indexed() ? IndexedForm::index(*this, it) : -1;
}

// A bucket without a key can't be found again, and an order other than that of insertion would be a lie.
void CollectionBase::check(CollectionOp op) const {
  if (form_->kind == CollectionForm::Kind::kTable)
    InternalError("core", 5650 + static_cast<int32_t>(op));
}

void *CollectionBase::add_raw(const void *value, CollectionOp op) {
  const bool in_front = op >= CollectionOp::kPrependCopy;
  if (is_indexed())
    return IndexedForm::add(*this, value, in_front);
  check(op);
  return linked().add(*this, value, in_front);
}

void CollectionBase::add_all(const CollectionBase &other, CollectionOp op) {
  check(op);
  // A collection put before itself is what it is behind itself, and only an append leaves the places of the walk alone.
  const bool in_front = op == CollectionOp::kPrependAll && &other != this;
  CollectionIterator it;
  other.place(it, in_front);
  for (int32_t left = other.count; left > 0; --left)
    add_raw(other.step(it, !in_front), in_front ? CollectionOp::kPrepend : CollectionOp::kAppend);
}

void CollectionBase::rotate(int32_t n, CollectionOp op) {
  check(op);
  if (count < 2)
    return;
  n %= count;
  if (op == CollectionOp::kRotateRight)
    n = -n;
  if (n < 0)
    n += count;
  if (n == 0)
    return;
  if (is_indexed())
    IndexedForm::rotate_left(*this, n);
  else
    static_cast<const ListForm *>(form_)->rotate_left(*this, n);
}

void CollectionBase::take_over(CollectionBase &other) {
  if (this == &other)
    return;
  clear();
  count = std::exchange(other.count, 0);
  cells_ = std::exchange(other.cells_, Cells{}); // of the union's two members the one that covers the other
}

} // namespace korb
