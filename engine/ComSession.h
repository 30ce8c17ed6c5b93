// The system's component objects, for the few runs that need them.
#pragma once

#include "core/Windows.h"

namespace korb {

/// Component objects for this thread, for as long as the session lives. Sessions may nest.
class ComSession {
public:
  ComSession();
  ~ComSession();
  ComSession(const ComSession &) = delete;
  ComSession &operator=(const ComSession &) = delete;

  /// An object of the class, made in this process, with the interface that the caller releases. Null when the system
  /// has no such object or the session did not start.
  void *Create(const CLSID &object, const IID &interface_id);

private:
  bool started_;
};

} // namespace korb
