// Taking a product's fonts off the system.
#pragma once

#include "core/String.h"
#include "registry/RegistryKey.h"

namespace korb {

/// Removes the fonts of ProductFonts as `fonts` holds it, and tells all windows. With IF_ASK_FONT_REMOVAL the user may
/// keep single ones. `product_key` is the open Uninstall key, whose value gets what was left unread, or goes: a font
/// that was kept is not asked for again.
void RemoveFonts(RegistryKey &product_key, String fonts);

} // namespace korb
