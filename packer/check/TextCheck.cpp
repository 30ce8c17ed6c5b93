#include "packer/check/TextCheck.h"

#include <algorithm>
#include <cstring>
#include <map>

#include "core/Text.h"
#include "format/Record.h"
#include "format/Texts.h"
#include "packer/check/TextRules.h"

namespace korb::packer {

namespace {

constexpr int64_t kWidest = 999; // characters of a conversion

// The kind of argument that a conversion takes, 0 for none that the program knows.
char ArgumentKind(char conversion) {
  if (conversion != 0 && std::strchr("diuxXo", conversion))
    return 'd';
  return conversion == 's' || conversion == 'c' ? conversion : '\0';
}

// How many arguments `text` shows as a format.
size_t ShownArguments(std::string_view text) {
  size_t shown = 0;
  for (size_t i = text.find('%'); i < text.size(); i = text.find('%', i + 1)) {
    if (i + 1 < text.size() && text[i + 1] == '%')
      ++i;
    else
      ++shown;
  }
  return shown;
}

// Whether a line of `text` begins with the mark that ends a saved text.
bool HasMarkedLine(const std::string &text) {
  return text.starts_with(kTextMark) || text.find(std::string{'\n', kTextMark}) != text.npos ||
         text.find(std::string{'\r', kTextMark}) != text.npos;
}

class LanguageChecker {
public:
  LanguageChecker(const Language &language, const Product &product, Findings &findings)
      : language_(language), product_(product), findings_(findings) {}

  void Check() {
    if (IsBlank(language_.name.c_str()))
      findings_.Error(language_.place, "a language needs a name");
    for (size_t number = 0; number < std::size(kTextRows); ++number)
      CheckFormat(number, kTextRows[number].form);
    for (const TextRow &row : kTextRows)
      if (row.saved)
        CheckSaved(static_cast<size_t>(row.number));
    CheckTextUninstallerTitle();
    if (product_.Has(IF_NOTICE) && IsBlank(Text(kTextNotice).c_str()))
      Warn(kTextNotice, Warning::kBlankNotice, "is blank, so no notice is shown");
  }

private:
  std::string Text(size_t number) const {
    return number < language_.texts.size() ? language_.texts[number] : std::string();
  }

  void Error(size_t number, const std::string &message) {
    findings_.Error(PlaceOf(number), Describe(number) + message);
  }
  void Warn(size_t number, Warning warning, const std::string &message) {
    findings_.Warn(PlaceOf(number), warning, Describe(number) + message);
  }

  std::string Describe(size_t number) const {
    return "text " + std::to_string(number) + " (" + kTextRows[number].name + ") of '" + language_.name + "' ";
  }

  Place PlaceOf(size_t number) const {
    const Place said = product_.PlaceOf("texts." + language_.name + "." + std::to_string(number));
    return said.line ? said : language_.place;
  }

  void CheckFormat(size_t number, std::string_view form) {
    const std::string text = Text(number), fault = FormatFault(text, form);
    if (!fault.empty())
      return Error(number, "is wrong: " + fault);
    // The program puts the name in before it takes the text for a format.
    if (const std::string named = FormatFault(WithProductName(text, product_.name), form); !named.empty())
      return Error(number, "is wrong with the product's name in it: " + named);
    std::string wanted;
    for (char kind : form == "-" ? std::string_view() : form)
      wanted += std::string(" %") + kind;
    if (!IsBlank(text.c_str()) && !wanted.empty() && ShownArguments(text) < form.size())
      Warn(number, Warning::kUnshownArgument, "doesn't show all that it is given, which is" + wanted);
  }

  void CheckSaved(size_t number) {
    const std::string text = WithProductName(Text(number), product_.name);
    if (HasMarkedLine(text))
      Error(number, "has a line that begins with '~', which ends the text in the uninstaller's record");
    if (ContainsNoCase(text, kAssociationsHeading))
      Error(number, "holds \"[Associations]\", which ends the texts in the uninstaller's record");
  }

  void CheckTextUninstallerTitle() {
    const uint64_t shortcuts = IF_UNINSTALL_START_MENU | IF_UNINSTALL_DESKTOP | IF_UNINSTALL_IN_FOLDER;
    if (!product_.Has(IF_UNINSTALL) || !product_.Has(shortcuts))
      return;
    const std::string title = WithProductName(Text(kTextUninstallerTitle), product_.name);
    if (IsBlank(title.c_str()) || HoldsIllegalCharacter(title) || HoldsRecordMarker(title))
      Error(kTextUninstallerTitle, "can't be the name of a shortcut, and the uninstaller is to have one");
  }

  const Language &language_;
  const Product &product_;
  Findings &findings_;
};

} // namespace

std::string FormatFault(std::string_view text, std::string_view form) {
  if (form.empty())
    return {};
  const std::string_view wanted = form == "-" ? std::string_view() : form;
  size_t used = 0;
  for (size_t i = text.find('%'); i < text.size(); i = text.find('%', i + 1)) {
    const size_t begin = i++;
    i = std::min(text.find_first_not_of("-+ #0123456789.hlIL", i), text.size());
    if (i < text.size() && text[i] == '%' && i == begin + 1)
      continue;
    const std::string conversion(text.substr(begin, i - begin + 1));
    if (HoldsHugeNumber(conversion, kWidest))
      return "'" + conversion + "' makes it wider than any screen";
    const char kind = i < text.size() ? ArgumentKind(text[i]) : '\0';
    if (kind == '\0')
      return "'" + conversion + "' is no conversion; a percent sign is written as %%";
    if (used == wanted.size())
      return "'" + conversion + "' has no argument: " +
             (wanted.empty() ? "this text has none" : "there are only " + std::to_string(wanted.size()));
    if (kind != wanted[used])
      return "'" + conversion + "' is of the wrong kind: %" + wanted[used] + " belongs there";
    ++used;
  }
  return {};
}

void CheckTexts(const Product &product, Findings &findings) {
  if (product.languages.empty() || product.languages.size() > kMaxLanguages)
    findings.Error({}, "an installer has from 1 to 100 languages");
  std::map<std::string, Place> names;
  for (const Language &language : product.languages) {
    LanguageChecker(language, product, findings).Check();
    if (language.texts.size() > kMaxTexts)
      findings.Error(language.place, "an installer has no more than 10,000 texts");
    if (const auto [before, is_new] = names.emplace(language.name, language.place); !is_new)
      findings.Error(language.place, "there are two languages called '" + language.name + "'",
                     {{before->second, "the other one is here"}});
  }
}

} // namespace korb::packer
