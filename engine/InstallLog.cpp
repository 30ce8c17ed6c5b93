#include "engine/InstallLog.h"

#include "core/Clock.h"
#include "core/RunValues.h"
#include "engine/InstallLogBlock.h"
#include "engine/UninstallRecord.h"
#include "files/ProgramPaths.h"
#include "files/RunProcess.h"
#include "files/WholeFile.h"
#include "format/Texts.h"
#include "ui/Questions.h"
#include "ui/TextLookup.h"
#include "ui/WindowHandles.h"

namespace korb {

namespace {

/// True when the user wants to see the log.
bool OfferLog(const String &path) {
  return !AutomaticMode &&
         AskYesNo(str_format(TextLookup(kTextLogQuestion), path), kTextLogCaption, BoxIcon::Information);
}

void TellSuccess(String &report) {
  const char *caption = TextLookup(kTextInstalledCaption);
  if (!AutomaticMode && !HasInstallFlag(IF_NO_DONE_MESSAGE))
    MessageBoxA(DialogOwner(), TextLookup(kTextInstalled), caption, MB_OK | MB_ICONINFORMATION);
  report += caption;
  report += "\r\n\r\n";
}

void ShowLog(const String &path) {
  if (!ShellOpen(path))
    RunProcess(str_format("notepad.exe %s", path), RP_NONE, nullptr);
}

} // namespace

void WriteInstallLog(const InstallConfig &config, const InstallNotes &notes, bool is_reinstall, bool show_result) {
  const String path = InstallLogPath(notes.uninstall_dir);
  String report = notes.journal.error_report;
  const bool had_no_errors = report.is_empty();
  bool view_log = false;
  if (show_result && had_no_errors)
    TellSuccess(report);
  else if (show_result)
    view_log = OfferLog(path);
  if (!had_no_errors || HasInstallFlag(IF_ALWAYS_LOG))
    view_log =
        AppendToFile(path, InstallLogBlock(config.version, is_reinstall, report, notes.journal.log_text, Now())) &&
        view_log;
  if (view_log)
    ShowLog(path);
}

} // namespace korb
