// What the packer has to say about a manifest, gathered so that one run tells all of it.
#pragma once

#include <algorithm>
#include <map>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "packer/Product.h"
#include "packer/check/Report.h"
#include "packer/check/WarningNames.h"

namespace korb::packer {

struct KeyForms;

enum class Severity { kError, kWarning, kNote };

/// The second place that a finding is about.
struct Note {
  Place place;
  std::string message;
};

struct Finding {
  Severity severity;
  Place place;
  std::string message;
  std::string_view name = {}; ///< of a warning
  std::vector<Note> notes = {};
};

class Findings {
public:
  void Error(const Place &place, std::string message, std::vector<Note> notes = {}) {
    Add({Severity::kError, place, std::move(message), {}, std::move(notes)});
  }
  void Warn(const Place &place, Warning warning, std::string message, std::vector<Note> notes = {}) {
    Add({Severity::kWarning, place, std::move(message), NameOf(warning), std::move(notes)});
  }

  /// Tells something that asks for nothing.
  void Tell(const Place &place, std::string message) { Add({Severity::kNote, place, std::move(message)}); }

  /// Adds what `others` holds and allows, without what stands at the place of an error, or is warned of the product as
  /// a whole when there are errors: that is most likely their consequence.
  void Merge(const Findings &others);

  /// From now on, warnings called `name` are left out. A name that no warning has is an error at `place`.
  void Allow(std::string_view name, const Place &place);

  /// Notes what was allowed at a place of a manifest, and has never occurred.
  void TellIdleAllowances();

  /// Keeps the text of `file`, whose places have that name, so that its lines can be shown.
  void KeepSource(const std::string &file, std::string text) { sources_[file] = std::move(text); }
  const std::map<std::string, std::string> &Sources() const { return sources_; }

  /// Messages of code page `page` become UTF-8, in which all others are.
  void ConvertTexts(int page);

  /// Where all keys that a manifest was asked for are gathered, if anywhere.
  KeyForms *asked_keys = nullptr;

  size_t Count(Severity severity) const {
    return static_cast<size_t>(
        std::count_if(list_.begin(), list_.end(), [&](const Finding &f) { return f.severity == severity; }));
  }
  bool HasErrors() const { return Count(Severity::kError) > 0; }
  const std::vector<Finding> &List() const { return list_; }

  /// All findings, in the order of the file. `file` is the manifest's own name.
  std::string Report(const std::string &file, ReportForm form = ReportForm::kShort) const;

private:
  struct Allowance {
    Place place;
    bool is_used = false;
  };

  void Add(Finding finding);

  std::vector<Finding> list_;
  std::map<std::string, Allowance, std::less<>> allowed_; // by the names of warnings
  std::map<std::string, std::string> sources_;
};

/// The names of all warnings.
std::vector<std::string_view> WarningWords();

/// What to say of `name` when no warning is called so; empty when one is.
std::string WarningFault(std::string_view name);

/// The one of `words` that `word` was probably meant to be, within two or three typing slips; empty for none.
std::string_view NearMiss(std::string_view word, std::span<const std::string_view> words);

/// The same as the end of a message: "; did you mean '...'?", or nothing.
std::string Suggestion(std::string_view word, std::span<const std::string_view> words);

} // namespace korb::packer
