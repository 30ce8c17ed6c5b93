// Files that products share: the system counts how many products refer to each, and a product's key keeps which ones it
// has counted, as entries in quotes, joined by semicolons. After the path in an entry come its marks.
#pragma once

#include "core/String.h"
#include "engine/InstallNotes.h"

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

/// Counts each of `shared_file_list` once more, and notes the entries in `shared_files`. `earlier` are the entries of
/// an earlier installation, whose counts are taken back first when the run is a reinstall. When the key can't be
/// opened, that is an error, and the entries noted are the earlier ones. Files are not touched. Does nothing without
/// IF_UNINSTALL: nobody would take the counts back.
void CountSharedFiles(InstallNotes &notes, const String &earlier, bool is_reinstall);

/// Counts down the reference to each of the entries `files`, and removes the files that nobody counts any more,
/// unregistered first where that is theirs, other than those that are to stay or that the user keeps. False, and
/// nothing done, when the counts can't be reached.
bool ReleaseSharedFiles(String files);

} // namespace korb
