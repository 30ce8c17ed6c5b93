// Directories that can't be written to, and a registry that can't.
#include <cstdlib>

#include "tests/e2e/Trouble.h"
#include "tests/support/Doctest.h"
#include "tests/support/Uninstallation.h"

using namespace korb::test;
using Kind = TroubledProduct::Kind;

namespace {

/// A security descriptor that gives everybody `rights` and nobody more.
class Rights {
public:
  explicit Rights(DWORD rights) {
    SID_IDENTIFIER_AUTHORITY world = SECURITY_WORLD_SID_AUTHORITY;
    PSID everybody;
    AllocateAndInitializeSid(&world, 1, 0, 0, 0, 0, 0, 0, 0, 0, &everybody);
    InitializeAcl(&list_, sizeof room_ + sizeof list_, ACL_REVISION);
    AddAccessAllowedAce(&list_, ACL_REVISION, rights, everybody);
    FreeSid(everybody);
    InitializeSecurityDescriptor(&descriptor_, SECURITY_DESCRIPTOR_REVISION);
    SetSecurityDescriptorDacl(&descriptor_, TRUE, &list_, FALSE);
  }
  operator SECURITY_DESCRIPTOR *() { return &descriptor_; }

private:
  SECURITY_DESCRIPTOR descriptor_;
  ACL list_;
  char room_[100];
};

/// Lets nobody write to a directory, if there is one.
std::shared_ptr<void> CloseDirectory(const std::string &path) {
  SetFileSecurityA(path.c_str(), DACL_SECURITY_INFORMATION, Rights(FILE_GENERIC_READ | FILE_GENERIC_EXECUTE));
  return {nullptr,
          [path](void *) { SetFileSecurityA(path.c_str(), DACL_SECURITY_INFORMATION, Rights(FILE_ALL_ACCESS)); }};
}

void SetKeyRights(const std::string &path, DWORD rights) {
  HKEY key;
  if (RegOpenKeyExA(HKEY_LOCAL_MACHINE, path.c_str(), 0, WRITE_DAC, &key))
    return;
  RegSetKeySecurity(key, DACL_SECURITY_INFORMATION, Rights(rights));
  RegCloseKey(key);
}

/// Lets everybody read a key and nobody write it. Where there is none, an empty one stands in its place meanwhile.
std::shared_ptr<void> CloseKey(const std::string &path) {
  HKEY key;
  DWORD made;
  RegCreateKeyExA(HKEY_LOCAL_MACHINE, path.c_str(), 0, nullptr, 0, KEY_READ, nullptr, &key, &made);
  RegCloseKey(key);
  SetKeyRights(path, KEY_READ | WRITE_DAC);
  return {nullptr, [path, made](void *) {
            SetKeyRights(path, KEY_ALL_ACCESS);
            if (made == REG_CREATED_NEW_KEY)
              RegDeleteKeyA(HKEY_LOCAL_MACHINE, path.c_str());
          }};
}

using Close = std::shared_ptr<void> (*)(const std::string &);

/// Each place by itself with KORB_SWEEP, and else all together.
void TryEach(Close close, const std::vector<Kind> &kinds, const std::vector<std::string> &places) {
  TroubledProduct product;
  std::vector<std::vector<std::string>> groups = {places};
  if (std::getenv("KORB_SWEEP"))
    for (groups.clear(); const std::string &place : places)
      groups.push_back({place});
  for (const std::vector<std::string> &group : groups)
    for (const Kind kind : kinds) {
      CAPTURE(group);
      CAPTURE(kind);
      const auto trouble = [&]() -> std::shared_ptr<void> {
        auto closed = std::make_shared<std::vector<std::shared_ptr<void>>>();
        for (const std::string &place : group)
          closed->push_back(close(place));
        return closed;
      };
      CHECK(product.Try(kind, trouble) == std::vector<std::string>());
      if (std::getenv("KORB_SWEEP"))
        MESSAGE((product.was_complete() ? "complete: " : "told: ") << product.told());
    }
}

} // namespace

// No uninstallation: there Wine tells that a file is deleted, and leaves it.
TEST_CASE("a directory that can't be written to is told, wherever a run writes") {
  TryEach(CloseDirectory, {Kind::Install, Kind::Upgrade},
          {"E:\\Trouble", "E:\\Trouble\\Program", "E:\\Trouble\\Program\\inner", "E:\\Trouble\\Program\\inner\\deep",
           "E:\\Trouble\\Program\\Undo", "E:\\Common", "E:\\Temp", "C:\\windows\\system32", "C:\\windows\\Fonts",
           "C:\\users\\Public\\Desktop", "C:\\ProgramData\\Microsoft\\Windows\\Start Menu\\Programs"});
}

TEST_CASE("a key that can't be written to is told, wherever a run writes") {
  TryEach(CloseKey, {Kind::Install, Kind::Upgrade, Kind::Uninstall},
          {kUninstallKey + "Trouble", "Software\\Microsoft\\Windows\\CurrentVersion\\SharedDLLs", "Software\\Trouble",
           "Software\\Classes\\.trouble", "Software\\Classes\\Trouble.Document"});
}
