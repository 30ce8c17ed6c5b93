// A walk through a tree of named nodes that hold named values.
#pragma once

#include "core/String.h"
#include "core/Value.h"

namespace korb {

/// What trees of settings have in common: values that go in or out by one call, and paths. A tree that is not walked by
/// paths, as the registry, leaves the two steps refused.
class TreeWalker {
public:
  virtual ~TreeWalker() = default;

  /// Stores `value` under `name` when `writing` is set, else reads it. False when that fails.
  virtual bool Exchange(const char *name, Value &value) = 0;
  /// Goes to a child of the present node. False when there is none.
  virtual bool Descend(const char *name);
  /// Goes down the path, from the root when it begins with the separator; an empty one is the root. A last part without
  /// a separator behind it is no node but a value's name: it is passed over. False for null and when a step fails.
  virtual bool ChangePath(const char *path);
  virtual bool GoToRoot();

  bool writing = false;
  char separator = '\\';
  String node_name;
};

} // namespace korb
