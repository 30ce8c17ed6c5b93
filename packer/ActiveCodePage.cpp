#include "packer/ActiveCodePage.h"

#include <algorithm>
#include <string_view>

#include "packer/PeResources.h"

namespace korb::packer {

namespace {

// As it stands in app/Program.manifest, in a comment.
constexpr std::string_view kSetting =
    "<activeCodePage xmlns=\"http://schemas.microsoft.com/SMI/2019/WindowsSettings\">UTF-8</activeCodePage>";
constexpr std::string_view kCommentBegin = "<!--", kCommentEnd = "-->";

std::string_view TextAt(const Bytes &file, size_t offset, size_t size) {
  return {reinterpret_cast<const char *>(file.data()) + offset, size};
}

// Where in the file the setting stands in an application manifest; 0 for nowhere.
size_t FindSetting(const Bytes &program) {
  for (const Resource &manifest : FindResources(program, kManifestResource))
    if (const size_t at = TextAt(program, manifest.offset, manifest.size).find(kSetting); at != std::string_view::npos)
      return manifest.offset + at;
  return 0;
}

// The manifest's text around the setting is part of the file, whatever the bytes are.
bool IsComment(const Bytes &program, size_t setting) {
  return setting >= kCommentBegin.size() &&
         TextAt(program, setting - kCommentBegin.size(), kCommentBegin.size()) == kCommentBegin;
}

} // namespace

bool AsksForUtf8(const Bytes &program) {
  const size_t setting = FindSetting(program);
  return setting != 0 && !IsComment(program, setting);
}

bool AskForUtf8(Bytes &program) {
  const size_t setting = FindSetting(program), end = setting + kSetting.size();
  if (setting == 0 || !IsComment(program, setting))
    return setting != 0;
  if (!TextAt(program, end, program.size() - end).starts_with(kCommentEnd))
    return false;
  std::fill_n(program.begin() + static_cast<ptrdiff_t>(setting - kCommentBegin.size()), kCommentBegin.size(), ' ');
  std::fill_n(program.begin() + static_cast<ptrdiff_t>(end), kCommentEnd.size(), ' ');
  return true;
}

} // namespace korb::packer
