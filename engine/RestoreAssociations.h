// Giving file types back to whom they belonged.
#pragma once

#include "archive/InstallConfig.h"
#include "core/Vector.h"

namespace korb {

/// Undoes each association: what an installation kept in backup values is put back, and what it made goes. Extension,
/// class and verb of each are not blank.
void RestoreAssociations(const Vector<FileAssociation> &associations);

} // namespace korb
