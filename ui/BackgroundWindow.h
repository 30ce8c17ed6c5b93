// The window behind all others of a run: a picture, a gradient or a plain colour over the whole screen, with the
// product's title on it.
#pragma once

#include "core/String.h"
#include "core/Windows.h"
#include "ui/DibImage.h"

namespace korb {

struct Looks;

/// The title; it may have several lines. An uninstall run fills it before the window is made, an installation by
/// ShowMainTitle.
extern String MainTitle;
/// The picture, empty when there is none. Filled by the configuration, or, before the window is made, by the
/// uninstall run.
extern DibImage BackgroundImage;

/// The system's own window colours, for what an archive leaves open.
Looks SystemLooks();

/// Makes the window and shows it; the handle goes to MainWindow. `looks` stays the caller's as long as the window
/// lives, and is taken as it is whenever the window is painted. Ends the process when the window can't be made.
void CreateMainWindow(HINSTANCE instance, HWND parent, const Looks &looks);

/// Takes the title from the texts, in the language in force, and has the window painted anew.
void ShowMainTitle();

} // namespace korb
