#include <cstdlib>
#include <cstring>

#include "core/Array.h"
#include "core/Failure.h"
#include "core/Heap.h"
#include "core/Vector.h"

namespace korb {

constinit const IndexedForm TheArrayForm(false, true);
constinit const IndexedForm TheVectorForm(false, false);
constinit const IndexedForm TheBoxedVectorForm(true, false);

namespace {

/// 0 when there is no valid position at all.
int32_t Limited(int32_t i, int32_t most) {
  const int32_t limited = i > most ? most : i;
  return limited < 0 ? 0 : limited;
}

} // namespace

size_t IndexedForm::cell_size(const CollectionBase &all) {
  return of(all).boxed_ ? sizeof(void *) : static_cast<size_t>(all.type_->size);
}

uint8_t *IndexedForm::cell(const CollectionBase &all, int32_t i) {
  return all.cells_.block + static_cast<size_t>(all.cells_.start + i) * cell_size(all);
}

void IndexedForm::shift(const CollectionBase &all, int32_t from, int32_t to, int32_t n) {
  if (n > 0)
    memmove(cell(all, to), cell(all, from), static_cast<size_t>(n) * cell_size(all));
}

void *IndexedForm::element(const CollectionBase &all, int32_t i) {
  uint8_t *at = cell(all, i);
  return of(all).boxed_ ? *reinterpret_cast<void **>(at) : at;
}

void *IndexedForm::element_or_null(const CollectionBase &all, intptr_t i) {
  return i < 0 || i >= all.count ? nullptr : element(all, static_cast<int32_t>(i));
}

void IndexedForm::check_index(const CollectionBase &all, int32_t i) {
  if (all.is_out_of_range(i))
    FatalFormat("Vector<%s>[%d]\nmax_index = %d", all.type_->name, i, all.count - 1);
}

void *IndexedForm::checked_element(const CollectionBase &all, int32_t i) {
  check_index(all, i);
  return element(all, i);
}

void IndexedForm::construct(CollectionBase &all, int32_t i, const void *from) {
  void *at = cell(all, i);
  if (of(all).boxed_)
    at = *static_cast<void **>(at) = heap_take(static_cast<size_t>(all.type_->size));
  MakeElement(*all.type_, at, from);
}

void IndexedForm::destroy(CollectionBase &all, int32_t first, int32_t n) {
  for (int32_t i = first; i < first + n; ++i) {
    void *at = element(all, i);
    if (at && all.type_->destroy)
      all.type_->destroy(at);
    if (of(all).boxed_)
      free(at);
  }
}

/// Moves the cells to a new block, the first `rotation` of them after the others. A capacity of 0 frees the block.
void IndexedForm::rebuild(CollectionBase &all, int32_t capacity, int32_t start, int32_t rotation) {
  const CollectionBase::Cells old = all.cells_;
  uint8_t *first = old.block + static_cast<size_t>(old.start) * cell_size(all);
  const size_t head = static_cast<size_t>(rotation) * cell_size(all);
  const size_t rest = static_cast<size_t>(all.count - rotation) * cell_size(all);

  all.cells_ = {};
  if (capacity > 0) {
    const uint64_t bytes = static_cast<uint64_t>(capacity) * cell_size(all);
    all.cells_ = {static_cast<uint8_t *>(heap_take(bytes > SIZE_MAX ? SIZE_MAX : static_cast<size_t>(bytes))), start,
                  capacity};
  }
  if (all.count > 0) {
    memcpy(cell(all, 0), first + head, rest);
    memcpy(cell(all, all.count - rotation), first, head);
  }
  free(old.block);
}

void IndexedForm::reserve(CollectionBase &all, int32_t n) {
  CollectionBase::Cells &cells = all.cells_;
  if (n < all.count)
    n = all.count;
  if (of(all).exact_) {
    if (n != cells.capacity)
      rebuild(all, n, 0, 0);
  } else if (n > cells.capacity || (n > 500 && n < cells.capacity / 4)) {
    rebuild(all, n > INT32_MAX - n / 2 ? INT32_MAX : n + n / 2, n / 2 / 2, 0);
  } else if (cells.start > cells.capacity - n) {
    const int32_t start = (cells.capacity - n) / 2;
    shift(all, 0, start - cells.start, all.count);
    cells.start = start;
  }
}

void IndexedForm::set_count(CollectionBase &all, int32_t n) {
  if (n < 1) {
    clear(all);
  } else if (n > all.count) {
    reserve(all, n);
    while (all.count < n)
      construct(all, all.count++, nullptr);
  } else {
    remove_range(all, n, all.count - 1);
  }
}

/// Opens the cell `i` for a new element. An append always keeps the free room in front for later, whereas an insertion
/// takes the roomier side.
void IndexedForm::open(CollectionBase &all, int32_t i, bool at_tail) {
  CollectionBase::Cells &cells = all.cells_;
  const int32_t room = cells.capacity - all.count;
  if (!at_tail && room > 0 && room / 2 < cells.start) {
    shift(all, 0, -1, i);
    --cells.start;
  } else {
    if (at_tail || room < 1)
      reserve(all, all.count + 1);
    shift(all, i, i + 1, all.count - i);
  }
  ++all.count;
}

void *IndexedForm::put(CollectionBase &all, int32_t i, bool at_tail, const void *value) {
  // An element that is its own collection's source moves with its cell.
  const uint8_t *source = static_cast<const uint8_t *>(value);
  const uint8_t *block = all.cells_.block;
  const bool inside =
      !of(all).boxed_ && source && all.count > 0 && source >= cell(all, 0) && source < cell(all, all.count);
  if (!inside) {
    open(all, i, at_tail);
    construct(all, i, value);
  } else {
    const int32_t from = static_cast<int32_t>(static_cast<size_t>(source - block) / cell_size(all)) - all.cells_.start;
    open(all, i, at_tail);
    construct(all, i, cell(all, from < i ? from : from + 1));
  }
  return element(all, i);
}

void *IndexedForm::insert(CollectionBase &all, int32_t i, const void *value) {
  return put(all, Limited(i, all.count), false, value);
}

void *IndexedForm::append(CollectionBase &all, const void *value) {
  return put(all, all.count, true, value);
}

void *IndexedForm::add(CollectionBase &all, const void *value, bool in_front) {
  return put(all, in_front ? 0 : all.count, !in_front, value);
}

void IndexedForm::clear(CollectionBase &all) {
  destroy(all, 0, all.count);
  free(all.cells_.block);
  all.count = 0;
  all.cells_ = {};
}

void IndexedForm::remove_range(CollectionBase &all, int32_t first, int32_t last) {
  if (first < 0)
    first = 0;
  if (last > all.count - 1)
    last = all.count - 1;
  if (first > last)
    return;
  const int32_t n = last - first + 1;
  destroy(all, first, n);
  shift(all, last + 1, first, all.count - 1 - last);
  all.count -= n;
  if (of(all).exact_)
    reserve(all, all.count);
}

void IndexedForm::remove_at(CollectionBase &all, int32_t i) {
  remove_range(all, i, i);
}

void IndexedForm::remove_ends(CollectionBase &all, int32_t n, bool in_front) {
  if (in_front)
    remove_range(all, 0, n - 1);
  else
    remove_range(all, all.count - n, all.count - 1);
}

bool IndexedForm::remove_current(CollectionBase &all, CollectionIterator &it) {
  const int32_t i = index(all, it);
  if (i < 0)
    return false;
  remove_range(all, i, i);
  it = {-1, i, i - 1};
  return true;
}

void IndexedForm::place(const CollectionBase &all, CollectionIterator &it, bool at_end) {
  it = at_end ? CollectionIterator{-1, all.count, all.count - 1} : CollectionIterator{-1, all.count > 0 ? 0 : -1, -1};
}

void *IndexedForm::step(const CollectionBase &all, CollectionIterator &it, bool forward) {
  const intptr_t i = forward ? it.next : it.prev;
  void *element = element_or_null(all, i);
  if (element)
    it = {i, i + 1, i - 1};
  else
    place(all, it, forward);
  return element;
}

int32_t IndexedForm::index(const CollectionBase &all, const CollectionIterator &it) {
  return it.current < 0 || it.current >= all.count ? -1 : static_cast<int32_t>(it.current);
}

void IndexedForm::rotate_left(CollectionBase &all, int32_t n) {
  CollectionBase::Cells &cells = all.cells_;
  const int32_t others = all.count - n;
  const int32_t tail_room = cells.capacity - cells.start - all.count;
  if (of(all).exact_) {
    rebuild(all, all.count, 0, n);
  } else if (of(all).boxed_) {
    rebuild(all, all.count + all.count / 2, all.count / 4, n);
  } else if (cells.start >= others && (others < n || tail_room < n)) {
    shift(all, n, -others, others);
    cells.start -= others;
  } else if (tail_room >= n) {
    shift(all, 0, all.count, n);
    cells.start += n;
  } else {
    rebuild(all, 2 * all.count, all.count / 2, n);
  }
}

void IndexedForm::swap_cells(const CollectionBase &all, int32_t i, int32_t j) {
  uint8_t *a = cell(all, i);
  uint8_t *b = cell(all, j);
  for (size_t left = cell_size(all); left > 0; --left, ++a, ++b) {
    const uint8_t byte = *a;
    *a = *b;
    *b = byte;
  }
}

void IndexedForm::swap(CollectionBase &all, int32_t i, int32_t j) {
  if (!all.is_out_of_range(i) && !all.is_out_of_range(j))
    swap_cells(all, i, j);
}

void IndexedForm::move_down(CollectionBase &all, int32_t from, int32_t to) {
  to = Limited(to, all.count - 1);
  for (int32_t i = Limited(from, all.count - 1); i < to; ++i)
    swap_cells(all, i, i + 1);
}

void IndexedForm::move_up(CollectionBase &all, int32_t from, int32_t to) {
  from = Limited(from, all.count - 1);
  for (int32_t i = Limited(to, all.count - 1); i > from; --i)
    swap_cells(all, i, i - 1);
}

/// Lets cell `i` sink in the heap of the first `n` cells, whose greatest stands on top.
void IndexedForm::sink(const CollectionBase &all, int32_t i, int32_t n, int (*compare)(const void *, const void *)) {
  for (;;) {
    int32_t child = 2 * i + 1;
    if (child >= n)
      return;
    if (child + 1 < n && compare(cell(all, child), cell(all, child + 1)) < 0)
      ++child;
    if (compare(cell(all, i), cell(all, child)) >= 0)
      return;
    swap_cells(all, i, child);
    i = child;
  }
}

// A heap sort of our own: the program is linked without the C library that would bring one.
void IndexedForm::sort(CollectionBase &all, int (*compare)(const void *, const void *)) {
  for (int32_t i = all.count / 2; i > 0;)
    sink(all, --i, all.count, compare);
  for (int32_t n = all.count; n > 1;) {
    swap_cells(all, 0, --n);
    sink(all, 0, n, compare);
  }
}

} // namespace korb
