// A doubly linked list.
#pragma once

#include "core/Collection.h"

namespace korb {

/// Keeps each element in a heap node of its own: `prev`, `next` (toward the tail), then the value in place.
class ListForm : public LinkedForm {
public:
  /// kList, or kStack.
  constexpr explicit ListForm(Kind a_kind) : LinkedForm(a_kind) {}

  void place(const CollectionBase &all, CollectionIterator &it, bool at_end) const override;
  void *step(const CollectionBase &all, CollectionIterator &it, bool forward) const override;
  void *look(const CollectionBase &all, intptr_t place) const override;
  void *add(CollectionBase &all, const void *value, bool in_front) const override;
  void clear(CollectionBase &all) const override;
  bool remove_current(CollectionBase &all, CollectionIterator &it) const override;

  /// `n` is 1 to count - 1. Elements keep their address.
  void rotate_left(CollectionBase &all, int32_t n) const;

private:
  using Node = CollectionBase::Node;

  static Node *node_at(intptr_t place) { return reinterpret_cast<Node *>(place); }
  static intptr_t number(const Node *node) { return reinterpret_cast<intptr_t>(node); }
  static void link(CollectionBase &all, Node *node, bool in_front);
  static void unlink(CollectionBase &all, Node *node);
  static void drop(CollectionBase &all, Node *node);
};

extern constinit const ListForm TheListForm;
extern constinit const ListForm TheStackForm;

/// A doubly linked list. Elements keep their address for life.
template <class T>
class List : public Collection<T> {
public:
  constexpr List() : List(TheListForm) {}
  List(const List &other) : List() { this->append_all(other); }
  List(List &&other) noexcept : List() { this->take_over(other); }
  ~List() { this->clear(); }
  List &operator=(const List &other) {
    if (this != &other) {
      this->clear();
      this->append_all(other);
    }
    return *this;
  }
  List &operator=(List &&other) noexcept {
    this->take_over(other);
    return *this;
  }

protected:
  constexpr explicit List(const ListForm &form) : Collection<T>(form) {
    static_assert(alignof(T) <= 2 * sizeof(void *), "a node's value stands right behind its two links");
  }
};

} // namespace korb
