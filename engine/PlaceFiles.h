// Installs the files of the payload: asks Placement.h about each, and has PlaceFile.h write it.
#pragma once

#include "archive/ArchiveCursor.h"
#include "core/Vector.h"
#include "engine/InstallNotes.h"

namespace korb {

/// Walks the payload at `cursor`, one record for each of `sizes`, from the first to the last, and puts each file where
/// it belongs. Fills the lists of `notes`, which are empty before. What fails on the machine is an error, and the walk
/// goes on; damage is reported and ends the run (codes 70 to 72, 100, 110).
///
/// Moves the progress from 45 to 87 percent, shows the line of each file, and tells all windows of new fonts.
void PlaceFiles(ArchiveCursor &cursor, const Vector<int32_t> &sizes, InstallNotes &notes);

} // namespace korb
