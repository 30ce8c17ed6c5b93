// What a user is asked before an installation, and what is refused.
#include <doctest/doctest.h>

#include <filesystem>
#include <sstream>

#include "tests/support/Desktop.h"
#include "tests/support/PackedProduct.h"
#include "tests/support/Snapshot.h"

using namespace korb;
using namespace korb::test;

namespace {

constexpr int kNext = 1001, kCancel = 1003, kPage = 1005, kBrowse = 1013, kDirectory = 1015, kLanguages = 1017;
const std::string kHome = "C:\\Wizard", kCommon = "C:\\Program Files\\Common Files\\Wizard";
const std::string kKey = "Software\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\";

/// An installer whose texts are their own numbers: "#5." is number 5 in English, "#5,de." in German.
struct Setup {
  Setup() {
    product.name = product.uninstall_name = product.common_dir = "Wizard";
    product.install_dir = kHome;
    for (const char *name : {"Deutsch", "English"}) {
      packer::Language language{name, {}, {}};
      for (int i = 0; i < 72; ++i)
        language.texts.push_back("#" + std::to_string(i) + (*name == 'D' ? ",de" : "") + ".");
      for (const auto &[number, arguments] :
           {std::pair{12, " %s"}, {16, " %c"}, {18, " %s"}, {19, " %s %c %s"}, {22, " %s"}, {23, " %s"}, {61, " %s"}})
        language.texts[static_cast<size_t>(number)] += arguments;
      language.texts[63] = language.texts[64] = language.texts[65] = "";
      product.languages.push_back(language);
    }
    packer::FileEntry file;
    file.name = "one.txt";
    file.contents.assign(400000, 'x');
    product.files = {file};
  }

  std::string &Text(size_t number) { return product.languages.back().texts[number]; }
  void OneLanguage() { product.languages.erase(product.languages.begin()); }

  /// Builds it and starts it.
  Process Start(const std::string &arguments = std::string()) const {
    const std::string path = (folder.Path() / "setup.exe").string();
    WriteInstaller(product, path);
    return Process("\"" + path + "\" " + arguments, folder.Path().string());
  }

  TempFolder folder;
  packer::Product product;
};

/// Carries out "words|button" or "words|button|directory": what the window that says `words` is answered with.
Window Answer(const std::string &step) {
  CAPTURE(step);
  std::istringstream parts(step);
  std::string words, button, typed;
  std::getline(std::getline(parts, words, '|'), button, '|');
  if (const auto window = WaitForWindow(words); window && std::getline(parts, typed))
    CHECK(SetText(*window, kDirectory, typed));
  return AnswerWindow(words, button);
}

bool Exists(const std::string &path) {
  return std::filesystem::exists(path);
}

void SetValue(const std::string &key, const char *name, const std::string &value) {
  SetRegistryText(HKEY_LOCAL_MACHINE, kKey + key, name, value);
}

/// An installer with every page and question.
void AskEverything(Setup &setup) {
  setup.product.flags |= IF_NOTICE | IF_CONFIRM_DIRECTORY | IF_NO_UNC_PATHS;
  setup.product.license_pages = {" \r\n\t", "Licence of <PRODUCT>"};
  setup.product.readme_pages = {"Read on <Os>"};
  for (packer::Language &language : setup.product.languages) {
    language.texts[65] = "Notice";
    language.texts[64] = "First page";
  }
}

const std::string kPages[] = {"Choose Your Language|1001", "Notice|OK", "Licence of Wizard|1001", "First page|1001",
                              "Read on Windows|1001",      "#11.|1001"};

} // namespace

TEST_CASE("an installation asks for everything in its order, and refuses one directory after the other") {
  Setup setup;
  AskEverything(setup);
  std::filesystem::create_directories(kHome);
  WriteFileBytes("C:\\a file", "");
  Process run = setup.Start();
  const auto languages = WaitForWindow("Choose Your Language");
  REQUIRE(languages);
  CHECK(languages->Text(1001) == "#48."); // that of this system
  CHECK(Choose(*languages, kLanguages, "Deutsch"));
  CHECK(WaitForWindow("#48,de."));
  CHECK(Choose(*languages, kLanguages, "English"));
  PostMessageA(languages->handle, WM_COMMAND, IDCANCEL, 0); // Escape; no dialog takes it for an answer
  for (size_t i = 0; i < 5; ++i)
    Answer(kPages[i]);
  Answer("#11.|1013|c:\\WINDOWS\\");
  Answer("#11.|OK"); // the browser has the prompt for its title, and gives the name as the disk has it
  const auto directory = WaitForWindow("C:\\windows");
  REQUIRE(directory);
  CHECK(SendMessageA(directory->Find("1015")->handle, EM_GETLIMITTEXT, 0, 0) == 259);
  for (const char *step :
       {"#11.|1001| \t", "#11.|1001|Wizard", "#14.\r\nWizard|OK", "#11.|1001|\\\\bad?\\Q:\\",
        "#14.\r\n\\\\bad?\\Q:\\|OK", "#11.|1001|\\\\server\\share", "#66.|OK", "#11.|1001|q:\\", "#16. Q|OK",
        "#11.|1001|C:\\", "#17.|OK", "#11.|1001| c:\\program files\\ ", "#18. C:\\Program Files|OK"})
    Answer(step);
  if (GetDriveTypeA("E:\\") != DRIVE_NO_ROOT_DIR)
    for (const char *step : {"#11.|1001|E:\\room", "#19. 39|No", "#11.|1001|E:\\room", "#19.|Yes", "#23. E:\\room|No"})
      Answer(step);
  for (const char *step : {"#11.|1001|C:\\a file\\below", "#23. C:\\a file\\below|Yes",
                           "#25.\r\nC:\\a file\\below\r\n\r\n|OK", "#11.|1001|C:\\Wizard ", "#22. C:\\Wizard|No",
                           "#11.|1001|C:\\Wizard\\Deep\\er", "#23. C:\\Wizard\\Deep\\er|Yes", "#42.|OK"})
    Answer(step);
  CHECK(run.Wait() == DWORD{1});
  CHECK(Exists("C:\\Wizard\\Deep\\er\\one.txt"));
  std::filesystem::remove_all(kHome);
  RegDeleteKeyA(HKEY_LOCAL_MACHINE, (kKey + "Wizard").c_str());
}

TEST_CASE("a whole installation by keyboard: pages are read, and only Enter and Alt decide") {
  Setup setup;
  AskEverything(setup);
  setup.product.license_pages = {[] {
    std::string text = "Licence\r\n";
    for (int i = 0; i < 200; ++i)
      text += "a line\r\n";
    return text;
  }()};
  setup.product.min_phase_ms = 300;
  setup.Text(45) = "#45, &accept";
  setup.Text(52) = "#52, &browse";
  Process run = setup.Start();

  // Tab goes round in the order of `ids`, Shift and Tab back; Escape does nothing.
  const auto goes_round = [](std::initializer_list<int> ids) {
    CHECK(WaitForFocus(*ids.begin()));
    Press(VK_ESCAPE);
    for (const int *id = ids.begin() + 1; id != ids.end(); ++id) {
      Press(VK_TAB);
      CHECK(WaitForFocus(*id));
    }
    Press(VK_TAB);
    CHECK(WaitForFocus(*ids.begin()));
    Press(VK_TAB, VK_SHIFT);
    CHECK(WaitForFocus(*(ids.end() - 1)));
    Press(VK_RIGHT); // among the buttons alone
    CHECK(WaitForFocus(ids.begin()[1]));
    Press(VK_TAB, VK_SHIFT);
    CHECK(WaitForFocus(*ids.begin()));
  };
  REQUIRE(WaitForWindow("#48."));
  goes_round({kLanguages, kNext, kCancel});
  Press(VK_UP);
  CHECK(WaitForWindow("#48,de."));
  Press(VK_DOWN);
  CHECK(WaitForWindow("#48."));
  Press(VK_RETURN);
  Answer("Notice|OK");

  const auto licence = WaitForWindow("Licence");
  REQUIRE(licence);
  const HWND page = licence->Find(std::to_string(kPage))->handle;
  const auto ask = [&](UINT message) { return SendMessageA(page, message, 0, 0); };
  for (int round = 0; round < 2; ++round) {
    goes_round({kPage, kNext, kCancel});
    CHECK(ask(EM_GETSEL) == 0);
    Press(VK_NEXT);
    Press(VK_DOWN);
    CHECK(WaitUntil(2000, [&] { return ask(EM_GETFIRSTVISIBLELINE) > 0 && ask(EM_GETSEL) > 0; }));
  }
  Press('A', VK_MENU);
  for (const char *words : {"First page", "Read on Windows"}) {
    REQUIRE(WaitForWindow(words));
    goes_round({kPage, kNext, kCancel});
    Press(VK_RETURN);
  }
  REQUIRE(WaitForWindow("#52, browse"));
  goes_round({kDirectory, kBrowse, kNext, kCancel});
  Press('B', VK_MENU);
  Answer("#11.|Cancel");
  CHECK(WaitForFocus(kBrowse));
  Press(VK_TAB);
  Press(VK_RETURN);
  Answer("#23.|Yes");

  CHECK(WaitForFocus(kCancel)); // of the progress dialog, where only Space means anything
  for (const int key : {VK_ESCAPE, VK_RETURN, VK_TAB, VK_SPACE})
    Press(key);
  Answer("#28.|No");
  Answer("#42.|OK");
  CHECK(run.Wait() == DWORD{1});
  std::filesystem::remove_all(kHome);
  RegDeleteKeyA(HKEY_LOCAL_MACHINE, (kKey + "Wizard").c_str());
}

TEST_CASE("who declines anywhere leaves nothing but the directory that products share") {
  Setup setup;
  AskEverything(setup);
  const Snapshot before = TakeSnapshot();
  for (size_t place = 0; place < std::size(kPages); ++place) {
    Process run = setup.Start();
    for (size_t i = 0; i < place; ++i)
      Answer(kPages[i]);
    const std::string &page = kPages[place];
    Answer(page.substr(0, page.find('|')) + (place == 1 ? "|Cancel" : "|1003"));
    CHECK(run.Wait() == DWORD{1});
  }
  for (const std::string &difference : Differences(before, TakeSnapshot()))
    CHECK(difference == "new " + kCommon);
  CHECK(Exists(kCommon));
}

TEST_CASE("an earlier installation is told by its version, and taken over where it is") {
  const struct {
    uint64_t flags;
    const char *earlier, *version, *first_line;
  } rows[] = {{0, "2.0", "2.0", "#3."}, {IF_COMPARE_VERSIONS, "1.10", "2.0", "#5."}};
  std::filesystem::create_directories(kHome);
  SetValue("Wizard", "InstallLocation", kHome);
  for (const auto &row : rows) {
    CAPTURE(row.first_line);
    SetValue("Wizard", "DisplayVersion", row.earlier);
    Setup setup;
    setup.OneLanguage();
    setup.product.flags |= row.flags;
    setup.product.version = row.version;
    Process run = setup.Start("/d:C:\\Elsewhere");
    const Window question = Answer(&row == rows ? "#7.|Yes" : "#7.|No");
    CHECK(question.Message() == row.first_line + ("\r\n" + kHome + "\r\n\r\n#7."));
    CHECK(question.title == "#2.");
    if (&row == rows)
      Answer("#42.|OK"); // no directory dialog
    CHECK(run.Wait() == DWORD{1});
    CHECK(std::filesystem::remove(kHome + "\\one.txt") == (&row == rows));
  }
  Setup refusing;
  refusing.product.flags |= IF_REFUSE_REINSTALL;
  Process run = refusing.Start("/a");
  Answer("#9.|OK");
  CHECK(run.Wait() == DWORD{1});
  CHECK_FALSE(Exists(kHome + "\\one.txt"));

  SetValue("Wizard", "InstallLocation", "C:\\gone"); // a location without a directory is none
  CHECK(refusing.Start("/a /d:C:\\Elsewhere").Wait() == DWORD{1});
  std::filesystem::remove_all(kHome);
  CHECK(Exists("C:\\Elsewhere\\one.txt"));
  RegDeleteKeyA(HKEY_LOCAL_MACHINE, (kKey + "Wizard").c_str());
}

TEST_CASE("an installer that may not run says so, unless it is silent") {
  const struct {
    const char *said;
    void (*refuse)(packer::Product &);
  } rows[] = {
      {"#60.",
       [](packer::Product &p) {
         p.expiry = {2001, 1, 1};
       }},
      {"#61. Windows", [](packer::Product &p) { p.excluded_platforms = 0xFFFFFFFF; }},
      {"#12. Nobody", [](packer::Product &p) { p.flags |= IF_MASTER_PRODUCT, p.master_product = "Nobody"; }},
      {"#12. Wizard", [](packer::Product &p) { p.flags |= IF_MASTER_PRODUCT; }},
  };
  for (const auto &row : rows) {
    for (const char *arguments : {"", "/a", "/a "}) {
      CAPTURE(row.said);
      CAPTURE(arguments);
      Setup setup;
      setup.OneLanguage();
      row.refuse(setup.product);
      const bool shows = std::string(arguments) != "/a";
      if (*arguments != '\0' && shows)
        setup.product.flags |= IF_SHOW_ERRORS;
      Process run = setup.Start(arguments);
      if (shows)
        Answer(row.said + std::string("|OK"));
      CHECK(run.Wait() == DWORD{1});
      CHECK_FALSE(Exists(kHome));
    }
  }
  SetValue("Nobody", "InstallLocation", "C:\\Master");
  SetValue("Nobody", "QuietUninstallString", "");
  Setup setup;
  rows[2].refuse(setup.product);
  setup.product.expiry = {2999, 12, 31};
  setup.product.install_dir = "<MASTER>";
  CHECK(setup.Start("/a").Wait() == DWORD{1});
  CHECK(Exists("C:\\Master\\one.txt"));
  RegDeleteKeyA(HKEY_LOCAL_MACHINE, (kKey + "Nobody").c_str());
  RegDeleteKeyA(HKEY_LOCAL_MACHINE, (kKey + "Wizard").c_str());
}

TEST_CASE("a silent run shows its progress and no other window") {
  Setup setup;
  AskEverything(setup);
  setup.product.uninstall_name = "Silent";
  Process run = setup.Start("/a");
  while (!run.Wait(5))
    for (const Window &window : OpenWindows())
      CHECK((window.process != run.Id() || window.title == "#54."));
  CHECK(Exists(kHome + "\\one.txt"));
  std::filesystem::remove_all(kHome);
}

TEST_CASE("a text that is no format for what it is given shows itself") {
  const struct {
    size_t number;
    const char *text, *typed;
  } rows[] = {{16, "#16.", "Q:\\x"},      {16, "#%n", "Q:\\x"},
              {16, "#%s%s%s%s", "Q:\\x"}, {18, "#%s %s", "C:\\Program Files"},
              {22, "#%c", "C:\\windows"}, {17, "#100%% %s%n", "C:\\"}};
  for (const auto &row : rows) {
    CAPTURE(row.text);
    Setup abused;
    abused.OneLanguage();
    abused.product.uninstall_name = "Abused";
    abused.product.flags |= IF_CONFIRM_DIRECTORY;
    abused.Text(row.number) = row.text;
    Process run = abused.Start();
    Answer(std::string("#11.|1001|") + row.typed);
    CHECK(Answer(row.text + std::string(row.number == 22 ? "|No" : "|OK")).Message() == row.text);
    Answer("#11.|1003");
    CHECK(run.Wait() == DWORD{1});
  }
}
