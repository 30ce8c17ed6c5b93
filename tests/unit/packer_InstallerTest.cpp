#include <algorithm>
#include <functional>
#include <random>

#include "packer/ActiveCodePage.h"
#include "packer/PeResources.h"
#include "packer/VersionResource.h"
#include "packer/write/Installer.h"
#include "packer/write/StubImage.h"
#include "tests/support/Doctest.h"
#include "tests/support/TestInstaller.h"

using namespace korb;
using packer::Bytes;
using packer::GetU16;
using packer::GetU32;
using test::kArchivePos;
using test::kPeOffset;
using test::kSectionEntry;

namespace {

constexpr uint32_t kAlignment = 0x1000;

Bytes Noise(size_t size) {
  std::mt19937 generator(11);
  Bytes bytes(size);
  for (uint8_t &byte : bytes)
    byte = static_cast<uint8_t>(generator());
  return bytes;
}

// What the fields of an installer say about where its payload is.
struct Parts {
  explicit Parts(const packer::Installer &installer, bool in_file) {
    const Bytes &file = installer.executable;
    raw = GetU32(file, kSectionEntry + pe::kRawSizeAt);
    used = GetU32(file, kSectionEntry + 8);
    const size_t files = GetU32(file, kArchivePos + header::kFileCountAt);
    begin = kArchivePos + header::kSize + 4 * files + GetU32(file, kArchivePos + header::kConfigSizeAt);
    const size_t end = in_file ? file.size() : kArchivePos + GetU32(file, kArchivePos + header::kArchiveLengthAt);
    payload.assign(file.begin() + static_cast<ptrdiff_t>(begin), file.begin() + static_cast<ptrdiff_t>(end));
    for (const Bytes &volume : installer.volumes)
      payload.insert(payload.end(), volume.begin() + 4, volume.end());
  }

  uint32_t raw, used;
  size_t begin;
  Bytes payload;
};

struct Layout {
  bool in_file;
  int32_t volume_size;
  int32_t first_part; // -1: as large as fits
  size_t contents;
  size_t volumes;
  bool will_be_signed = false;
};

packer::Product ProductOf(const Layout &layout) {
  packer::Product product = test::TestInstaller().product;
  product.flags &= ~IF_PACKED_PAYLOAD;
  product.payload.layout = layout.in_file ? packer::PayloadLayout::kInFile : packer::PayloadLayout::kInSection;
  product.payload.volume_size = layout.volume_size;
  product.payload.will_be_signed = layout.will_be_signed;
  if (layout.first_part >= 0)
    product.payload.first_part_size = layout.first_part;
  product.files[0].contents = Noise(layout.contents);
  return product;
}

} // namespace

TEST_CASE("in every layout the parts of the payload add up to it, and the section fills whole pages") {
  const Layout rows[] = {
      {false, 0, -1, 5, 0},
      {false, 0, -1, 20000, 0},
      {true, 0, -1, 5, 0},
      {true, 0, -1, 20000, 0},
      {false, 9000, 0, 20000, 3},
      {true, 9000, 0, 20000, 3},
      {false, 9000, 1, 20000, 3},
      {true, 9000, 1, 20000, 3},
      {false, 12288, -1, 9000, 1},
      {true, 9000, -1, 9000, 1},
      {false, 5, 20000, 19999, 152},
      {true, 99000, -1, 50, 0},
      {false, 60000, -1, 70000, 1, true},
      {true, 60003, -1, 70000, 1, true},
  };
  for (const Layout &row : rows) {
    CAPTURE(row.in_file);
    CAPTURE(row.volume_size);
    CAPTURE(row.contents);
    const packer::Product product = ProductOf(row);
    const Bytes payload = packer::WritePayload(product).stored;
    const packer::Installer installer = packer::BuildInstaller(product, test::TestStub());
    const Parts parts(installer, row.in_file);
    CHECK(parts.payload == payload);
    CHECK(installer.volumes.size() == row.volumes);
    const Bytes &file = installer.executable;
    CHECK(GetU32(file, kArchivePos + header::kPayloadSizeAt) == payload.size());
    CHECK(GetU32(file, kArchivePos + header::kPayloadChecksumAt) == packer::ChecksumOf(payload));
    CHECK(parts.raw % kAlignment == 0);
    CHECK((parts.used + kAlignment - 1) / kAlignment * kAlignment == parts.raw);
    CHECK(parts.used == GetU32(file, kArchivePos + header::kArchiveLengthAt));
    if (!row.in_file)
      CHECK(file.size() == kArchivePos + parts.raw);
    if (row.first_part < 0 && row.volume_size > 0)
      CHECK(file.size() + (row.will_be_signed ? 32768 : 0) <= static_cast<size_t>(row.volume_size));
    if (row.volumes > 0)
      CHECK(file.size() % 8 == 0); // a signature begins there, and nothing may come before it
    for (size_t i = 0; i < installer.volumes.size(); ++i) {
      CHECK(GetU32(installer.volumes[i], 0) == product.volume_serial + i);
      CHECK(installer.volumes[i].size() <= static_cast<size_t>(row.volume_size));
      CHECK(installer.volumes[i].size() > 4);
    }
  }
}

TEST_CASE("what packing would not make smaller is stored unpacked, as if nothing else had been asked for") {
  packer::Product product = ProductOf({false, 0, -1, 70000, 0});
  const packer::Installer plain = packer::BuildInstaller(product, test::TestStub());
  product.flags |= IF_PACKED_PAYLOAD;
  const packer::Installer noise = packer::BuildInstaller(product, test::TestStub());
  CHECK(noise.storing == packer::Storing::kNotSmaller);
  const bool is_the_same = noise.executable == plain.executable;
  CHECK(is_the_same);
  product.files[0].contents.resize(140000); // zeros
  const packer::Installer helped = packer::BuildInstaller(product, test::TestStub());
  CHECK(helped.storing == packer::Storing::kAsWished);
  CHECK(helped.payload_size < plain.payload_size + 50);
}

TEST_CASE("the section is the last one, at a page, and what it adds to the image is its raw size") {
  const Bytes stub = test::TestStub();
  const packer::Installer installer = packer::BuildInstaller(ProductOf({false, 0, -1, 7000, 0}), stub);
  const Bytes &file = installer.executable;
  const uint32_t raw = GetU32(file, kSectionEntry + pe::kRawSizeAt);
  CHECK(GetU16(file, kPeOffset + pe::kSectionCountAt) == 5);
  CHECK(std::string(reinterpret_cast<const char *>(&file[kSectionEntry]), 6) == std::string(".korb\0", 6));
  CHECK(GetU32(file, kSectionEntry + pe::kVirtualAddressAt) == GetU32(stub, kPeOffset + pe::kImageSizeAt));
  CHECK(GetU32(file, kSectionEntry + pe::kRawPointerAt) == kArchivePos);
  CHECK(kArchivePos % 4096 == 0);
  CHECK(GetU32(file, kSectionEntry + 36) == 0x40000040);
  // The uninstaller is the file without the section, and these two less its raw size.
  CHECK(GetU32(file, kPeOffset + pe::kImageSizeAt) - raw == GetU32(stub, kPeOffset + pe::kImageSizeAt));
  CHECK(GetU32(file, kPeOffset + pe::kInitializedDataSizeAt) - raw ==
        GetU32(stub, kPeOffset + pe::kInitializedDataSizeAt));
  // Its own checksum is taken of finished headers.
  const Bytes front(file.begin(), file.begin() + kArchivePos);
  CHECK(GetU32(file, kArchivePos + header::kStubChecksumAt) == packer::ChecksumOf(front));
  CHECK(GetU32(file, kPeOffset + pe::kOptionalHeaderAt + 64) == 0);
}

TEST_CASE("a stub that can't carry an archive is refused with the reason") {
  const struct {
    size_t at;
    std::string bytes;
    const char *reason;
  } rows[] = {
      {0, "XX", "the stub is no program"},
      {pe::kHeaderOffsetAt, test::Raw(0x3F),
       "the stub has its PE header at an unusual place, where the installer would take it for damage"},
      {kPeOffset, "NE", "the stub is no PE file"},
      {kPeOffset + pe::kSectionCountAt, test::Raw<uint16_t>(3),
       "the stub has fewer than 4 or more than 98 sections: its uninstaller would take itself for damage"},
      {kPeOffset + pe::kOptionalHeaderAt, test::Raw<uint16_t>(0x20B), "the stub is no 32-bit program"},
      {kPeOffset + pe::kOptionalHeaderAt + 32, test::Raw(0x1001), "the stub has unusable alignments"},
      {kSectionEntry + 79, "x", "the stub has no room for another section header"},
      {kPeOffset + pe::kOptionalHeaderAt + 60, test::Raw(static_cast<uint32_t>(kSectionEntry + 79)),
       "the stub has no room for another section header"},
      {kSectionEntry - 40, std::string(".korb\0\0\0", 8), "the stub carries an archive already"},
      {kPeOffset + pe::kOptionalHeaderAt + 92, test::Raw(16) + std::string(32, '\0') + test::Raw(0x3000),
       "the stub is signed: sign the finished installer instead"},
  };
  for (const auto &row : rows) {
    Bytes stub = test::TestStub();
    test::Put(stub, row.at, row.bytes);
    CHECK_THROWS_WITH_AS(packer::StubImage{stub}, row.reason, packer::PackError);
  }
  std::mt19937 generator(5);
  for (int i = 0; i < 3000; ++i) { // whatever the headers say, nothing outside the file is read
    Bytes stub = test::TestStub();
    for (int change = 0; change < 4; ++change)
      stub[generator() % (kSectionEntry + 40)] = static_cast<uint8_t>(generator());
    try {
      const packer::StubImage image(stub);
      image.FindIconImage(2216);
      CHECK(image.WithSection(5, 0x1000).size() == image.SectionFilePos());
    } catch (const packer::PackError &) {
    }
  }
  for (size_t size = 0; size < kArchivePos; size += 7) {
    Bytes stub = test::TestStub();
    stub.resize(size);
    try {
      packer::StubImage image(stub);
      CHECK(size >= kSectionEntry + 80);
    } catch (const packer::PackError &) {
    }
  }
}

/// A stub of resources that every program has: a dialog with a name, its icon, its version.
const packer::ResourceContents kResources = {{{5, std::u16string(u"WIZARD"), 1033}, {'d', 'i', 'a', 'l', 'o', 'g'}},
                                             {{packer::kIconResource, 1, 1033}, {'i'}},
                                             {{packer::kIconGroupResource, 1, 1031}, {'g'}},
                                             {{packer::kVersionResource, 1, 1031}, {'v'}},
                                             {{packer::kManifestResource, 1, 0}, {}}};

packer::ResourceContents ResourcesOf(const Bytes &file) {
  packer::ResourceContents all;
  const auto found = packer::AllResources(file).value();
  for (const auto &[name, place] : found)
    all.emplace(name, Bytes(file.begin() + place.offset, file.begin() + place.offset + place.size));
  return all;
}

TEST_CASE("an installer has the product's icon and version in place of the program's, and the rest of its resources") {
  packer::Product product = ProductOf({false, 0, -1, 5000, 0});
  product.name = "L\xE4mp";
  product.version = "1.20.3b";
  product.copyright = "\xC2\xA9 \xF0\x9F\x92\xA1";
  product.file_name = "setup.exe";
  product.icon = {{16, 16, 4, false, Bytes(300, 'a')}, {256, 256, 32, true, Bytes(70001, 'b')}};
  const Bytes stub = test::TestStub(kResources);
  CHECK((ResourcesOf(stub) == kResources));
  const Bytes file = packer::BuildInstaller(product, stub).executable;
  auto found = ResourcesOf(file);
  CHECK(found.size() == kResources.size() + 1); // the second image
  for (const auto &[name, contents] : kResources)
    if (name.type == packer::ResourceId(5) || name.type == packer::ResourceId(packer::kManifestResource))
      CHECK((found.at(name) == contents));
  CHECK((found.at({packer::kIconResource, 2, 1033}) == product.icon[1].data));
  CHECK((packer::IconImagesOf(file) == std::vector<std::string>{"16x16, 4 bits", "256x256, 32 bits"}));
  const packer::VersionInfo info = packer::ReadVersionInfo(file).value();
  CHECK(packer::DottedNumbers(info.numbers) == "1.20.3.0");
  CHECK(packer::FileVersionOf(file) == "1.20.3b");
  std::string texts;
  for (const auto &[name, text] : info.texts)
    texts += name + "=" + text + "; ";
  CHECK(texts == "CompanyName=Maker; FileDescription=L\xC3\xA4mp Setup; FileVersion=1.20.3b; LegalCopyright=\xC2\xA9 "
                 "\xF0\x9F\x92\xA1; "
                 "OriginalFilename=setup.exe; ProductName=L\xC3\xA4mp; ProductVersion=1.20.3b; ");
  // The section has grown, and the archive's moved on, in the file and in memory.
  const size_t grown = kSectionEntry - 40;
  CHECK(GetU32(file, grown + pe::kRawSizeAt) % 0x200 == 0);
  CHECK(GetU32(file, grown + pe::kRawSizeAt) - GetU32(file, grown + 8) < 0x200);
  CHECK(GetU32(file, kSectionEntry + pe::kRawPointerAt) >=
        GetU32(file, grown + pe::kRawPointerAt) + GetU32(file, grown + pe::kRawSizeAt));
  CHECK(GetU32(file, kSectionEntry + pe::kVirtualAddressAt) == 0x4000 + 0x12000);
  CHECK((packer::BuildInstaller(product, stub).executable == file));

  product.icon.clear();
  found = ResourcesOf(packer::BuildInstaller(product, stub).executable);
  CHECK(found.size() == kResources.size());
  CHECK((found.at({packer::kIconResource, 1, 1033}) == Bytes{'i'}));
}

TEST_CASE("the version's numbers are the first four of the text, as large as there is room for") {
  const std::pair<const char *, const char *> rows[] = {{"", "0.0.0.0"},
                                                        {"v2", "2.0.0.0"},
                                                        {"1, 2, 0, 7", "1.2.0.7"},
                                                        {"2026-11-22 beta 3.4", "2026.11.22.3"},
                                                        {"1.99999999999.65535", "1.65535.65535.0"}};
  for (const auto &[version, numbers] : rows) {
    packer::Product product = ProductOf({false, 0, -1, 100, 0});
    product.version = version;
    const Bytes file = packer::BuildInstaller(product, test::TestStub(kResources)).executable;
    CHECK(packer::DottedNumbers(packer::ReadVersionInfo(file).value().numbers) == numbers);
  }
}

TEST_CASE("a program whose resources can't be replaced is refused with the reason") {
  packer::Product product = ProductOf({false, 0, -1, 100, 0});
  const auto refuses = [&](const Bytes &stub, const char *reason) {
    CHECK_THROWS_WITH_AS(packer::BuildInstaller(product, stub), reason, packer::PackError);
  };
  const char *const elsewhere =
      "the stub has no resources at its end, where they could grow: use the korb.exe that comes with this program";
  Bytes stub = test::TestStub(kResources);
  stub.push_back(0);
  refuses(stub, elsewhere);
  stub = test::TestStub(kResources);
  test::Put(stub, 0xA0E, test::Raw<uint16_t>(60000)); // types
  refuses(stub, "the stub has resources that can't be read");
  product.publisher = std::string(40000, 'x');
  refuses(test::TestStub(kResources),
          "name, version, publisher and copyright together are too long for the version of a program");
  CHECK_NOTHROW(packer::BuildInstaller(product, test::TestStub())); // which has none
  product.icon = {{16, 16, 4, false, Bytes(300, 'a')}};
  product.publisher.clear();
  refuses(test::TestStub(), elsewhere);
}

/// The stub with one resource of `type`, at 0x610 in the file.
Bytes StubWithResource(uint32_t type, uint32_t size) {
  Bytes stub = test::TestStub();
  const size_t optional = kPeOffset + pe::kOptionalHeaderAt;
  test::Put(stub, optional + 92, test::Raw(16));
  test::Put(stub, optional + 96 + 16, test::Raw(0x1000)); // resources at the first section, file 0x400
  const auto directory = [](uint32_t id, uint32_t below) {
    return std::string(12, '\0') + test::Raw<uint16_t>(0) + test::Raw<uint16_t>(1) + test::Raw(id) + test::Raw(below);
  };
  test::Put(stub, 0x400,
            directory(type, 0x80000018) + directory(1, 0x80000030) + directory(1033, 0x48) + test::Raw(0x2010) +
                test::Raw(size) + test::Raw(0) + test::Raw(0));
  return stub;
}

TEST_CASE("the icon to replace is found through the stub's resources") {
  Bytes stub = StubWithResource(3, 2216);
  CHECK(packer::StubImage(stub).FindIconImage(2216) == 0x610);
  CHECK(!packer::StubImage(stub).FindIconImage(744));
  test::Put(stub, 0x410, test::Raw(14)); // a group of icons is no icon
  CHECK(!packer::StubImage(stub).FindIconImage(2216));
  CHECK(!packer::StubImage(test::TestStub()).FindIconImage(2216));
}

TEST_CASE("UTF-8 is asked for in the stub's manifest, where nothing moves") {
  const std::string setting =
      "<activeCodePage xmlns=\"http://schemas.microsoft.com/SMI/2019/WindowsSettings\">UTF-8</activeCodePage>";
  const auto built = [](const std::string &manifest, int page) {
    const packer::ResourceName name{packer::kManifestResource, 1, 1033};
    packer::Product product = ProductOf({false, 0, -1, 100, 0});
    product.code_page = page;
    const Bytes stub = test::TestStub({{name, Bytes(manifest.begin(), manifest.end())}});
    const Bytes file = packer::BuildInstaller(product, stub).executable;
    CHECK(packer::AsksForUtf8(file) == (page == packer::kUtf8));
    const Bytes text = ResourcesOf(file).at(name);
    return std::string(text.begin(), text.end());
  };
  CHECK(built("a<!--" + setting + "-->b", packer::kUtf8) == "a    " + setting + "   b");
  CHECK(built("a<!--" + setting + "-->b", 1252) == "a<!--" + setting + "-->b");
  CHECK(built(setting, packer::kUtf8) == setting);
  CHECK_THROWS_AS(built(setting, 1252), packer::PackError);
  for (const std::string &room : {std::string(), "<!--" + setting, "<!--" + setting.substr(1) + "-->"})
    CHECK_THROWS_AS(built(room, packer::kUtf8), packer::PackError);
}

TEST_CASE("volumes that can't be cut are refused") {
  const auto refuses = [](const Layout &layout, const char *reason) {
    CHECK_THROWS_WITH_AS(packer::BuildInstaller(ProductOf(layout), test::TestStub()), reason, packer::PackError);
  };
  refuses({false, 4, -1, 100, 0}, "a volume needs a size of more than 4 bytes");
  refuses({false, 4100, -1, 100, 0}, "the program and the configuration alone are larger than a volume");
  refuses({true, 4100, -1, 100, 0}, "the program and the configuration alone are larger than a volume");
}
