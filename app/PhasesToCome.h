// The phases of a run that are not built yet. Each does nothing, in its right place in the sequence, and moves to its
// own folder when it is built.
#pragma once

namespace korb {

inline void ChooseLanguage() {}          // Not built yet: the language dialog.
inline void RefuseExpired() {}           // Not built yet: the last day of the installer.
inline void RefusePlatform() {}          // Not built yet: the systems that the archive excludes.
inline void RequireMasterProduct() {}    // Not built yet: the product that must be there.
inline void FindEarlierInstallation() {} // Not built yet: what the product's Uninstall key tells.
inline void ShowPages() {}               // Not built yet: licence and readme dialogs.
inline void DecideOnReinstall() {}       // Not built yet: the question before installing over an earlier installation.
inline void AskDirectory() {}            // Not built yet: the directory dialog.

} // namespace korb
