#include <sstream>

#include "packer/Build.h"
#include "packer/FileIo.h"
#include "tests/support/Doctest.h"
#include "tests/support/TempFolder.h"
#include "tests/support/TestInstaller.h"

using namespace korb;

namespace {

class Workshop : public test::TempFolder {
public:
  Workshop() {
    const packer::Bytes stub = test::TestStub();
    Write("korb.exe", std::string(stub.begin(), stub.end()));
    Write("a.txt", "contents");
  }

  bool Build(const std::string &manifest, const std::string &output, bool only_check = false) {
    std::ostringstream summary, report;
    const bool built = packer::BuildFromManifest(
        {Write("m.toml", manifest), Path() / output, Path() / "korb.exe", std::nullopt, {}, false, only_check}, summary,
        report);
    problems = report.str();
    return built;
  }

  std::string problems;
};

const std::string kManifest = "[product]\nname = 'Thing'\n[[file]]\nsource = 'a.txt'\n";

} // namespace

TEST_CASE("a good manifest gives an installer, its volumes beside it, and nothing else") {
  Workshop shop;
  CHECK(shop.Build(kManifest + "date = 'none'\n[payload]\nvolume_size = 20\nfirst_part_size = 3", "setup.exe"));
  CHECK(shop.problems == "");
  CHECK(shop.Count() == 3 + 3);
  CHECK(shop.Read("Setup2.KRB").size() == 20);
  const std::string first = shop.Read("setup.exe");
  CHECK(shop.Build(kManifest + "date = 'none'\n[payload]\nvolume_size = 20\nfirst_part_size = 3", "again.exe"));
  CHECK(shop.Read("again.exe") == first);
}

TEST_CASE("a tree brings no output of its own manifest, nor what is left of one") {
  Workshop shop;
  shop.Write("setup.exe.0123abcd.unfinished", "x");
  shop.Write("SETUP12.krb", "x");
  const std::string tree =
      "[product]\nname = 'Thing'\n[[tree]]\nsource = '.'\nexclude = ['*.toml', 'korb.exe', 'setup.exe']";
  CHECK(shop.Build(tree, "setup.exe"));
  CHECK(shop.problems == "");
  const std::string first = shop.Read("setup.exe");
  CHECK(shop.Build(tree, "setup.exe"));
  CHECK(shop.Read("setup.exe") == first);
  CHECK(shop.Build(tree.substr(0, tree.rfind(",")) + "]", "other.exe"));
  CHECK(shop.problems.find("warning: './setup.exe' is an installer itself") != std::string::npos);

  // What lies in the output's place and is no installer was there before.
  CHECK(!shop.Build("[product]\nname = 'Thing'\n[[tree]]\nsource = '.'\ninclude = ['a.txt', 'setup.exe']", "a.txt"));
  CHECK(shop.problems.find("would overwrite a file that it is made from") != std::string::npos);
  CHECK(shop.Read("a.txt") == "contents");
}

TEST_CASE("a check of a manifest writes nothing, and what is packed keeps its place") {
  Workshop shop;
  std::error_code none; // where there are no links, no link is in the way
  std::filesystem::create_symlink("a.txt", shop.Path() / "setup.exe.unfinished", none);
  const size_t before = shop.Count();
  CHECK(shop.Build(kManifest, "setup.exe", true));
  CHECK(shop.Count() == before + 1); // the manifest
  CHECK(shop.Build(kManifest, "setup.exe"));
  CHECK(shop.Read("a.txt") == "contents");
  shop.Write("Setup2.KRB", "old");
  shop.Write("Setup4.KRB", "old");
  CHECK(shop.Build(kManifest + "[payload]\nvolume_size = 2000\nfirst_part_size = 3", "setup.exe"));
  CHECK(shop.problems == "");
  shop.Write("Setup3.KRB", "old");
  CHECK(shop.Build(kManifest + "[payload]\nvolume_size = 2000\nfirst_part_size = 3", "setup.exe"));
  CHECK(shop.problems.find("Setup3.KRB: warning: it is left of an earlier installer") != std::string::npos);
}

TEST_CASE("warnings can be made errors") {
  Workshop shop;
  const std::filesystem::path manifest = shop.Write("m.toml", kManifest + "[options]\nreboot_needed = true");
  std::ostringstream summary, problems;
  packer::BuildRequest request{manifest, shop.Path() / "setup.exe", shop.Path() / "korb.exe", {}, {}, true};
  CHECK(!packer::BuildFromManifest(request, summary, problems));
  CHECK(problems.str().ends_with("error: nothing is written: with --strict, warnings are errors\n"));
  request.only_check = true;
  CHECK(!packer::BuildFromManifest(request, summary, problems));
  CHECK(problems.str().ends_with("m.toml: error: with --strict, warnings are errors\n"));
  request.only_check = false;
  request.allowed = {"restart-always"};
  CHECK(packer::BuildFromManifest(request, summary, problems));
  CHECK(!shop.Build("allow = 'restart-alway'\n" + kManifest, "setup.exe"));
  CHECK(shop.problems.find("m.toml:1:9: error: there is no warning called 'restart-alway'; did you mean "
                           "'restart-always'?\n") != std::string::npos);
  CHECK(shop.Build("allow = ['restart-always', 'no-effect']\n" + kManifest + "[options]\nreboot_needed = true",
                   "setup.exe"));
  CHECK(shop.problems.ends_with("m.toml:1:28: note: this build has no warning 'no-effect' to allow\n"));
}

TEST_CASE("earlier installers that aren't found are told where and as they were named") {
  Workshop shop;
  packer::BuildRequest request{shop.Write("m.toml", kManifest + "[upgrade]\nfrom = ['old/*.exe']"),
                               shop.Path() / "setup.exe",
                               shop.Path() / "korb.exe",
                               {},
                               {},
                               false,
                               true};
  request.after = {"no-thing-?.exe"};
  std::ostringstream summary, problems;
  CHECK(packer::BuildFromManifest(request, summary, problems));
  const std::string manifest = packer::ShowPath(request.manifest);
  CHECK(problems.str() ==
        manifest + ": warning: no earlier installer is called 'no-thing-?.exe' [no-earlier-installer]\n" + manifest +
            ":6:8: warning: no earlier installer is called 'old/*.exe' [no-earlier-installer]\n");
}

TEST_CASE("people are shown the line, other programs get JSON, and both get UTF-8") {
  Workshop shop;
  shop.Write("language.toml", "ok_buton = 'x'\r\n");
  const std::string manifest =
      "\tfile = [{ contents = '日', name = 'a', \"\\u001B\" = 1 }]\n[product]\nname = 'Größe'\n"
      "[[language]]\nname = 'é'\n[[language]]\nname = 'é'\nfile = 'language.toml'\n";
  const std::filesystem::path path = shop.Write("m.toml", manifest);
  packer::BuildRequest request{path, shop.Path() / "setup.exe", shop.Path() / "korb.exe", {}, {}, false, true};
  request.allowed = {"untranslated-text"};
  const auto report = [&](packer::ReportForm form) {
    std::ostringstream summary, problems;
    request.report_form = form;
    CHECK(!packer::BuildFromManifest(request, summary, problems));
    std::string text = problems.str();
    for (const std::string folder = packer::ShowPath(shop.Path() / ""); text.find(folder) != text.npos;)
      text.erase(text.find(folder), folder.size());
    return text;
  };
  CHECK(report(packer::ReportForm::kText) ==
        "m.toml:1:40: error: unknown key 'file.\\u001B'\n"
        "    1 | \tfile = [{ contents = '日', name = 'a', \"\\u001B\" = 1 }]\n"
        "      | \t                                       ^\n"
        "m.toml:6:1: error: there are two languages called 'é'\n"
        "    6 | [[language]]\n"
        "      | ^\n"
        "m.toml:4:1: note: the other one is here\n"
        "    4 | [[language]]\n"
        "      | ^\n"
        "language.toml:1:1: error: unknown text 'ok_buton'; did you mean 'ok_button'?\n"
        "    1 | ok_buton = 'x'\n"
        "      | ^\n"
        "3 errors\n");
  const std::string json = report(packer::ReportForm::kJson);
  for (const char *part :
       {"[\n {\n  \"severity\": \"error\",\n  \"file\": \"", "\"message\": \"unknown key 'file.\\u001b'\",",
        "\"line\": 6,\n  \"column\": 1,\n  \"message\": \"there are two languages called 'é'\",\n"
        "  \"notes\": [\n   {\n    \"file\": \"",
        "\"line\": 4,\n    \"column\": 1,\n    \"message\": \"the other one is here\"\n"})
    CHECK(json.find(part) != json.npos);
}

TEST_CASE("what fails leaves the folder as it was") {
  Workshop shop;
  shop.Write("setup.exe", "old");
  const struct {
    std::string manifest, output, problem;
  } rows[] = {
      {"[product", "setup.exe", "m.toml:1:9: error: "},
      {kManifest + "[texts]\nstep_unpack = '%s'", "setup.exe", "m.toml:6:1: error: text 29 (step_unpack)"},
      {kManifest, "m.toml", "would overwrite a file that it is made from"},
      {kManifest, "./a.txt", "would overwrite a file that it is made from"},
      {kManifest, "korb.exe", "would overwrite a file that it is made from"},
      {kManifest + "[payload]\nvolume_size = 20\nfirst_part_size = 3", "Setup2.KRB",
       "would be the installer and a volume at once"},
      {kManifest, "no/such/folder.exe", "folder.exe': there is no folder '"},
      {kManifest, ".", "is no file that could be replaced"},
      {kManifest + "[payload]\nvolume_size = 20", "new.exe", "alone are larger than a volume"},
      {"[[file]]\nsource = 'a.txt'\n", "new.exe", "error: 'product.name' is missing"},
  };
  for (const auto &row : rows) {
    CAPTURE(row.manifest);
    CAPTURE(row.output);
    for (const bool only_check : {true, false}) { // all of it is known before the packing
      CHECK(!shop.Build(row.manifest, row.output, only_check));
      CHECK(shop.problems.find(row.problem) != std::string::npos);
    }
    CHECK(shop.Read("setup.exe") == "old");
    CHECK(shop.Count() == 4);
    CHECK(shop.Read("m.toml") == row.manifest);
  }
}

TEST_CASE("a folder in the way of one volume keeps all files from appearing") {
  Workshop shop;
  std::filesystem::create_directory(shop.Path() / "Setup3.KRB");
  CHECK(!shop.Build(kManifest + "[payload]\nvolume_size = 20\nfirst_part_size = 3", "setup.exe"));
  CHECK(shop.Count() == 4);
}
