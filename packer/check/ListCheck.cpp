#include "packer/check/ListCheck.h"

#include <algorithm>
#include <iterator>

#include "core/Text.h"
#include "engine/DeletionRule.h"
#include "format/Record.h"
#include "packer/check/TextRules.h"
#include "packer/check/VariableCheck.h"

namespace korb::packer {

namespace {

// The line that ends the heading counts as one.
constexpr size_t kUndoneAssociations = kMaxAssociationLines - 1;

bool IsReadable(const Deletion &deletion) {
  FileDeletion record;
  record.kind = deletion.kind;
  record.value = deletion.value.c_str();
  return IsDeletionReadable(record);
}

void CheckDeletion(const Deletion &deletion, Findings &findings) {
  const auto error = [&](const char *message) {
    findings.Error(deletion.place, "old file '" + deletion.name + "': " + message);
  };
  if (IsBlank(deletion.name.c_str()))
    error("it has no name");
  CheckPathText(deletion.name, deletion.place, "old file: ", findings);
  if (deletion.name.ends_with('\\') || deletion.name.ends_with('/'))
    error("it is a folder, but only files are deleted: name them one by one");
  if (deletion.name == kDeletionsEnd)
    error("this name ends the list");
  if (deletion.name.find_first_of("*?") != deletion.name.npos)
    error("'*' and '?' choose no files here: name them one by one");
  if (deletion.kind == kDeleteAlways && !deletion.value.empty())
    findings.Warn(deletion.place, Warning::kNoEffect,
                  "old file '" + deletion.name + "': without a 'when' it goes whatever its 'value'");
  if (!IsReadable(deletion))
    error("its condition needs a date, such as 2001-02-03 without quotes or \"5-Jan-2001\"");
  if (deletion.kind >= kDeleteSizeEqual && deletion.kind <= kDeleteSizeUpTo) {
    std::string digits = deletion.value;
    std::erase(digits, ',');
    if (digits.empty() || digits.find_first_not_of("0123456789") != digits.npos)
      error("its condition needs a size in bytes");
    else if (HoldsHugeNumber(digits))
      error("its size doesn't fit into 32 bits");
  }
}

// The types of Windows' own that a product is most likely to add a verb to.
constexpr const char *kWindowsTypes[] = {"txtfile", "inifile", "rtffile", "htmlfile", "xmlfile",   "jpegfile",
                                         "giffile", "pngfile", "batfile", "cmdfile",  "exefile",   "dllfile",
                                         "regfile", "inffile", "lnkfile", "Folder",   "Directory", "Drive"};

bool HasSameExtension(const Association &a, const Association &b) {
  const auto bare = [](const Association &one) {
    return LowerCase(one.extension.substr(one.extension.starts_with('.') ? 1 : 0));
  };
  return bare(a) == bare(b);
}

// Whether the product has given the extension a type by the time that `association` is made.
bool FindsOwnType(const Association &association, const Product &product) {
  const auto gives_type = [&](const Association &other) {
    return !other.file_class.empty() && HasSameExtension(other, association) &&
           (other.language.empty() || other.language == association.language);
  };
  const auto end = product.associations.begin() + (&association - product.associations.data());
  return std::any_of(product.associations.begin(), end, gives_type);
}

// The uninstaller takes the type of an association for the product's own, and removes it whole if it has an icon.
void CheckOwner(const Association &association, const Product &product, Findings &findings) {
  const auto warn = [&](const std::string &message) {
    findings.Warn(association.place, Warning::kForeignFileType,
                  "association of '" + association.extension + "': " + message +
                      ", and the uninstaller may remove that type: give a 'class' of the "
                      "product's own");
  };
  const auto is_class = [&](const char *type) { return LowerCase(type) == LowerCase(association.file_class); };
  if (!product.Has(IF_UNINSTALL))
    return;
  if (association.file_class.empty() && !FindsOwnType(association, product))
    warn("without a 'class' its verb joins the type that the extension has, whoever that belongs to");
  else if (std::any_of(std::begin(kWindowsTypes), std::end(kWindowsTypes), is_class))
    warn("'" + association.file_class + "' belongs to Windows");
}

// What the shell replaces by the file that is opened.
constexpr const char *kDocumentMarks[] = {"%1", "%L", "%l", "%V", "%v", "%D", "%d", "%*"};

void CheckAssociation(const Association &association, const Product &product, Findings &findings) {
  const auto error = [&](const char *message) {
    findings.Error(association.place, "association of '" + association.extension + "': " + message);
  };
  if (association.extension.empty())
    error("without an extension it is passed over");
  else if (IsBlank(association.extension.c_str()) || association.extension == ".")
    error("an extension without a name is never given back");
  if (association.extension.find_first_of("*?") != std::string::npos)
    error("an extension is one name such as 'txt', without '*' or '?'");
  if (IsBlank(association.verb.c_str()))
    error("it has no verb, so the uninstaller can't take it back");
  for (const std::string *text : {&association.command, &association.icon})
    CheckVariables(*text, association.place, "association of '" + association.extension + "': ", findings);
  if (IsBlank(association.command.c_str()))
    findings.Warn(association.place, Warning::kVerbWithoutCommand,
                  "association of '" + association.extension + "': its verb has no command");
  else if (std::none_of(std::begin(kDocumentMarks), std::end(kDocumentMarks),
                        [&](const char *mark) { return association.command.find(mark) != std::string::npos; }))
    findings.Warn(association.place, Warning::kCommandWithoutFile,
                  "association of '" + association.extension +
                      "': its command gets no file to open: write \"%1\", with quotes, where the "
                      "name of the file belongs");
  for (const std::string *text : {&association.extension, &association.file_class, &association.verb})
    if (text->find("~!~") != text->npos || text->find_first_of("\r\n") != text->npos || HoldsRecordMarker(*text))
      error("extension, class and verb must not hold \"~!~\", a line end, \"[Strings]\" or \"[Associations]\"");
  for (const std::string *text : {&association.extension, &association.file_class, &association.verb})
    if (text->find('\\') != text->npos)
      error("extension, class and verb are names of keys and can't hold a backslash");
  CheckOwner(association, product, findings);
  if (!association.language.empty() &&
      std::none_of(product.languages.begin(), product.languages.end(),
                   [&](const Language &language) { return language.name == association.language; }))
    findings.Warn(association.place, Warning::kUnknownLanguage,
                  "association of '" + association.extension + "': no language is called '" + association.language +
                      "', so it never applies");
}

void CheckUninstallValue(const UninstallValue &value, Findings &findings) {
  const bool own = std::any_of(std::begin(kReplaceableValues), std::end(kReplaceableValues),
                               [&](const char *name) { return LowerCase(name) == LowerCase(value.name); });
  const std::string what = "uninstall value '" + value.name + "': ";
  if (value.kind != kUninstallExpandText) // in which those of the system are meant
    CheckVariables(value.value, value.place, what, findings);
  if (IsBlank(value.name.c_str()))
    findings.Error(value.place, what + "it has no name");
  if (own)
    findings.Warn(value.place, Warning::kReservedValue,
                  what + "it overwrites a value that the uninstaller reads" +
                      (LowerCase(value.name) == "displayname"
                           ? ", and saved associations are then looked for under another name"
                           : ""));
  if (LowerCase(value.name) == "installlocation" || LowerCase(value.name) == "installdate")
    findings.Warn(value.place, Warning::kReservedValue, what + "the installer writes its own value over it");
  if (value.kind == kUninstallNumber && HoldsHugeNumber(value.value, UINT32_MAX))
    findings.Error(value.place, what + "the number doesn't fit into 32 bits");
  if (value.kind == kUninstallNumber && !IsBlank(value.value.c_str()) &&
      value.value.find_first_of("0123456789") == std::string::npos)
    findings.Error(value.place, what + "'" + value.value + "' is no number");
}

void CheckCount(size_t count, size_t most, const char *what, Findings &findings) {
  if (count > most)
    findings.Error({}, "there are " + std::to_string(count) + " " + what + ", but " + std::to_string(most) +
                           " at most can be packed");
}

} // namespace

void CheckLists(const Product &product, Findings &findings) {
  CheckCount(product.deletions.size(), kMaxDeletions, "old files", findings);
  CheckCount(product.associations.size(), kMaxAssociations, "associations", findings);
  CheckCount(product.uninstall_values.size(), kMaxUninstallData, "uninstall values", findings);
  for (const Deletion &deletion : product.deletions)
    CheckDeletion(deletion, findings);
  for (const Association &association : product.associations)
    CheckAssociation(association, product, findings);
  for (const UninstallValue &value : product.uninstall_values)
    CheckUninstallValue(value, findings);
  if (product.associations.size() > kUndoneAssociations)
    findings.Warn(product.associations[kUndoneAssociations].place, Warning::kTooManyAssociations,
                  "the uninstaller takes back no more than 499 associations");
  if (!product.uninstall_values.empty() && !product.Has(IF_UNINSTALL))
    findings.Warn(product.uninstall_values[0].place, Warning::kNoEffect,
                  "without an uninstaller there is no key for uninstall values");
}

} // namespace korb::packer
