// What a user is asked before an installation, and what is refused.
#include <filesystem>

#include "format/Texts.h"
#include "tests/support/CleanPlace.h"
#include "tests/support/Desktop.h"
#include "tests/support/Doctest.h"
#include "tests/support/PackedProduct.h"
#include "tests/support/Snapshot.h"
#include "tests/support/Windows64.h"

using namespace korb;
using namespace korb::test;

namespace {

constexpr int kNext = 1001, kCancel = 1003, kPage = 1005, kBrowse = 1013, kDirectory = 1015, kLanguages = 1017;
const std::string kHome = "C:\\Wizard", kCommon = kProgramFiles + "\\Common Files\\Wizard";
const std::string kKey = "Software\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\";

/// What stands for a text of an installer, with what it was given: "#16. Q".
std::string Said(TextNumber number, const std::string &with = "") {
  return "#" + std::to_string(number) + "." + with;
}

/// A machine without the products of this file.
struct Place : CleanPlace {
  Place()
      : CleanPlace({kHome, kCommon, "C:\\Elsewhere", "C:\\Master", "C:\\a file"},
                   {kKey + "Wizard", kKey + "Nobody", kKey + "Silent", kKey + "Abused"}) {}
};

/// An installer whose texts are their own numbers: "#5." is number 5 in English, "#5,de." in German.
struct Setup {
  Setup() {
    product.name = product.uninstall_name = product.common_dir = "Wizard";
    product.install_dir = kHome;
    for (const char *name : {"Deutsch", "English"}) {
      packer::Language language{name, {}, {}};
      for (const TextRow &row : kTextRows) {
        std::string text = "#" + std::to_string(row.number) + (*name == 'D' ? ",de" : "") + ".";
        for (const char *argument = row.form; *argument != '\0' && *argument != '-'; ++argument)
          text += std::string(" %") + *argument;
        language.texts.push_back(text);
      }
      for (const TextNumber shown_first : {kTextFirstLicensePage, kTextFirstReadmePage, kTextNotice})
        language.texts[shown_first] = "";
      product.languages.push_back(language);
    }
    packer::FileEntry file;
    file.name = "one.txt";
    file.contents.assign(400000, 'x');
    product.files = {file};
  }

  std::string &Text(TextNumber number) { return product.languages.back().texts[number]; }
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

/// Clicks a button of the window that says `words`, and gives the window.
Window Answer(const std::string &words, const std::string &button) {
  CAPTURE(words);
  return AnswerWindow(words, button);
}
Window Answer(const std::string &words, int button) {
  return Answer(words, std::to_string(button));
}

/// Names a directory in its dialog.
void Type(const std::string &directory, int button = kNext) {
  CAPTURE(directory);
  const auto dialog = WaitForWindow(Said(kTextDirectoryPrompt));
  REQUIRE(dialog);
  CHECK(SetText(*dialog, kDirectory, directory));
  CHECK(Click(*dialog, std::to_string(button)));
}

bool Exists(const std::string &path) {
  return std::filesystem::exists(path);
}

void SetValue(const std::string &key, const char *name, const std::string &value) {
  SetRegistryText(HKEY_LOCAL_MACHINE, kKey + key, name, value);
}

/// An installer with every page and question.
void AskEverything(Setup &setup) {
  setup.product.flags |= IF_NOTICE | IF_CONFIRM_DIRECTORY;
  setup.product.license_pages = {" \r\n\t", "Licence of <PRODUCT>"};
  setup.product.readme_pages = {"Read on <Os>"};
  for (packer::Language &language : setup.product.languages) {
    language.texts[kTextNotice] = "Notice";
    language.texts[kTextFirstReadmePage] = "First page";
  }
}

const std::string kPages[] = {"Choose Your Language", "Notice",          "Licence of Wizard",
                              "First page",           "Read on Windows", Said(kTextDirectoryPrompt)};

void TurnPage(const std::string &page) {
  page == "Notice" ? Answer(page, "OK") : Answer(page, kNext);
}

/// Tab goes round the controls in this order, Shift and Tab back, an arrow among the buttons alone; Escape does
/// nothing.
void CheckRound(const std::vector<int> &ids) {
  CHECK(WaitForFocus(ids.front()));
  Press(VK_ESCAPE);
  for (size_t i = 1; i <= ids.size(); ++i) {
    Press(VK_TAB);
    CHECK(WaitForFocus(ids[i % ids.size()]));
  }
  Press(VK_TAB, VK_SHIFT);
  CHECK(WaitForFocus(ids.back()));
  Press(VK_RIGHT);
  CHECK(WaitForFocus(ids[1]));
  Press(VK_TAB, VK_SHIFT);
  CHECK(WaitForFocus(ids.front()));
}

} // namespace

TEST_CASE_FIXTURE(Place, "an installation asks for everything in its order") {
  Setup setup;
  AskEverything(setup);
  Process run = setup.Start();
  for (const std::string &page : kPages)
    if (page != kPages[5])
      TurnPage(page);
  Type("C:\\Wizard\\Deep\\er");
  Answer(Said(kTextDirectoryMissing, " C:\\Wizard\\Deep\\er"), "Yes");
  Answer(Said(kTextInstalled), "OK");
  CHECK(run.Wait() == DWORD{1});
  CHECK(Exists("C:\\Wizard\\Deep\\er\\one.txt"));
}

TEST_CASE_FIXTURE(Place, "the language of the system is offered first, and a choice is seen at once") {
  Process run = Setup().Start();
  const auto languages = WaitForWindow("Choose Your Language");
  REQUIRE(languages);
  CHECK(languages->Text(kNext) == Said(kTextOkButton));
  CHECK(Choose(*languages, kLanguages, "Deutsch"));
  CHECK(WaitForWindow("#48,de."));
  CHECK(Choose(*languages, kLanguages, "English"));
  CHECK(WaitForWindow(Said(kTextOkButton)));
  PostMessageA(languages->handle, WM_COMMAND, IDCANCEL, 0); // Escape; no dialog takes it for an answer
  Answer("Choose Your Language", kCancel);
  CHECK(run.Wait() == DWORD{1});
}

TEST_CASE_FIXTURE(Place, "the browser begins at the directory, and gives the name as the disk has it") {
  Setup setup;
  setup.OneLanguage();
  Process run = setup.Start();
  Type("c:\\WINDOWS\\", kBrowse);
  Answer(Said(kTextDirectoryPrompt), "OK"); // the browser has the prompt for its title
  const auto directory = WaitForWindow("C:\\windows");
  REQUIRE(directory);
  CHECK(SendMessageA(directory->Find(std::to_string(kDirectory))->handle, EM_GETLIMITTEXT, 0, 0) == 259);
  Answer(Said(kTextDirectoryPrompt), kCancel);
  CHECK(run.Wait() == DWORD{1});
}

TEST_CASE_FIXTURE(Place, "a directory that can't be is refused in its own words, and asked for again") {
  const struct {
    std::string typed, refusal;
  } rows[] = {
      {"Wizard", Said(kTextDirectoryIllegal, "\r\nWizard")},
      {"\\\\bad?\\Q:\\", Said(kTextDirectoryIllegal, "\r\n\\\\bad?\\Q:\\")},
      {"\\\\server\\share", Said(kTextDirectoryNetwork)},
      {"q:\\", Said(kTextDriveMissing, " Q")},
      {"C:\\", Said(kTextDirectoryShort)},
      {" c:\\PROGRAM" + kProgramFiles.substr(10) + "\\ ", Said(kTextDirectoryProgramFiles, " " + kProgramFiles)}};
  Setup setup;
  setup.OneLanguage();
  setup.product.flags |= IF_CONFIRM_DIRECTORY | IF_NO_UNC_PATHS;
  Process run = setup.Start();
  Type(" \t"); // not worth a word
  for (const auto &row : rows) {
    Type(row.typed);
    Answer(row.refusal, "OK");
  }
  Answer(Said(kTextDirectoryPrompt), kCancel);
  CHECK(run.Wait() == DWORD{1});
}

TEST_CASE_FIXTURE(Place, "a directory is asked about: whether it has room, is to be made, or to be installed into") {
  std::filesystem::create_directories(kHome);
  WriteFileBytes("C:\\a file", "");
  REQUIRE(GetDriveTypeA("E:\\") != DRIVE_NO_ROOT_DIR);
  Setup setup;
  setup.OneLanguage();
  setup.product.flags |= IF_CONFIRM_DIRECTORY;
  Process run = setup.Start();
  Type("E:\\room");
  Answer(Said(kTextDiskSpace, " 39"), "No");
  Type("E:\\room");
  Answer(Said(kTextDiskSpace), "Yes");
  Answer(Said(kTextDirectoryMissing, " E:\\room"), "No");
  Type("C:\\a file\\below");
  Answer(Said(kTextDirectoryMissing, " C:\\a file\\below"), "Yes");
  Answer(Said(kTextDirectoryFailed, "\r\nC:\\a file\\below\r\n\r\n"), "OK");
  Type("C:\\Wizard ");
  Answer(Said(kTextDirectoryExists, " C:\\Wizard"), "No");
  Answer(Said(kTextDirectoryPrompt), kCancel);
  CHECK(run.Wait() == DWORD{1});
}

TEST_CASE_FIXTURE(Place, "a language is chosen by keyboard") {
  Process run = Setup().Start();
  REQUIRE(WaitForWindow(Said(kTextOkButton)));
  CheckRound({kLanguages, kNext, kCancel});
  Press(VK_UP);
  CHECK(WaitForWindow("#48,de."));
  Press(VK_DOWN);
  CHECK(WaitForWindow(Said(kTextOkButton)));
  Press(VK_RETURN);
  Answer(Said(kTextDirectoryPrompt), kCancel);
  CHECK(run.Wait() == DWORD{1});
}

TEST_CASE_FIXTURE(Place, "pages are read by keyboard, and only Enter and Alt decide") {
  Setup setup;
  setup.OneLanguage();
  std::string &licence_text = setup.product.license_pages.emplace_back("Licence\r\n");
  for (int i = 0; i < 200; ++i)
    licence_text += "a line\r\n";
  setup.product.readme_pages = {"Read on <Os>"};
  setup.Text(kTextLicenseAccept) = "#45, &accept";
  Process run = setup.Start();
  const auto licence = WaitForWindow("Licence");
  REQUIRE(licence);
  const HWND page = licence->Find(std::to_string(kPage))->handle;
  const auto ask = [&](UINT message) { return SendMessageA(page, message, 0, 0); };
  CheckRound({kPage, kNext, kCancel});
  CHECK(ask(EM_GETSEL) == 0);
  for (const int key : {VK_NEXT, VK_DOWN}) {
    const LRESULT before = ask(EM_GETSEL);
    Press(key);
    CHECK(WaitUntil(2000, [&] { return ask(EM_GETSEL) > before; }));
  }
  const LRESULT line = ask(EM_GETFIRSTVISIBLELINE), caret = ask(EM_GETSEL);
  CHECK(line > 0);
  const HWND other = CreateWindowA("Static", "", WS_POPUP | WS_VISIBLE, 0, 0, 9, 9, nullptr, nullptr, nullptr, nullptr);
  SetForegroundWindow(other);
  CHECK(WaitForFocus(0));
  DestroyWindow(other);
  SetForegroundWindow(licence->handle);
  CheckRound({kPage, kNext, kCancel});
  CHECK(ask(EM_GETFIRSTVISIBLELINE) == line);
  CHECK(ask(EM_GETSEL) == caret);
  Press('A', VK_MENU);
  REQUIRE(WaitForWindow("Read on Windows"));
  CheckRound({kPage, kNext, kCancel});
  Press(VK_RETURN);
  Answer(Said(kTextDirectoryPrompt), kCancel);
  CHECK(run.Wait() == DWORD{1});
}

TEST_CASE_FIXTURE(Place, "a directory is chosen by keyboard, and only Space means anything to the progress") {
  Setup setup;
  setup.OneLanguage();
  setup.product.flags |= IF_CONFIRM_DIRECTORY;
  setup.product.min_phase_ms = 300;
  setup.Text(kTextBrowseButton) = "#52, &browse";
  Process run = setup.Start();
  REQUIRE(WaitForWindow("#52, browse"));
  CheckRound({kDirectory, kBrowse, kNext, kCancel});
  Press('B', VK_MENU);
  CHECK(WaitUntil(5000, [] { return !WaitForWindow("#52, browse", 0); }));
  Answer(Said(kTextDirectoryPrompt), "Cancel");
  CHECK(WaitForFocus(kBrowse));
  Press(VK_TAB);
  Press(VK_RETURN);
  Answer(Said(kTextDirectoryMissing), "Yes");
  CHECK(WaitForFocus(kCancel)); // of the progress dialog
  for (const int key : {VK_ESCAPE, VK_RETURN, VK_TAB, VK_SPACE})
    Press(key);
  Answer(Said(kTextCancelQuestion), "No");
  Answer(Said(kTextInstalled), "OK");
  CHECK(run.Wait() == DWORD{1});
}

TEST_CASE_FIXTURE(Place, "who declines anywhere leaves nothing but the directory that products share") {
  Setup setup;
  AskEverything(setup);
  const Snapshot before = TakeSnapshot();
  for (const std::string &declined : kPages) {
    Process run = setup.Start();
    for (const std::string *page = kPages; *page != declined; ++page)
      TurnPage(*page);
    declined == "Notice" ? Answer(declined, "Cancel") : Answer(declined, kCancel);
    CHECK(run.Wait() == DWORD{1});
  }
  CHECK(Differences(before, TakeSnapshot()) == std::vector<std::string>{"new " + kCommon});
}

namespace {

/// A machine where the product is installed in kHome.
struct Earlier : Place {
  Earlier() {
    std::filesystem::create_directories(kHome);
    SetValue("Wizard", "InstallLocation", kHome);
  }
};

} // namespace

// Which version is told to be newer is in engine_InstalledProductTest.
TEST_CASE_FIXTURE(Earlier, "an earlier installation is told by its version") {
  SetValue("Wizard", "DisplayVersion", "2.0a");
  Setup setup;
  setup.OneLanguage();
  setup.product.flags |= IF_COMPARE_VERSIONS;
  setup.product.version = "2.0";
  Process run = setup.Start();
  const Window question = Answer(Said(kTextReinstallQuestion), "No");
  CHECK(question.Message() == Said(kTextReinstallNewer, "\r\n" + kHome + "\r\n\r\n") + Said(kTextReinstallQuestion));
  CHECK(question.title == Said(kTextReinstallCaption));
  CHECK(run.Wait() == DWORD{1});
  CHECK_FALSE(Exists(kHome + "\\one.txt"));
}

TEST_CASE_FIXTURE(Earlier, "an earlier installation is taken over where it is, and no directory asked for") {
  Setup setup;
  setup.OneLanguage();
  Process run = setup.Start("/d:C:\\Elsewhere");
  Answer(Said(kTextReinstallQuestion), "Yes");
  Answer(Said(kTextInstalled), "OK");
  CHECK(run.Wait() == DWORD{1});
  CHECK(Exists(kHome + "\\one.txt"));
}

TEST_CASE_FIXTURE(Earlier, "a second installation can be refused, but not for a location without a directory") {
  Setup setup;
  setup.product.flags |= IF_REFUSE_REINSTALL;
  Process run = setup.Start("/a");
  Answer(Said(kTextReinstallRefused), "OK");
  CHECK(run.Wait() == DWORD{1});
  CHECK_FALSE(Exists(kHome + "\\one.txt"));
  SetValue("Wizard", "InstallLocation", "C:\\gone");
  CHECK(setup.Start("/a /d:C:\\Elsewhere").Wait() == DWORD{1});
  CHECK(Exists("C:\\Elsewhere\\one.txt"));
}

TEST_CASE_FIXTURE(Place, "an installer that may not run says so, unless it is silent") {
  const struct {
    std::string refusal;
    void (*refuse)(packer::Product &);
  } rows[] = {
      {Said(kTextExpired),
       [](packer::Product &p) {
         p.expiry = {2001, 1, 1};
       }},
      {Said(kTextPlatformRefused, " Windows"), [](packer::Product &p) { p.excluded_platforms = 0xFFFFFFFF; }},
      {Said(kTextMasterMissing, " Nobody"),
       [](packer::Product &p) { p.flags |= IF_MASTER_PRODUCT, p.master_product = "Nobody"; }},
      {Said(kTextMasterMissing, " Wizard"), [](packer::Product &p) { p.flags |= IF_MASTER_PRODUCT; }},
  };
  const struct {
    const char *arguments;
    uint64_t flags;
    bool shows;
  } ways[] = {{"", 0, true}, {"/a", 0, false}, {"/a", IF_SHOW_ERRORS, true}};
  for (const auto &row : rows)
    for (const auto &way : ways) {
      CAPTURE(row.refusal);
      CAPTURE(way.arguments);
      Setup setup;
      setup.OneLanguage();
      row.refuse(setup.product);
      setup.product.flags |= way.flags;
      Process run = setup.Start(way.arguments);
      if (way.shows)
        Answer(row.refusal, "OK");
      CHECK(run.Wait() == DWORD{1});
      CHECK_FALSE(Exists(kHome));
    }
}

TEST_CASE_FIXTURE(Place, "a product goes to the directory of its master, and does not expire before its day") {
  SetValue("Nobody", "InstallLocation", "C:\\Master");
  SetValue("Nobody", "QuietUninstallString", "");
  Setup setup;
  setup.product.flags |= IF_MASTER_PRODUCT;
  setup.product.master_product = "Nobody";
  setup.product.expiry = {2999, 12, 31};
  setup.product.install_dir = "<MASTER>";
  CHECK(setup.Start("/a").Wait() == DWORD{1});
  CHECK(Exists("C:\\Master\\one.txt"));
}

TEST_CASE_FIXTURE(Place, "a silent run shows its progress and no other window") {
  Setup setup;
  AskEverything(setup);
  setup.product.uninstall_name = "Silent";
  Process run = setup.Start("/a");
  while (!run.Wait(5))
    for (const Window &window : OpenWindows())
      CHECK((window.process != run.Id() || window.title == Said(kTextInstallTitle)));
  CHECK(Exists(kHome + "\\one.txt"));
}

TEST_CASE_FIXTURE(Place, "a text that is no format for what it is given shows itself") {
  const struct {
    TextNumber number;
    const char *text;
    std::string typed;
    const char *answer;
  } rows[] = {{kTextDriveMissing, "#%n", "Q:\\x", "OK"},
              {kTextDirectoryProgramFiles, "#%s %s", kProgramFiles, "OK"},
              {kTextDirectoryExists, "#%c", "C:\\windows", "No"},
              {kTextDirectoryShort, "#100%% %s%n", "C:\\", "OK"}};
  for (const auto &row : rows) {
    CAPTURE(row.text);
    Setup abused;
    abused.OneLanguage();
    abused.product.uninstall_name = "Abused";
    abused.product.flags |= IF_CONFIRM_DIRECTORY;
    abused.Text(row.number) = row.text;
    Process run = abused.Start();
    Type(row.typed);
    CHECK(Answer(row.text, row.answer).Message() == row.text);
    Answer(Said(kTextDirectoryPrompt), kCancel);
    CHECK(run.Wait() == DWORD{1});
  }
}
