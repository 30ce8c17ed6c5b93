// The uninstaller: the installer without its archive.
#include <doctest/doctest.h>

#include "archive/ArchiveLocation.h"
#include "archive/DiskArchiveFile.h"
#include "archive/UninstallerImage.h"
#include "core/RunValues.h"
#include "files/DiskFile.h"
#include "tests/support/Desktop.h"
#include "tests/support/PackedProduct.h"

using namespace korb;
using namespace korb::test;

namespace {

/// Cuts the archive out of `installer`, as an installation does.
std::string CutOut(const std::string &installer) {
  DiskFile disk;
  REQUIRE(disk.Open(installer.c_str(), DF_READ_SHARED, FILE_ATTRIBUTE_NORMAL) == OPEN_OK);
  DiskArchiveFile file(disk);
  InstallFlags = 0;
  String image;
  BuildUninstallerImage(file, LocateArchive(file), ArchiveHeader(), InstallConfig(), image);
  return std::string(image.c_str(), static_cast<size_t>(image.length()));
}

} // namespace

TEST_CASE("the uninstaller is the program again, and runs") {
  PackedProduct product("[product]\nname = \"Thing\"\n[[file]]\nsource = \"a\"\n");
  product.Write("a", std::string(100000, 'a'));
  const std::string installer = product.Pack();
  for (const bool signed_behind : {false, true}) {
    if (signed_behind) // what stands behind the section stays, as a signature would
      WriteFileBytes(installer, FileBytes(installer) + "signature");
    const std::string image = CutOut(installer);
    const std::string stub = FileBytes("korb.exe");
    CHECK(image.size() - stub.size() < 0x1000 + 10); // some padding, no archive
    CHECK((image.substr(0x400, stub.size() - 0x400) == stub.substr(0x400)));
    CHECK((image.find("signature") != std::string::npos) == signed_behind);
    product.Install();
    CHECK((FileBytes("C:\\Program Files\\Thing\\Uninstall.exe") == image));

    const std::string path = product.Folder() + "\\uninstall.exe";
    WriteFileBytes(path, image);
    Process uninstaller(path);
    const std::string said = AnswerWindow("FATAL ERROR", "OK").Message();
    CHECK(said.find("There is no installation archive present.") != std::string::npos);
    CHECK(uninstaller.Wait() == DWORD{1});
  }
}
