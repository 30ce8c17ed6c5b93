#include "tests/support/TestInstaller.h"

#include <algorithm>
#include <stdexcept>

#include "packer/write/ConfigWriter.h"
#include "packer/write/RecordWriter.h"

namespace korb::test {

void Put(Bytes &file, size_t at, const std::string &bytes) {
  if (at + bytes.size() > file.size())
    throw std::logic_error("put behind the end");
  std::copy(bytes.begin(), bytes.end(), file.begin() + static_cast<ptrdiff_t>(at));
}

void Swap(Bytes &bytes, const std::string &before, const std::string &after) {
  const auto found = std::search(bytes.begin(), bytes.end(), before.begin(), before.end(),
                                 [](uint8_t a, char b) { return a == static_cast<uint8_t>(b); });
  if (found == bytes.end())
    throw std::logic_error("nothing to swap");
  const auto gap = bytes.erase(found, found + static_cast<ptrdiff_t>(before.size()));
  bytes.insert(gap, after.begin(), after.end());
}

Bytes TestStub() {
  Bytes stub(kArchivePos);
  for (size_t i = 0x400; i < stub.size(); ++i)
    stub[i] = static_cast<uint8_t>(i * 7);
  Put(stub, 0, "MZ");
  Put(stub, pe::kHeaderOffsetAt, Raw(static_cast<uint32_t>(kPeOffset)));
  Put(stub, kPeOffset, std::string("PE\0\0", 4));
  Put(stub, kPeOffset + pe::kSectionCountAt, Raw<uint16_t>(4));
  Put(stub, kPeOffset + pe::kOptionalHeaderSizeAt, Raw<uint16_t>(0xE0));
  const size_t optional = kPeOffset + pe::kOptionalHeaderAt;
  Put(stub, optional, Raw<uint16_t>(0x10B));
  Put(stub, kPeOffset + pe::kInitializedDataSizeAt, Raw(0x800));
  Put(stub, optional + 32, Raw(0x1000) + Raw(0x200)); // alignments in memory and file
  Put(stub, optional + 56, Raw(0x5000) + Raw(0x400)); // sizes of image and headers
  Put(stub, optional + 92, Raw(16));                  // data directories
  for (int32_t i = 0; i < 4; ++i)
    Put(stub, kSectionEntry - static_cast<size_t>((4 - i) * pe::kSectionEntrySize),
        std::string("part") + static_cast<char>('0' + i) + std::string(3, '\0') + Raw(0x200) + Raw(0x1000 * (i + 1)) +
            Raw(0x200) + Raw(0x400 + 0x200 * i));
  return stub;
}

Bytes TestStub(const packer::ResourceContents &resources) {
  Bytes stub = TestStub();
  stub.resize(0xC00);
  Put(stub, kPeOffset + pe::kOptionalHeaderAt + 112, Raw(0x4000)); // the directory of resources
  const Bytes section = packer::ResourceSection(resources, 0x4000);
  Put(stub, 0xA00, std::string(section.begin(), section.end()));
  return stub;
}

TestInstaller::TestInstaller() {
  product.flags = IF_UNINSTALL | IF_CUSTOM_COLORS | IF_MASTER_PRODUCT;
  product.min_phase_ms = 500;
  product.shortcut_mode = 1;
  product.uninstaller_date = {2001, 2, 3, 4, 5, 6};
  product.publisher = "Maker";
  product.name = "Thing";
  product.common_dir = "Shared";
  product.start_menu = "Group";
  product.install_dir = "<OS>\\Thing";
  product.version = "1.2.3";
  product.registry_key = "REGKEY";
  product.license_pages = {"Licence\n1", "Licence 2"};
  product.readme_pages = {"Readme"};
  product.uninstall_subdir = "Undo";
  product.volume_base_name = "DISK";
  product.uninstaller_name = "uninst.exe";
  product.uninstall_name = "ThingKey";
  product.title_color = 0x111111;
  product.top_color = 0x222222;
  product.bottom_color = 0x333333;
  product.title_shadow = 3;
  product.background = {'B', 'I', 'T', 'S'};
  product.master_product = "Master";
  product.desktop_group = "Desk";
  product.pre_install_batch = "pre";
  product.post_install_batch = "post";
  product.final_batch = "final";
  product.uninstall_batch1 = "un1";
  product.uninstall_batch2 = "un2";
  product.expiry = {2000, 1, 1};
  product.excluded_platforms = 0x40;
  product.volume_serial = 1000;
  product.stub_patch_offset = 0x500;
  product.stub_patch.assign(kStubPatchSize, 'P');
  product.deletions = {{"old.dll", kDeleteSizeFrom, "123", kDeleteAtRestart, {}}};
  product.associations = {{1, ".thg", "Thing.Doc", "A thing", "open", "&Open", "cmd", "English", "icon", {}}};
  product.uninstall_values = {{"HelpLink", kUninstallNumber, "7", {}}};
  product.languages = {{"Deutsch", {"Titel", "Zwei"}, {}}, {"English", {"Title\nof <product>", "Two"}, {}}};
  packer::FileEntry file;
  file.name = "dir\\one.txt";
  file.flags = FF_DESKTOP;
  file.contents = {'1', '2', '3', '4', '5'};
  file.date = {1999, 12, 31, 23, 59, 58};
  file.label = "label";
  file.icon = "icon";
  file.arguments = "arguments";
  file.target = "target";
  product.files = {file};
  file.name = "empty.txt";
  file.flags = 0;
  file.contents.clear();
  product.files.push_back(file);
}

packer::Installer TestInstaller::Build() const {
  Bytes stream = packer::WriteConfig(product);
  if (config)
    config(stream);
  packer::Payload files = packer::WritePayload(product);
  if (payload)
    payload(files.stored);
  packer::Installer installer = packer::AssembleInstaller(product, stream, files, stub);
  installer.executable.insert(installer.executable.end(), tail.begin(), tail.end());
  if (executable)
    executable(installer.executable);
  return installer;
}

void Sign(Bytes &file) {
  constexpr size_t kSize = 24;
  file.resize((file.size() + pe::kSignatureAlignment - 1) / pe::kSignatureAlignment * pe::kSignatureAlignment);
  Put(file, kPeOffset + pe::kImageChecksumAt, "sums");
  Put(file, kPeOffset + pe::kSignatureAt, Raw(static_cast<uint32_t>(file.size())) + Raw(static_cast<uint32_t>(kSize)));
  file.resize(file.size() + kSize, 'S');
}

Bytes Mapped(const Bytes &executable) {
  const size_t headers = std::min(executable.size(), kArchivePos);
  Bytes image(executable.begin(), executable.begin() + static_cast<ptrdiff_t>(headers));
  image.resize(0x5000);
  image.insert(image.end(), executable.begin() + static_cast<ptrdiff_t>(headers), executable.end());
  return image;
}

} // namespace korb::test
