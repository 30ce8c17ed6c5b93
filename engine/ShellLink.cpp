#include "engine/ShellLink.h"

#include "core/Windows.h"
#include "engine/ComSession.h"
#include "files/Directories.h"
#include "files/PathText.h"
#include "files/SystemFunction.h"

#include <shlobj.h>

namespace korb {

namespace {

bool SaveLink(IPersistFile &file, String &path) {
  EnsureLinkExtension(path);
  CreateDirectoryTree(DirectoryPart(path));
  WCHAR wide_path[MAX_PATH];
  if (MultiByteToWideChar(CP_ACP, 0, path, -1, wide_path, MAX_PATH) == 0)
    return false;
  return file.Save(wide_path, TRUE) == S_OK;
}

bool FillAndSave(IShellLinkA &link, String &path, const char *target, const char *arguments, const char *working_dir,
                 const char *icon) {
  link.SetPath(target);
  link.SetIconLocation(*icon ? icon : target, 0);
  if (*arguments)
    link.SetArguments(arguments);
  if (*working_dir)
    link.SetWorkingDirectory(working_dir);
  IPersistFile *file;
  if (FAILED(link.QueryInterface(IID_IPersistFile, reinterpret_cast<void **>(&file))))
    return false;
  const bool saved = SaveLink(*file, path);
  file->Release();
  return saved;
}

} // namespace

bool CreateShortcut(String &path, const char *target, const char *arguments, const char *working_dir,
                    const char *icon) {
  ComSession session;
  IShellLinkA *link = static_cast<IShellLinkA *>(session.Create(CLSID_ShellLink, IID_IShellLinkA));
  if (!link)
    return false;
  const bool made = FillAndSave(*link, path, target, arguments, working_dir, icon);
  link->Release();
  return made;
}

void TellShellOfFolder(const char *path) {
  const auto notify = KORB_SYSTEM_FUNCTION("shell32.dll", SHChangeNotify);
  if (notify)
    notify(SHCNE_UPDATEDIR, SHCNF_PATHA, path, nullptr);
}

} // namespace korb
