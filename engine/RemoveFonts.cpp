#include "engine/RemoveFonts.h"

#include "core/RunValues.h"
#include "core/Windows.h"
#include "engine/SystemFonts.h"
#include "files/DeferredFiles.h"
#include "files/PathText.h"
#include "format/Record.h"
#include "format/Texts.h"
#include "system/SystemFolders.h"
#include "ui/Questions.h"

namespace korb {

namespace {

String TakeName(String &fonts) {
  fonts.trim_left();
  return fonts.take_quoted(0);
}

} // namespace

void RemoveFonts(RegistryKey &product_key, String fonts) {
  bool any_removed = false;
  do {
    const String title = TakeName(fonts);
    const String file = title.is_empty() ? title : TakeName(fonts);
    if (file.is_empty())
      break;
    if (!MayRemove(IF_ASK_FONT_REMOVAL, kTextFontQuestion, kTextFontCaption, title))
      continue;
    RemoveFontResourceA(file);
    DeleteOrSchedule(PathJoin(FontFolder(), FilePart(file))); // and never out of that folder
    any_removed = true;
  } while (!fonts.is_empty());
  product_key.WriteString(product_value::kProductFonts, fonts, RK_DELETE_EMPTY);
  if (any_removed)
    TellOfFonts();
}

} // namespace korb
