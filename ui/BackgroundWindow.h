// The window behind all others of a run: a picture, a gradient or a plain colour over the whole screen, with the
// product's title on it. Its colours are those of core/RunValues.h, taken as they are whenever it is painted.
#pragma once

#include "core/String.h"
#include "core/Windows.h"
#include "ui/DibImage.h"

namespace korb {

/// The title; it may have several lines. An uninstall run fills it before the window is made, an installation by
/// ShowMainTitle.
extern String MainTitle;
/// The picture, empty when there is none. Filled by the configuration, or, before the window is made, by the
/// uninstall run.
extern DibImage BackgroundImage;

/// Makes the window and shows it; the handle goes to MainWindow. Ends the process when that fails.
void CreateMainWindow(HINSTANCE instance, HWND parent);

/// Takes the title from the texts, in the language in force, and has the window painted anew.
void ShowMainTitle();

} // namespace korb
