// The family of collections: what all of them can do.
//
//     Collection<T>            walk, search, add and remove at both ends
//       List<T>                doubly linked nodes
//         Stack<T>             a List used from its tail
//       IndexedCollection<T>   access by position
//         Array<T>             exactly as large as its contents
//         Vector<T>            spare room at both ends
//       BucketTable<V, K>      hash table of Bucket<V, K>, walked in the order of insertion
//     Cursor<T>                walks any of them
//
// Ordinary virtual templates would give every instance a table and some thirty bodies of its own, most of which nobody
// calls, in a program that is to stay tiny. So the templates here hold no code: they turn T* into void* and back.
// What differs between the kinds is a CollectionForm, one object for each kind; what differs between element types is
// an ElementType, one constant for each type. What a form has as virtual slots is in the program whether it is called
// or not. So only the linked kinds have them, and those are in the program only where it has lists or tables; what the
// indexed ones do is called by name.
#pragma once

#include <cstddef>
#include <cstdint>
#include <new>
#include <type_traits>

namespace korb {

class CollectionBase;
class IndexedForm;
class ListForm;

/// Where a walk stands: plain data that the caller holds, so that several walks over one collection may run at once.
/// A walk over nodes or buckets must not be gone on with once its `next` or `prev` was removed by other means.
/// Each field is an index in an indexed collection (none: -1), and a pointer to a node or bucket elsewhere (none: 0).
struct CollectionIterator {
  intptr_t current = 0; ///< the element under the walk
  intptr_t next = 0;    ///< the element that `next` goes to
  intptr_t prev = 0;    ///< the element that `prev` goes to
};

/// The name of T in fatal messages. The header that declares an element type gives it its name:
///     template <> inline constexpr const char *TypeName<FileLock> = "FileLock";
template <class T>
inline constexpr const char *TypeName = "?";
template <>
inline constexpr const char *TypeName<int> = "int";
template <>
inline constexpr const char *TypeName<void *> = "void*";

/// What code that does not know T must know of it. An element may be moved in memory by copying its bytes, so a type
/// that holds its own address can't be an element of an Array or a Vector.
struct ElementType {
  int32_t size;     ///< bytes
  const char *name; ///< for fatal messages
  /// Makes an element at `at`, a copy of `*from` or, with `from` null, a default one. Null itself: bytes are copied, a
  /// default element is all zeros.
  void (*construct)(void *at, const void *from);
  /// Ends the element at `at`. Null: nothing to do.
  void (*destroy)(void *at);
};

/// Makes an element of `type` at `at`: a copy of `*from`, or a default one.
void MakeElement(const ElementType &type, void *at, const void *from);

/// A type without copies only comes to be by its default, as a slot that is filled where it stands.
template <class T>
void ConstructElement(void *at, [[maybe_unused]] const void *from) {
  if constexpr (std::is_copy_constructible_v<T>) {
    if (from) {
      new (at) T(*static_cast<const T *>(from));
      return;
    }
  }
  new (at) T();
}

template <class T>
void DestroyElement(void *at) {
  static_cast<T *>(at)->~T();
}

template <class T>
inline constexpr bool IsPlain = std::is_trivially_copyable_v<T> &&std::is_trivially_default_constructible_v<T>;

template <class T>
inline constexpr ElementType ElementTypeOf{sizeof(T), TypeName<T>, IsPlain<T> ? nullptr : ConstructElement<T>,
                                           std::is_trivially_destructible_v<T> ? nullptr : DestroyElement<T>};

/// The operations that a table refuses, in the order of the marks in its reports.
enum class CollectionOp {
  kAppendCopy,
  kAppend,
  kAppendAll,
  kPrependCopy,
  kPrepend,
  kPrependAll,
  kRotateLeft,
  kRotateRight
};

/// How one kind of collection keeps its elements. Has no state: the collection it works on is always passed.
class CollectionForm {
public:
  enum class Kind : uint8_t { kList, kStack, kIndexed, kTable };
  const Kind kind;

protected:
  constexpr explicit CollectionForm(Kind a_kind) : kind(a_kind) {}
  ~CollectionForm() = default;
};

/// The form of collections whose elements are linked.
class LinkedForm : public CollectionForm {
public:
  virtual void place(const CollectionBase &all, CollectionIterator &it, bool at_end) const = 0;
  virtual void *step(const CollectionBase &all, CollectionIterator &it, bool forward) const = 0;
  virtual void *look(const CollectionBase &all, intptr_t place) const = 0;
  /// A new element at one end; a null `value` leaves it default-constructed. `value` may point into the collection.
  virtual void *add(CollectionBase &all, const void *value, bool in_front) const = 0;
  virtual void clear(CollectionBase &all) const = 0;
  virtual bool remove_current(CollectionBase &all, CollectionIterator &it) const = 0;

protected:
  using CollectionForm::CollectionForm;
  ~LinkedForm() = default;
};

/// The part of a collection that does not depend on its element type. Use Collection<T>.
class CollectionBase {
public:
  /// Number of elements. Only to be read from outside.
  int32_t count = 0;

  bool is_empty() const { return count == 0; }
  bool is_out_of_range(int32_t i) const { return i < 0 || i >= count; }

  /// Sets `it` before the first element. True if there are elements.
  bool begin(CollectionIterator &it) const;
  /// Sets `it` after the last element. True if there are elements.
  bool end(CollectionIterator &it) const;
  void clear();
  /// Removes the element under `it`; false when there is none. `next` then goes to the one that followed it.
  bool remove_current(CollectionIterator &it);
  /// `n` below 1 does nothing, `n` from count up removes all.
  void remove_first_n(int32_t n) { remove_ends(n, true); }
  void remove_last_n(int32_t n) { remove_ends(n, false); }
  /// False when empty.
  bool remove_first() { return remove_ends(1, true); }
  bool remove_last() { return remove_ends(1, false); }
  /// Cut down to the first or last `n` elements; below 0 acts as 0, from count up nothing happens. A Stack keeps its
  /// newest elements with either.
  void keep_first(int32_t n) { remove_ends(n < 0 ? count : count - n, form_->kind == CollectionForm::Kind::kStack); }
  void keep_last(int32_t n) { remove_ends(n < 0 ? count : count - n, true); }
  /// By `n` places modulo count; a negative `n` goes the other way.
  void rotate_left(int32_t n) { rotate(n, CollectionOp::kRotateLeft); }
  void rotate_right(int32_t n) { rotate(n, CollectionOp::kRotateRight); }

  /// Position of the element under `it` in an indexed collection; -1 elsewhere and when there is none.
  int32_t index_of(const CollectionIterator &it) const;

protected:
  constexpr CollectionBase(const CollectionForm &form, const ElementType &type) : form_(&form), type_(&type) {}
  CollectionBase(const CollectionBase &) = delete;
  CollectionBase &operator=(const CollectionBase &) = delete;
  ~CollectionBase() = default;

  // What the form does.
  void place(CollectionIterator &it, bool at_end) const;
  void *step(CollectionIterator &it, bool forward) const;
  void *look(intptr_t place) const;
  bool is_indexed() const { return form_->kind == CollectionForm::Kind::kIndexed; }
  const LinkedForm &linked() const { return *static_cast<const LinkedForm *>(form_); }

  void *end_raw(CollectionIterator &it, bool at_end) const;
  void *end_value_raw(bool at_end) const;
  void *random_raw() const;
  bool remove_ends(int32_t n, bool in_front);
  void *add_raw(const void *value, CollectionOp op);
  void add_all(const CollectionBase &other, CollectionOp op);
  void rotate(int32_t n, CollectionOp op);
  /// Does not return when a table, which has only what has a key, is asked for `op`.
  void check(CollectionOp op) const;
  /// Gives up what is held and takes over what `other` holds, which is then empty. Both are of one form and type.
  void take_over(CollectionBase &other);

  struct Node;

  const CollectionForm *form_;
  const ElementType *type_;
  // What the form keeps: a List its nodes, an indexed collection its block.
  struct Nodes {
    Node *head;
    Node *tail;
  };
  struct Cells {
    uint8_t *block;   ///< `capacity` cells, or null
    int32_t start;    ///< first cell in use
    int32_t capacity; ///< cells, not bytes
  };
  union {
    Cells cells_{};
    Nodes nodes_;
  };

  friend class CollectionForm;
  friend class IndexedForm;
  friend class ListForm;
};

/// Any collection of T. Results of type T* are null for "no such element" and belong to the collection.
template <class T>
class Collection : public CollectionBase {
public:
  /// Moves to the first element. An empty collection leaves `it` alone.
  T *first(CollectionIterator &it) { return typed(end_raw(it, false)); }
  const T *first(CollectionIterator &it) const { return typed(end_raw(it, false)); }
  /// Moves forward; null at the end, where `it` then stands as `end` sets it.
  T *next(CollectionIterator &it) { return typed(step(it, true)); }
  const T *next(CollectionIterator &it) const { return typed(step(it, true)); }
  /// Moves to the last element. An empty collection leaves `it` alone.
  T *last(CollectionIterator &it) { return typed(end_raw(it, true)); }
  const T *last(CollectionIterator &it) const { return typed(end_raw(it, true)); }
  /// Moves backward; null at the front, where `it` then stands as `begin` sets it.
  T *prev(CollectionIterator &it) { return typed(step(it, false)); }
  const T *prev(CollectionIterator &it) const { return typed(step(it, false)); }

  /// An element chosen by RandomNumber; the first with fewer than two.
  T *random() { return typed(random_raw()); }
  T *first_value() { return typed(end_value_raw(false)); }
  const T *first_value() const { return typed(end_value_raw(false)); }
  T *last_value() { return typed(end_value_raw(true)); }
  const T *last_value() const { return typed(end_value_raw(true)); }

  /// The elements around `it`, without moving it.
  T *current_value(const CollectionIterator &it) { return typed(look(it.current)); }
  const T *current_value(const CollectionIterator &it) const { return typed(look(it.current)); }
  T *next_value(const CollectionIterator &it) { return typed(look(it.next)); }
  const T *next_value(const CollectionIterator &it) const { return typed(look(it.next)); }
  T *prev_value(const CollectionIterator &it) { return typed(look(it.prev)); }
  const T *prev_value(const CollectionIterator &it) const { return typed(look(it.prev)); }

  /// Adds a copy at the end and gives the new element. `value` may be an element of this very collection.
  T *append(const T &value) {
    static_assert(std::is_copy_constructible_v<T>);
    return typed(add_raw(&value, CollectionOp::kAppend));
  }
  /// As append; a null `value` leaves the new element default-constructed.
  T *append_copy(const T *value) { return typed(add_raw(value, CollectionOp::kAppendCopy)); }
  /// Adds copies of all elements of `other`, which may be this collection, in their order.
  void append_all(const Collection<T> &other) {
    static_assert(std::is_copy_constructible_v<T>);
    add_all(other, CollectionOp::kAppendAll);
  }
  /// The same three at the front; prepend_all too keeps the order of `other`.
  T *prepend(const T &value) { return typed(add_raw(&value, CollectionOp::kPrepend)); }
  T *prepend_copy(const T *value) { return typed(add_raw(value, CollectionOp::kPrependCopy)); }
  void prepend_all(const Collection<T> &other) { add_all(other, CollectionOp::kPrependAll); }

  /// Removes the element under `it` and returns a copy of it; a default value when there is none.
  T take_current(CollectionIterator &it) {
    const T *value = current_value(it);
    if (!value)
      return T();
    T taken(*value);
    remove_current(it);
    return taken;
  }

protected:
  constexpr explicit Collection(const CollectionForm &form) : CollectionBase(form, ElementTypeOf<T>) {}
  ~Collection() = default;

  static T *typed(void *element) { return static_cast<T *>(element); }
};

/// A walk over any collection. Attach, then `advance` as a loop condition and `value` in the body. The collection must
/// outlive the walk.
template <class T>
class Cursor {
public:
  Cursor() = default;
  explicit Cursor(Collection<T> &collection) { attach(&collection); }

  /// Points before the first element of `collection`, or at nothing when it is null.
  void attach(Collection<T> *collection) {
    set(collection);
    if (collection)
      collection->begin(state_);
  }
  /// Points after the last element.
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
