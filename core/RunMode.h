// What kind of run this is: the few values that the lowest layers ask for.
#pragma once

namespace korb {

/// Names this program in the report of a registry key that can't be opened, which may come before any product is known.
inline constexpr char ApplicationName[] = "KORB Installer";

/// No question is asked that this guards. False at start; true by /a or by the archive's IF_AUTOMATIC (in an uninstall
/// run by IF_AUTOMATIC_UNINSTALL); false again when an installed product refuses to be installed over, which the user
/// must see.
inline bool AutomaticMode = false;

/// The run removes a product. Set by /u and never again.
inline bool UninstallMode = false;

} // namespace korb
