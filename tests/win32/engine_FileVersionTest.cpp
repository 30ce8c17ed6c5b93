#include "core/Windows.h"
#include "engine/FileVersion.h"
#include "packer/FileIo.h"
#include "packer/VersionResource.h"
#include "tests/support/TempFolder.h"
#include "tests/support/TestInstaller.h"
#include "tests/support/Testing.h"

namespace {

/// A node of a version resource: length, length of the value and kind, in words, then the key, the value and the nodes
/// below it, each at a multiple of 4 bytes.
std::wstring Node(const std::wstring &key, const std::wstring &value, const std::wstring &below) {
  std::wstring node = {0, static_cast<wchar_t>(value.size()), 1};
  node += key + L'\0';
  for (const std::wstring &part : {value, below}) {
    node.resize((node.size() + 1) / 2 * 2);
    node += part;
  }
  node.resize((node.size() + 1) / 2 * 2);
  node[0] = static_cast<wchar_t>(node.size() * sizeof(wchar_t));
  return node;
}

/// A program whose texts in `language`, which is a language and a code page, hold `name` with `value`.
String VersionedFile(const TempFolder &folder, const wchar_t *language, const wchar_t *name, const wchar_t *value) {
  const Bytes stub = TestStub();
  const std::string path = folder.Write("a.dll", std::string(stub.begin(), stub.end())).string();
  std::wstring version =
      Node(L"VS_VERSION_INFO", L"",
           Node(L"StringFileInfo", L"", Node(language, L"", Node(name, value + std::wstring(1, 0), L""))));
  const HANDLE update = BeginUpdateResourceA(path.c_str(), FALSE);
  REQUIRE(UpdateResourceA(update, RT_VERSION, MAKEINTRESOURCEA(1), 0, version.data(),
                          static_cast<DWORD>(version.size() * sizeof(wchar_t))));
  REQUIRE(EndUpdateResourceA(update, FALSE));
  return path.c_str();
}

} // namespace

TEST_CASE("a file's version is its text in US English and the Windows code page") {
  TempFolder folder;
  const String file = VersionedFile(folder, L"040904E4", L"FileVersion", L"1.20.3b");
  CHECK(ReadFileVersion(file, false) == "1.20.3b");
  CHECK(ReadFileVersion(file, true) == "0000000001.0000000020.000000003B");
  CHECK(ReadFileVersion(VersionedFile(folder, L"040904B0", L"FileVersion", L"1"), true).is_empty());
  CHECK(ReadFileVersion(VersionedFile(folder, L"040904E4", L"ProductVersion", L"1"), true).is_empty());
  CHECK(ReadFileVersion((folder.Path() / "none").string().c_str(), true).is_empty());
}

TEST_CASE("the packer finds the same version, and another one where there is no such text") {
  TempFolder folder;
  const auto packed = [&](const wchar_t *language, const wchar_t *name) {
    const String file = VersionedFile(folder, language, name, L"1.20.3b");
    return packer::FileVersionOf(packer::ReadFileBytes(file.c_str()).value()).value_or("none");
  };
  CHECK(packed(L"040904e4", L"FileVersion") == "1.20.3b");
  CHECK(packed(L"040704B0", L"FileVersion") == "1.20.3b");
  CHECK(packed(L"040904E4", L"ProductVersion") == "none");
  packer::Bytes whole = packer::ReadFileBytes(VersionedFile(folder, L"040904E4", L"FileVersion", L"7").c_str()).value();
  for (; !whole.empty(); whole.pop_back()) // none of the rests reads past its end
    packer::FileVersionOf(whole);
}
