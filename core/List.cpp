#include "core/List.h"

#include <cstdlib>
#include <cstring>

#include "core/Heap.h"

namespace korb {

constinit const ListForm TheListForm(CollectionForm::Kind::kList);
constinit const ListForm TheStackForm(CollectionForm::Kind::kStack);

struct CollectionBase::Node {
  Node *prev;
  Node *next;

  void *value() { return this + 1; }
};

void ListForm::place(const CollectionBase &all, CollectionIterator &it, bool at_end) const {
  const auto &nodes = all.nodes_;
  it = at_end ? CollectionIterator{0, 0, number(nodes.tail)} : CollectionIterator{0, number(nodes.head), 0};
}

void *ListForm::step(const CollectionBase &all, CollectionIterator &it, bool forward) const {
  Node *node = node_at(forward ? it.next : it.prev);
  if (!node) {
    place(all, it, forward);
    return nullptr;
  }
  it = {number(node), number(node->next), number(node->prev)};
  return node->value();
}

void *ListForm::look(const CollectionBase &, intptr_t place) const {
  Node *node = node_at(place);
  return node ? node->value() : nullptr;
}

void *ListForm::add(CollectionBase &all, const void *value, bool in_front) const {
  const ElementType &type = *all.type_;
  Node *node = static_cast<Node *>(heap_take(sizeof(Node) + static_cast<size_t>(type.size)));
  MakeElement(type, node->value(), value);
  link(all, node, in_front);
  return node->value();
}

void ListForm::clear(CollectionBase &all) const {
  while (all.nodes_.head)
    drop(all, all.nodes_.head);
}

bool ListForm::remove_current(CollectionBase &all, CollectionIterator &it) const {
  Node *node = node_at(it.current);
  if (!node)
    return false;
  it = {0, number(node->next), number(node->prev)};
  drop(all, node);
  return true;
}

void ListForm::rotate_left(CollectionBase &all, int32_t n) const {
  for (; n > 0; --n) {
    Node *node = all.nodes_.head;
    unlink(all, node);
    link(all, node, false);
  }
}

void ListForm::link(CollectionBase &all, Node *node, bool in_front) {
  auto &nodes = all.nodes_;
  node->prev = in_front ? nullptr : nodes.tail;
  node->next = in_front ? nodes.head : nullptr;
  (node->prev ? node->prev->next : nodes.head) = node;
  (node->next ? node->next->prev : nodes.tail) = node;
  ++all.count;
}

void ListForm::unlink(CollectionBase &all, Node *node) {
  (node->prev ? node->prev->next : all.nodes_.head) = node->next;
  (node->next ? node->next->prev : all.nodes_.tail) = node->prev;
  --all.count;
}

void ListForm::drop(CollectionBase &all, Node *node) {
  unlink(all, node);
  if (all.type_->destroy)
    all.type_->destroy(node->value());
  free(node);
}

} // namespace korb
