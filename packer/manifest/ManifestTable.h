// One table of a manifest, read key by key: each value is checked for its type and range, and what nobody asked for is
// reported as unknown.
#pragma once

#include <optional>
#include <set>
#include <span>
#include <string_view>

#include "packer/Words.h"
#include "packer/check/Findings.h"
#include "packer/manifest/KeyForm.h"
#include "packer/manifest/Toml.h"

namespace korb::packer {

class ManifestTable {
public:
  /// `table` may be null: an absent table, in which nothing is found. `name` is for messages.
  ManifestTable(const toml::table *table, std::string name, Findings &findings)
      : table_(table), name_(std::move(name)), findings_(findings) {}

  /// The value of `key`, or null; from now on the key is a known one, of the form that the caller will accept.
  const toml::node *Find(std::string_view key, const KeyForm &form);

  // The value of a key when it is there and of the right type. A wrong one is reported and counts as absent.
  std::optional<std::string> Text(std::string_view key);
  std::optional<int64_t> Integer(std::string_view key, int64_t least, int64_t most);
  std::optional<bool> Boolean(std::string_view key);
  /// A word of `names`, or a plain number in the given range.
  std::optional<int64_t> Named(std::string_view key, std::span<const NamedValue> names, int64_t least, int64_t most);
  /// Words of `names` in an array, or a plain number; the values are ORed.
  std::optional<int64_t> NamedBits(std::string_view key, std::span<const NamedValue> names);
  /// The texts of an array; one text alone counts as an array of one.
  std::vector<std::string> Texts(std::string_view key);
  /// The elements of an array; a table or text alone counts as an array of one.
  std::vector<const toml::node *> Elements(std::string_view key, const KeyForm &form);
  /// The tables of an array of tables.
  std::vector<const toml::table *> Tables(std::string_view key);
  ManifestTable Table(std::string_view key);

  /// Where `key` stands, or, when it doesn't, the table.
  Place PlaceOfKey(std::string_view key) const;
  Place PlaceOfTable() const { return table_ ? PlaceOf(*table_) : Place{}; }
  bool Has(std::string_view key) const { return table_ && table_->contains(key); }
  bool Exists() const { return table_ != nullptr; }
  const toml::table *Raw() const { return table_; }
  std::string FullName(std::string_view key) const;
  Findings &Report() { return findings_; }

  /// Reports every key that was never asked for.
  void RefuseUnknown();

private:
  void WrongType(std::string_view key, const toml::node &node, const char *wanted);
  std::optional<int64_t> NamedNode(std::string_view key, const toml::node &node, std::span<const NamedValue> names);

  const toml::table *table_;
  std::string name_;
  Findings &findings_;
  std::set<std::string, std::less<>> known_;
};

} // namespace korb::packer
