#include "packer/Texts.h"

#include <algorithm>
#include <cstring>

namespace korb::packer {

const std::array<TextInfo, 72> kTexts = {{
    /* 0 */ {"main_title", "", "<product>"},
    /* 1 */ {"notice_caption", "", "<product>"},
    /* 2 */ {"reinstall_caption", "", "<product> Setup"},
    /* 3 */ {"reinstall_installed", "", "<product> is already installed in"},
    /* 4 */ {"reinstall_same", "", "This version of <product> is already installed in"},
    /* 5 */ {"reinstall_older", "", "An older version of <product> is installed in"},
    /* 6 */ {"reinstall_newer", "", "A newer version of <product> is installed in"},
    /* 7 */ {"reinstall_question", "", "Do you want to install over it?"},
    /* 8 */ {"step_payload", "-", "Preparing the installation..."},
    /* 9 */ {"reinstall_refused", "", "<product> is already installed.\n\nUninstall it before you install it again."},
    /* 10 */ {"uninstall_incomplete", "s", "Some parts of <product> could not be removed:\n\n%s"},
    /* 11 */ {"directory_prompt", "", "Choose the directory in which <product> will be installed."},
    /* 12 */ {"master_missing", "s", "<product> can only be installed where %s is installed."},
    /* 13 */
    {"corrupt", "d",
     "This installation program is damaged, and the installation cannot proceed.  The usual cause is a faulty "
     "download.\n\nDelete the file and download it again.  If that does not help, check your system for "
     "viruses.\n\nError code: %d"},
    /* 14 */
    {"directory_illegal", "", "Enter a full path, such as C:\\Programs.\n\nThis is not a valid directory name:"},
    /* 15 */ {"uninstalled_caption", "", "Uninstall <product>"},
    /* 16 */ {"drive_missing", "c", "There is no drive %c:"},
    /* 17 */ {"directory_short", "", "<product> cannot be installed in the root of a drive.  Choose a directory."},
    /* 18 */
    {"directory_program_files", "s",
     "<product> needs a directory of its own.  Choose one below %s, not that directory itself."},
    /* 19 */
    {"disk_space", "scs",
     "The installation needs more than %s of free space.  Drive %c: has %s.\n\nDo you want to install there all the "
     "same?"},
    /* 20 */ {"product_caption", "", "<product>"},
    /* 21 */ {"error_caption", "", "Error"},
    /* 22 */ {"directory_exists", "s", "The directory %s exists already.\n\nDo you want to install <product> there?"},
    /* 23 */ {"directory_missing", "s", "The directory %s does not exist.\n\nDo you want it to be created?"},
    /* 24 */ {"directory_caption", "", "Installation Directory"},
    /* 25 */ {"directory_failed", "", "This directory could not be created:"},
    /* 26 */ {"volume_prompt", "dc", "Please insert disk %d of <product> into drive %c:"},
    /* 27 */ {"volume_caption", "", "Next Disk"},
    /* 28 */
    {"cancel_question", "",
     "The installation is not finished.  What has been installed so far stays where it is.\n\nDo you want to cancel?"},
    /* 29 */ {"step_unpack", "-", "Unpacking..."},
    /* 30 */ {"volume_wrong", "", "The disk cannot be read, or it is not the right one."},
    /* 31 */ {"file_failed", "", "Unable to install:"},
    /* 32 */ {"step_shortcuts", "-", "Creating shortcuts..."},
    /* 33 */ {"uninstaller_title", "", "Uninstall <product>"},
    /* 34 */ {"uninstalled", "", "<product> has been removed."},
    /* 35 */ {"shared_caption", "", "Shared File"},
    /* 36 */ {"step_record", "-", "Finishing the installation..."},
    /* 37 */
    {"reboot_question", "",
     "The installation will be complete when the system has been restarted.\n\nDo you want to restart it now?"},
    /* 38 */ {"shortcut_title", "s", "Shortcut to %s"},
    /* 39 */ {"install_label", "", "Installing <product>"},
    /* 40 */
    {"log_question", "s",
     "Some parts of <product> could not be installed.  The log tells which:\n%s\n\nDo you want to read it now?"},
    /* 41 */ {"log_caption", "", "<product> Setup"},
    /* 42 */ {"installed", "", "<product> has been installed."},
    /* 43 */ {"installed_caption", "", "Installation complete"},
    /* 44 */ {"license_title", "", "License Agreement"},
    /* 45 */ {"license_accept", "", "I &accept the license agreement"},
    /* 46 */ {"license_refuse", "", "I do &not accept it"},
    /* 47 */ {"license_prompt", "", "Please read the following license agreement."},
    /* 48 */ {"ok_button", "", "OK"},
    /* 49 */ {"cancel_button", "", "Cancel"},
    /* 50 */ {"readme_title", "", "Please Read"},
    /* 51 */ {"readme_prompt", "", "Please read the following information."},
    /* 52 */ {"browse_button", "", "&Browse..."},
    /* 53 */ {"uninstall_question", "", "Do you want to remove <product> from your system?"},
    /* 54 */ {"install_title", "", "<product> Setup"},
    /* 55 */ {"uninstall_title", "", "Uninstall <product>"},
    /* 56 */ {"font_question", "s", "Do you want to remove the font %s?\n\nOther programs may be using it."},
    /* 57 */ {"font_caption", "", "Remove Font"},
    /* 58 */ {"remove_failed", "", "Unable to remove:"},
    /* 59 */
    {"shared_question", "s",
     "No installed product seems to need this shared file any more:\n%s\n\nDo you want to remove it?"},
    /* 60 */ {"expired", "", "This installer of <product> has expired."},
    /* 61 */ {"platform_refused", "s", "<product> does not run on %s."},
    /* 62 */ {"step_verify", "-", "Verifying the files..."},
    /* 63 */ {"first_license_page", "", ""},
    /* 64 */ {"first_readme_page", "", ""},
    /* 65 */ {"notice", "", ""},
    /* 66 */ {"directory_network", "", "<product> cannot be installed in a network directory."},
    /* 67 */ {"step_fonts", "-", "Removing fonts..."},
    /* 68 */ {"step_shared_files", "-", "Removing shared files..."},
    /* 69 */ {"step_registry", "-", "Removing registry entries..."},
    /* 70 */ {"step_associations", "-", "Removing file associations..."},
    /* 71 */ {"uninstall_label", "", "Removing <product>"},
}};

const std::array<int, 19> kSavedTexts = {10, 15, 20, 30, 34, 35, 39, 49, 53, 55, 56, 57, 58, 59, 67, 68, 69, 70, 71};

std::vector<std::string> EnglishTexts() {
  std::vector<std::string> texts;
  for (const TextInfo &text : kTexts)
    texts.emplace_back(text.english);
  return texts;
}

namespace {

// The kind of argument that a conversion takes, 0 for none that the program knows.
char ArgumentKind(char conversion) {
  if (conversion != 0 && std::strchr("diuxXo", conversion))
    return 'd';
  return conversion == 's' || conversion == 'c' ? conversion : '\0';
}

} // namespace

size_t ShownArguments(std::string_view text) {
  size_t shown = 0;
  for (size_t i = text.find('%'); i < text.size(); i = text.find('%', i + 1)) {
    if (i + 1 < text.size() && text[i + 1] == '%')
      ++i;
    else
      ++shown;
  }
  return shown;
}

std::string FormatFault(std::string_view text, std::string_view form) {
  if (form.empty())
    return {};
  const std::string_view wanted = form == "-" ? std::string_view() : form;
  size_t used = 0;
  for (size_t i = text.find('%'); i < text.size(); i = text.find('%', i + 1)) {
    const size_t begin = i++;
    i = std::min(text.find_first_not_of("-+ #0123456789.hlIL", i), text.size());
    if (i < text.size() && text[i] == '%' && i == begin + 1)
      continue;
    const std::string conversion(text.substr(begin, i - begin + 1));
    const char kind = i < text.size() ? ArgumentKind(text[i]) : '\0';
    if (kind == '\0')
      return "'" + conversion + "' is no conversion; a percent sign is written as %%";
    if (used == wanted.size())
      return "'" + conversion + "' has no argument: " +
             (wanted.empty() ? "this text has none" : "there are only " + std::to_string(wanted.size()));
    if (kind != wanted[used])
      return "'" + conversion + "' is of the wrong kind: %" + wanted[used] + " belongs there";
    ++used;
  }
  return {};
}

} // namespace korb::packer
