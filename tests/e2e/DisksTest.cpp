// An installation that comes on several disks.
#include <filesystem>

#include "tests/support/CleanPlace.h"
#include "tests/support/Desktop.h"
#include "tests/support/Doctest.h"
#include "tests/support/PackedProduct.h"

using namespace korb::test;

namespace {

const std::string kInstalled = "C:\\Program Files\\Disks\\data.bin";

std::string Data() {
  std::string data;
  for (int i = 0; i < 1500; ++i)
    data += static_cast<char>(i * i >> 4);
  return data;
}

/// A packed product whose disks lie in a drawer.
struct Disks {
  Disks() : product(ProductManifest("disks")) {
    product.Write("data.bin", Data());
    product.Pack();
    for (const char *disk : {"Setup2.KRB", "Setup3.KRB"})
      std::filesystem::rename(Slot(disk), Drawer(disk));
  }

  std::string Slot(const char *disk) const { return product.Folder() + "\\" + disk; }
  std::string Drawer(const char *disk) const { return Slot(disk) + ".away"; }
  void Insert(const char *disk, const char *as) const { WriteFileBytes(Slot(as), FileBytes(Drawer(disk))); }

  CleanPlace place{{"C:\\Program Files\\Disks"}};
  PackedProduct product;
};

/// Waits for the box that says `words`, has the answer given, and gives all that it said.
std::string Answer(const std::string &words, const std::string &button) {
  return AnswerWindow(words, button).Message();
}

} // namespace

TEST_CASE_FIXTURE(Disks, "disks are asked for until the right one is there, in a silent run too") {
  Process setup = product.Start("/a");
  const std::string plain = Answer("disk 2", "OK");
  CHECK(plain.find("\r\n\r\n") == std::string::npos);
  const std::string still_missing = Answer("disk 2", "Cancel");
  CHECK(still_missing.substr(still_missing.size() - plain.size()) == plain);
  CHECK(still_missing.size() > plain.size() + 4);
  Insert("Setup3.KRB", "Setup2.KRB");
  Answer("cancel?", "No");
  CHECK(Answer("disk 2", "OK") == still_missing); // a wrong disk is told like a missing one
  Insert("Setup2.KRB", "Setup2.KRB");
  Answer("disk 2", "OK");
  Insert("Setup3.KRB", "Setup3.KRB");
  Answer("disk 3", "OK");
  CHECK(setup.Wait() == DWORD{1});
  CHECK((FileBytes(kInstalled) == Data()));
}

TEST_CASE_FIXTURE(Disks, "a cancel at a question for a disk ends the run where it is") {
  Process setup = product.Start();
  Answer("disk 2", "Cancel");
  Answer("cancel?", "Yes");
  CHECK(setup.Wait() == DWORD{1});
  CHECK_FALSE(std::filesystem::exists(kInstalled));
}
