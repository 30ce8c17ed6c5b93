#include "ui/BrowseForDirectory.h"

#include "files/SystemFunction.h"
#include "format/Texts.h"
#include "ui/Dialogs.h"
#include "ui/TextLookup.h"

#include <shlobj.h>

namespace korb {

namespace {

constexpr const char *kShell = "shell32.dll";

int CALLBACK BrowseProcedure(HWND dialog, UINT message, LPARAM, LPARAM path) {
  if (message == BFFM_INITIALIZED) {
    CenterDialog(dialog);
    SendMessageA(dialog, BFFM_SETSELECTIONA, TRUE, path);
  }
  return 0;
}

/// A list belongs to whoever was given it, but to the shell's own memory.
void Free(LPITEMIDLIST list) {
  const auto shell_memory = KORB_SYSTEM_FUNCTION(kShell, SHGetMalloc);
  IMalloc *memory;
  if (!shell_memory || shell_memory(&memory) != NOERROR)
    return;
  memory->Free(list);
  memory->Release();
}

bool Choose(BROWSEINFOA &browse, String &path) {
  char text[MAX_PATH];
  const auto ask = KORB_SYSTEM_FUNCTION(kShell, SHBrowseForFolderA);
  const auto path_of = KORB_SYSTEM_FUNCTION(kShell, SHGetPathFromIDListA);
  if (!ask || !path_of)
    return false;
  LPITEMIDLIST chosen = ask(&browse);
  if (!chosen)
    return false;
  const bool has_path = path_of(chosen, text) != FALSE;
  if (has_path)
    path = text;
  Free(chosen);
  return has_path;
}

} // namespace

bool BrowseForDirectory(HWND owner, String &path) {
  const auto folder = KORB_SYSTEM_FUNCTION(kShell, SHGetSpecialFolderLocation);
  LPITEMIDLIST drives;
  if (!folder || folder(owner, CSIDL_DRIVES, &drives) != NOERROR)
    return false;
  BROWSEINFOA browse{};
  browse.hwndOwner = owner;
  browse.pidlRoot = drives;
  browse.lpszTitle = TextLookup(kTextDirectoryPrompt);
  browse.ulFlags = BIF_RETURNONLYFSDIRS;
  browse.lpfn = BrowseProcedure;
  browse.lParam = reinterpret_cast<LPARAM>(path.c_str());
  const bool chosen = Choose(browse, path);
  Free(drives);
  return chosen;
}

} // namespace korb
