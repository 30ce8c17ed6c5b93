// What the configuration stream leaves in the fields and in the run's values, and what it does on the way.
#include "archive/RunValues.h"
#include "core/RunMode.h"
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

TEST_CASE("every field of the configuration arrives in its place") {
  ConfigRun run{TestInstaller()};
  const InstallConfig &config = run.config;
  CHECK(InstallFlags == (IF_UNINSTALL | IF_CUSTOM_COLORS | IF_MASTER_PRODUCT));
  CHECK(Values{config.min_phase_ms, config.shortcut_mode, config.uninstaller_date.month, config.uninstaller_date.second,
               config.expiry_date.julian, config.expiry_date.weekday} == Values{500, 1, 2, 6, 2451544, 7});
  CHECK(Joined({config.publisher,
                ProductName,
                CommonDir,
                config.product_start_menu,
                config.default_install_dir,
                Version,
                config.product_registry,
                config.license_pages.at(0),
                config.license_pages.at(1),
                config.readme_pages.at(0),
                UninstallSubdir,
                config.volume_base_name,
                config.uninstaller_name,
                config.uninstall_name,
                config.master_product,
                config.desktop_group,
                config.pre_install_batch,
                config.post_install_batch,
                config.final_batch,
                config.uninstall_batch1,
                config.uninstall_batch2}) ==
        "Maker|Thing|C:\\Common\\Shared|Group|C:\\Win\\Thing|1.2.3|REGKEY|Licence\n1|Licence "
        "2|Readme|Undo|DISK|uninst.exe|ThingKey|Master|Desk|pre|post|final|un1|un2");
  CHECK(Joined({config.deletions.at(0).name, config.deletions.at(0).value, config.associations.at(0).extension,
                config.associations.at(0).file_class, config.associations.at(0).description,
                config.associations.at(0).verb, config.associations.at(0).verb_label, config.associations.at(0).command,
                config.associations.at(0).language, config.associations.at(0).icon, config.uninstall_data.at(0).name,
                config.uninstall_data.at(0).value}) ==
        "old.dll|123|.thg|Thing.Doc|A thing|open|&Open|cmd|English|icon|HelpLink|7");
  // Line ends are made whole in texts, not in pages.
  CHECK(Joined({LanguageNames.at(0), LanguageNames.at(1), TextTable.at(0).at(0), TextTable.at(0).at(1),
                TextTable.at(1).at(0), TextTable.at(1).at(1)}) ==
        "Deutsch|English|Titel|Title\r\nof <product>|Zwei|Two");
  CHECK(Values{TitleColor, TopColor, BottomColor, MonoColor, TitleShadow, config.excluded_platforms,
               config.payload_in_file} == Values{0x111111, 0x222222, 0x333333, 0, 3, 0x40, 0});
  CHECK(Values{config.volume_serial, config.stub_patch_offset} == Values{1000, 0x500});
  CHECK(config.stub_patch.length() == kStubPatchSize);
  CHECK(config.deletions.at(0).kind == kDeleteSizeFrom);
  CHECK(config.deletions.at(0).options == kDeleteAtRestart);
  CHECK(config.associations.at(0).flags == 1);
  CHECK(config.uninstall_data.at(0).kind == kUninstallNumber);
  CHECK(LanguageIndex == 1);
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
    CHECK(TitleColor == row.title_then);
    CHECK(TopColor == row.top_then);
    CHECK(MonoColor == row.mono_then);
    CHECK(TitleShadow == 3);
  }
}

TEST_CASE("the last language called English starts selected") {
  const std::pair<std::vector<std::string>, int32_t> rows[] = {
      {{"a", "b"}, 0}, {{"a", "english"}, 0}, {{"English", "b", "English", "c"}, 2}, {{"a", "English "}, 0}};
  for (const auto &[names, expected] : rows) {
    TestInstaller installer;
    installer.product.languages.clear();
    for (const std::string &name : names)
      installer.product.languages.push_back({name, {"x"}, {}});
    ConfigRun run(installer);
    CHECK(LanguageIndex == expected);
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
  CHECK(Values{HasInstallFlag(IF_NO_WINDOW), AutomaticMode, run.host.calls.empty()} == Values{1, 1, 1});
}
