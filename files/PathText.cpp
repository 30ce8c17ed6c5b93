#include "files/PathText.h"

#include <cstring>

namespace korb {

namespace {

constexpr const char *kLinkExtension = ".LNK";

/// Index of the separator between directory and name, or -1.
int32_t SeparatorIndex(const String &path) {
  const int32_t list_end = path.find_char(';', 0, FIND_SKIP_QUOTED);
  const int32_t backslash = path.rfind_char('\\', list_end < 0 ? STRING_ALL : list_end);
  return backslash >= 0 ? backslash : path.find_char(':');
}

bool HasDrive(const char *path) {
  return IsDriveLetter(path[0]) && path[1] == ':';
}

const char *OrEmpty(const char *path) {
  return path ? path : "";
}

} // namespace

String PathJoin(const char *directory, const char *name) {
  String path(directory);
  const String tail(name);
  if (path.is_empty() || tail.is_empty())
    return path.is_empty() ? tail : path;
  if (tail.starts_with_char('\\'))
    path.remove_last_if('\\');
  else if (!path.ends_with_char(':') && !path.ends_with_char('\\'))
    path += '\\';
  path += tail;
  return path;
}

String DirectoryPart(const char *path) {
  const String text(path);
  const int32_t index = SeparatorIndex(text);
  if (index < 0)
    return String();
  const bool is_root = text.char_at(index) == ':' || (index > 0 && text.char_at(index - 1) == ':');
  return text.mid(0, is_root ? index + 1 : index);
}

String FilePart(const char *path) {
  const String text(path);
  const int32_t backslash = text.rfind_char('\\');
  return text.mid((backslash >= 0 ? backslash : text.find_char(':')) + 1);
}

bool CutToDirectory(String &path) {
  const int32_t index = SeparatorIndex(path);
  if (index < 0)
    return false;
  path.erase_to_end(index + 1);
  return true;
}

String PathRoot(const char *path) {
  path = OrEmpty(path);
  return HasDrive(path) ? String(path, path[2] == '\\' ? 3 : 2) : String();
}

bool IsDriveLetter(char c) {
  return is_alpha(c);
}

char DriveLetter(const char *path) {
  path = OrEmpty(path);
  return HasDrive(path) ? static_cast<char>(to_upper_char(path[0])) : '\0';
}

String DriveSpec(const char *path) {
  return DriveSpec(*OrEmpty(path));
}

String DriveSpec(char letter) {
  String drive;
  if (IsDriveLetter(letter)) {
    drive += letter;
    drive += ':';
  }
  return drive;
}

int32_t ExtensionIndex(const char *path) {
  path = OrEmpty(path);
  int32_t index = -1;
  for (int32_t i = 0; path[i]; ++i) {
    if (path[i] == '.')
      index = i;
    else if (path[i] == '\\')
      index = -1;
  }
  return index;
}

void AddDefaultExtension(String &path, const char *extension) {
  if (!extension || IsBlank(path) || ExtensionIndex(path) >= 0)
    return;
  if (*extension != '.')
    path += '.';
  path += extension;
}

void EnsureLinkExtension(String &path) {
  if (path.find(kLinkExtension, 0, FIND_IGNORE_CASE) < 0)
    path += kLinkExtension;
}

bool SamePath(String a, String b) {
  a.trim_right_char('\\');
  b.trim_right_char('\\');
  return a.equals_no_case(b);
}

bool IsFullPath(const char *path) {
  path = text_skip_space(path);
  if (path[0] == '\0')
    return false;
  return (path[0] == '\\' && path[1] == '\\') || (path[1] == ':' && path[2] == '\\');
}

bool IsLegalPath(const String &path, PathOptions flags) {
  if (path.is_empty())
    return false;
  String name(path);
  name.unquote('"');
  if (name.char_at(1) == ':') {
    if (!IsDriveLetter(name.first_char()))
      return false;
    name.erase(1, 1);
  }
  const char *forbidden = flags & PATH_WILDCARDS ? "/\"<>|:;" : (flags & PATH_STAR ? "/\"<>|?:;" : "/\"<>|*?:;");
  return name.find_any(forbidden) < 0;
}

bool NormalisePath(String &path, const char *base) {
  path.trim();
  base = text_skip_space(base);
  if (path.is_empty() || !IsFullPath(base))
    return false;
  const bool base_ends = text_last_char(base) == '\\';
  if (path.starts_with_char('\\')) {
    if (path.char_at(1) == '\\' || !HasDrive(base))
      return false;
    path.insert_text(base, 0, 2);
    return true;
  }
  if (path.char_at(1) == ':') {
    if (path.char_at(2) == '\\')
      return false;
    // The name keeps its drive and takes the base's directory, even when the drives differ.
    String directory(base + 2);
    if (!base_ends)
      directory += '\\';
    path.insert_string(directory, 2);
    return true;
  }
  if (!base_ends)
    path.insert_char('\\', 0);
  path.prepend(base);
  return true;
}

bool IsPlainFileName(const char *name) {
  return *name != '\0' && *text_find_any(name, "/\"<>|*?:;") == '\0';
}

} // namespace korb
