// Paths of the program and the machine that hold for the whole run.
#pragma once

#include "core/String.h"

namespace korb {

// Filled by InitPaths, at the entry of the program, and only read afterwards.
extern String WindowsDirectory;
extern String ProgramPath; ///< of the running executable, as the system has it
extern String ProgramName;
extern String ProgramDirectory;
extern char ProgramDrive;         ///< upper-case letter, 0 when there is none
extern String CommandInterpreter; ///< in quotes when it holds white space

/// Does its work once.
void InitPaths();

/// `name` in the directory of the program.
String ProgramRelative(const char *name);
/// NormalisePath against that directory.
bool NormaliseToProgram(String &path);

/// Replaces the environment's variables. False, and the text as it was, when it gets longer than
/// 31,999 characters.
bool ExpandEnvironment(String &text);
/// The path by its short names, where it has them; else the path. Empty for an empty one.
String ShortPath(const char *path);
/// Opens a document with the program that belongs to it; false when the system finds none.
bool ShellOpen(const char *path);

} // namespace korb
