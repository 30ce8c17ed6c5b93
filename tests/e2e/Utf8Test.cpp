// Names and texts in UTF-8, read back as the system has them, in UTF-16.
#include "tests/support/Desktop.h"
#include "tests/support/Doctest.h"
#include "tests/support/PackedProduct.h"
#include "tests/support/Uninstallation.h"

#include <shlobj.h>

using namespace korb::test;

namespace {

const std::wstring kHome = L"C:\\Ωμέγα 日本\\", kFonts = L"C:\\windows\\Fonts\\",
                   kMenu = L"C:\\users\\root\\AppData\\Roaming\\Microsoft\\Windows\\Start Menu\\Programs\\メニュー Ω\\",
                   kClass = L"Software\\Classes\\Ωμέγα.文書";

/// What the installation makes; a folder comes after what is in it.
const std::wstring kPlaces[] = {kHome + L"φάκελος\\ψηφίο-日本語.txt",
                                kHome + L"φάκελος",
                                kHome + L"🎁.exe",
                                kHome + L"Απεγκατάσταση 🎁.exe",
                                kHome + L"batch.txt",
                                kHome.substr(0, kHome.size() - 1),
                                kFonts + L"γραμματοσειρά-字.ttf",
                                kMenu + L"日本語 ショートカット 🎁.LNK",
                                kMenu + L"Απεγκατάσταση 削除 Ωμέγα 日本 🎁.LNK",
                                kMenu.substr(0, kMenu.size() - 1),
                                L"C:\\users\\root\\Desktop\\日本語 ショートカット 🎁.LNK"};

struct Setting {
  std::wstring key;
  const wchar_t *name, *text;
};
const std::wstring kUninstall = L"Software\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\Ωμέγα-日本";
const Setting kSettings[] = {
    {L"Software\\Classes\\.ωμγ日", L"", L"Ωμέγα.文書"},
    {kClass, L"", L"Έγγραφο 文書 🎁"},
    {kClass + L"\\shell\\open", L"", L"&Άνοιγμα 開く"},
    {kClass + L"\\shell\\open\\command", L"", L"\"C:\\Ωμέγα 日本\\🎁.exe\" \"%1\""},
    {kUninstall, L"DisplayName", L"Ωμέγα 日本 🎁"},
    {kUninstall, L"Σχόλιο", L"日本 🎁"},
    {kUninstall, L"ProductFonts", L"\"Korb Κύβοι 字 (TrueType)\" \"γραμματοσειρά-字.ttf\" "},
};

std::string Narrow(const std::wstring &text) {
  std::string narrow(text.size() * 3, '\0');
  narrow.resize(
      static_cast<size_t>(WideCharToMultiByte(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), narrow.data(),
                                              static_cast<int>(narrow.size()), nullptr, nullptr)));
  return narrow;
}

/// The name that the directory has for the last part of `path`; empty when there is none.
std::wstring NameOf(const std::wstring &path) {
  WIN32_FIND_DATAW found;
  const HANDLE search = FindFirstFileW(path.c_str(), &found);
  if (search == INVALID_HANDLE_VALUE)
    return L"";
  FindClose(search);
  return found.cFileName;
}

std::wstring MachineText(const Setting &setting) {
  wchar_t text[300] = L"";
  DWORD size = sizeof text - sizeof *text;
  HKEY key;
  if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, setting.key.c_str(), 0, KEY_READ, &key) != ERROR_SUCCESS)
    return L"no key";
  RegQueryValueExW(key, setting.name, nullptr, nullptr, reinterpret_cast<BYTE *>(text), &size);
  RegCloseKey(key);
  return text;
}

/// "target|arguments|working directory".
std::wstring LinkOf(const std::wstring &path) {
  CoInitialize(nullptr);
  wchar_t target[MAX_PATH] = L"", arguments[MAX_PATH] = L"", directory[MAX_PATH] = L"";
  IShellLinkW *link = nullptr;
  IPersistFile *file = nullptr;
  if (CoCreateInstance(CLSID_ShellLink, nullptr, CLSCTX_INPROC_SERVER, IID_IShellLinkW,
                       reinterpret_cast<void **>(&link)) == S_OK &&
      link->QueryInterface(IID_IPersistFile, reinterpret_cast<void **>(&file)) == S_OK &&
      file->Load(path.c_str(), STGM_READ) == S_OK) {
    link->GetPath(target, MAX_PATH, nullptr, SLGP_RAWPATH);
    link->GetArguments(arguments, MAX_PATH);
    link->GetWorkingDirectory(directory, MAX_PATH);
  }
  if (file)
    file->Release();
  if (link)
    link->Release();
  CoUninitialize();
  return std::wstring(target) + L"|" + arguments + L"|" + directory;
}

void CheckPlaces(bool installed) {
  for (const std::wstring &path : kPlaces) {
    CAPTURE(Narrow(path));
    CHECK(Narrow(NameOf(path)) == (installed ? Narrow(path.substr(path.rfind(L'\\') + 1)) : ""));
  }
  for (const Setting &setting : kSettings) {
    CAPTURE(Narrow(setting.key));
    CHECK(Narrow(MachineText(setting)) == (installed ? Narrow(setting.text) : "no key"));
  }
}

} // namespace

TEST_CASE("names in any script are the system's own, by hand, at an upgrade and at the end") {
  REQUIRE(GetACP() == CP_UTF8);
  PackedProduct product(ProductManifest("utf8"));
  product.Write("korb-blocks.ttf", FileBytes("korb-blocks.ttf"));
  product.Pack();
  Process installer = product.Start();
  const Window license = AnswerWindow("Άδεια χρήσης", "Συμφωνώ 同意");
  CHECK(license.title == "Άδεια 使用許諾 🎁");
  const Window directory = AnswerWindow("Επιλογή 選択", "OK");
  CHECK(directory.Text(1015) == "C:\\Ωμέγα 日本");
  CHECK(AnswerWindow("Εγκαταστάθηκε", "OK").Message() == "Εγκαταστάθηκε: Ωμέγα 日本 🎁 完了 🎁");
  REQUIRE(installer.Wait());
  CheckPlaces(true);
  CHECK(Narrow(LinkOf(kMenu + L"日本語 ショートカット 🎁.LNK")) ==
        "C:\\Ωμέγα 日本\\🎁.exe|\"Ω 日\" C:\\Ωμέγα 日本|C:\\Ωμέγα 日本");
  CHECK(Narrow(LinkOf(kMenu + L"Απεγκατάσταση 削除 Ωμέγα 日本 🎁.LNK")) ==
        "C:\\Ωμέγα 日本\\Απεγκατάσταση 🎁.exe|/u:\"Ωμέγα-日本\"|");
  UninstallQuietly("Ωμέγα-日本");
  CheckPlaces(false);

  product.Install();
  product.Install();
  CHECK(FileBytes("C:\\Ωμέγα 日本\\Install.LOG").find("Install type: Reinstall") != std::string::npos);
  Process uninstaller(UninstallValue("Ωμέγα-日本", "UninstallString"));
  AnswerWindow("Αφαίρεση Ωμέγα 日本 🎁; 削除しますか。", "Yes");
  AnswerWindow("has been removed", "OK");
  REQUIRE(uninstaller.Wait());
  REQUIRE(WaitForSelfRemoval());
  CheckPlaces(false);
}
