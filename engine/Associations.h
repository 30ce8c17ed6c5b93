// What a product gets in the registry outside its own Uninstall key.
#pragma once

#include "archive/InstallConfig.h"
#include "engine/InstallNotes.h"

namespace korb {

/// Name of the value that keeps what an association has replaced: such values are never another product's.
String BackupValueName();

/// Makes the empty keys that the product fills itself, of the machine and of the user; nothing for an empty name.
/// `journal` tells when one can't be made.
void CreateProductKeys(const String &product_registry, Journal &journal);

/// Makes each association that holds for the language in force, and notes it in `association_lines`, whatever came of
/// it. One whose command could not be written is an error. Existing texts are backed up first. Extensions, classes and
/// commands are completed in place.
void RegisterAssociations(Vector<FileAssociation> &associations, InstallNotes &notes);

} // namespace korb
