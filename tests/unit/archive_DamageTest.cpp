// Every way in which an archive can be damaged, each with the code that the run ends with.
#include "tests/support/ArchiveRun.h"
#include "tests/support/Testing.h"

namespace {

struct Damage {
  int32_t code;
  const char *what;
  void (*spoil)(TestInstaller &);
};

// What Header and Config put in; they take no captures, so that a row stays one line.
template <int32_t at, int32_t value>
void Header(TestInstaller &t) {
  t.executable = [](Bytes &file) { Put(file, kArchivePos + at, Raw(value)); };
}
template <int32_t at, uint16_t value>
void PeWord(TestInstaller &t) {
  t.executable = [](Bytes &file) { Put(file, at, Raw(value)); };
}
template <int32_t at, int32_t value>
void Section(TestInstaller &t) {
  t.executable = [](Bytes &file) { Put(file, kSectionEntry + at, Raw(value)); };
}
template <size_t size>
void CutFile(TestInstaller &t) {
  t.executable = [](Bytes &file) { file.resize(size); };
}
/// The count behind the text `text` becomes `value`.
template <int32_t before, int32_t value>
void Count(TestInstaller &t, const std::string &text) {
  t.config = [text](Bytes &config) { Swap(config, Z(text) + Raw(before), Z(text) + Raw(value)); };
}
/// The configuration ends in front of `text`.
void CutConfig(TestInstaller &t, const std::string &text) {
  t.config = [text](Bytes &config) {
    Swap(config, text, "\1cut\1");
    const std::string all(config.begin(), config.end());
    config.resize(all.find("\1cut\1"));
  };
}

const Damage kDamages[] = {
    {43, "the PE header stands below 0x40", PeWord<pe::kHeaderOffsetAt, 0x3F>},
    {43, "the PE header stands above 0x1000", PeWord<pe::kHeaderOffsetAt, 0x1001>},
    {43, "the file ends inside the PE header's place", CutFile<0x3D>},
    {44, "three sections", PeWord<kPeOffset + pe::kSectionCountAt, 3>},
    {44, "100 sections", PeWord<kPeOffset + pe::kSectionCountAt, 100>},
    {44, "the file ends in front of the section count", CutFile<kPeOffset + 7>},
    {9, "the section has no bytes in the file", Section<pe::kRawPointerAt, 0>},
    {10, "the section stands in front of the file", Section<pe::kRawPointerAt, -4096>},
    {9, "the section can't be read", Section<0x24, 0x40>},
    {20, "wrong magic", Header<header::kMagicAt, 0>},
    {20, "the section lies outside the image", Section<pe::kVirtualAddressAt, 0x7FFFF000>},
    {20, "the section's size is negative", Section<pe::kRawSizeAt, -1>},
    {20, "the file ends behind the headers", CutFile<kArchivePos + 3>},
    {22, "configuration of 0 bytes", Header<header::kConfigSizeAt, 0>},
    {22, "configuration of -1 bytes", Header<header::kConfigSizeAt, -1>},
    {22, "configuration of 0xA00000 bytes", Header<header::kConfigSizeAt, 0xA00000>},
    {45, "negative archive length", Header<header::kArchiveLengthAt, -1>},
    {27, "negative file count", Header<header::kFileCountAt, -1>},
    {29, "negative payload size", Header<header::kPayloadSizeAt, -1>},
    {28, "negative size in the table", Header<header::kSize, -1>},
    {28, "size above 0x40000000", Header<header::kSize, 0x40000001>},
    {28, "the table passes the section",
     [](TestInstaller &t) {
       t.executable = [](Bytes &file) {
         Put(file, kArchivePos + header::kFileCountAt, Raw(3));
         Put(file, kSectionEntry + pe::kRawSizeAt, Raw(header::kSize + 8));
       };
     }},
    {47, "another key", Header<header::kConfigKeyAt, 1>},
    {47, "the section ends in the configuration", Section<pe::kRawSizeAt, header::kSize + 8 + 20>},
    {25, "a flipped bit in a literal byte",
     [](TestInstaller &t) {
       t.config = [](Bytes &config) { config.assign(1, 0); }; // packs into one literal
       t.executable = [](Bytes &file) { file[kArchivePos + header::kSize + 8 + 8] ^= 0x10; };
     }},
    {19, "a phase of 10,000 ms", [](TestInstaller &t) { t.product.min_phase_ms = 10000; }},
    {24, "21 licence pages", [](TestInstaller &t) { t.product.license_pages.resize(21); }},
    {24, "-1 licence pages", [](TestInstaller &t) { Count<2, -1>(t, "REGKEY"); }},
    {26, "21 readme pages", [](TestInstaller &t) { t.product.readme_pages.resize(21); }},
    {26, "-1 readme pages", [](TestInstaller &t) { Count<1, -1>(t, "Licence 2"); }},
    {21, "blank volume name", [](TestInstaller &t) { t.product.volume_base_name = " \t\r\n"; }},
    {21, "the configuration ends with the flags", [](TestInstaller &t) { t.config = [](Bytes &c) { c.resize(8); }; }},
    {23, "negative place of the patch", [](TestInstaller &t) { t.product.stub_patch_offset = -1; }},
    {23, "the patch stands beyond the file", [](TestInstaller &t) { t.product.stub_patch_offset = 0x7FFFFFFF; }},
    {38, "1,002 old files", [](TestInstaller &t) { t.product.deletions.resize(1002); }},
    {38, "the configuration ends in the old files", [](TestInstaller &t) { CutConfig(t, Z("~~THE END~~")); }},
    {36, "10,001 associations", [](TestInstaller &t) { t.product.associations.resize(10001); }},
    {36, "-1 associations", [](TestInstaller &t) { Count<1, -1>(t, "~~THE END~~"); }},
    {37, "10,001 uninstall values", [](TestInstaller &t) { t.product.uninstall_values.resize(10001); }},
    {37, "-1 uninstall values", [](TestInstaller &t) { Count<1, -1>(t, "icon"); }},
    {30, "no language", [](TestInstaller &t) { t.product.languages.clear(); }},
    {30, "101 languages", [](TestInstaller &t) { t.product.languages.resize(101); }},
    {30, "the configuration ends in front of the languages", [](TestInstaller &t) { CutConfig(t, Z("\2\2")); }},
    {31, "no text", [](TestInstaller &t) { t.product.languages.assign(1, {}); }},
    {31, "10,001 texts", [](TestInstaller &t) { t.product.languages[0].texts.resize(10001); }},
    {32, "another end mark", [](TestInstaller &t) { t.config = [](Bytes &c) { c.back() ^= 1; }; }},
    {32, "the configuration ends in the texts", [](TestInstaller &t) { CutConfig(t, Z("Zwei")); }},
    {35, "the section's place is beyond the file", Section<pe::kRawPointerAt, 0x7FFFFFFF>},
    {40, "a flipped bit in the program, which is verified",
     [](TestInstaller &t) {
       t.product.flags |= IF_VERIFY_STUB;
       t.executable = [](Bytes &file) { file[0x800] ^= 1; };
     }},
    {55, "a flipped bit in the payload",
     [](TestInstaller &t) { t.executable = [](Bytes &file) { Swap(file, "12345", "12344"); }; }},
    {60, "a packed payload that isn't",
     [](TestInstaller &t) {
       t.product.flags |= IF_PACKED_PAYLOAD;
       t.payload = [](Bytes &payload) { payload[0] ^= 1; };
     }},
    {70, "a record without a name", [](TestInstaller &t) { t.payload = [](Bytes &payload) { payload[0] = 0; }; }},
    {100, "other contents than their checksum says",
     [](TestInstaller &t) { t.payload = [](Bytes &payload) { Swap(payload, "12345", "12344"); }; }},
    {100, "contents that pass the payload", Header<header::kSize, 0x40000000>},
};

} // namespace

TEST_CASE("each damage of an installer ends the run with its code") {
  for (const Damage &damage : kDamages) {
    CAPTURE(std::string(damage.what));
    TestInstaller installer;
    damage.spoil(installer);
    ArchiveRun run(installer.Build().executable);
    CHECK(TrappedCode([&] { run.Run(); }) == damage.code);
  }
}

TEST_CASE("a bad disk after the section is damage, too") {
  TestInstaller installer;
  installer.tail = {'T', 'A', 'I', 'L'};
  ArchiveRun run(installer.Build().executable);
  run.file.unreadable_from = run.file.Size() - 1;
  CHECK(TrappedCode([&] { run.Run(); }) == 42);
}

TEST_CASE("a size that the table can only have got later is damage, too") {
  ArchiveRun run(TestInstaller().Build().executable);
  run.Run();
  for (const auto &[size, code] : {std::pair{-1, 71}, {0x40000001, 72}}) {
    ArchiveCursor cursor("name\0 and the rest of a record", 30);
    PayloadRecord record;
    CHECK(TrappedCode([&, size = size] { ReadPayloadRecord(cursor, size, record); }) == code);
  }
}

TEST_CASE("what is at a limit, or is meant to pass, passes") {
  const Damage rows[] = {
      {0, "version 1101", Header<header::kVersionAt, 1101>},
      {0, "a negative version", Header<header::kVersionAt, -100>},
      {0, "the section's name goes on behind its end",
       [](TestInstaller &t) { t.executable = [](Bytes &f) { Put(f, kSectionEntry + 6, "zz"); }; }},
      {0, "20 pages of each kind, 9,999 ms",
       [](TestInstaller &t) {
         t.product.license_pages.resize(20);
         t.product.readme_pages.resize(20);
         t.product.min_phase_ms = 9999;
       }},
      {0, "1,001 old files", [](TestInstaller &t) { t.product.deletions.resize(1001); }},
      {0, "10,000 associations and uninstall values",
       [](TestInstaller &t) {
         t.product.associations.resize(10000);
         t.product.uninstall_values.resize(10000);
       }},
      {0, "100 languages with one text",
       [](TestInstaller &t) {
         t.product.languages.assign(100, {"x", {"y"}, {}});
       }},
      {0, "a flipped bit in the program, which is not verified",
       [](TestInstaller &t) { t.executable = [](Bytes &file) { file[0x800] ^= 1; }; }},
      {0, "no files", [](TestInstaller &t) { t.product.files.clear(); }},
      {0, "no files, packed",
       [](TestInstaller &t) {
         t.product.files.clear();
         t.product.flags |= IF_PACKED_PAYLOAD;
       }},
  };
  for (const Damage &row : rows) {
    CAPTURE(std::string(row.what));
    TestInstaller installer;
    row.spoil(installer);
    ArchiveRun run(installer.Build().executable);
    CHECK(TrappedCode([&] { run.Run(); }) == row.code);
    CHECK(run.records.size() == installer.product.files.size());
  }
}

TEST_CASE("a file without the section, and an archive from the future, say so") {
  TestInstaller newer;
  Header<header::kVersionAt, 1102>(newer);
  std::vector<std::pair<TestInstaller, const char *>> rows = {{newer, "The installer version (11.0) does not match"}};
  for (const char *name : {".KORB\0\0", ".korbx\0", "korb\0\0\0"}) {
    rows.emplace_back(TestInstaller(), "There is no installation archive present.");
    rows.back().first.executable = [name](Bytes &file) { Put(file, kSectionEntry, std::string(name, 7)); };
  }
  for (const auto &[installer, words] : rows) {
    ArchiveRun run(installer.Build().executable);
    const std::string said = Trapped([&] { run.Run(); });
    CHECK_MESSAGE(said.find(words) != std::string::npos, said);
  }
}
