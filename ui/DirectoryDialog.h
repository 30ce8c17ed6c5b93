// The choice of the directory that the product goes to.
#pragma once

namespace korb {

/// Shows InstallDir to be changed, by typing or by browsing, and takes over whatever stands there in the end. False,
/// and InstallDir as it was, when the user declines.
bool ChooseDirectory();

} // namespace korb
