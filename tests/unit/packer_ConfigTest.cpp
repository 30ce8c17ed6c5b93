#include <doctest/doctest.h>

#include <functional>
#include <string>

#include "packer/Checksum.h"
#include "packer/ConfigWriter.h"
#include "packer/RecordWriter.h"
#include "tests/support/ReferenceUnpack.h"
#include "tests/support/TestInstaller.h"

using namespace korb;
using korb::packer::Bytes;

namespace {

std::string TextOf(const Bytes &bytes) {
  return {bytes.begin(), bytes.end()};
}

// Walks a stream the way that its layout is written down, independently of the writer.
struct Walk {
  const Bytes &bytes;
  size_t at = 0;

  uint64_t Number(size_t size) {
    uint64_t value = 0;
    for (size_t i = 0; i < size; ++i)
      value |= static_cast<uint64_t>(bytes.at(at++)) << 8 * i;
    return value;
  }
  int32_t I32() { return static_cast<int32_t>(Number(4)); }
  std::string Text() {
    std::string text;
    while (char c = static_cast<char>(bytes.at(at++)))
      text += c;
    return text;
  }
  std::string Raw(size_t size) {
    std::string raw(bytes.begin() + static_cast<ptrdiff_t>(at), bytes.begin() + static_cast<ptrdiff_t>(at + size));
    at += size;
    return raw;
  }
};

void CheckTexts(Walk &walk, const std::vector<std::string> &expected) {
  for (const std::string &text : expected)
    CHECK(walk.Text() == text);
}

void CheckNumbers(Walk &walk, const std::vector<int32_t> &expected) {
  for (int32_t number : expected)
    CHECK(walk.I32() == number);
}

} // namespace

TEST_CASE("every field of the configuration stands in its place") {
  const packer::Product product = test::TestInstaller().product;
  const Bytes stream = packer::WriteConfig(product);
  Walk walk{stream};
  CHECK(walk.Number(8) == (IF_UNINSTALL | IF_CUSTOM_COLORS | IF_MASTER_PRODUCT));
  CHECK(walk.Number(2) == 500);
  CHECK(walk.Number(1) == 1);
  CheckNumbers(walk, {2001, 2, 3, 4, 5, 6});
  CheckTexts(walk, {"Maker", "Thing", "Shared", "Group", "<OS>\\Thing", "1.2.3", "REGKEY"});
  CheckNumbers(walk, {2});
  CheckTexts(walk, {"Licence\n1", "Licence 2"});
  CheckNumbers(walk, {1});
  CheckTexts(walk, {"Readme", "Undo", "DISK", "uninst.exe", "ThingKey"});
  CheckNumbers(walk, {0x111111, 0x222222, 0x333333});
  CHECK(walk.Number(1) == 3);
  CheckNumbers(walk, {4});
  CHECK(walk.Raw(4) == "BITS");
  CheckTexts(walk, {"Master", "Desk", "pre", "post", "final", "un1", "un2"});
  CheckNumbers(walk, {2451544, 1, 1, 2000, 7, 0x40}); // a Saturday
  CHECK(walk.Number(1) == 0);
  CheckNumbers(walk, {1000, 0x500});
  CHECK(walk.Raw(kStubPatchSize) == std::string(kStubPatchSize, 'P'));
  CHECK(walk.Text() == "old.dll");
  CHECK(walk.Number(1) == kDeleteSizeFrom);
  CHECK(walk.Text() == "123");
  CheckNumbers(walk, {2});
  CHECK(walk.Text() == "~~THE END~~");
  CheckNumbers(walk, {1, 1});
  CheckTexts(walk, {".thg", "Thing.Doc", "A thing", "open", "&Open", "cmd", "English", "icon"});
  CheckNumbers(walk, {1});
  CHECK(walk.Text() == "HelpLink");
  CHECK(walk.Number(1) == kUninstallNumber);
  CHECK(walk.Text() == "7");
  CHECK(walk.Number(1) == 2);
  CheckNumbers(walk, {2});
  CheckTexts(walk, {"Deutsch", "English", "Titel", "Title\nof <product>", "Zwei", "Two"});
  CHECK(walk.Number(4) == 0xD3E82B97);
  CHECK(walk.at == stream.size());
}

TEST_CASE("fields that hang on a bit or a size come and go with it") {
  packer::Product product = test::TestInstaller().product;
  const size_t all = packer::WriteConfig(product).size();
  const auto grows = [&](const std::function<void(packer::Product &)> &change) {
    packer::Product changed = product;
    change(changed);
    return static_cast<int>(packer::WriteConfig(changed).size()) - static_cast<int>(all);
  };
  CHECK(grows([](auto &p) { p.flags &= ~IF_MASTER_PRODUCT; }) == -7);
  CHECK(grows([](auto &p) { p.flags &= ~IF_CUSTOM_COLORS; }) == 0);
  CHECK(grows([](auto &p) { p.flags &= ~IF_UNINSTALL; }) == -4 - kStubPatchSize);
  CHECK(grows([](auto &p) { p.stub_patch_offset = 0; }) == -kStubPatchSize);
  CHECK(grows([](auto &p) { p.background.clear(); }) == -4);
  CHECK(grows([](auto &p) { p.languages[0].texts.pop_back(); }) == -4); // a text that is missing is empty
  CHECK(grows([](auto &p) { p.expiry = {}; }) == 0);
}

TEST_CASE("the stored configuration is packed, scrambled, and told by one key") {
  const Bytes plain = packer::WriteConfig(test::TestInstaller().product);
  packer::StoredConfig stored = packer::StoreConfig(plain);
  CHECK(stored.key == packer::Checksum32(plain));
  const packer::StoredConfig longer = packer::StoreConfig(plain, stored.block.size() + 5);
  CHECK(longer.block.size() == stored.block.size() + 5);
  for (Bytes block : {stored.block, longer.block}) {
    packer::ScrambleBlock(block, stored.key);
    CHECK(test::RealUnpack(TextOf(block)).bytes == TextOf(plain));
  }
}

TEST_CASE("days are numbered as the reader numbers them") {
  const struct {
    packer::Day day;
    std::vector<int32_t> record;
  } rows[] = {
      {{2001, 1, 5}, {2451914, 1, 5, 2001, 6}},
      {{2000, 2, 29}, {2451603, 2, 29, 2000, 3}},
      {{1900, 3, 1}, {2415079, 3, 1, 1900, 5}},
      {{2099, 12, 31}, {2488068, 12, 31, 2099, 5}},
      {{0, 0, 0}, {0, 0, 0, 0, 0}},
  };
  for (const auto &row : rows) {
    CAPTURE(row.day.year);
    Bytes record;
    packer::PutDayRecord(record, row.day);
    Walk walk{record};
    CheckNumbers(walk, row.record);
    CHECK(record.size() == kDateRecordSize);
  }
}

TEST_CASE("the payload holds the records one behind the other, an icon only for shortcuts") {
  packer::Product product = test::TestInstaller().product;
  product.flags &= ~IF_PACKED_PAYLOAD;
  const packer::Payload payload = packer::WritePayload(product);
  CHECK(payload.sizes == std::vector<int32_t>{5, 0});
  Walk walk{payload.stored};
  CHECK(walk.Text() == "dir\\one.txt");
  CheckNumbers(walk, {0, FF_DESKTOP, 0x20});
  CHECK(walk.Raw(5) == "12345");
  CHECK(walk.Number(4) == 0x79E2BC9Du + 0x34333231u + '5' + 5);
  CheckNumbers(walk, {1999, 12, 31, 23, 59, 58});
  CheckTexts(walk, {"label", "icon", "arguments", "target", "empty.txt"});
  CheckNumbers(walk, {0, 0, 0x20, 0x79E2BC9D, 1999, 12, 31, 23, 59, 58});
  CheckTexts(walk, {"label", "arguments", "target"});
  CHECK(walk.at == payload.stored.size());

  product.flags |= IF_PACKED_PAYLOAD;
  const packer::Payload packed = packer::WritePayload(product);
  CHECK(test::RealUnpack(TextOf(packed.stored)).bytes == TextOf(payload.stored));
  product.files.clear();
  CHECK(packer::WritePayload(product).stored.empty());
}

TEST_CASE("what a stream can't hold is refused with its name") {
  const auto refuses = [](const std::function<void(packer::Product &)> &change, const std::string &reason) {
    packer::Product product = test::TestInstaller().product;
    change(product);
    CHECK_THROWS_WITH_AS((packer::WriteConfig(product), packer::WritePayload(product)), reason.c_str(),
                         packer::PackError);
  };
  refuses([](auto &p) { p.publisher = std::string("a\0b", 3); }, "a text must not hold a 0 byte: the publisher");
  refuses([](auto &p) { p.files[0].icon = std::string(1, '\0'); },
          "a text must not hold a 0 byte: file 'dir\\one.txt'");
  refuses([](auto &p) { p.stub_patch.pop_back(); }, "the patch of the uninstaller has to have 2,216 bytes");
}
