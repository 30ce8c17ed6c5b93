#include "app/CommandLine.h"

#include "core/Failure.h"
#include "core/RunValues.h"
#include "files/PathText.h"

namespace korb {

namespace {

/// Cuts `prefix` off `atom` and gives the rest of it to `value`, without the quotes if it stands between two. False
/// when `atom` begins otherwise.
bool TakeValue(String &atom, const char *prefix, String &value) {
  if (!atom.remove_prefix(prefix))
    return false;
  value = atom;
  value.unquote('"');
  return true;
}

/// `atom` has lost its switch character. False when it is no option.
bool ApplyOption(String &atom, CommandLine &options) {
  if (atom.compare("A", false) == 0) {
    AutomaticMode = true;
    return true;
  }
  if (TakeValue(atom, "D:", InstallDir) || TakeValue(atom, "N:", ProductName))
    return true;
  // Any word with a U in front: whoever typed /uninstall must not get an installation.
  if (atom.remove_prefix("U")) {
    UninstallMode = true;
    TakeValue(atom, ":", options.uninstall_name);
    return true;
  }
  // A command line has quotes of its own, so this option is known by its opening one.
  if (atom.remove_prefix("R:\"")) {
    options.run_after = atom;
    options.run_after.remove_last_if('"');
    return true;
  }
  return atom.is_empty();
}

} // namespace

void ParseCommandLine(const char *text, CommandLine &options) {
  String rest(text);
  for (int32_t n = 0; n < kMaxAtoms && !rest.is_empty(); ++n) {
    String atom = rest.next_word();
    if (atom.is_empty())
      break;
    if (!atom.strip_switch_char())
      UsageError(str_format("Unexpected command line parameter:\n%s", atom));
    if (!ApplyOption(atom, options))
      UsageError(str_format("Illegal command line atom:\n%s", atom));
  }
  if (UninstallMode && options.uninstall_name.is_empty())
    UsageError("Product name required");
}

String OwnPath(const char *command_line) {
  String line(command_line);
  line.trim_left();
  String path;
  if (line.starts_with_char('"')) {
    path = line.take_quoted(0);
  } else {
    path = line;
    path.cut_after_char(' ');
  }
  AddDefaultExtension(path, "EXE");
  return path;
}

} // namespace korb
