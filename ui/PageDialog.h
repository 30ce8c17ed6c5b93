// The pages that a user reads before an installation: licences, then notes.
#pragma once

#include "core/Array.h"
#include "core/String.h"

namespace korb {

/// Shows text 63 of the archive and then `pages`, to be accepted one by one. A page that is blank is passed over; in
/// the others the names of the product and of the system are put in. Ends the run when one is refused.
void ShowLicensePages(const Array<String> &pages);
/// The same with text 64, to be read.
void ShowReadmePages(const Array<String> &pages);

} // namespace korb
