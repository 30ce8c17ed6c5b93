#include "packer/plan/TargetSystem.h"

#include <algorithm>

namespace korb::packer {

namespace {

constexpr TargetFolders k95{"C:\\WINDOWS",
                            "C:\\WINDOWS\\SYSTEM",
                            "C:\\WINDOWS\\Desktop",
                            nullptr,
                            "C:\\My Documents",
                            nullptr,
                            "C:\\WINDOWS\\Favorites",
                            nullptr,
                            "C:\\WINDOWS\\Start Menu",
                            nullptr,
                            "StartUp",
                            "C:\\WINDOWS\\TEMP"};
constexpr TargetFolders k98{"C:\\WINDOWS",
                            "C:\\WINDOWS\\SYSTEM",
                            "C:\\WINDOWS\\Desktop",
                            "C:\\WINDOWS\\All Users\\Desktop",
                            "C:\\My Documents",
                            nullptr,
                            "C:\\WINDOWS\\Favorites",
                            nullptr,
                            "C:\\WINDOWS\\Start Menu",
                            "C:\\WINDOWS\\All Users\\Start Menu",
                            "StartUp",
                            "C:\\WINDOWS\\TEMP"};
constexpr TargetFolders kNt4{"C:\\WINNT",
                             "C:\\WINNT\\System32",
                             "C:\\WINNT\\Profiles\\User\\Desktop",
                             "C:\\WINNT\\Profiles\\All Users\\Desktop",
                             "C:\\WINNT\\Profiles\\User\\Personal",
                             nullptr,
                             "C:\\WINNT\\Profiles\\User\\Favorites",
                             nullptr,
                             "C:\\WINNT\\Profiles\\User\\Start Menu",
                             "C:\\WINNT\\Profiles\\All Users\\Start Menu",
                             "Startup",
                             "C:\\TEMP"};
constexpr TargetFolders k2000{"C:\\WINNT",
                              "C:\\WINNT\\system32",
                              "C:\\Documents and Settings\\User\\Desktop",
                              "C:\\Documents and Settings\\All Users\\Desktop",
                              "C:\\Documents and Settings\\User\\My Documents",
                              "C:\\Documents and Settings\\All Users\\Documents",
                              "C:\\Documents and Settings\\User\\Favorites",
                              "C:\\Documents and Settings\\All Users\\Favorites",
                              "C:\\Documents and Settings\\User\\Start Menu",
                              "C:\\Documents and Settings\\All Users\\Start Menu",
                              "Startup",
                              "C:\\DOCUME~1\\User\\LOCALS~1\\Temp"};
constexpr TargetFolders kXp = [] {
  TargetFolders folders = k2000;
  folders.windows = "C:\\WINDOWS";
  folders.system = "C:\\WINDOWS\\system32";
  return folders;
}();
constexpr TargetFolders kVista{"C:\\Windows",
                               "C:\\Windows\\System32",
                               "C:\\Users\\User\\Desktop",
                               "C:\\Users\\Public\\Desktop",
                               "C:\\Users\\User\\Documents",
                               "C:\\Users\\Public\\Documents",
                               "C:\\Users\\User\\Favorites",
                               nullptr,
                               "C:\\Users\\User\\AppData\\Roaming\\Microsoft\\Windows\\Start Menu",
                               "C:\\ProgramData\\Microsoft\\Windows\\Start Menu",
                               "Startup",
                               "C:\\Users\\User\\AppData\\Local\\Temp"};

constexpr TargetSystem kSystems[] = {
    {"95", "Windows 95", 1, 4, 0, true, false, k95},         {"98", "Windows 98", 1, 4, 10, true, false, k98},
    {"me", "Windows Me", 1, 4, 90, true, false, k98},        {"nt4", "Windows NT 4.0", 2, 4, 0, true, false, kNt4},
    {"2000", "Windows 2000", 2, 5, 0, true, false, k2000},   {"xp", "Windows XP", 2, 5, 1, true, false, kXp},
    {"vista", "Windows Vista", 2, 6, 0, true, true, kVista}, {"7", "Windows 7", 2, 6, 1, true, true, kVista},
    {"8", "Windows 8", 2, 6, 2, true, true, kVista},         {"10", "Windows 10", 2, 10, 0, true, true, kVista},
    {"11", "Windows 11", 2, 10, 0, false, true, kVista},
};

} // namespace

std::span<const TargetSystem> TargetSystems() {
  return kSystems;
}

const TargetSystem *FindTargetSystem(std::string_view name) {
  const auto found = std::ranges::find(kSystems, name, &TargetSystem::name);
  return found == std::end(kSystems) ? nullptr : &*found;
}

} // namespace korb::packer
