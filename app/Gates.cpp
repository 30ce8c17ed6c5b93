#include "app/Gates.h"

#include "core/Clock.h"
#include "core/Failure.h"
#include "core/RunValues.h"
#include "core/Windows.h"
#include "format/Texts.h"
#include "system/OsIdentity.h"
#include "ui/Questions.h"
#include "ui/TextLookup.h"

namespace korb {

namespace {

/// Reports with one argument for the format, and ends the run.
[[noreturn]] void Refuse(const char *format, const char *argument) {
  ReportError(format, argument);
  ExitInstaller();
}

bool AgreesToReinstall(const EarlierInstallation &earlier, const String &version) {
  const String question = str_format("%s\r\n%s\r\n\r\n%s", TextLookup(earlier.ReinstallText(version)), earlier.location,
                                     TextLookup(kTextReinstallQuestion));
  return AskYesNo(question, kTextReinstallCaption);
}

} // namespace

void RefuseExpired(const InstallConfig &config) {
  if (!config.expiry_date.is_invalid() && today().compare(config.expiry_date) > 0)
    Refuse("%s", TextLookup(kTextExpired));
}

void RefusePlatform(const InstallConfig &config) {
  if ((OsCode() & config.excluded_platforms) != 0)
    Refuse(TextLookup(kTextPlatformRefused), OsNameInTexts);
}

void RequireMasterProduct(InstallConfig &config) {
  if (!HasInstallFlag(IF_MASTER_PRODUCT))
    return;
  const String &name = config.master_product.is_empty() ? ProductName : config.master_product;
  String &directory = config.default_install_dir;
  if (!IsProductInstalled(name, directory.equals_no_case("<master>") ? &directory : nullptr))
    Refuse(TextLookup(kTextMasterMissing), name);
}

bool DecideOnReinstall(const EarlierInstallation &earlier, const String &version) {
  if (!earlier.is_there)
    return false;
  if (HasInstallFlag(IF_REFUSE_REINSTALL)) {
    AutomaticMode = false; // whoever started this must learn why nothing comes of it
    Refuse("%s", TextLookup(kTextReinstallRefused));
  }
  if (!AutomaticMode && !HasInstallFlag(IF_NO_REINSTALL_QUESTION) && !AgreesToReinstall(earlier, version))
    ExitInstaller();
  InstallDir = earlier.location;
  return true;
}

} // namespace korb
