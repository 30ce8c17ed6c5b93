// A walk through a tree of named nodes that hold named values.
#pragma once

#include "core/String.h"
#include "core/Value.h"

namespace korb {

/// What trees of settings have in common: values that go in or out by one call, and paths. `Tree` derives from this and
/// has, or takes from here:
///     bool Exchange(const char *name, Value &value);  // stores `value` when `writing` is set, else reads it
///     bool Descend(const char *name);                 // goes to a child of the present node; false when there is none
///     bool GoToRoot();
/// A tree that is not walked by paths, as the registry, leaves the two steps refused. No operation is virtual: nobody
/// holds a tree without knowing its kind, and a virtual one would be in the program even though nothing calls it.
template <class Tree>
class TreeWalker {
public:
  bool Descend(const char *) { return false; }
  bool GoToRoot() { return false; }

  /// Goes down the path, from the root when it begins with the separator; an empty one is the root. A last part without
  /// a separator after it is no node but a value's name: it is passed over. False for null and when a step fails.
  bool ChangePath(const char *path);

  bool writing = false;
  char separator = '\\';
  String node_name;

protected:
  ~TreeWalker() = default;
};

template <class Tree>
bool TreeWalker<Tree>::ChangePath(const char *path) {
  Tree &tree = *static_cast<Tree *>(this);
  if (!path)
    return false;
  if (*path == '\0')
    return tree.GoToRoot();
  if (*path == separator) {
    if (!tree.GoToRoot())
      return false;
    ++path;
  }
  const String rest(path);
  int32_t start = 0;
  for (int32_t end; (end = rest.find_char(separator, start)) >= 0; start = end + 1)
    if (!tree.Descend(rest.mid(start, end - start)))
      return false;
  return true;
}

} // namespace korb
