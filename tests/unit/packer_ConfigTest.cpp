#include <functional>
#include <string>

#include "archive/Scramble.h"
#include "packer/write/ConfigWriter.h"
#include "packer/write/RecordWriter.h"
#include "tests/support/Doctest.h"
#include "tests/support/ReferenceUnpack.h"
#include "tests/support/TestInstaller.h"

using namespace korb;
using namespace korb::test;

namespace {

std::string TextOf(const Bytes &bytes) {
  return {bytes.begin(), bytes.end()};
}

// A stream as its layout is written down, independently of the writer.
std::string Texts(std::initializer_list<const char *> texts) {
  std::string bytes;
  for (const char *text : texts)
    bytes += Z(text);
  return bytes;
}

std::string Numbers(std::initializer_list<int64_t> numbers) {
  std::string bytes;
  for (const int64_t number : numbers)
    bytes += Raw(static_cast<uint32_t>(number));
  return bytes;
}

} // namespace

TEST_CASE("every field of the configuration stands in its place") {
  const std::string expected =
      Raw(IF_UNINSTALL | IF_CUSTOM_COLORS | IF_MASTER_PRODUCT) + Raw<uint16_t>(500) + "\1" +
      Numbers({2001, 2, 3, 4, 5, 6}) + Texts({"Maker", "Thing", "Shared", "Group", "<OS>\\Thing", "1.2.3", "REGKEY"}) +
      Numbers({2}) + Texts({"Licence\n1", "Licence 2"}) + Numbers({1}) +
      Texts({"Readme", "Undo", "DISK", "uninst.exe", "ThingKey"}) + Numbers({0x111111, 0x222222, 0x333333}) + "\3" +
      Numbers({4}) + "BITS" + Texts({"Master", "Desk", "pre", "post", "final", "un1", "un2"}) +
      Numbers({2451544, 1, 1, 2000, 7, 0x40}) + '\0' + Numbers({1000, 0x500}) + // a Saturday
      std::string(kStubPatchSize, 'P') + Z("old.dll") + static_cast<char>(kDeleteSizeFrom) + Z("123") + Numbers({2}) +
      Z("~~THE END~~") + Numbers({1, 1}) +
      Texts({".thg", "Thing.Doc", "A thing", "open", "&Open", "cmd", "English", "icon"}) + Numbers({1}) +
      Z("HelpLink") + static_cast<char>(kUninstallNumber) + Z("7") + "\2" + Numbers({2}) +
      Texts({"Deutsch", "English", "Titel", "Title\nof <product>", "Zwei", "Two"}) + Numbers({0xD3E82B97});
  CHECK(TextOf(packer::WriteConfig(TestInstaller().product)) == expected);
}

TEST_CASE("a text that a language lacks is empty") {
  packer::Product product = TestInstaller().product;
  const size_t all = packer::WriteConfig(product).size();
  product.languages[0].texts.pop_back();
  CHECK(packer::WriteConfig(product).size() == all - 4);
}

TEST_CASE("the stored configuration is packed, scrambled, and told by one key") {
  const Bytes plain = packer::WriteConfig(TestInstaller().product);
  packer::StoredConfig stored = packer::StoreConfig(plain);
  CHECK(stored.key == packer::ChecksumOf(plain));
  const packer::StoredConfig longer = packer::StoreConfig(plain, stored.block.size() + 5);
  CHECK(longer.block.size() == stored.block.size() + 5);
  for (Bytes block : {stored.block, longer.block}) {
    ScrambleBlock(block.data(), static_cast<int32_t>(block.size()), stored.key);
    CHECK(RealUnpack(TextOf(block)).bytes == TextOf(plain));
  }
}

TEST_CASE("the payload holds the records one behind the other, an icon only for shortcuts") {
  packer::Product product = TestInstaller().product;
  product.flags &= ~IF_PACKED_PAYLOAD;
  const packer::Payload payload = packer::WritePayload(product);
  CHECK(payload.sizes == std::vector<int32_t>{5, 0});
  CHECK(TextOf(payload.stored) == Z("dir\\one.txt") + Numbers({0, FF_DESKTOP, 0x20}) + "12345" +
                                      Numbers({0x79E2BC9Du + 0x34333231u + '5' + 5, 1999, 12, 31, 23, 59, 58}) +
                                      Texts({"label", "icon", "arguments", "target", "empty.txt"}) +
                                      Numbers({0, 0, 0x20, 0x79E2BC9D, 1999, 12, 31, 23, 59, 58}) +
                                      Texts({"label", "arguments", "target"}));

  product.flags |= IF_PACKED_PAYLOAD;
  const packer::Payload packed = packer::WritePayload(product);
  CHECK(RealUnpack(TextOf(packed.stored)).bytes == TextOf(payload.stored));
  product.files.clear();
  CHECK(packer::WritePayload(product).stored.empty());
}

TEST_CASE("what a stream can't hold is refused with its name") {
  const auto refuses = [](const std::function<void(packer::Product &)> &change, const std::string &reason) {
    packer::Product product = TestInstaller().product;
    change(product);
    CHECK_THROWS_WITH_AS((packer::WriteConfig(product), packer::WritePayload(product)), reason.c_str(),
                         packer::PackError);
  };
  refuses([](auto &p) { p.publisher = std::string("a\0b", 3); }, "a text must not hold a 0 byte: the publisher");
  refuses([](auto &p) { p.files[0].icon = std::string(1, '\0'); },
          "a text must not hold a 0 byte: file 'dir\\one.txt'");
  refuses([](auto &p) { p.stub_patch.pop_back(); }, "the patch of the uninstaller has to have 2,216 bytes");
}
