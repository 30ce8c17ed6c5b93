// The resources of a program or library.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <tuple>
#include <vector>

#include "packer/Bytes.h"

namespace korb::packer {

inline constexpr uint16_t kIconResource = 3, kIconGroupResource = 14, kVersionResource = 16, kManifestResource = 24;

/// What a type or a resource is called: a number, or a text when that is not empty.
struct ResourceId {
  uint16_t number = 0;
  std::u16string text = {};

  ResourceId(uint16_t id) : number(id) {}
  ResourceId(std::u16string name) : text(std::move(name)) {}
  bool operator==(const ResourceId &) const = default;
  /// The order of the tables: texts first.
  bool operator<(const ResourceId &other) const {
    return text.empty() == other.text.empty() ? std::tie(text, number) < std::tie(other.text, other.number)
                                              : other.text.empty();
  }
};

/// What tells a resource from every other.
struct ResourceName {
  ResourceId type, name;
  uint16_t language;

  bool operator==(const ResourceName &) const = default;
  bool operator<(const ResourceName &other) const {
    return std::tie(type, name, language) < std::tie(other.type, other.name, other.language);
  }
};

/// Where one resource lies in the file; the file holds all of it.
struct Resource {
  uint32_t offset;
  uint32_t size;
};

/// The resources of `type` in a PE file, 32 or 64 bits wide, in the order of its tables. Any bytes are a file; those
/// without such resources give none.
std::vector<Resource> FindResources(const Bytes &file, uint16_t type);

/// All resources of a PE file with their names. Nothing when one of them can't be read, comes twice, or isn't where
/// every tool puts it, three levels deep. Any bytes are a file; one without resources has an empty list.
std::optional<std::map<ResourceName, Resource>> AllResources(const Bytes &file);

/// Whether `file` is a program or library, and whether one of 32 bits. Any bytes are a file.
bool IsProgram(const Bytes &file);
bool Is32BitProgram(const Bytes &file);

/// Whether `file` is an installer, sound or not. Any bytes are a file.
bool CarriesArchive(const Bytes &file);

} // namespace korb::packer
