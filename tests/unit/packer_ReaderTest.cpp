// What the packer tells of finished installers. The rows name the damage code that an installation would show.
#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <sstream>

#include "core/Failure.h"
#include "format/Damage.h"
#include "packer/Build.h"
#include "packer/FileIo.h"
#include "packer/manifest/Starter.h"
#include "packer/read/ExtractInstaller.h"
#include "packer/read/InstallerDiff.h"
#include "packer/read/InstallerReport.h"
#include "packer/read/ReadRelease.h"
#include "tests/support/Doctest.h"
#include "tests/support/TempFolder.h"
#include "tests/support/TestData.h"
#include "tests/support/TestInstaller.h"

using namespace korb;
using namespace korb::test;

namespace {

class Shelf : public TempFolder {
public:
  std::filesystem::path Put(const TestInstaller &product) const {
    const packer::Installer installer = product.Build();
    for (size_t i = 0; i < installer.volumes.size(); ++i)
      WriteBytes(packer::VolumeFileName(product.product, kFirstVolumeNumber + i), installer.volumes[i]);
    return WriteBytes("setup.exe", installer.executable);
  }
  std::filesystem::path WriteBytes(const std::string &name, const Bytes &bytes) const {
    return Write(name, std::string(bytes.begin(), bytes.end()));
  }
};

std::string Verified(const std::filesystem::path &path) {
  std::ostringstream out;
  const bool sound = packer::VerifyInstaller(path, true, out);
  const std::string text = out.str();
  CHECK(sound == text.ends_with(": sound\n"));
  if (text.ends_with(": sound, but changed since it was built\n"))
    return packer::VerifyInstaller(path, false, out) ? "changed" : "";
  const std::string name = packer::ShowPath(path) + ": ";
  const size_t damage = text.find("DAMAGED  ");
  const size_t said = damage == text.npos ? text.find(name) + name.size() : damage + 9;
  return text.substr(said, text.find('\n', said) - said);
}

} // namespace

TEST_CASE("verify names the damage that the installer would report") {
  const struct {
    const char *says;
    std::function<void(TestInstaller &)> spoil;
  } rows[] = {
      {"sound", [](TestInstaller &) {}},
      {"sound", [](TestInstaller &t) { t.product.flags |= IF_PACKED_PAYLOAD; }},
      {"PE headers, archive section: the PE header is out of place (damage code 43)",
       [](TestInstaller &t) { t.executable = [](Bytes &file) { Put(file, 0x3C, Raw(0x10)); }; }},
      {"PE headers, archive section: the file is cut off: 1 bytes of the archive's section are missing, so Windows "
       "won't start it",
       [](TestInstaller &t) { t.executable = [](Bytes &file) { file.pop_back(); }; }},
      {"it carries no archive, so it is no installer that korbpack has built",
       [](TestInstaller &t) { t.executable = [](Bytes &file) { Put(file, kSectionEntry, ".other"); }; }},
      {"archive header, file sizes: the archive's header has another magic number (damage code 20)",
       [](TestInstaller &t) { t.executable = [](Bytes &file) { Put(file, kArchivePos, "x"); }; }},
      {"configuration: the configuration has no proper end (damage code 32)",
       [](TestInstaller &t) { t.config = [](Bytes &stream) { stream.back() = 0; }; }},
      {"configuration: the volumes have no name (damage code 21)",
       [](TestInstaller &t) { t.product.volume_base_name = " "; }},
      {"program part: the program part fails its checksum (damage code 40)",
       [](TestInstaller &t) {
         t.product.flags |= IF_VERIFY_STUB;
         t.executable = [](Bytes &file) { file[0x500] ^= 1; };
       }},
      {"changed", [](TestInstaller &t) { t.executable = [](Bytes &file) { file[0x500] ^= 1; }; }},
      {"sound", [](TestInstaller &t) { t.executable = Sign; }},
      {"changed", [](TestInstaller &t) { t.executable = [](Bytes &file) { Sign(file), file[0x500] ^= 1; }; }},
      {"program part: the program part fails its checksum (damage code 40): an installer with 'options.verify_stub' "
       "can't be signed",
       [](TestInstaller &t) { t.product.flags |= IF_VERIFY_STUB, t.executable = Sign; }},
      {"payload: the payload fails its checksum (damage code 55)",
       [](TestInstaller &t) { t.executable = [](Bytes &file) { Swap(file, "12345", "12346"); }; }},
      {"files: file 1 of 2: a file fails its checksum (damage code 100)",
       [](TestInstaller &t) { t.payload = [](Bytes &records) { Swap(records, "12345", "12346"); }; }},
      {"files: file 2 of 2: a file's kind has no folder (damage code 110)",
       [](TestInstaller &t) { t.product.files[1].kind = 2; }},
      {"sound", [](TestInstaller &t) { t.product.files[1].kind = 2, t.product.files[1].target = "C:\\x\\"; }},
      {"dates of old files: the condition of an old file has no valid date (damage code 65)",
       [](TestInstaller &t) { t.product.deletions[0].kind = kDeleteDateEqual; }},
  };
  const Shelf shelf;
  for (const auto &row : rows) {
    TestInstaller product;
    row.spoil(product);
    CHECK(Verified(shelf.Put(product)) == row.says);
  }
}

TEST_CASE("volumes are looked for beside the installer, and only there") {
  const Shelf shelf;
  TestInstaller product;
  product.product.payload.volume_size = 60;
  product.product.payload.first_part_size = 10;
  const auto setup = shelf.Put(product);
  CHECK(Verified(setup) == "sound");
  const std::string second = shelf.Read("DISK3.KRB");
  shelf.Write("DISK3.KRB", "\1\2\3\4" + second.substr(4));
  CHECK(Verified(setup) ==
        "payload: the volume 'DISK3.KRB' is not the one that belongs here: the installer would ask for its disk");
  std::filesystem::remove(shelf.Path() / "DISK3.KRB");
  CHECK(Verified(setup) ==
        "payload: the volume 'DISK3.KRB' is not beside the installer: the installer would ask for its disk");
  product.product.volume_base_name = "sub/DISK";
  std::filesystem::create_directory(shelf.Path() / "sub");
  CHECK(Verified(shelf.Put(product)).find("is not beside the installer") != std::string::npos);
}

// KORB_REGENERATE=1 writes the expected text anew: the change is then read as a difference.
TEST_CASE("every key of a manifest reaches the installer, and inspect tells it") {
  const Shelf shelf;
  shelf.WriteBytes("korb.exe", TestStub({{{packer::kManifestResource, 1, 1033}, {}}}));
  const auto setup = shelf.Path() / "setup.exe";
  std::ostringstream summary, problems, outline, expected;
  REQUIRE(
      packer::BuildFromManifest({TestData("every-key.toml"), setup, shelf.Path() / "korb.exe", {}}, summary, problems));
  CHECK(packer::InspectInstaller(setup, 1252, false, outline, problems));
  CHECK(problems.str() == "");
  const std::string told = outline.str().substr(outline.str().find("program\n"));
  if (std::getenv("KORB_REGENERATE"))
    std::ofstream(TestData("every-key.txt"), std::ios::binary) << told;
  expected << std::ifstream(TestData("every-key.txt"), std::ios::binary).rdbuf();
  CHECK(told == expected.str());
}

TEST_CASE("a report outside the reader ends as an error of korbpack, not of the process") {
  CHECK_THROWS_WITH_AS(CorruptInstaller(DamageCode::FileKind), "a file's kind has no folder (damage code 110)",
                       std::exception);
  CHECK_THROWS_WITH_AS(FatalMessage("two\r\nlines"), "two lines", std::exception);
}

TEST_CASE("inspect escapes what JSON can't hold, and stops in front of damage") {
  const Shelf shelf;
  TestInstaller product;
  product.product.name = "Z\xFCrich \"x\"\x01";
  std::ostringstream json, before, problems;
  CHECK(packer::InspectInstaller(shelf.Put(product), 1252, true, json, problems));
  CHECK(json.str().find(R"("name": "Zürich \"x\"\u0001")") != std::string::npos);
  product.config = [](Bytes &stream) { stream.back() = 0; };
  CHECK(!packer::InspectInstaller(shelf.Put(product), 1252, false, before, problems));
  CHECK(before.str().find("header\n") != std::string::npos);
  CHECK(before.str().find("product\n") == std::string::npos);
  CHECK(problems.str().ends_with(": error: the configuration has no proper end (damage code 32)\n"));
}

TEST_CASE("extract writes every file with its date, and nothing outside its folder") {
  const Shelf shelf;
  TestInstaller product;
  const packer::FileEntry file = product.product.files[0];
  product.product.files.clear();
  for (const char *name : {"dir\\one.txt", "..\\..\\up", "C:\\Windows\\x", "/etc/y", "\\\\server\\share", "a\\..\\b",
                           "...", "nul.txt", "s:t", "dir\\one.txt", "b\\below", "DIR\\ONE.TXT", "caf\xE9"}) {
    product.product.files.push_back(file);
    product.product.files.back().name = name;
  }
  const auto setup = shelf.Put(product), out = shelf.Path() / "out" / "deep";
  std::ostringstream summary, problems;
  CHECK(packer::ExtractInstaller(setup, out, 1252, summary, problems));
  CHECK(problems.str() == "");
  std::string found;
  for (const auto &entry : std::filesystem::recursive_directory_iterator(shelf.Path()))
    found += entry.is_regular_file() ? entry.path().lexically_relative(out).generic_string() + "\n" : "";
  for (const char *name : {"dir/one.txt", "up", "C_/Windows/x", "etc/y", "server/share", "a/b", "_", "_nul.txt", "s_t",
                           "b/below", "dir/one.txt (2)"}) {
    CAPTURE(std::string(name));
    CHECK(("\n" + found).find("\n" + std::string(name) + "\n") != std::string::npos);
  }
  CHECK(std::count(found.begin(), found.end(), '\n') == 13 + 1); // and the installer
  CHECK(shelf.Read("out/deep/a/b") == "12345");
  const auto day = std::chrono::file_clock::to_sys(std::filesystem::last_write_time(out / "a" / "b"));
  CHECK((day == std::chrono::sys_days{std::chrono::year{1999} / 12 / 31} + std::chrono::seconds(86398)));
  CHECK_THROWS_WITH(packer::ExtractInstaller(setup, out, 1252, summary, problems),
                    ("'" + out.string() + "' is not an empty folder").c_str());
}

TEST_CASE("the manifest to begin with builds as it is, also where it lies among the files") {
  for (const char *manifest : {"setup.toml", "files/setup.toml"}) {
    const Shelf shelf;
    shelf.Write("files/The 'App' ${1}.exe", "MZ");
    shelf.Write("files/LICENSE.txt", "be nice");
    shelf.Write("files/sub/data", "x");
    const auto place = shelf.Path() / manifest;
    shelf.Write(manifest, packer::StarterManifest(shelf.Path() / "files", place));
    shelf.WriteBytes("korb.exe", TestStub());
    for (int times = 0; times < 2; ++times) {
      std::ostringstream summary, problems;
      const auto output = std::filesystem::path(place).replace_extension(".exe");
      CHECK(packer::BuildFromManifest({place, output, shelf.Path() / "korb.exe", {}}, summary, problems));
      CHECK(problems.str() == "");
      CHECK(summary.str().starts_with(shelf.Path().filename().string() + " 1.0, 3 files\n"));
    }
  }
  CHECK_THROWS_AS(packer::StarterManifest("no such folder", "x.toml"), packer::PackError);
}

TEST_CASE("diff tells what changes for a user, and no more") {
  const Shelf shelf;
  TestInstaller product;
  for (packer::FileEntry &file : product.product.files)
    file.target.clear();
  packer::Release before = packer::ReadRelease(shelf.Put(product), 1252);
  packer::Product &changed = product.product;
  changed.version = "1.3";
  changed.files[0].contents = {'1', '2', '3', '4', '6'};
  changed.files[1].contents.push_back('x');
  changed.files[1].date = {2020, 1, 2, 3, 4, 5};
  changed.files.push_back(changed.files[0]);
  changed.files[2].name = "M\xFCll\x1B.txt";
  changed.associations[0].command = "other";
  changed.flags |= IF_ALWAYS_LOG;
  changed.payload.volume_size = 60;
  changed.payload.first_part_size = 10;
  packer::Release after = packer::ReadRelease(shelf.Put(product), 1252);
  before.label = "old", after.label = "new";
  const auto told = [&](const packer::Release &to) {
    std::ostringstream out;
    WriteDiff(before, to, false, out);
    return out.str();
  };
  CHECK(told(after) == "old -> new\n"
                       "product\n  ~ version: 1.2.3 -> 1.3\n"
                       "file\n  + %InstallDir%\\M\u00FCll\\u001B.txt: size 5\n"
                       "  ~ %InstallDir%\\dir\\one.txt: contents 0xAE15EF08 -> 0xAE15EF09\n"
                       "  ~ %InstallDir%\\empty.txt: size 0 -> 1, date 1999-12-31 23:59:58 -> 2020-01-02 03:04:05\n"
                       "association\n  ~ .thg open, English: command cmd -> other\n"
                       "option\n  + always_log\n"
                       "size\n  ~ installed: 5 -> 11\n  ~ installer: 8192 -> 8422\n");
  CHECK(told(before) == "old -> old\nnothing that a user would notice\n");
  std::ostringstream json;
  WriteDiff(before, after, true, json);
  CHECK(json.str().find("\"name\": \"version\",\n        \"value\": [\n          \"1.2.3\",") != std::string::npos);
  shelf.Write("none.exe", "MZ");
  CHECK_THROWS_AS(packer::ReadRelease(shelf.Path() / "none.exe", 1252), packer::PackError);
}
