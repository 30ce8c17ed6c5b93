// The kinds of files: one row for each tells how the installer treats a file of it, and what the packer makes of that.
#pragma once

#include <cstdint>

namespace korb {

/// DestKind of a payload record. Other values have no meaning.
enum DestKind : uint32_t {
  KindProgram = 0,   ///< the product's own
  KindShared = 1,    ///< used by several products of one maker
  KindFont = 4,      ///< Label is the font's face name
  KindStartup = 5,   ///< the product's own, started with the system
  KindSystem = 6,    ///< Label is the file's version
  KindSystemCom = 7, ///< the same, and it registers itself
};

/// Where a file goes whose record has no target.
enum class KindFolder : uint8_t { None, Product, Shared, Fonts, System };

/// When a file that is there already gives way.
enum class KindReplaced : uint8_t {
  Always,
  ByLaterDate,           ///< a date that is missing on either side is a reason to replace
  ByNewerVersionAndDate, ///< a file of others: a date that is missing in the record is none
};

/// How references to a file are counted, and what comes of it when no product counts it any more.
enum class KindCounted : uint8_t { No, Removed, Kept, UnregisteredAndRemoved };

/// Which shortcuts a file may have.
enum class KindShortcuts : uint8_t { None, AsAsked, InStartupFolder /**< and as asked */ };

struct KindRow {
  KindFolder folder = KindFolder::None;
  KindReplaced replaced = KindReplaced::Always;
  KindCounted counted = KindCounted::No;
  KindShortcuts shortcuts = KindShortcuts::None;
  bool listed = false;           ///< in the record by name: goes with the product
  bool registers_itself = false; ///< as a COM server, once it is placed
};

/// By DestKind.
inline constexpr KindRow kKindRows[] = {
    /* KindProgram */ {KindFolder::Product, KindReplaced::Always, KindCounted::No, KindShortcuts::AsAsked, true},
    /* KindShared */ {KindFolder::Shared, KindReplaced::ByLaterDate, KindCounted::Removed},
    {},
    {},
    /* KindFont */ {KindFolder::Fonts, KindReplaced::ByLaterDate},
    /* KindStartup */
    {KindFolder::Product, KindReplaced::Always, KindCounted::No, KindShortcuts::InStartupFolder, true},
    /* KindSystem */ {KindFolder::System, KindReplaced::ByNewerVersionAndDate, KindCounted::Kept},
    /* KindSystemCom */
    {KindFolder::System, KindReplaced::ByNewerVersionAndDate, KindCounted::UnregisteredAndRemoved, KindShortcuts::None,
     false, true},
};

/// The row of `kind`; for one without a meaning a row without a folder.
constexpr const KindRow &RowOf(uint32_t kind) {
  constexpr uint32_t kMeaningless = 2;
  return kKindRows[kind < sizeof kKindRows / sizeof *kKindRows ? kind : kMeaningless];
}

} // namespace korb
