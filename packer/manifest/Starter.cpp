#include "packer/manifest/Starter.h"

#include <algorithm>
#include <array>
#include <vector>

#include "packer/FileIo.h"
#include "packer/Product.h"
#include "packer/VersionResource.h"
#include "packer/check/TextRules.h"
#include "packer/manifest/FileTree.h"

namespace korb::packer {

namespace fs = std::filesystem;

namespace {

constexpr char kHead[] = R"(# What the installer is made of. Build it with
#
#     korbpack build MANIFEST
#
# A line behind a # is switched off. The manual, docs/manifest.md, tells every key.

[product]
)";

constexpr char kSettings[] = R"(#publisher = "Who made it"
#signed = true                  # the finished installer is going to be signed

[install]
#directory = 'Thing'            # below Program Files; by default the product's name
#start_menu = 'Maker\Thing'     # by default the publisher and the product's name
#shortcuts = "all-users"        # by default those of the user who installs

[options]
replace_in_use = true           # a file in use is replaced at the next start
compare_versions = true         # tells before installing over an older or newer version
uninstall_start_menu = true     # shortcut to the uninstaller
#uninstall = false              # no uninstaller at all

[appearance]
#top_color = "#2A6FB0"          # the background by default, with a white title
#bottom_color = "#0B2545"
#background = "picture.bmp"

#[texts]
#language = "de"                # what the installer says is English otherwise

)";

constexpr char kMore[] =
    R"(# A file that goes to another place, has shortcuts or other wishes gets an entry of its own, and is then left out of
# the tree above:
#
#[[file]]
#source = "some.dll"
#kind = "system"                # program, shared, font, startup, system, system-com
#
#[[association]]
#extension = "thg"
#class = "Thing.Document"
#verb = "open"
#command = '"%InstallDir%\thing.exe" "%1"'
)";

std::string Quoted(const std::string &text) {
  std::string out = "\"";
  for (char c : text)
    out += c == '"' || c == '\\' ? std::string{'\\', c} : std::string(1, c);
  for (size_t at = 0; (at = out.find("${", at)) != out.npos; at += 3)
    out.insert(at, "$"); // else it would be a variable
  return out + "\"";
}

struct PageKind {
  const char *key;
  std::array<std::string_view, 3> words; // that a page's name begins with
};
constexpr PageKind kPageKinds[] = {{"license", {"license", "licence", "eula"}},
                                   {"readme", {"readme", "read me", "read_me"}}};

// Every text file at the top whose name says that it is a page.
std::string Pages(const std::vector<std::string> &files, const std::string &prefix) {
  std::string pages = "[pages]\n";
  for (const PageKind &kind : kPageKinds) {
    std::string list;
    for (const std::string &file : files) {
      const std::string lower = LowerCase(file);
      if (lower.ends_with(".txt") && std::any_of(kind.words.begin(), kind.words.end(),
                                                 [&](std::string_view word) { return lower.starts_with(word); }))
        list += (list.empty() ? "" : ", ") + ("{ file = " + Quoted(prefix + file) + " }");
    }
    const std::string key = kind.key;
    pages += list.empty() ? "#" + key + " = [{ file = \"" + key + ".txt\" }]\n" : key + " = [" + list + "]\n";
  }
  return pages + "\n";
}

// The folder's name, or, when that is one that folders of files have, the name of the folder with the manifest.
std::string ProductName(const fs::path &folder, const fs::path &home) {
  std::string name = ManifestPath(folder.filename());
  for (const char *usual : {"files", "bin", "build", "dist", "out", "output", "release"})
    if (LowerCase(name) == usual)
      return ManifestPath((folder == home ? home.parent_path() : home).filename());
  return name;
}

// Whether Windows can have a file of that name.
bool CanBeNamed(std::string file) {
  std::replace(file.begin(), file.end(), '/', '\\');
  return !HoldsIllegalCharacter(file) && !HasUnusablePart(file);
}

// A pattern that this file fits, and few others.
std::string AsPattern(std::string file) {
  for (char &c : file)
    c = c == '*' || static_cast<unsigned char>(c) < ' ' ? '?' : c;
  return file;
}

// A program at the top is what users start.
bool IsStarted(const std::string &file) {
  const std::string lower = LowerCase(file);
  return lower.ends_with(".exe") && lower.find('/') == lower.npos && !lower.ends_with("setup.exe") &&
         !lower.ends_with("uninstall.exe");
}

} // namespace

std::string StarterManifest(const fs::path &folder, const fs::path &manifest) {
  std::error_code error;
  if (!fs::is_directory(folder, error))
    throw PackError("'" + ShowPath(folder) + "' is no folder");
  const FileList list = ListFiles(folder, {}, {});
  if (!list.faults.empty())
    throw PackError("can't take '" + ShowPath(folder / PathFromUtf8(list.faults[0].path)) +
                    "': " + list.faults[0].reason);
  const std::vector<std::string> &files = list.files;
  if (files.empty())
    throw PackError("there is no file in '" + ShowPath(folder) + "'");

  const fs::path home = fs::weakly_canonical(fs::absolute(manifest)).parent_path();
  const fs::path top = fs::weakly_canonical(folder);
  const std::string source = ManifestPath(top.lexically_relative(home));
  const std::string prefix = source == "." ? std::string() : source + "/";
  std::string name = ProductName(top, home), version, programs, unnameable;
  std::replace(name.begin(), name.end(), '"', '\'');
  for (const std::string &file : files) {
    if (!CanBeNamed(file))
      unnameable += ", " + Quoted(AsPattern(file));
    if (!IsStarted(file) || !CanBeNamed(file))
      continue;
    if (version.empty())
      if (const auto bytes = ReadFileBytes(top / PathFromUtf8(file)))
        if (!FileVersionOf(*bytes).value_or("").empty())
          version = "{ file = " + Quoted(prefix + file) + " }";
    programs += "[[file]]\nsource = " + Quoted(prefix + file) +
                "\nstart_menu = true\n#desktop = true\nlabel = " + Quoted(file.substr(0, file.size() - 4)) + "\n\n";
  }

  const fs::path installer = fs::path(manifest.filename()).replace_extension(".exe");
  const bool inside = !ManifestPath(home.lexically_relative(top)).starts_with("..");
  const std::string where = ManifestPath(home.lexically_relative(top)) == "."
                                ? std::string()
                                : ManifestPath(home.lexically_relative(top)) + "/";
  std::string text = kHead;
  text.replace(text.find("MANIFEST"), 8, ManifestPath(manifest.filename()));
  text += "name = " + Quoted(name) + "\nversion = " + (version.empty() ? "\"1.0\"" : version) + "\n" + kSettings +
          Pages(files, prefix) + programs;
  text += "[[tree]]\nsource = " + Quoted(source) + "\n";
  std::string exclude =
      inside ? ", " + Quoted(where + ManifestPath(manifest.filename())) + ", " + Quoted(where + ManifestPath(installer))
             : std::string();
  exclude += unnameable; // which would be errors
  text += exclude.empty() ? "#exclude = [\"*.pdb\", \"old/**\"]\n" : "exclude = [" + exclude.substr(2) + "]\n";
  return text + "\n" + kMore;
}

} // namespace korb::packer
