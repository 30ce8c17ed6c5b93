// A product, packed by the real packer into the real program, and started as a user would.
#pragma once

#include <functional>
#include <string>

#include "packer/Product.h"
#include "tests/support/Process.h"
#include "tests/support/TempFolder.h"

namespace korb::test {

/// A folder with a manifest and the files that it names. The program without an archive, korb.exe, is beside the test.
class PackedProduct {
public:
  /// `manifest` is TOML text; what it names is written with Write before Pack.
  explicit PackedProduct(const std::string &manifest);

  /// Writes a file beside the manifest, its folders included; `name` is relative, with '/'.
  void Write(const std::string &name, const std::string &contents) { folder_.Write(name, contents); }

  /// Packs and gives the installer's path. Throws std::runtime_error with all that the packer complains of.
  std::string Pack(const std::string &name = "setup.exe");

  /// Packs what `spoil` makes of the product, which the packer's own checks would refuse.
  void PackSpoiled(const std::function<void(packer::Product &)> &spoil);

  /// Starts the installer that was packed, from its own folder.
  Process Start(const std::string &arguments = std::string()) const;

  /// Installs with /a to the end.
  void Install() const;

  /// Where the manifest and the installer are, without a backslash at the end.
  std::string Folder() const { return folder_.Path().string(); }

private:
  TempFolder folder_;
  std::string installer_;
};

/// Builds an installer of `product` around the real program, whatever the packer's checks would say.
void WriteInstaller(const packer::Product &product, const std::string &path);

/// The folder that an environment variable of the tests names, on the drive that leads to the machine's own files.
std::filesystem::path GivenFolder(const char *variable);

/// Builds the example of that name into a folder of its own on C:, and gives its setup.exe. Throws std::runtime_error
/// with all that the packer complains of.
std::filesystem::path BuildExample(const std::string &name);

/// The manifest of that name among tests/e2e/products.
std::string ProductManifest(const std::string &name);

/// What the last installation into `home` wrote to its log below the heading, its report and notes.
std::string InstallLog(const std::string &home);

/// A text or number below HKEY_LOCAL_MACHINE; "missing" when it isn't there.
std::string MachineValue(const std::string &key, const std::string &name);

/// Sets a text of a key, which is made when there is none.
void SetRegistryText(HKEY root, const std::string &key, const std::string &name, const std::string &value);

/// What the system of a program of this name says that it is, as Wine calls it: "win98".
void SetWindowsVersion(const std::string &program, const std::string &version);

/// A file's bytes. Throws std::runtime_error when it can't be read.
std::string FileBytes(const std::string &path);
void WriteFileBytes(const std::string &path, const std::string &bytes);

/// What one line tells of a file: "archive read-only 2001-05-17 10:30:02" in the machine's time, or "missing".
std::string DescribeFile(const std::string &path);

} // namespace korb::test
