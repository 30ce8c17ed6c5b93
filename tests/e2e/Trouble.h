// Runs on a machine that refuses something: what they leave, what they tell, and the way back.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "tests/support/PackedProduct.h"
#include "tests/support/Snapshot.h"

namespace korb::test {

/// What a run said and how it ended.
struct Outcome {
  bool ended = false;
  DWORD code = 0;
  std::string words; ///< of all its boxes
};

/// Starts a program and answers its boxes, as somebody does who wants no restart and no log, until it has ended and no
/// batch of an uninstaller is left, or a minute is over.
Outcome RunAnswered(const std::string &command);

/// The files and keys of all places that the product of trouble.toml, and what is there before it, are in. A file is
/// told by its attributes and bytes; Install.LOG isn't told, nor what troubles make.
Snapshot LookAtPlaces();

/// The product of trouble.toml in two versions, on a machine with other people's files in the same places.
class TroubledProduct {
public:
  TroubledProduct();
  ~TroubledProduct();

  enum class Kind { Install, Upgrade, Uninstall };

  /// One run while `trouble` holds, which is over when what it gives has gone. Then the same run again without it, and
  /// an uninstallation. Tells what is against the rules: a run ends by itself; what it couldn't do it has told; nothing
  /// of others is touched, no part of a file lies there unnamed; the second run ends complete, and the uninstallation
  /// leaves the machine as it was.
  std::vector<std::string> Try(Kind kind, const std::function<std::shared_ptr<void>()> &trouble);

  /// What the last run under trouble said, in boxes and in the log.
  const std::string &told() const { return told_; }
  /// True when the last run under trouble did all the same what it was to do.
  bool was_complete() const { return was_complete_; }
  std::string Setup(int version) const { return setups_[version - 1]; }

private:
  struct Course {
    Snapshot before, after;
    std::string told;
  };

  Course &CourseOf(Kind kind);
  Outcome Start(Kind kind) const;
  void Judge(const Course &course, const Snapshot &now, std::vector<std::string> &complaints) const;

  std::string temporary_; ///< the directory for temporary files
  PackedProduct products_[2];
  std::string setups_[2];
  Snapshot base_;
  Course courses_[3];
  std::string told_;
  bool was_complete_ = false;
};

} // namespace korb::test
