#include "engine/InstalledProduct.h"

#include "core/RunValues.h"
#include "engine/Version.h"
#include "files/Directories.h"
#include "files/PathText.h"
#include "format/Record.h"
#include "registry/RegistryKey.h"

namespace korb {

namespace {

/// The product's key among those that uninstallers leave.
class ProductKey {
public:
  explicit ProductKey(const String &name)
      : is_open_(key_.OpenSoftware(PathJoin(kUninstallKeys, name), false, RK_OPEN_ONLY) != KEY_NOT_OPENED) {}

  bool IsOpen() const { return is_open_; }
  bool Has(const char *value) const { return key_.ValueExists(value); }
  void Read(String &text, const char *value) const { key_.ReadString(text, value, ""); }

private:
  RegistryKey key_;
  bool is_open_;
};

} // namespace

bool IsProductInstalled(const String &name, String *location) {
  const ProductKey key(name);
  const bool installed =
      key.IsOpen() && (key.Has(product_value::kUninstallString) || key.Has(product_value::kQuietUninstallString));
  if (location) {
    location->clear();
    if (installed)
      key.Read(*location, product_value::kInstallLocation);
  }
  return installed;
}

TextNumber EarlierInstallation::ReinstallText(const String &new_version) const {
  if (!HasInstallFlag(IF_COMPARE_VERSIONS) || version.is_empty() || new_version.is_empty())
    return kTextReinstallInstalled;
  const int32_t order = CompareVersions(version, new_version);
  return order == 0 ? kTextReinstallSame : order < 0 ? kTextReinstallOlder : kTextReinstallNewer;
}

void EarlierInstallation::Find(const String &uninstall_name) {
  const ProductKey key(uninstall_name);
  if (!key.IsOpen())
    return;
  key.Read(location, product_value::kInstallLocation);
  key.Read(version, product_value::kDisplayVersion);
  key.Read(shared_files, product_value::kSharedFiles);
  is_there = QuietDirectoryExists(location);
}

} // namespace korb
