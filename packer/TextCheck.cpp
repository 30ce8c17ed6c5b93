#include <algorithm>
#include <set>

#include "packer/ProductCheck.h"
#include "packer/TextTests.h"
#include "packer/Texts.h"

namespace korb::packer {

namespace {

constexpr size_t kUninstallerTitle = 33, kNotice = 65, kCorrupt = 13;

std::string WithProductName(std::string text, const std::string &name) {
  constexpr std::string_view kPlaceholder = "<product>";
  for (size_t at = 0; (at = LowerCase(text).find(kPlaceholder, at)) != std::string::npos; at += name.size())
    text.replace(at, kPlaceholder.size(), name);
  return text;
}

// Whether a line of `text` begins with the mark that ends a saved text.
bool HasMarkedLine(const std::string &text) {
  return text.starts_with('~') || text.find("\n~") != text.npos || text.find("\r~") != text.npos;
}

void CheckLanguage(const Language &language, const Product &product, Findings &findings) {
  const auto text = [&](size_t number) {
    return number < language.texts.size() ? language.texts[number] : std::string();
  };
  const auto describe = [&](size_t number) {
    return "text " + std::to_string(number) +
           (number < kTexts.size() ? " (" + std::string(kTexts[number].name) + ")" : std::string()) + " of '" +
           language.name + "' ";
  };
  const auto place = [&](size_t number) {
    const Place said = product.PlaceOf("texts." + language.name + "." + std::to_string(number));
    return said.line ? said : language.place;
  };
  if (IsBlank(language.name))
    findings.Error(language.place, "a language needs a name");
  for (size_t number = 0; number < kTexts.size(); ++number)
    if (const std::string fault = FormatFault(text(number), kTexts[number].form); !fault.empty())
      findings.Error(place(number), describe(number) + "is wrong: " + fault);
  if (!IsBlank(text(kCorrupt)) && text(kCorrupt).find("%d") == std::string::npos)
    findings.Warn(place(kCorrupt), describe(kCorrupt) + "doesn't show the damage code: %d is missing");
  for (int number : kSavedTexts)
    if (HasMarkedLine(WithProductName(text(static_cast<size_t>(number)), product.name)))
      findings.Error(place(static_cast<size_t>(number)),
                     describe(static_cast<size_t>(number)) +
                         "has a line that begins with '~', which ends the text in the uninstaller's record");
  const uint64_t shortcuts = IF_UNINSTALL_START_MENU | IF_UNINSTALL_DESKTOP | IF_UNINSTALL_IN_FOLDER;
  const std::string title = WithProductName(text(kUninstallerTitle), product.name);
  if (product.Has(IF_UNINSTALL) && product.Has(shortcuts) && (IsBlank(title) || HoldsIllegalCharacter(title)))
    findings.Error(place(kUninstallerTitle), describe(kUninstallerTitle) + "can't be the name of a shortcut, and the "
                                                                           "uninstaller is to have one");
  if (product.Has(IF_NOTICE) && IsBlank(text(kNotice)))
    findings.Warn(place(kNotice), describe(kNotice) + "is blank, so no notice is shown");
}

} // namespace

void CheckTexts(const Product &product, Findings &findings) {
  if (product.languages.empty() || product.languages.size() > kMaxLanguages)
    findings.Error({}, "an installer has from 1 to 100 languages");
  std::set<std::string> names;
  for (const Language &language : product.languages) {
    CheckLanguage(language, product, findings);
    if (language.texts.size() > kMaxTexts)
      findings.Error(language.place, "an installer has no more than 10,000 texts");
    if (!names.insert(language.name).second)
      findings.Error(language.place, "there are two languages called '" + language.name + "'");
  }
}

} // namespace korb::packer
