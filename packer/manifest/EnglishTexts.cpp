#include "packer/manifest/EnglishTexts.h"

#include <iterator>

#include "format/Texts.h"

namespace korb::packer {

namespace {

const char *const kEnglish[] = {
    /* main_title */ "<product>",
    /* notice_caption */ "<product>",
    /* reinstall_caption */ "<product> Setup",
    /* reinstall_installed */ "<product> is already installed in",
    /* reinstall_same */ "This version of <product> is already installed in",
    /* reinstall_older */ "An older version of <product> is installed in",
    /* reinstall_newer */ "A newer version of <product> is installed in",
    /* reinstall_question */ "Do you want to install over it?",
    /* step_payload */ "Preparing the installation...",
    /* reinstall_refused */ "<product> is already installed.\n\nUninstall it before you install it again.",
    /* uninstall_incomplete */ "Some parts of <product> could not be removed:\n\n%s",
    /* directory_prompt */ "Choose the directory in which <product> will be installed.",
    /* master_missing */ "<product> can only be installed where %s is installed.",
    /* corrupt */
    ("This installation program is damaged, and the installation cannot proceed.  The usual cause is a faulty "
     "download.\n\nDelete the file and download it again.  If that does not help, check your system for "
     "viruses.\n\nError code: %d"),
    /* directory_illegal */ "Enter a full path, such as C:\\Programs.\n\nThis is not a valid directory name:",
    /* uninstalled_caption */ "Uninstall <product>",
    /* drive_missing */ "There is no drive %c:",
    /* directory_short */ "<product> cannot be installed in the root of a drive.  Choose a directory.",
    /* directory_program_files */
    "<product> needs a directory of its own.  Choose one below %s, not that directory itself.",
    /* disk_space */
    ("The installation needs more than %s of free space.  Drive %c: has %s.\n\nDo you want to install there all the "
     "same?"),
    /* product_caption */ "<product>",
    /* error_caption */ "Error",
    /* directory_exists */ "The directory %s exists already.\n\nDo you want to install <product> there?",
    /* directory_missing */ "The directory %s does not exist.\n\nDo you want it to be created?",
    /* directory_caption */ "Installation Directory",
    /* directory_failed */ "This directory could not be created:",
    /* volume_prompt */ "Please insert disk %d of <product> into drive %c:",
    /* volume_caption */ "Next Disk",
    /* cancel_question */
    "The installation is not finished.  What has been installed so far stays where it is.\n\nDo you want to cancel?",
    /* step_unpack */ "Unpacking...",
    /* volume_wrong */ "The disk cannot be read, or it is not the right one.",
    /* file_failed */ "Unable to install:",
    /* step_shortcuts */ "Creating shortcuts...",
    /* uninstaller_title */ "Uninstall <product>",
    /* uninstalled */ "<product> has been removed.",
    /* shared_caption */ "Shared File",
    /* step_record */ "Finishing the installation...",
    /* reboot_question */
    "The installation will be complete when the system has been restarted.\n\nDo you want to restart it now?",
    /* shortcut_title */ "Shortcut to %s",
    /* install_label */ "Installing <product>",
    /* log_question */
    "Some parts of <product> could not be installed.  The log tells which:\n%s\n\nDo you want to read it now?",
    /* log_caption */ "<product> Setup",
    /* installed */ "<product> has been installed.",
    /* installed_caption */ "Installation complete",
    /* license_title */ "License Agreement",
    /* license_accept */ "I &accept the license agreement",
    /* license_refuse */ "I do &not accept it",
    /* license_prompt */ "Please read the following license agreement.",
    /* ok_button */ "OK",
    /* cancel_button */ "Cancel",
    /* readme_title */ "Please Read",
    /* readme_prompt */ "Please read the following information.",
    /* browse_button */ "&Browse...",
    /* uninstall_question */ "Do you want to remove <product> from your system?",
    /* install_title */ "<product> Setup",
    /* uninstall_title */ "Uninstall <product>",
    /* font_question */ "Do you want to remove the font %s?\n\nOther programs may be using it.",
    /* font_caption */ "Remove Font",
    /* remove_failed */ "Unable to remove:",
    /* shared_question */
    "No installed product seems to need this shared file any more:\n%s\n\nDo you want to remove it?",
    /* expired */ "This installer of <product> has expired.",
    /* platform_refused */ "<product> does not run on %s.",
    /* step_verify */ "Verifying the files...",
    /* first_license_page */ "",
    /* first_readme_page */ "",
    /* notice */ "",
    /* directory_network */ "<product> cannot be installed in a network directory.",
    /* step_fonts */ "Removing fonts...",
    /* step_shared_files */ "Removing shared files...",
    /* step_registry */ "Removing registry entries...",
    /* step_associations */ "Removing file associations...",
    /* uninstall_label */ "Removing <product>",
};
static_assert(std::size(kEnglish) == kTextCount);

} // namespace

std::vector<std::string> EnglishTexts() {
  return {std::begin(kEnglish), std::end(kEnglish)};
}

} // namespace korb::packer
