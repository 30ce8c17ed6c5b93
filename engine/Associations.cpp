#include "engine/Associations.h"

#include "core/RunValues.h"
#include "format/Record.h"
#include "registry/RegistryKey.h"
#include "system/PathVariables.h"

namespace korb {

namespace {

const RegistryHandle kClasses = HandleOf(RegistryRoot::ClassesRoot);

class AssociationWriter {
public:
  /// False when nothing belongs to this record: it leaves no trace.
  bool FindClass(FileAssociation &record);
  /// Writes class, icon and verb; true when the command was written, for that is what opens a document.
  bool WriteClass(FileAssociation &record);

private:
  bool Replace(const String &text);
  void ReplaceIn(const char *subkey, const String &text);
  bool WriteVerb(FileAssociation &record);

  const String backup_name_ = BackupValueName();
  RegistryKey key_;
  bool class_found_ = false; // the record brings none of its own
};

/// Writes the default value of the open key. What stood there is kept for the uninstall: a repeated installation finds
/// its own text, and so leaves the first backup alone.
bool AssociationWriter::Replace(const String &text) {
  String old;
  key_.ReadString(old, "", "");
  if (!IsBlank(old) && !old.equals_no_case(text))
    key_.WriteString(backup_name_, old, key_.KindOption(""));
  return key_.WriteString("", text);
}

void AssociationWriter::ReplaceIn(const char *subkey, const String &text) {
  if (!key_.OpenChild(subkey))
    return;
  Replace(text);
  key_.Close();
}

bool AssociationWriter::FindClass(FileAssociation &record) {
  class_found_ = record.file_class.is_empty();
  record.extension.ensure_prefix_char('.');
  if (!key_.Open(kClasses, record.extension, class_found_ ? RK_OPEN_ONLY : RK_NONE))
    return !class_found_;
  if (class_found_)
    key_.ReadString(record.file_class, "", "");
  else
    Replace(record.file_class);
  key_.Close();
  // Without a class the verb would go to the root of all classes.
  return !class_found_ || !IsBlank(record.file_class);
}

bool AssociationWriter::WriteVerb(FileAssociation &record) {
  bool written = false;
  if (IsBlank(record.verb) || !key_.OpenChild(record.verb))
    return written;
  key_.WriteString("", record.verb_label);
  if (key_.OpenChild("command")) {
    ExpandPathVariables(record.command);
    written = Replace(record.command);
    key_.Close();
  }
  key_.Close();
  return written;
}

bool AssociationWriter::WriteClass(FileAssociation &record) {
  bool written = false;
  if (!key_.Open(kClasses, record.file_class))
    return written;
  if (!class_found_ && !IsBlank(record.description))
    Replace(record.description);
  if (!IsBlank(record.icon)) {
    String icon = record.icon;
    ExpandPathVariables(icon);
    ReplaceIn("DefaultIcon", icon);
  }
  if (key_.OpenChild("shell")) {
    if (record.flags & kDefaultVerb && !IsBlank(record.verb))
      Replace(record.verb);
    written = WriteVerb(record);
    key_.Close();
  }
  key_.Close();
  return written;
}

const char *LanguageName() {
  return LanguageNames.is_out_of_range(LanguageIndex) ? "" : LanguageNames.at(LanguageIndex).c_str();
}

} // namespace

String BackupValueName() {
  return ProductName + " Backup";
}

void CreateProductKeys(const String &product_registry, Journal &journal) {
  if (product_registry.is_empty())
    return;
  RegistryKey machine;
  RegistryKey user;
  const bool machine_opened = machine.OpenSoftware(product_registry, false) != KEY_NOT_OPENED;
  const bool user_opened = user.OpenSoftware(product_registry, true) != KEY_NOT_OPENED;
  if (!machine_opened || !user_opened)
    journal.error_report.append_format("Error creating registry keys:\r\n%s\r\n\r\n", product_registry);
}

void RegisterAssociations(Vector<FileAssociation> &associations, InstallNotes &notes) {
  AssociationWriter writer;
  for (int32_t i = 0; i < associations.count; ++i) {
    FileAssociation &record = associations.at(i);
    if (record.extension.is_empty() || (!record.language.is_empty() && record.language != LanguageName()))
      continue;
    if (!writer.FindClass(record))
      continue;
    const bool associated = writer.WriteClass(record);
    notes.association_lines.append_format(kAssociationFormat, record.extension, record.file_class, record.verb);
    if (!associated)
      notes.journal.error_report.append_format("Failed to associate file type:  \"%s\".\r\n\r\n", record.extension);
  }
}

} // namespace korb
