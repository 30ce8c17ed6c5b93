#include "ui/TextLookup.h"

#include "core/RunValues.h"

namespace korb {

String OsNameInTexts;

void SubstituteNames(String &text) {
  // A name that holds its own placeholder would make the text longer at each lookup, until memory is used up.
  if (ProductName.find("<product>", 0, FIND_IGNORE_CASE) < 0)
    text.replace("<product>", ProductName, FIND_IGNORE_CASE);
  text.replace("<os>", OsNameInTexts, FIND_IGNORE_CASE);
}

const char *TextLookup(int32_t number) {
  Array<String> *languages = TextTable.element_or_null(number);
  String *text = languages ? languages->element_or_null(LanguageIndex) : nullptr;
  if (!text)
    return "";
  SubstituteNames(*text);
  return text->c_str();
}

} // namespace korb
