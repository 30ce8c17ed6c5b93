// Installers from the real packer, spoiled in one place by chance: the same number always gives the same one.
#pragma once

#include <random>
#include <string>
#include <vector>

#include "packer/write/Installer.h"

namespace korb::test {

using packer::Bytes;

struct Mutant {
  std::string what; ///< was spoiled
  Bytes executable;
  std::vector<Bytes> volumes; ///< the first is volume number 2
};

/// All mutants of three products: packed in the section; in the file; on volumes.
class Mutants {
public:
  /// `to_run` spares what would make any code of the machine's run, or restart it: the headers before the section's
  /// entry, and the options.
  Mutants(Bytes stub, bool to_run) : stub_(std::move(stub)), to_run_(to_run) {}

  Mutant Make(uint32_t number);

  static constexpr char kVolumeName[] = "Mutant"; ///< and its number, ".KRB"

private:
  using Product = packer::Product;
  Mutant Raw(const Product &product);
  Mutant WithRightSums(Product product);
  Mutant Disks(const Product &product);
  uint32_t Below(size_t limit) { return limit == 0 ? 0 : static_cast<uint32_t>(random_() % limit); }
  void Spoil(Bytes &bytes, size_t from, size_t to);
  void Edit(Bytes &bytes, size_t from);

  Bytes stub_;
  bool to_run_;
  std::mt19937 random_;
};

} // namespace korb::test
