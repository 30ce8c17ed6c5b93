// What the packer has to say about a manifest, gathered so that one run tells all of it.
#pragma once

#include <algorithm>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "packer/Product.h"
#include "packer/check/WarningNames.h"

namespace korb::packer {

struct KeyForms;

enum class Severity { kError, kWarning };

struct Finding {
  Severity severity;
  Place place;
  std::string message;
  std::string_view name = {}; ///< of a warning
};

class Findings {
public:
  void Error(const Place &place, std::string message) {
    list_.push_back({Severity::kError, place, std::move(message)});
  }
  void Warn(const Place &place, Warning warning, std::string message) {
    list_.push_back({Severity::kWarning, place, std::move(message), NameOf(warning)});
  }

  /// Adds what `others` holds, without what stands at the place of an error, or is warned of the product as a whole
  /// when there are errors: that is most likely their consequence.
  void Merge(const Findings &others);

  /// Where all keys that a manifest was asked for are gathered, if anywhere.
  KeyForms *asked_keys = nullptr;

  bool HasErrors() const {
    return std::any_of(list_.begin(), list_.end(), [](const Finding &f) { return f.severity == Severity::kError; });
  }
  bool IsEmpty() const { return list_.empty(); }
  const std::vector<Finding> &List() const { return list_; }

  /// One line for each finding, in the order of the file: "file:line:column: error: message". A
  /// warning's name follows it, in brackets.
  std::string Report(const std::string &file) const;

private:
  std::vector<Finding> list_;
};

/// The one of `words` that `word` was probably meant to be, within two or three typing slips; empty for none.
std::string_view NearMiss(std::string_view word, std::span<const std::string_view> words);

/// The same as the end of a message: "; did you mean '...'?", or nothing.
std::string Suggestion(std::string_view word, std::span<const std::string_view> words);

} // namespace korb::packer
