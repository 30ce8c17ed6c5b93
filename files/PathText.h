// Rules on the text of paths. Nothing here touches a disk.
//
// Paths are Windows paths in single bytes; the backslash is the only separator, and a null path is an empty one.
#pragma once

#include <cstdint>

#include "core/Options.h"
#include "core/String.h"

namespace korb {

/// `directory` and `name` with a backslash between them where neither brings one, and one less where both do; none
/// after a colon: "c:" and "foo" give the drive-relative "c:foo". Does not ask whether `name` is full.
String PathJoin(const char *directory, const char *name);

/// The directory of a path: "c:\dir\file" gives "c:\dir", "c:\file" gives "c:\", "file" gives nothing. A list of paths
/// is cut at its first `;` outside quotes.
String DirectoryPart(const char *path);
/// What comes after the last backslash, or after the first colon.
String FilePart(const char *path);
/// Cuts the file's name off and keeps the separator. False, and nothing done, when there is none.
bool CutToDirectory(String &path);

/// "c:\" or "c:"; a network path has no root here.
String PathRoot(const char *path);
bool IsDriveLetter(char c);
/// In upper case; 0 when there is none.
char DriveLetter(const char *path);
/// "c:" of a letter in front, whatever follows it; else empty.
String DriveSpec(const char *path);
/// "c:" of a letter, else empty.
String DriveSpec(char letter);

/// Index of the dot of the extension, or -1. A dot at either end of the name counts.
int32_t ExtensionIndex(const char *path);
/// Adds `extension`, with or without its dot, to a path that has none and is not blank.
void AddDefaultExtension(String &path, const char *extension);
/// Adds ".LNK", of shortcuts, unless the path has these four characters anywhere, in any case.
void EnsureLinkExtension(String &path);

/// Without regard to case and to backslashes at the end.
bool SamePath(String a, String b);
/// Two backslashes, or a colon and a backslash after any character; blanks in front don't matter.
bool IsFullPath(const char *path);

// What IsLegalPath lets through.
enum PathOptions : uint32_t {
  PATH_NONE = 0,
  PATH_STAR = 0x1,
  PATH_WILDCARDS = 0x2, ///< star and question mark
};
template <>
inline constexpr bool IsOptionWord<PathOptions> = true;

/// True when a name holds none of the characters that no file name can have. One pair of quotes around is ignored.
bool IsLegalPath(const String &path, PathOptions flags = PATH_NONE);

/// Makes `path` absolute against `base`, a full path. False means that it was left as it was (but trimmed): it is
/// empty, full or a network path, or the base is no full path. "d:foo" against "c:\dir" is "d:\dir\foo".
bool NormalisePath(String &path, const char *base);

/// True when the system delivers such a name and none of this program's walks hides it: not empty, no wildcard and no
/// separator of lists in it.
bool IsPlainFileName(const char *name);

} // namespace korb
