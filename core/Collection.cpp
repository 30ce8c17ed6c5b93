#include "core/Collection.h"

#include <cstring>
#include <utility>

#include "core/Random.h"

namespace korb {

void MakeElement(const ElementType &type, void *at, const void *from) {
  if (type.construct != nullptr)
    type.construct(at, from);
  else if (from != nullptr)
    memcpy(at, from, static_cast<size_t>(type.size));
  else
    memset(at, 0, static_cast<size_t>(type.size));
}

bool CollectionBase::begin(CollectionIterator &it) const {
  form_->place(*this, it, false);
  return count > 0;
}

bool CollectionBase::end(CollectionIterator &it) const {
  form_->place(*this, it, true);
  return count > 0;
}

void *CollectionBase::end_raw(CollectionIterator &it, bool at_end) const {
  if (count < 1)
    return nullptr;
  form_->place(*this, it, at_end);
  return form_->step(*this, it, !at_end);
}

void *CollectionBase::end_value_raw(bool at_end) const {
  CollectionIterator it;
  return end_raw(it, at_end);
}

void *CollectionBase::random_raw() const {
  CollectionIterator it;
  void *element = end_raw(it, false);
  for (int32_t steps = RandomNumber(count); steps > 0; --steps)
    element = form_->step(*this, it, true);
  return element;
}

bool CollectionBase::remove_ends(int32_t n, bool in_front) {
  if (n > count)
    n = count;
  if (n < 1)
    return false;
  form_->remove_ends(*this, n, in_front);
  return true;
}

void *CollectionBase::add_raw(const void *value, CollectionOp op) {
  form_->check(op);
  return form_->add(*this, value, op >= CollectionOp::kPrependCopy);
}

void CollectionBase::add_all(const CollectionBase &other, CollectionOp op) {
  form_->check(op);
  // A collection put before itself is what it is behind itself, and only an append leaves the places of the walk alone.
  const bool in_front = op == CollectionOp::kPrependAll && &other != this;
  CollectionIterator it;
  other.form_->place(other, it, in_front);
  for (int32_t left = other.count; left > 0; --left)
    form_->add(*this, other.form_->step(other, it, !in_front), in_front);
}

void CollectionBase::rotate(int32_t n, CollectionOp op) {
  form_->check(op);
  if (count < 2)
    return;
  n %= count;
  if (op == CollectionOp::kRotateRight)
    n = -n;
  if (n < 0)
    n += count;
  if (n != 0)
    form_->rotate_left(*this, n);
}

void CollectionBase::take_over(CollectionBase &other) {
  if (this == &other)
    return;
  clear();
  count = std::exchange(other.count, 0);
  cells_ = std::exchange(other.cells_, Cells{}); // of the union's two members the one that covers the other
}

} // namespace korb
