// What reading the configuration needs of the layers above, at the very moment when a field is read.
#pragma once

#include <cstdint>

#include "core/String.h"

namespace korb {

/// The program answers from the machine; tests and the fuzzer record the calls. Results that the steps don't look at
/// are not handed back.
class ConfigHost {
public:
  /// Makes the background window. Called while the configuration is not verified yet, so that a damage report that
  /// follows has an owner.
  virtual void CreateMainWindow() = 0;
  /// Directories without a trailing backslash.
  virtual String CommonFilesFolder() = 0;
  virtual String ProgramFilesFolder() = 0;
  virtual String WindowsDirectory() = 0;
  /// Replaces the path variables in `text`.
  virtual void ExpandPathVariables(String &text) = 0;
  /// Makes `path` absolute against `base`; a name that can't be stays as it is.
  virtual void NormalisePath(String &path, const String &base) = 0;
  /// Creates `path` and what is missing above it.
  virtual void CreateDirectoryTree(const String &path) = 0;
  /// Takes the background bitmap: a BMP file's body without its 14-byte file header. The block may be anything.
  virtual void LoadBackground(const String &block) = 0;

protected:
  ~ConfigHost() = default;
};

} // namespace korb
