// Every kind of warning and the name by which an author accepts it. docs/manifest.md tells what each is about.
#pragma once

#include <iterator>
#include <string_view>

namespace korb::packer {

enum class Warning {
  kBlankNotice,
  kCommandWithoutFile,
  kCurrentWindowsExcluded,
  kDatedFont,
  kDeletedFirst,
  kDeletedWhenInUse,
  kDeletedWhole,
  kDirectoryBreaksBatch,
  kDirectoryGone,
  kDirectoryNotOwn,
  kEarlierFolder,
  kEarlierIsNewer,
  kEarlierNotFound,
  kExpired,
  kFolderNotCreated,
  kForeignFileType,
  kIconLacksSize,
  kIconPartlyReplaced,
  kIdlePattern,
  kMissingIcon,
  kNestedInstaller,
  kNestedUninstaller,
  kNoEarlierInstaller,
  kNoEffect,
  kNoFiles,
  kOldVolume,
  kParentInTarget,
  kPathTooLong,
  kPayloadInUninstaller,
  kPublisherKeyRemoved,
  kRelativeDrive,
  kReservedValue,
  kRestartAlways,
  kRestartOnOtherDrive,
  kRtfPage,
  kSameDestination,
  kSameShortcut,
  kSoftwareKey,
  kTextIsFileName,
  kTooManyAssociations,
  kUndatedSystemFile,
  kUnknownLanguage,
  kUnknownVariable,
  kUnregisteredLibrary,
  kUnsettableAttributes,
  kUnshownArgument,
  kUntranslatedText,
  kUnusedVariable,
  kUtf8OnOldSystems,
  kVariableInName,
  kVerbWithoutCommand,
  kVersionWithoutNumber,
};

struct WarningName {
  Warning warning;
  std::string_view name;
};

/// Each with its name, in the order of both.
inline constexpr WarningName kWarningNames[] = {
    {Warning::kBlankNotice, "blank-notice"},
    {Warning::kCommandWithoutFile, "command-without-file"},
    {Warning::kCurrentWindowsExcluded, "current-windows-excluded"},
    {Warning::kDatedFont, "dated-font"},
    {Warning::kDeletedFirst, "deleted-first"},
    {Warning::kDeletedWhenInUse, "deleted-when-in-use"},
    {Warning::kDeletedWhole, "deleted-whole"},
    {Warning::kDirectoryBreaksBatch, "directory-breaks-batch"},
    {Warning::kDirectoryGone, "directory-gone"},
    {Warning::kDirectoryNotOwn, "directory-not-own"},
    {Warning::kEarlierFolder, "earlier-folder"},
    {Warning::kEarlierIsNewer, "earlier-is-newer"},
    {Warning::kEarlierNotFound, "earlier-not-found"},
    {Warning::kExpired, "expired"},
    {Warning::kFolderNotCreated, "folder-not-created"},
    {Warning::kForeignFileType, "foreign-file-type"},
    {Warning::kIconLacksSize, "icon-lacks-size"},
    {Warning::kIconPartlyReplaced, "icon-partly-replaced"},
    {Warning::kIdlePattern, "idle-pattern"},
    {Warning::kMissingIcon, "missing-icon"},
    {Warning::kNestedInstaller, "nested-installer"},
    {Warning::kNestedUninstaller, "nested-uninstaller"},
    {Warning::kNoEarlierInstaller, "no-earlier-installer"},
    {Warning::kNoEffect, "no-effect"},
    {Warning::kNoFiles, "no-files"},
    {Warning::kOldVolume, "old-volume"},
    {Warning::kParentInTarget, "parent-in-target"},
    {Warning::kPathTooLong, "path-too-long"},
    {Warning::kPayloadInUninstaller, "payload-in-uninstaller"},
    {Warning::kPublisherKeyRemoved, "publisher-key-removed"},
    {Warning::kRelativeDrive, "relative-drive"},
    {Warning::kReservedValue, "reserved-value"},
    {Warning::kRestartAlways, "restart-always"},
    {Warning::kRestartOnOtherDrive, "restart-on-other-drive"},
    {Warning::kRtfPage, "rtf-page"},
    {Warning::kSameDestination, "same-destination"},
    {Warning::kSameShortcut, "same-shortcut"},
    {Warning::kSoftwareKey, "software-key"},
    {Warning::kTextIsFileName, "text-is-file-name"},
    {Warning::kTooManyAssociations, "too-many-associations"},
    {Warning::kUndatedSystemFile, "undated-system-file"},
    {Warning::kUnknownLanguage, "unknown-language"},
    {Warning::kUnknownVariable, "unknown-variable"},
    {Warning::kUnregisteredLibrary, "unregistered-library"},
    {Warning::kUnsettableAttributes, "unsettable-attributes"},
    {Warning::kUnshownArgument, "unshown-argument"},
    {Warning::kUntranslatedText, "untranslated-text"},
    {Warning::kUnusedVariable, "unused-variable"},
    {Warning::kUtf8OnOldSystems, "utf8-on-old-systems"},
    {Warning::kVariableInName, "variable-in-name"},
    {Warning::kVerbWithoutCommand, "verb-without-command"},
    {Warning::kVersionWithoutNumber, "version-without-number"},
};

static_assert([] {
  for (size_t i = 0; i < std::size(kWarningNames); ++i)
    if (kWarningNames[i].warning != static_cast<Warning>(i))
      return false;
  return true;
}());

constexpr std::string_view NameOf(Warning warning) {
  return kWarningNames[static_cast<size_t>(warning)].name;
}

} // namespace korb::packer
