#include "engine/UninstallRecord.h"

#include "core/RunValues.h"
#include "files/PathText.h"
#include "format/Record.h"
#include "format/Texts.h"
#include "ui/TextLookup.h"

namespace korb {

namespace {

constexpr int32_t kShortestPath = 4;

void AppendHeading(String &text, const char *heading) {
  text += "\r\n\r\n";
  text += heading;
  text += "\r\n";
}

/// Takes off what comes after `heading`, and the heading too; empty when there is none.
String TakeSection(String &text, const char *heading) {
  const int32_t at = text.find(heading, 0, FIND_IGNORE_CASE);
  if (at < 0)
    return String();
  String section = text.mid(at + text_length(heading));
  text.set_length(at);
  return section;
}

/// Takes off the field before the next separator, or everything.
String TakeField(String &line) {
  const int32_t at = line.find(kAssociationSeparator);
  String field = line.cut(0, at < 0 ? STRING_ALL : at);
  line.remove_first(sizeof kAssociationSeparator - 1); // nothing, where nothing is left
  return field;
}

void ReadAssociations(String text, Vector<FileAssociation> &associations) {
  for (int32_t n = 0; n < kMaxAssociationLines && !text.is_empty(); ++n) {
    String line = text.take_line();
    FileAssociation &association = associations.append_slot();
    association.extension = TakeField(line);
    association.file_class = TakeField(line);
    association.verb = line;
    // Whatever is named here may be deleted: without its dot it would be any key of the classes.
    if (!association.extension.starts_with_char('.') || IsBlank(association.extension.c_str() + 1) ||
        IsBlank(association.file_class) || IsBlank(association.verb))
      associations.remove_last();
  }
}

/// Takes off everything before the next line that begins with kTextMark.
String TakeTextLines(String &text) {
  int32_t end = 0;
  while (end < text.length() && text.char_at(end) != kTextMark)
    end = text.find_line_end(end, LINE_LENGTH_IF_NONE);
  return text.cut(0, end);
}

void StoreText(int32_t number, const String &text) {
  if (number >= TextTable.count)
    TextTable.set_count(number + 1);
  Array<String> &languages = TextTable.at(number);
  languages.reset_count(1);
  languages.at(0) = text;
}

void ReadTexts(String text) {
  for (int32_t n = 0; n < kMaxTextEntries && !text.is_empty(); ++n) {
    const String line = text.take_line();
    int32_t at = 1;
    const int32_t number = line.starts_with_char(kTextMark) ? line.parse_int(&at) : 0;
    if (number < 1 || number > kMaxTextNumber)
      continue;
    String lines = TakeTextLines(text);
    lines.trim_right();
    StoreText(number, lines);
  }
}

/// False, and nothing changed, when `names` holds it already.
bool InsertSorted(Vector<String> &names, const String &name) {
  int32_t from = 0;
  for (int32_t to = names.count; from < to;) {
    const int32_t middle = (from + to) / 2;
    const int32_t order = name.compare(names.at(middle), true);
    if (order == 0)
      return false;
    (order < 0 ? to : from) = order < 0 ? middle : middle + 1;
  }
  names.insert(from, name);
  return true;
}

} // namespace

bool NamesOnePlace(const char *path) {
  return IsFullPath(path) || !IsFullPath(InstallDir);
}

String UninstallDataPath(const String &uninstall_dir) {
  return PathJoin(uninstall_dir, kUninstallDataName);
}

String InstallLogPath(const String &uninstall_dir) {
  return PathJoin(uninstall_dir, kInstallLogName);
}

String BackgroundBitmapPath(const String &uninstall_dir) {
  return PathJoin(uninstall_dir, kBackgroundName);
}

void UninstallList::AddUninstallEntry(const char *path, UninstallEntryMode mode) {
  if (text_length(path) < kShortestPath)
    return;
  if (mode != kUninstallFile) {
    String key(path);
    key.to_upper();
    if (!InsertSorted(listed_paths_, key))
      return;
    text_ += mode == kUninstallDirectory ? kDirectoryMark : kClassesKeyMark;
  }
  text_ += path;
  text_ += "\r\n";
}

/// Nothing here goes through a format: the list may be longer than what a format gives.
String UninstallRecordText(const String &entries, const String &association_lines) {
  String text = entries;
  AppendHeading(text, kStringsHeading);
  for (const int8_t *number = kSavedTexts.numbers; *number >= 0; ++number) {
    text.append_format("~%d\r\n", *number);
    text += TextLookup(*number);
    text += "\r\n";
  }
  if (!association_lines.is_empty()) {
    AppendHeading(text, kAssociationsHeading);
    text += association_lines;
  }
  return text;
}

void ReadUninstallRecord(String text, UninstallRecord &record) {
  String tail = TakeSection(text, kStringsHeading);
  ReadAssociations(TakeSection(tail, kAssociationsHeading), record.associations);
  ReadTexts(tail);
  text.split_lines(record.entries);
}

} // namespace korb
