#include "ui/BrowseForDirectory.h"

#include "archive/TextNumber.h"
#include "ui/CenterDialog.h"
#include "ui/TextLookup.h"

#include <shlobj.h>

namespace korb {

namespace {

int CALLBACK BrowseProcedure(HWND dialog, UINT message, LPARAM, LPARAM path) {
  if (message == BFFM_INITIALIZED) {
    CenterDialog(dialog);
    SendMessageA(dialog, BFFM_SETSELECTIONA, TRUE, path);
  }
  return 0;
}

/// A list belongs to whoever was given it, but to the shell's own memory.
void Free(LPITEMIDLIST list) {
  IMalloc *memory;
  if (SHGetMalloc(&memory) != NOERROR)
    return;
  memory->Free(list);
  memory->Release();
}

bool Choose(BROWSEINFOA &browse, String &path) {
  char text[MAX_PATH];
  LPITEMIDLIST chosen = SHBrowseForFolderA(&browse);
  if (chosen == nullptr)
    return false;
  const bool has_path = SHGetPathFromIDListA(chosen, text) != FALSE;
  if (has_path)
    path = text;
  Free(chosen);
  return has_path;
}

} // namespace

bool BrowseForDirectory(HWND owner, String &path) {
  LPITEMIDLIST drives;
  if (SHGetSpecialFolderLocation(owner, CSIDL_DRIVES, &drives) != NOERROR)
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
