#include <chrono>

#include "packer/Words.h"
#include "packer/manifest/ManifestReader.h"
#include "packer/manifest/ReadyTexts.h"
#include "tests/support/Doctest.h"
#include "tests/support/TempFolder.h"
#include "tests/support/TestData.h"

using namespace korb;
using packer::Findings;
using packer::Product;

namespace {

struct ReadResult {
  Product product;
  std::string report;
  std::filesystem::path output;
};

class ManifestFolder : public test::TempFolder {
public:
  ReadResult Read(const std::string &manifest, std::optional<int64_t> newest = std::nullopt,
                  const packer::ManifestSettings &settings = {}) const {
    Findings findings;
    packer::Manifest read = packer::ReadManifest(Write("m.toml", manifest), newest, findings, settings);
    return {std::move(read.product), findings.Report("m"), read.output};
  }
};

std::string TextOf(const packer::Bytes &bytes) {
  return std::string(bytes.begin(), bytes.end());
}

std::string NamesOf(const Product &product) {
  std::string names;
  for (const packer::FileEntry &file : product.files)
    names += file.name + (file.target.empty() ? "" : ">" + file.target) + " ";
  return names;
}

template <class T>
std::string Raw(T value) {
  return std::string(reinterpret_cast<const char *>(&value), sizeof value);
}

std::string Bitmap() {
  std::string file("BM\x3E\0\0\0\0\0\0\0\x36\0\0\0", 14);
  file += std::string("\x28\0\0\0\x01\0\0\0\x01\0\0\0\x01\0\x18\0", 16) + std::string(24, '\0') + std::string(4, 'p');
  return file;
}

std::string VersionBlock(const std::string &name, std::string inside) {
  std::string block(6, '\0');
  for (const char c : name + '\0')
    block += {c, '\0'};
  block.resize((block.size() + 3) / 4 * 4);
  block += inside;
  block[0] = static_cast<char>(block.size());
  block[1] = static_cast<char>(block.size() >> 8);
  return block;
}

// A program of one section, with one resource.
std::string ProgramWithVersion(const std::string &version) {
  std::string wide;
  for (const char c : version + '\0')
    wide += {c, '\0'};
  const std::string resource = VersionBlock(
      "VS_VERSION_INFO",
      VersionBlock("StringFileInfo", VersionBlock("040904E4", VersionBlock("FileVersion", std::move(wide)))));
  std::string file(0x260, '\0');
  const auto put = [&](size_t at, uint32_t value, size_t bytes) {
    for (size_t i = 0; i < bytes; ++i)
      file[at + i] = static_cast<char>(value >> 8 * i);
  };
  put(0, 'M' | 'Z' << 8, 2);
  put(0x3C, 0x40, 4);  // the headers
  put(0x46, 1, 2);     // one section
  put(0x54, 120, 2);   // the optional header's size
  put(0x58, 0x10B, 2); // for 32 bits
  put(0xB4, 3, 4);     // with three directories
  put(0xC8, 0x1000, 4);
  put(0xDC, 0x1000, 4);
  put(0xE0, 0x400, 4);
  put(0xE4, 0x200, 4);
  for (size_t level = 0; level < 3; ++level) {
    put(0x20E + 0x18 * level, 1, 2);
    put(0x210 + 0x18 * level, 16, 4);
    put(0x214 + 0x18 * level, static_cast<uint32_t>(0x18 * (level + 1)) | (level < 2 ? 0x80000000 : 0), 4);
  }
  put(0x248, 0x1060, 4);
  put(0x24C, static_cast<uint32_t>(resource.size()), 4);
  return file + resource;
}

// A bitmap as icons have it.
std::string IconBitmap(uint32_t side, uint16_t bits) {
  const uint32_t row = (side * bits + 31) / 32 * 4, mask = (side + 31) / 32 * 4;
  return Raw<uint32_t>(40) + Raw(side) + Raw(2 * side) + Raw<uint16_t>(1) + Raw(bits) + std::string(24, '\0') +
         std::string((bits <= 8 ? 4U << bits : 0) + (row + mask) * side, 'p');
}

// The beginning of a PNG; icons are told by it alone.
std::string Png(uint8_t side_high, uint8_t side_low) {
  const std::string side{'\0', '\0', static_cast<char>(side_high), static_cast<char>(side_low)};
  return "\x89PNG\r\n\x1A\n" + std::string(3, '\0') + "\rIHDR" + side + side + "\x08\x06" + std::string(20, '\0');
}

std::string Icon(const std::vector<std::string> &images) {
  std::string file = Raw<uint16_t>(0) + Raw<uint16_t>(1) + Raw(static_cast<uint16_t>(images.size())), data;
  for (const std::string &image : images) {
    file += std::string(8, '\0') + Raw(static_cast<uint32_t>(image.size())) +
            Raw(static_cast<uint32_t>(6 + 16 * images.size() + data.size()));
    data += image;
  }
  return file + data;
}

} // namespace

TEST_CASE("an icon is taken with all its images, and one that can't be shown is refused with the reason") {
  const ManifestFolder folder;
  const std::string good = Icon({IconBitmap(16, 4), IconBitmap(32, 8), IconBitmap(48, 32), Png(1, 0)});
  const auto read = [&](const std::string &file) {
    folder.Write("a.ico", file);
    return folder.Read("[product]\nicon = 'a.ico'");
  };
  std::string images;
  for (const packer::IconImage &image : read(good).product.icon)
    images += std::to_string(image.width) + "x" + std::to_string(image.height) + (image.is_png ? " png " : " ") +
              std::to_string(image.bits) + ", ";
  CHECK(images == "16x16 4, 32x32 8, 48x48 32, 256x256 png 32, ");
  std::string flat = IconBitmap(16, 4), packed = flat, deep = flat;
  flat[8] = 1; // an odd height has no mask
  packed[16] = 1;
  deep[14] = 5;
  const std::string odd = " is neither a PNG nor a bitmap as icons have it", use = "is of no use: its image 1";
  const std::pair<std::string, std::string> rows[] = {
      {"", "is no icon file, which has the images of all sizes"},
      {Png(0, 16), "is no icon file, which has the images of all sizes"},
      {Icon({}), "holds no image"},
      {Icon(std::vector<std::string>(101, IconBitmap(16, 1))), "holds more than 100 images"},
      {Icon({IconBitmap(16, 32) + std::string(4 << 20, '\0')}), "holds more than 4 MiB"},
      {Icon({IconBitmap(16, 1)}).substr(0, 20), use + " is cut off"},
      {Icon({IconBitmap(16, 8).substr(0, 1000)}), use + " is cut off"},
      {Icon({IconBitmap(257, 1)}), use + " has more than 256 by 256 pixels"},
      {Icon({Png(1, 1)}), use + " has more than 256 by 256 pixels"},
      {Icon({Png(0, 0)}), use + odd},
      {Icon({flat}), use + odd},
      {Icon({packed}), use + odd},
      {Icon({deep}), use + odd},
      {Icon({""}), use + odd}};
  for (const auto &row : rows) {
    const std::string &file = row.first, &fault = row.second;
    CAPTURE(fault);
    CHECK(read(file).report.find("m:2:8: error: 'a.ico' " + fault + "\n") == 0);
  }
  for (size_t size = 0; size < good.size(); size += 3)
    CHECK(read(good.substr(0, size)).report.find("error: 'a.ico' ") != std::string::npos);
}

TEST_CASE("the list of programs gets an icon and a size, unless the author says otherwise") {
  const ManifestFolder folder;
  folder.Write("big", std::string(1500, 'x'));
  const auto values = [&](const std::string &manifest) {
    std::string all;
    for (const packer::UninstallValue &value :
         folder
             .Read(manifest + "[[file]]\nsource = 'big'\n[[file]]\nsource = 'big'\nname = 'other'\n"
                              "[[file]]\nsource = 'big'\nname = 'no'\ncondition = 'never'\n")
             .product.uninstall_values)
      all += value.name + "=" + value.value + (value.kind == kUninstallNumber ? "#;" : ";");
    return all;
  };
  CHECK(values("") == "DisplayIcon=%InstallDir%\\Uninstall.exe,0;EstimatedSize=3#;");
  CHECK(values("[uninstall]\ndirectory = 'Undo'\nprogram = 'un.exe'\n") ==
        "DisplayIcon=%InstallDir%\\Undo\\un.exe,0;EstimatedSize=3#;");
  CHECK(values("[[uninstall_value]]\nname = 'displayicon'\nvalue = 'x'\n") == "displayicon=x;EstimatedSize=3#;");
  CHECK(values("[options]\nuninstall = false\n") == "");
}

TEST_CASE("pictures are taken in the one form that the installer can use") {
  const ManifestFolder folder;
  const std::string image = IconBitmap(32, 8);
  REQUIRE(image.size() == kStubPatchSize);
  const std::string icons = Icon({IconBitmap(16, 8), image});
  folder.Write("good.ico", icons);
  folder.Write("cut.ico", icons.substr(0, icons.size() - 1));
  CHECK(TextOf(folder.Read("[uninstall]\nicon = 'good.ico'").product.stub_patch) == image);
  CHECK(folder.Read("[uninstall]\nicon = 'cut.ico'").report.find("m:2:8: error: 'cut.ico' holds no icon") == 0);
  for (size_t size = 0; size < Bitmap().size(); ++size) {
    folder.Write("cut.bmp", Bitmap().substr(0, size));
    CHECK(folder.Read("[appearance]\nbackground = 'cut.bmp'").product.background.empty());
  }
  // Only the file's own header tells of a gap before the pixels, and that header stays behind.
  std::string gap = Bitmap().insert(54, "gap");
  gap[10] += 3;
  folder.Write("gap.bmp", gap);
  CHECK(TextOf(folder.Read("[appearance]\nbackground = 'gap.bmp'").product.background) == Bitmap().substr(14));
  gap[10] -= 4;
  folder.Write("early.bmp", gap);
  CHECK(folder.Read("[appearance]\nbackground = 'early.bmp'").product.background.empty());
}

TEST_CASE("the title can be read on whatever is behind it, unless the author says otherwise") {
  const ManifestFolder folder;
  folder.Write("night.bmp", Bitmap());
  const struct {
    const char *manifest;
    uint32_t title, top, bottom;
    int shadow;
  } rows[] = {
      {"", 0xFFFFFF, 0xB06F2A, 0x45250B, 2},
      {"[appearance]\nbottom_color = '#000001'", 0xFFFFFF, 0x010000, 0x010000, 2},
      {"[appearance]\ntop_color = '#FFFF00'", 0, 0x00FFFF, 0x00FFFF, 0},
      {"[appearance]\ntop_color = '#FFFF00'\nbackground = 'night.bmp'", 0xFFFFFF, 0x00FFFF, 0x00FFFF, 2},
      {"[appearance]\ntitle_color = '#000080'\ntitle_shadow = 1", 0x800000, 0xB06F2A, 0x45250B, 1},
      {"[options]\ncustom_colors = false", 0xFFFFFF, 0xB06F2A, 0x45250B, 0}, // the title's colour is the system's
  };
  for (const auto &row : rows) {
    CAPTURE(row.manifest);
    const Product product = folder.Read(row.manifest).product;
    CHECK(product.title_color == row.title);
    CHECK(product.top_color == row.top);
    CHECK(product.bottom_color == row.bottom);
    CHECK(product.title_shadow == row.shadow);
  }
}

TEST_CASE("every option has its bit, and no two share one") {
  const ManifestFolder folder;
  uint64_t seen = 0;
  for (const packer::FlagName &flag : packer::kFlagNames) {
    CAPTURE(flag.name);
    CHECK((seen & flag.bit) == 0);
    seen |= flag.bit;
    const std::string key = std::string("[options]\n") + flag.name;
    CHECK(folder.Read(key + " = true").product.Has(flag.bit));
    CHECK(!folder.Read(key + " = false").product.Has(flag.bit));
  }
  CHECK(seen == 0x7BBFFFFFFFull);
}

TEST_CASE("trees bring their files in one order, around the files that have an entry of their own") {
  const ManifestFolder folder;
  for (const char *name :
       {"src/b.txt", "src/A.txt", "src/a/z.txt", "src/a/y.obj", "src/a-b/q.txt", "src/main.exe", "x"})
    folder.Write(name, name);
  const auto names = [&](const std::string &manifest) {
    const ReadResult read = folder.Read(manifest);
    CHECK(read.report == "");
    return NamesOf(read.product);
  };
  CHECK(names("[[tree]]\nsource = 'src'") == "a\\y.obj a\\z.txt a-b\\q.txt A.txt b.txt main.exe ");
  CHECK(names("[[file]]\nsource='x'\n[[tree]]\nsource='src'\ninto='d/e'\ninclude=['*.txt']\nexclude=['a/**']\n"
              "[[file]]\nsource='src/b.txt'\nname='last'") == "x d\\e\\a-b\\q.txt d\\e\\A.txt last ");
  CHECK(names("[[tree]]\nsource='src'\ninto='d'\n[[file]]\nsource='./src/a/z.txt'\n[[file]]\nsource='x'") ==
        "d\\a\\y.obj d\\a-b\\q.txt d\\A.txt d\\b.txt d\\main.exe d\\a\\z.txt x ");
  CHECK(names("[[tree]]\nsource='src/a'\ntarget='t'\n[[file]]\nsource='src/a/z.txt'\ntarget='u.txt'") ==
        "y.obj>t\\y.obj z.txt>u.txt ");
  CHECK(names("[[tree]]\nsource='src/a'\ntarget='%CommonDir%/t'\nexclude='*.obj'") == "z.txt>%CommonDir%\\t\\z.txt ");
}

TEST_CASE("a tree brings what its links lead to, and says what it can't bring") {
  const ManifestFolder folder;
  folder.Write("src/a.txt", "a");
  folder.Write("shared/b/c.txt", "c");
  namespace fs = std::filesystem;
  try {
    fs::create_directory_symlink("../shared", folder.Path() / "src/link");
  } catch (const fs::filesystem_error &) {
    return; // this system has no links
  }
  CHECK(NamesOf(folder.Read("[[tree]]\nsource='src'\n[[file]]\nsource='src/link/b/c.txt'").product) ==
        "a.txt link\\b\\c.txt ");
  fs::create_symlink("gone", folder.Path() / "src/dangling");
  fs::create_directory_symlink("..", folder.Path() / "src/loop");
  CHECK(folder.Read("[[tree]]\nsource='src'").report ==
        "m:2:8: error: can't take 'src/dangling': it is a link to nothing\n"
        "m:2:8: error: can't take 'src/loop/src/': it is a link that leads back to a folder around it\n");
  CHECK(folder.Read("[[tree]]\nsource='src'\nexclude=['loop/**', 'dangling']").report == "");
}

TEST_CASE("of two trees, the one that would bring a file to the same place leaves it out") {
  const ManifestFolder folder;
  folder.Write("src/a.txt", "a");
  folder.Write("src/b.txt", "b");
  const std::string trees = "[[tree]]\nsource='src'\ninto='one'\n[[tree]]\nsource='src'\ninto='two'\n";
  CHECK(NamesOf(folder.Read(trees + "[[file]]\nsource='src/a.txt'").product) ==
        "one\\b.txt two\\a.txt two\\b.txt one\\a.txt ");
  CHECK(NamesOf(folder.Read(trees + "[[file]]\nsource='src/a.txt'\nname='c'").product) == "one\\b.txt two\\b.txt c ");
}

TEST_CASE("fonts bring their names, and have no date that would keep them from being recorded") {
  const ManifestFolder folder;
  std::filesystem::copy(test::TestData("../../../examples/full/korb-blocks.ttf"), folder.Path() / "a.ttf");
  std::filesystem::create_directories(folder.Path() / "fonts/more");
  std::filesystem::copy(folder.Path() / "a.ttf", folder.Path() / "fonts/more/b.ttf");
  const ReadResult read = folder.Read("[[tree]]\nsource='fonts'\nkind='font'\n[[file]]\nsource='a.ttf'\nkind='font'\n"
                                      "date='mtime'\nlabel='Mine'");
  CHECK(read.report == "");
  CHECK(NamesOf(read.product) == "b.ttf a.ttf ");
  CHECK(read.product.files[0].label == "Korb Blocks");
  CHECK(read.product.files[0].date.month == 0);
  CHECK(read.product.files[1].label == "Mine");
  CHECK(read.product.files[1].date.month != 0);
  for (const auto &[file, name] : {std::pair{"fonts", "Ab"}, std::pair{"bitmap-font", "Face"}}) {
    std::filesystem::copy(test::TestData("../../fuzz/corpus/reader_fuzz") / file, folder.Path() / name);
    CHECK(folder.Read("file=[{kind='font',source='" + std::string(name) + "'}]").product.files[0].label == name);
  }
}

TEST_CASE("a file keeps its date from the disk, up to the newest one that is allowed") {
  const ManifestFolder folder;
  using namespace std::chrono;
  const auto stamp = sys_days{year{2003} / 4 / 5} + 6h + 7min + 8s;
  std::filesystem::last_write_time(folder.Write("f", "x"), file_clock::from_sys(stamp));
  const auto date = [&](const std::string &keys, std::optional<int64_t> newest) {
    const packer::FileTime time = folder.Read("[[file]]\nsource='f'\n" + keys, newest).product.files.at(0).date;
    return std::to_string(time.year) + "-" + std::to_string(time.month) + "-" + std::to_string(time.day) + " " +
           std::to_string(time.hour) + ":" + std::to_string(time.minute) + ":" + std::to_string(time.second);
  };
  CHECK(date("", std::nullopt) == "2003-4-5 6:7:8");
  CHECK(date("", 86400) == "1970-1-2 0:0:0");
  CHECK(date("", 2000000000) == "2003-4-5 6:7:8");
  CHECK(date("date = 2001-02-03", 86400) == "2001-2-3 0:0:0");
  CHECK(date("date = 'none'", std::nullopt) == "0-0-0 0:0:0");
  CHECK(date("[file_defaults]\ndate = 'none'", std::nullopt) == "0-0-0 0:0:0");
  CHECK(date("date = 'mtime'\n[file_defaults]\ndate = 'none'", std::nullopt) == "2003-4-5 6:7:8");
}

TEST_CASE("texts start from the built-in English ones, in the code page of their language") {
  const ManifestFolder folder;
  const Product plain = folder.Read("").product;
  REQUIRE(plain.languages.size() == 1);
  CHECK(plain.languages[0].name == "English");
  CHECK(plain.languages[0].texts == packer::EnglishTexts());

  const Product own = folder.Read("[texts]\n0 = 'Zero'\ncorrupt = 'damaged %d'\n80 = 'mine'").product;
  CHECK(own.languages[0].texts[0] == "Zero");
  CHECK(own.languages[0].texts[13] == "damaged %d");
  CHECK(own.languages[0].texts.size() == 81);
  CHECK(folder.Read("product.name='100% A'\ntexts.13='<PRODUCT> %d'\ntexts.0='<product>'")
            .product.languages[0]
            .texts[13] == "100%% A %d");
  const Product values = folder.Read("uninstall_value=[{name='a',value=5},{name='b',value='5'}]").product;
  CHECK(values.uninstall_values[0].kind == kUninstallNumber);
  CHECK(values.uninstall_values[1].kind == kUninstallText);

  const ReadResult two = folder.Read("[[language]]\nname='English'\n[[language]]\nname='Russian'\ncodepage=1251\n"
                                     "[language.texts]\nok_button='Да'");
  REQUIRE(two.product.languages.size() == 2);
  CHECK(two.product.languages[1].texts[48] == "\xC4\xE0");
  CHECK(two.report.find("m:3:1: warning: these texts of 'Russian' stay English: main_title, ") == 0);
  CHECK(two.report.find("ok_button") == std::string::npos);

  folder.Write("fr.toml", "ok_button = 'Continuer'\ncancel_button = 'Annuler'\nnone = 1");
  const ReadResult file = folder.Read("[[language]]\nname='Fran\u00E7ais'\nfile='fr.toml'\n"
                                      "[language.texts]\nok_button='Suite'");
  CHECK(file.product.languages.at(0).texts[48] + file.product.languages[0].texts[49] == "SuiteAnnuler");
  CHECK(file.report.find("fr.toml:3:1: error: unknown text 'none'") != std::string::npos);

  const Product ready = folder.Read("[texts]\nlanguage='de'\nok_button='Weiter'").product;
  CHECK(ready.languages.at(0).name == "de");
  CHECK(ready.languages[0].texts[48] + ready.languages[0].texts[49] == "WeiterAbbrechen");
  folder.Write("fr.toml", "ok_button = 'Continuer'\ncancel_button = 'Quitter'");
  const ReadResult all = folder.Read("[[language]]\nname='Fran\u00E7ais'\nfile='fr.toml'\n"
                                     "[language.texts]\nlanguage='fr'\nok_button='Suite'");
  const std::vector<std::string> &texts = all.product.languages.at(0).texts;
  CHECK(texts[48] + texts[49] + texts[21] == "SuiteQuitterErreur");
  CHECK(all.report == "");
}

TEST_CASE("variables have the value of whoever comes first: the command line, the manifest, what it includes") {
  const ManifestFolder folder;
  folder.Write("common/more.toml", "[define]\nname = 'far'\nlast = '4'\n[product]\npublisher = '${name}${last}'\n"
                                   "registry_key = 'r'\n[[file]]\nsource = 'more.toml'");
  folder.Write("common/base.toml", "include = ['${name}.toml', 'more.toml']\ndefine = { last = '3', name = 'base' }\n"
                                   "[product]\nname = 'base'\nregistry_key = '${product.name}'\n"
                                   "[[tree]]\nsource = '.'\ninclude = 'base.*'\n[[file]]\nsource = 'base.toml'");
  folder.Write("common/more2.toml", "define = { last = '5', name = 'x' }\n[[file]]\nsource = 'more2.toml'");
  const ReadResult read = folder.Read("include = 'common/base.toml'\n[define]\nname = 'more2'\nnumber = 7\n"
                                      "set = { env = 'PATH' }\nunset = { env = 'KORB_NONE', default = '${number}' }\n"
                                      "[product]\nname = '${given} $${x} $1 ${unset}$'\n"
                                      "[[file]]\nsource = 'm.toml'\ncontents2 = '${set}'\n"
                                      "[output]\nfile = '${product.publisher}.exe'",
                                      {}, {{}, {{{"given", "${as it is}"}, {"number", "8"}}}});
  CHECK(read.report == "m:11:1: error: unknown key 'file.contents2'; did you mean 'contents'?\n");
  CHECK(read.product.name == "${as it is} ${x} $1 8$");
  CHECK(read.product.publisher == "more23");
  CHECK(read.product.registry_key == read.product.name);
  CHECK(read.output.filename() == "more23.exe");
  CHECK(NamesOf(read.product) == "more2.toml more.toml base.toml m.toml ");
  CHECK(folder.Read("", {}, {"given.exe", {}}).output == "given.exe");
}

TEST_CASE("a program's version is the product's") {
  const ManifestFolder folder;
  const auto program = [&](const char *version) {
    folder.Write("Thing.exe", ProgramWithVersion(version));
    return folder.Read("define = { x = 'Thing' }\n[product]\nname = '${product.version}'\n"
                       "version = { file = '${x}.exe' }");
  };
  CHECK(program("1, 2, 0, 7").product.version == "1.2.0.7");
  CHECK(program("1.2 beta").product.name == "1.2 beta");
  CHECK(program("").report == "m:4:20: error: 'Thing.exe' has no version among its resources\n");
}

TEST_CASE("each fault of a manifest is told with its line, its column and what to do") {
  const ManifestFolder folder;
  folder.Write("huge", "");
  std::filesystem::resize_file(folder.Path() / "huge", (uint64_t{1} << 32) + 5); // a hole; 5 bytes to 32 bits
  for (const test::ManifestRow &row : test::ManifestRows("manifest-faults.txt")) {
    CAPTURE(row.manifest);
    const std::string report = folder.Read(row.manifest).report;
    CHECK(report.substr(0, report.find("m:1:1: warning: these texts")) == row.report);
  }
  std::string deep;
  for (int parts = 0; parts < 100000; ++parts)
    deep += "a.";
  CHECK(folder.Read("x =  + deep +  # " + deep + "\n[" + deep).report == "m:2:33: error: no key has so many parts\n");
  Findings findings;
  packer::ReadManifest(folder.Path() / "absent.toml", std::nullopt, findings);
  CHECK(findings.Report("m") == "m: error: can't read the manifest: No such file or directory\n");
}
