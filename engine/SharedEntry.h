// The text that keeps which shared files a product has counted: entries in quotes, joined by semicolons. After the
// path in an entry come its marks.
#pragma once

#include "core/String.h"

namespace korb {

struct SharedEntry {
  String path;                   ///< without marks; the registry counts under this name
  bool keep = false;             ///< kKeepMark: the file stays on disk when nobody counts it any more
  bool registers_itself = false; ///< kUnregisterMark: it is unregistered before it goes
};

/// What an entry of `shared_file_list` says.
SharedEntry ReadSharedEntry(String marked_path);

/// Takes the next entry off `text`. False at the end, and where no entry begins or one has no path.
bool TakeSharedEntry(String &text, SharedEntry &entry);

/// Adds an entry with its marks.
void AppendSharedEntry(String &text, const String &marked_path);

} // namespace korb
