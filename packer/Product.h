// A product as an author describes it: everything that an installer can say, ready to be written.
//
// Texts are in `code_page`, that of the systems that the installer is for, or UTF-8. Numbers are written as they are:
// ProductCheck.h tells what a reader of the archive would refuse.
#pragma once

#include <map>
#include <optional>
#include <stdexcept>
#include <string>

#include "format/Archive.h"
#include "format/Kinds.h"
#include "packer/Bytes.h"
#include "packer/CodePage.h"
#include "packer/IconFile.h"

namespace korb::packer {

/// What can't be written at all, with the reason.
struct PackError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// Where something was said; line 0 means nowhere in particular. Lines and columns count from 1.
struct Place {
  uint32_t line = 0;
  uint32_t column = 0;
  std::string file = {}; ///< empty for the manifest itself
};

/// A last-write time as files carry it, local time. Month 0 means none.
struct FileTime {
  int32_t year = 0, month = 0, day = 0, hour = 0, minute = 0, second = 0;
};

/// A day of the calendar. Month 0 means none.
struct Day {
  int32_t year = 0, month = 0, day = 0;
};

struct FileEntry {
  std::string name;            ///< may hold a relative path
  uint32_t kind = KindProgram; ///< DestKind
  uint32_t flags = 0;          ///< FF_... bits
  uint32_t attributes = 0x20;  ///< Win32 file attributes
  Bytes contents;
  FileTime date;
  std::string label; ///< shortcut title, font face name or version, by `kind`
  std::string icon;  ///< written with FF_SHORTCUTS only
  std::string arguments;
  std::string target;
  Place place;
};

/// Whether a file of that kind has a folder to go to. One that has none is damage to an installer.
inline bool HasDestination(uint32_t kind, uint32_t flags, std::string_view target) {
  return RowOf(kind).folder != KindFolder::None || (flags & FF_UNINSTALL_DIR) || target.find('\\') != target.npos;
}

struct Deletion {
  std::string name;
  int8_t kind = kDeleteAlways; ///< DeletionKind
  std::string value;
  uint32_t options = 0;
  Place place;
};

struct Association {
  uint32_t options = 0;
  std::string extension;
  std::string file_class;
  std::string description;
  std::string verb;
  std::string verb_label;
  std::string command;
  std::string language;
  std::string icon;
  Place place;
};

struct UninstallValue {
  std::string name;
  uint8_t kind = kUninstallText; ///< UninstallDataKind
  std::string value;
  Place place;
};

struct Language {
  std::string name;
  std::vector<std::string> texts; ///< by number; a language that has fewer than another gets empty ones
  Place place;
};

enum class PayloadLayout {
  kInSection, ///< inside the mapped section: files are placed without a copy of the payload being made
  kInFile,    ///< from the configuration to the end of the file: less of the address space is used
};

/// How much work packing a block may cost.
enum class CompressionLevel {
  kDefault, ///< for every day; its blocks also have fewer tokens, and unpack a little faster
  kBest,    ///< some tenths of a percent smaller, in up to twice the time
};

/// Where the payload goes. Volumes arise when it doesn't fit into the first part.
struct PayloadPlan {
  PayloadLayout layout = PayloadLayout::kInSection;
  int32_t volume_size = 0;                ///< bytes of a whole volume file, its serial included; 0 means no volumes
  std::optional<int32_t> first_part_size; ///< payload bytes in the executable; without it, as many as keep the
                                          ///< executable within volume_size
  bool will_be_signed = false;            ///< that executable leaves room for a signature
};

/// The fields stand in the order of the configuration stream.
struct Product {
  uint64_t flags = IF_UNINSTALL | IF_ASK_DIRECTORY | IF_PACKED_PAYLOAD | IF_CUSTOM_COLORS; ///< IF_... bits
  uint16_t min_phase_ms = 0;
  uint8_t shortcut_mode = 0;
  FileTime uninstaller_date;
  std::string publisher;
  std::string name;
  std::string common_dir;
  std::string start_menu;
  std::string install_dir;
  std::string version;
  std::string registry_key;
  std::vector<std::string> license_pages;
  std::vector<std::string> readme_pages;
  std::string uninstall_subdir;
  std::string volume_base_name = "Setup";
  std::string uninstaller_name = "Uninstall.exe";
  std::string uninstall_name;
  uint32_t title_color = 0xFFFFFF; ///< 0x00BBGGRR
  uint32_t top_color = 0xB06F2A;   ///< a blue that goes into a darker one: quiet behind dialogs of any theme
  uint32_t bottom_color = 0x45250B;
  uint8_t title_shadow = 2; ///< pixels
  Bytes background;         ///< a bitmap without its 14 bytes of file header
  std::string master_product;
  std::string desktop_group;
  std::string pre_install_batch;
  std::string post_install_batch;
  std::string final_batch;
  std::string uninstall_batch1;
  std::string uninstall_batch2;
  Day expiry;
  uint32_t excluded_platforms = 0;
  uint32_t volume_serial = 1;
  int32_t stub_patch_offset = 0; ///< 0 means no patch
  Bytes stub_patch;              ///< kStubPatchSize bytes when there is one
  std::vector<Deletion> deletions;
  std::vector<Association> associations;
  std::vector<UninstallValue> uninstall_values;
  std::vector<Language> languages;

  std::vector<FileEntry> files; ///< in the order of placement
  PayloadPlan payload;
  std::vector<IconImage> icon;      ///< of installer and uninstaller; empty: the program keeps its own
  std::string copyright;            ///< UTF-8, since only the version of the program has it
  std::string file_name;            ///< of the installer, UTF-8
  int code_page = kDefaultCodePage; ///< of the texts; with kUtf8 the program is told so, else it takes the system's
  CompressionLevel compression = CompressionLevel::kDefault; ///< of the payload, when it is packed

  /// Where the author set a value, by its key in the manifest ("product.name"); empty for a product made in code.
  std::map<std::string, Place, std::less<>> places;

  bool Has(uint64_t flag) const { return (flags & flag) != 0; }
  Place PlaceOf(std::string_view key) const {
    const auto found = places.find(key);
    return found == places.end() ? Place{} : found->second;
  }
};

} // namespace korb::packer
