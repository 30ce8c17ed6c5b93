// What the configuration stream leaves in the fields and in the run's values, and what it does on the way.
#include "core/RunValues.h"
#include "tests/support/ArchiveRun.h"
#include "tests/support/Testing.h"

namespace {

using Calls = std::vector<std::string>;

/// Reads the configuration of `product`; `product_name` is what /n: gave.
struct ConfigRun : ArchiveRun {
  explicit ConfigRun(const TestInstaller &installer, const char *product_name = "")
      : ArchiveRun(installer.Build().executable) {
    ProductName = product_name;
    ReadConfiguration();
  }
};

} // namespace

// That each field arrives in its place is seen where the packer's manifest with every key is told again.
TEST_CASE("reading a configuration completes its dates") {
  const ConfigRun run{TestInstaller()};
  CHECK(run.config.uninstaller_date.second == 6);
  CHECK(run.config.expiry_date.julian == 2451544);
}

TEST_CASE("line ends are made whole in texts, not in pages") {
  const ConfigRun run{TestInstaller()};
  CHECK(run.config.license_pages.at(0) == "Licence\n1");
  CHECK(TextTable.at(0).at(1) == "Title\r\nof <product>");
  CHECK(TextTable.at(1).at(0) == "Zwei");
}

TEST_CASE("the window is shown before the paths are completed, and the picture after") {
  const ConfigRun run{TestInstaller()};
  CHECK(run.host.calls == Calls{"window", "create C:\\Common\\Shared", "expand C:\\Win\\Thing", "bitmap BITS"});
}

TEST_CASE("a field that is empty takes its default from the others") {
  struct Row {
    const char *publisher, *common, *group, *directory, *key, *typed_name;
    uint64_t flags;
    const char *expected_common, *expected_group, *expected_directory, *expected_key;
  };
  const Row rows[] = {
      {"Maker", "", "", "", "", "", IF_UNINSTALL, "C:\\Common\\Maker", "Maker\\Thing", "C:\\Programs\\Thing", "Thing"},
      {"Maker", "", "", "", "", "", 0, "", "Maker\\Thing", "C:\\Programs\\Thing", "Thing"},
      {"", "", "", "", " ", "", IF_UNINSTALL, "C:\\Common\\Thing", "Thing", "C:\\Programs\\Thing", "Thing"},
      {"  ", "", "", "x", "", "", IF_UNINSTALL, "C:\\Common\\Thing", "  \\Thing", "C:\\Programs\\x", "Thing"},
      {"", "", "", "", "", "Typed", IF_UNINSTALL, "C:\\Common\\Typed", "Typed", "C:\\Programs\\Typed", "Typed"},
      {"M", "D:\\c", "g", "<Master>", "k", "", IF_UNINSTALL, "D:\\c", "g", "<Master>", "k"},
      {"M", "c", "g", "<master>x", "k", "", 0, "", "g", "C:\\Programs\\<master>x", "k"},
  };
  for (const Row &row : rows) {
    CAPTURE(&row - rows);
    TestInstaller installer;
    packer::Product &product = installer.product;
    product.flags = row.flags;
    product.publisher = row.publisher;
    product.common_dir = row.common;
    product.start_menu = row.group;
    product.install_dir = row.directory;
    product.uninstall_name = row.key;
    ConfigRun run(installer, row.typed_name);
    CHECK(std::string(CommonDir) == row.expected_common);
    CHECK(std::string(run.config.product_start_menu) == row.expected_group);
    CHECK(std::string(run.config.default_install_dir) == row.expected_directory);
    CHECK(std::string(run.config.uninstall_name) == row.expected_key);
    CHECK(run.config.stub_patch.length() == (row.flags != 0 ? kStubPatchSize : 0));
    CHECK(run.config.master_product.is_empty());
  }
}

TEST_CASE("colours hold with their flag, and the title's with a bitmap too") {
  struct Row {
    bool colors, bitmap;
    uint32_t bottom, title_then, top_then;
    bool mono_then;
  };
  const Row rows[] = {{true, false, 0x333333, 0x111111, 0x222222, false},
                      {true, false, 0x222222, 0x111111, 0x222222, true},
                      {false, false, 0x333333, 1, 2, true},
                      {false, true, 0x333333, 0x111111, 2, true}};
  for (const Row &row : rows) {
    CAPTURE(&row - rows);
    TestInstaller installer;
    installer.product.flags = row.colors ? IF_CUSTOM_COLORS : 0;
    installer.product.bottom_color = row.bottom;
    if (!row.bitmap)
      installer.product.background.clear();
    ConfigRun run(installer);
    CHECK(run.config.looks.title_color == row.title_then);
    CHECK(run.config.looks.top_color == row.top_then);
    CHECK(run.config.looks.mono_color == row.mono_then);
    CHECK(run.config.looks.title_shadow == 3);
  }
}

TEST_CASE("the last language called English starts selected") {
  const std::pair<std::vector<std::string>, int32_t> rows[] = {
      {{"a", "b"}, 0}, {{"a", "english"}, 0}, {{"English", "b", "English", "c"}, 2}, {{"a", "English "}, 0}};
  for (const auto &row : rows) {
    const std::vector<std::string> &names = row.first;
    CAPTURE(names.back());
    TestInstaller installer;
    installer.product.languages.clear();
    for (const std::string &name : names)
      installer.product.languages.push_back({name, {"x"}, {}});
    ConfigRun run(installer);
    CHECK(LanguageIndex == row.second);
  }
}

TEST_CASE("silence and the window follow the flags even of a configuration that fails its checksum") {
  // Bytes that pack into literals, the flags and some bits without a name; the last bit of them is then flipped.
  const std::string flags("\0\1\0\x20\0\3\5\7", 8);
  TestInstaller installer;
  installer.config = [&](Bytes &config) { config.assign(flags.begin(), flags.end()); };
  installer.executable = [](Bytes &file) { file[kArchivePos + header::kSize + (64 + 7 + 63) / 8] ^= 0x40; };
  installer.product.files.clear();
  ArchiveRun run(installer.Build().executable);
  CHECK(TrappedCode([&] { run.ReadConfiguration(); }) == 25);
  CHECK(HasInstallFlag(IF_NO_WINDOW));
  CHECK(AutomaticMode);
  CHECK(run.host.calls.empty());
}
