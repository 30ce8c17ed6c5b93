// What a refused call, or an end of the program, may leave, and why nothing is done about it. docs/faults.md tells it
// to people.
#pragma once

namespace korb::faults {

/// Each text is a pattern with '*' for anything.
struct Accepted {
  const char *when; ///< "after" the refused call's run, "again" after the run that repairs it, "end" after the removal
  const char *run;
  const char *call;
  const char *difference; ///< as Compare tells it
  const char *reason;
};

inline constexpr Accepted kAccepted[] = {
    {"*", "*", "*", "new value HKU*Console*", "the system's, for the first console of a batch"},
    {"*", "volumes", "*", "new file *\\Install.LOG", "it tells of the run before, and goes with the product"},

    // Shared files are counted before the product's key tells which, so a run that ends in between counts them once
    // more when it is made again, and they outlive the product.
    {"again", "*", "*", "other value *SharedDLLs|*", "counted twice"},
    {"end", "*", "*", "* value *SharedDLLs|*", "counted twice"},
    {"end", "*", "*", "new file C:\\Program Files\\Common Files\\Korb Examples*", "counted twice"},
    {"end", "*", "*", "new file *\\atlas_com.dll", "counted twice"},
    {"end", "*", "*", "new key HKLM\\Software\\Korb Examples\\Atlas registered", "counted twice, so not unregistered"},

    {"*", "*", "*", "dated file *", "a file that is whole, without its date or its attributes, which nobody reports"},

    // An uninstallation reports the files that it can't remove, and nothing else; with them, a second run is possible.
    {"*", "*", "RemoveDirectoryA", "new file *", "a directory stays, empty"},
    {"*", "volumes", "GetCurrentDirectoryA", "new file *", "the same"},
    {"*", "uninstall*", "Reg*", "* key HKLM\\Software\\Classes\\*",
     "a file type stays, or its earlier owner is not restored"},
    {"*", "uninstall*", "Reg*", "* value HKLM\\Software\\Classes\\*", "the same"},
    {"*", "uninstall*", "Reg*", "new key *\\Software\\Korb Examples*", "the product's own key stays"},
    {"*", "uninstall*", "RegQueryValueExA", "new *", "what a value tells that can't be read late in the run stays"},
    {"*", "uninstall*", "DeleteFileA", "new file *\\Uninstall.DAT", "the record of nothing"},
    {"*", "*", "DeleteFileA", "new file *\\KORBBAT.BAT", "a batch that has run"},
    {"*", "uninstall*", "DeleteFileA", "new file *\\atlas_com.dll", "a shared file that nobody counts any more"},
    {"*", "uninstall*", "DeleteFileA", "new file *\\Common Files\\*", "the same"},
    {"*", "uninstall*", "DeleteFileA", "new file *\\Fonts\\*", "a font that is unregistered"},
    {"*", "uninstall*", "LoadLibraryA", "new key *", "a server that can't be loaded is not unregistered"},
    {"*", "uninstall*", "GetProcAddress", "new key *", "the same"},
    {"after", "*", "Reg*", "gone key HKLM\\Software\\Classes\\*", "a file type without its icon or its label"},
    {"after", "*", "Reg*", "gone value HKLM\\Software\\Classes\\*", "the same"},
    {"*", "uninstall*", "GetShortPathNameA", "other file C:\\autoexec.bat", "the line is sought in its short form"},
    {"*", "uninstall*", "*", "new file *\\Undo", "the directory of what stays"},
    {"*", "uninstall*", "DllUnregisterServer", "new key *", "what a server's own code refuses is ignored"},
    {"*", "*", "DllRegisterServer", "gone key *", "the same"},
    {"end", "uninstall*", "*", "other file C:\\autoexec.bat", "a box asks the user to change it"},
    {"*", "*", "MessageBoxA", "*", "a question that can't be shown is a no, and the run stops there"},
    {"end", "uninstall*", "CreateProcessA", "new file *\\Remove Atlas.exe",
     "ended in front of the batch that removes it"},
    {"end", "uninstall*", "CreateProcessA", "new file C:\\delunins.bat", "the same"},
    {"end", "uninstall*", "*", "new file *\\Start Menu\\Programs\\Korb Examples",
     "ended between an inner directory and the one around it"},

    // Places that the system doesn't tell have others in their stead. A second run knows nothing of those.
    {"*", "*", "GetSystemDirectoryA", "* value *|SharedFiles", "the same directory in other letters"},
    {"*", "*", "Reg*", "other file *\\Uninstall.DAT", "the same"},
    {"*", "*", "Reg*", "other value *\\Uninstall\\*|InstallLocation", "the same"},
    {"*", "*", "Reg*", "other value *\\Uninstall\\*|DisplayIcon", "the same"},
    {"*", "*", "Reg*", "other value *\\Uninstall\\*UninstallString", "the same"},
    {"*", "*", "Reg*", "spoilt value *\\Uninstall\\*", "the same"},
    {"*", "*", "RegCreateKeyExA", "new file C:\\users\\root\\AppData\\Roaming\\Microsoft\\Windows\\Start Menu*",
     "the user's Start menu in place of everybody's; the log tells"},
    {"*", "*", "GetModuleFileNameA", "* value *|InstallSource", "where the installer was is for people"},
    {"*", "uninstall*", "*", "new file C:\\atlas-batches.txt",
     "a batch of an uninstallation that can't be started is its author's business, and there is no log"},
};

} // namespace korb::faults
