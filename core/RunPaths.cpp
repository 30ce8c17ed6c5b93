#include "core/RunPaths.h"

namespace korb {

String InstallDir;
String CommonDir;

} // namespace korb
