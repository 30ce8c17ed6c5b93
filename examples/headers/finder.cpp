// finder NAME: the lines of the headers in which a name stands.
#include <cctype>
#include <cstdio>
#include <cstring>
#include <string>

#include "core/Windows.h"

namespace {

bool IsWordCharacter(char c) {
  return std::isalnum(static_cast<unsigned char>(c)) || c == '_';
}

bool HoldsWord(const char *line, const char *word) {
  const size_t length = std::strlen(word);
  for (const char *at = line; (at = std::strstr(at, word)) != nullptr; ++at)
    if ((at == line || !IsWordCharacter(at[-1])) && !IsWordCharacter(at[length]))
      return true;
  return false;
}

int SearchFile(const std::string &path, const char *name, const char *word) {
  std::FILE *file = std::fopen(path.c_str(), "r");
  if (!file)
    return 0;
  int found = 0;
  char line[4096];
  for (int number = 1; std::fgets(line, sizeof line, file); ++number)
    if (HoldsWord(line, word)) {
      std::printf("%s:%d: %s", name, number, line);
      ++found;
    }
  std::fclose(file);
  return found;
}

int SearchFolder(const std::string &folder, const char *word) {
  WIN32_FIND_DATAA entry;
  const HANDLE find = FindFirstFileA((folder + "\\*.h").c_str(), &entry);
  if (find == INVALID_HANDLE_VALUE)
    return 0;
  int found = 0;
  do
    found += SearchFile(folder + "\\" + entry.cFileName, entry.cFileName, word);
  while (FindNextFileA(find, &entry));
  FindClose(find);
  return found;
}

std::string OwnFolder() {
  char path[MAX_PATH];
  const std::string own(path, GetModuleFileNameA(nullptr, path, sizeof path));
  return own.substr(0, own.rfind('\\') + 1);
}

} // namespace

int main(int argc, char **argv) {
  if (argc != 2) {
    std::puts("finder NAME: prints the lines of the headers in which NAME stands.");
    return 2;
  }
  const std::string home = OwnFolder();
  std::FILE *settings = std::fopen((home + "settings\\folders.cfg").c_str(), "r");
  if (!settings) {
    std::puts("finder: settings\\folders.cfg is missing.");
    return 2;
  }
  int found = 0;
  char folder[MAX_PATH];
  while (std::fgets(folder, sizeof folder, settings)) {
    folder[std::strcspn(folder, "\r\n")] = '\0';
    found += SearchFolder(home + folder, argv[1]);
  }
  std::fclose(settings);
  return found > 0 ? 0 : 1;
}
