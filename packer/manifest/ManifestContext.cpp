#include "packer/manifest/ManifestContext.h"

#include <algorithm>
#include <chrono>
#include <iterator>

#include "format/Archive.h"
#include "packer/CodePage.h"
#include "packer/FileIo.h"
#include "packer/VersionResource.h"
#include "packer/check/TextRules.h"
#include "packer/write/Installer.h"

namespace korb::packer {

namespace fs = std::filesystem;

namespace {

FileTime FromSeconds(int64_t seconds) {
  using namespace std::chrono;
  const sys_seconds time{std::chrono::seconds(seconds)};
  const year_month_day day(floor<days>(time));
  const hh_mm_ss clock(time - floor<days>(time));
  return {static_cast<int32_t>(day.year()),
          static_cast<int32_t>(static_cast<unsigned>(day.month())),
          static_cast<int32_t>(static_cast<unsigned>(day.day())),
          static_cast<int32_t>(clock.hours().count()),
          static_cast<int32_t>(clock.minutes().count()),
          static_cast<int32_t>(clock.seconds().count())};
}

// `text` without what would be a fault of its own, or break the line of a message.
std::string Printable(std::string text) {
  for (char &c : text)
    c = static_cast<unsigned char>(c) < ' ' ? '_' : c;
  return text;
}

} // namespace

std::string WithDosLineEnds(const std::string &text) {
  std::string out;
  for (size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '\r' && i + 1 < text.size() && text[i + 1] == '\n')
      continue;
    if (text[i] == '\n' || text[i] == '\r')
      out += "\r\n";
    else
      out += text[i];
  }
  return out;
}

std::string ManifestContext::Convert(const std::string &utf8, const Place &place, int page) {
  if (page == 0)
    page = product().code_page;
  std::string missing;
  if (const auto text = ToCodePage(utf8, page, missing)) {
    if (text->find('\0') != text->npos)
      findings.Error(place, "a text must not hold a character with the code 0");
    return *text;
  }
  findings.Error(place, missing.empty() ? "the text is no UTF-8"
                                        : "'" + missing + "' doesn't exist in code page " + std::to_string(page) +
                                              ", in which the installer will show this text; \"utf-8\" has it");
  return utf8; // an empty one would be a second fault
}

int ManifestContext::CodePage(ManifestTable &table, std::string_view key) {
  const Place place = table.PlaceOfKey(key);
  product().places[table.FullName(key)] = place;
  const auto page = table.Named(key, kCodePages, 0, 65535);
  if (!page || IsCodePage(static_cast<int>(*page)))
    return static_cast<int>(page.value_or(product().code_page));
  findings.Error(place, "the code page has to be one from 1250 to 1258, or \"utf-8\"");
  return product().code_page;
}

std::string ManifestContext::Text(ManifestTable &table, std::string_view key, std::string fallback) {
  const Place place = table.PlaceOfKey(key);
  product().places[table.FullName(key)] = place;
  const auto text = table.Text(key);
  if (!text)
    return fallback;
  const std::string control = ControlCharacterIn(*text);
  if (control.empty() || control == "\\u0000") // which Convert tells
    return Convert(*text, place);
  TellControlCharacter(table.FullName(key), control, place);
  return Convert(Printable(*text), place);
}

void ManifestContext::TellControlCharacter(const std::string &name, const std::string &control, const Place &place) {
  findings.Error(place, "'" + name + "' holds the control character that \"" + control + "\" is in double quotes; " +
                            kSingleQuotes);
}

std::string ManifestContext::TextOrFile(const toml::node &node, const std::string &name, int page) {
  if (const auto *text = node.as_string()) {
    const std::string &word = text->get();
    if (std::error_code error; !word.empty() && word.find_first_of(" \t\r\n") == word.npos &&
                               fs::is_regular_file(InputPath(word, PlaceOf(node)), error))
      findings.Warn(PlaceOf(node), Warning::kTextIsFileName,
                    "'" + word + "' is the text itself: the file of that name is { file = \"" + word + "\" }");
    return WithDosLineEnds(Convert(word, PlaceOf(node), page));
  }
  ManifestTable table(node.as_table(), name, findings);
  const auto file = table.Text("file");
  table.RefuseUnknown();
  if (!file) {
    if (!table.Raw() || !table.Raw()->contains("file"))
      findings.Error(PlaceOf(node), "'" + name + "' has to be a text or { file = \"...\" }");
    return {};
  }
  const auto bytes = ReadInput(*file, table.PlaceOfKey("file"));
  if (!bytes)
    return {};
  std::string text(bytes->begin(), bytes->end());
  if (text.starts_with("\xEF\xBB\xBF"))
    text.erase(0, 3);
  if (text.starts_with("\xFF\xFE") || text.starts_with("\xFE\xFF"))
    findings.Error(table.PlaceOfKey("file"), "'" + *file + "' is UTF-16: save it as UTF-8");
  else if (text.find('\0') != text.npos)
    findings.Error(table.PlaceOfKey("file"), "'" + *file + "' is no text: it holds a byte 0");
  const bool is_converted = !IsUtf8(text) && (page == 0 ? product().code_page : page) != kUtf8;
  return WithDosLineEnds(is_converted ? text : Convert(text, table.PlaceOfKey("file"), page));
}

fs::path ManifestContext::InputPath(const std::string &name, const Place &place) const {
  const size_t number = FileNumber(place);
  return (number == 0 ? folder : included[number - 1].folder) / PathFromUtf8(name);
}

size_t ManifestContext::FileNumber(const Place &place) const {
  for (size_t i = 0; i < included.size(); ++i)
    if (included[i].name == place.file)
      return i + 1;
  return 0;
}

std::string ManifestContext::ProgramVersion(const std::string &name, const Place &place) {
  const auto file = ReadInput(name, place);
  if (!file)
    return {};
  std::string version = FileVersionOf(*file).value_or(std::string());
  if (version.empty())
    findings.Error(place, "'" + name + "' has no version among its resources");
  // Many compilers' templates write "1, 2, 0, 7", where the installer compares by points.
  if (version.find_first_not_of("0123456789, ") == version.npos) {
    std::erase(version, ' ');
    std::replace(version.begin(), version.end(), ',', '.');
  }
  return version;
}

std::optional<Bytes> ManifestContext::ReadInput(const std::string &name, const Place &place) {
  const fs::path path = InputPath(name, place);
  std::error_code error;
  if (const uintmax_t size = fs::file_size(path, error); !error && size > kMaxFileSize) {
    findings.Error(place, "the file '" + name + "' is larger than 1 GiB, which no installer can hold");
    return std::nullopt;
  }
  auto bytes = ReadFileBytes(path);
  if (bytes)
    manifest.inputs.push_back(path);
  else if (const std::string control = ControlCharacterIn(name); !control.empty())
    TellControlCharacter(Printable(name), control, place);
  else
    findings.Error(place, "can't read the file '" + name + "': " + WhyUnreadable(path) +
                              (name.find('\\') == name.npos ? "" : "; folders of inputs are divided by '/'"));
  return bytes;
}

namespace {

bool HoldsOtherThanInstaller(const fs::path &path) {
  const auto bytes = ReadFileBytes(path);
  return bytes && !bytes->empty() && !CarriesArchive(*bytes);
}

} // namespace

bool ManifestContext::IsOutput(const fs::path &path) const {
  const std::string name = ManifestPath(path.filename());
  if (IsUnfinishedName(name))
    return true;
  const fs::path &output = manifest.output;
  if (output.empty())
    return false;
  const auto is_called = [&](const std::string &other) { return LowerCase(name) == LowerCase(other); };
  const size_t base = manifest.product.volume_base_name.size();
  const std::string number = name.size() > base ? name.substr(base, name.find('.', base) - base) : std::string();
  const bool is_number = !number.empty() && number.size() < 10 && number.find_first_not_of("0123456789") == number.npos;
  const bool is_volume = is_number && is_called(VolumeFileName(manifest.product, std::stoul(number)));
  return (is_volume || is_called(ManifestPath(output.filename()))) &&
         IsSameFile(path.parent_path() / ".", fs::absolute(output).parent_path() / ".") &&
         (is_volume || !HoldsOtherThanInstaller(path));
}

std::optional<FileTime> ManifestContext::Time(ManifestTable &table, std::string_view key, bool *from_disk) {
  const toml::node *node = table.Find(key, {from_disk ? KeyForm::kFileDate : KeyForm::kDate});
  if (!node)
    return std::nullopt;
  FileTime time;
  if (const auto *moment = node->as_date_time()) {
    const toml::date &date = moment->get().date;
    const toml::time &clock = moment->get().time;
    time = {date.year, date.month, date.day, clock.hour, clock.minute, clock.second};
    if (moment->get().offset)
      findings.Error(PlaceOf(*node), "a date is taken as local time wherever the product is installed: leave out the "
                                     "offset");
    return time;
  }
  if (const auto *date = node->as_date())
    return FileTime{date->get().year, date->get().month, date->get().day, 0, 0, 0};
  if (const auto *word = node->as_string(); word && word->get() == "none")
    return time;
  if (const auto *word = node->as_string(); from_disk && word && word->get() == "mtime") {
    *from_disk = true;
    return time;
  }
  findings.Error(PlaceOf(*node), "'" + table.FullName(key) + "' has to be a date such as 2001-02-03, without quotes, " +
                                     (from_disk ? "\"mtime\" or \"none\"" : "or \"none\""));
  return std::nullopt;
}

FileTime ManifestContext::TimeOf(const fs::path &path) const {
  std::error_code error;
  const auto written = fs::last_write_time(path, error);
  if (error)
    return {};
  const auto system = std::chrono::file_clock::to_sys(written);
  int64_t seconds = std::chrono::floor<std::chrono::seconds>(system.time_since_epoch()).count();
  if (newest)
    seconds = std::min(seconds, *newest);
  return FromSeconds(seconds);
}

} // namespace korb::packer
