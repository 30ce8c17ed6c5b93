// The bytes of an installer: what its reader (archive/) and its writer (packer/) must agree on.
//
// An installer is a PE file with one more section, named ".korb":
//
//     PE headers, sections of the program | .korb section                                    | tail
//                                         | ArchiveHeader | size table | configuration | ... |
//
// and the payload, the records of all files one after the other, stands in one of three places: after the
// configuration inside the section; after the configuration to the end of the file, section padding and tail
// included; or spread, its first part in one of these two places and the rest in volume files
// "<VolumeBaseName><number>.KRB", numbered from 2.
//
// All values are little-endian and stand at any address. Sizes are signed 32 bits: a set top bit is a negative size.
// The table of file sizes stands in the header, not in the records, so that the space that an installation needs is
// known before the payload has been gathered.
#pragma once

#include <cstdint>

namespace korb {

// ---- The PE fields that lead to the section, and that change when it is cut out ----------------------------------

namespace pe {
inline constexpr int32_t kHeaderOffsetAt = 0x3C;  ///< where the file keeps the place of its PE header; 2 bytes are read
inline constexpr int32_t kMinHeaderOffset = 0x40; ///< smallest accepted place of the PE header
inline constexpr int32_t kMaxHeaderOffset = 0x1000; ///< largest accepted one
inline constexpr int32_t kMinSections = 4;          ///< fewer sections are taken for damage
inline constexpr int32_t kMaxSections = 99;
// From the PE header:
inline constexpr int32_t kSectionCountAt = 0x06;        ///< u16 NumberOfSections
inline constexpr int32_t kOptionalHeaderSizeAt = 0x14;  ///< u16 SizeOfOptionalHeader
inline constexpr int32_t kOptionalHeaderAt = 0x18;      ///< the section table follows it
inline constexpr int32_t kInitializedDataSizeAt = 0x20; ///< u32 SizeOfInitializedData
inline constexpr int32_t kImageSizeAt = 0x50;           ///< u32 SizeOfImage
// Signing fills these in, and appends the signature to the file:
inline constexpr int32_t kImageChecksumAt = 0x58; ///< u32 CheckSum
inline constexpr int32_t kSignatureAt = 0x98;     ///< u32 place in the file, u32 size
inline constexpr int32_t kSignatureEntrySize = 8;
inline constexpr int32_t kSignatureAlignment = 8; ///< of its place: the file is filled up with zeros
// A section table entry:
inline constexpr int32_t kSectionEntrySize = 40;
inline constexpr int32_t kSectionNameSize = 8;
inline constexpr int32_t kVirtualAddressAt = 0x0C;      ///< u32 VirtualAddress
inline constexpr int32_t kRawSizeAt = 0x10;             ///< u32 SizeOfRawData
inline constexpr int32_t kRawPointerAt = 0x14;          ///< u32 PointerToRawData
inline constexpr int32_t kReadableSection = 0x40000000; ///< of Characteristics, the last u32
} // namespace pe

/// Name of the archive's section, compared with case. The remaining bytes of the 8 are 0.
inline constexpr char kArchiveSectionName[] = ".korb";

// ---- Archive header, at the first byte of the section ------------------------------------------------------------

inline constexpr uint32_t kArchiveMagic = 0xA4F23DE5;
/// Format version times 100. Archives up to kNewestReadableVersion are read, so that a rounding difference in an
/// author's tool does no harm; every older one too.
inline constexpr int32_t kFormatVersion = 1100;
inline constexpr int32_t kNewestReadableVersion = 1101;
/// The stored configuration block has at least 1 byte and fewer than this.
inline constexpr int32_t kConfigSizeLimit = 0xA00000;
/// Largest contents of one file.
inline constexpr int32_t kMaxFileSize = 0x40000000;

namespace header {
inline constexpr int32_t kMagicAt = 0;            ///< u32, kArchiveMagic
inline constexpr int32_t kVersionAt = 4;          ///< i32
inline constexpr int32_t kConfigSizeAt = 8;       ///< i32, bytes of the stored configuration block
inline constexpr int32_t kConfigKeyAt = 12;       ///< u32, scrambles the block and is the Checksum32 of its contents
inline constexpr int32_t kStubChecksumAt = 16;    ///< u32, Checksum32 of the file's bytes before the section
inline constexpr int32_t kArchiveLengthAt = 20;   ///< i32, bytes of archive data in the section, from its first byte
inline constexpr int32_t kFileCountAt = 24;       ///< i32, files of the payload
inline constexpr int32_t kPayloadSizeAt = 28;     ///< i32, bytes of the stored payload, all volumes together
inline constexpr int32_t kPayloadChecksumAt = 32; ///< u32, Checksum32 of the stored payload
inline constexpr int32_t kSize = 36;              ///< the size table follows: fileCount values i32, 0 to kMaxFileSize
} // namespace header

// ---- Configuration stream ------------------------------------------------------------------------------------------
//
// Flat, without tags. Texts end with a 0 byte. In order:
//
//      1 InstallFlags u64            18 UninstallerName text          35 PayloadInFile u8
//      2 MinPhaseMs u16              19 UninstallName text            36 VolumeSerial i32
//      3 ShortcutMode u8             20 TitleColor i32                37 StubPatchOffset i32  (IF_UNINSTALL)
//      4 uninstaller date, FileDate  21 TopColor i32                  38 StubPatchBytes  (IF_UNINSTALL, 37 above 0)
//      5 Publisher text              22 BottomColor i32               39 FileDeletion records, kDeletionsEnd
//      6 ProductName text            23 TitleShadow u8                40 association count i32
//      7 CommonDir text              24 bitmap size i32               41 FileAssociation records
//      8 ProductStartMenu text       25 bitmap bytes (24 above 0)     42 uninstall data count i32
//      9 DefaultInstallDir text      26 MasterProduct text            43 UninstallData records
//     10 Version text                   (IF_MASTER_PRODUCT)           44 language count u8
//     11 ProductRegistry text        27 DesktopGroup text             45 text count i32
//     12 licence page count i32      28 PreInstallBatch text          46 language names, texts
//     13 licence pages, texts        29 PostInstallBatch text         47 text table: all languages of text 0,
//     14 readme page count i32       30 FinalBatch text                  all languages of text 1, ...
//     15 readme pages, texts         31 UninstallBatch1 text          48 kConfigEndMagic u32
//     16 UninstallSubdir text        32 UninstallBatch2 text
//     17 VolumeBaseName text         33 ExpiryDate, date record
//                                    34 ExcludedPlatforms i32
//
// Fields 21 and 22 are there always; without IF_CUSTOM_COLORS their 8 bytes mean nothing.

inline constexpr uint32_t kConfigEndMagic = 0xD3E82B97;
inline constexpr int32_t kMaxPhaseMs = 9999;
inline constexpr int32_t kMaxPages = 20; ///< of each kind
inline constexpr int32_t kMaxDeletions = 1001;
inline constexpr int32_t kMaxAssociations = 10000;
inline constexpr int32_t kMaxUninstallData = 10000;
inline constexpr int32_t kMaxLanguages = 100;   ///< at least 1
inline constexpr int32_t kMaxTexts = 10000;     ///< at least 1
inline constexpr int32_t kStubPatchSize = 2216; ///< bytes of field 38: an icon image of 32 by 32 in 256 colours
inline constexpr int32_t kFileDateSize = 24;    ///< six i32: year, month, day, hour, minute, second; month 0: none
inline constexpr int32_t kDateRecordSize = 20;  ///< five i32: Julian day, month, day, year, weekday; all 0: none
/// The name that ends the FileDeletion records; no further field of a record follows it.
inline constexpr const char *kDeletionsEnd = "~~THE END~~";
/// The language that starts selected; compared with case.
inline constexpr const char *kDefaultLanguage = "English";
/// ShortcutMode for shortcuts of all users; any other value means the current user.
inline constexpr uint8_t kShortcutsForAllUsers = 1;

// FileDeletion: name text, condition kind i8, condition value text, options u32.

/// When an old file goes. Every other value means always.
enum DeletionKind : int8_t {
  kDeleteAlways = 0,
  kDeleteDateEqual = 1, ///< value: a date, or a date and time
  kDeleteDateFrom = 2,
  kDeleteDateUpTo = 3,
  kDeleteSizeEqual = 4, ///< value: bytes
  kDeleteSizeFrom = 5,
  kDeleteSizeUpTo = 6,
};
inline constexpr uint32_t kDeleteAtRestart = 0x2; ///< option: a file in use goes at the next start

// FileAssociation: options u32, then eight texts: extension, class, class description, verb, verb description, command,
// language (empty: all), icon.
inline constexpr uint32_t kDefaultVerb = 0x1; ///< option: the verb becomes the class's default

// UninstallData: value name text, kind u8, value text.

/// How a value of the product's Uninstall key is stored. Every other value means text.
enum UninstallDataKind : uint8_t {
  kUninstallText = 1,
  kUninstallExpandText = 2,
  kUninstallNumber = 4,
};

// ---- Payload records ------------------------------------------------------------------------------------------------
//
//     Name text, DestKind u32 (Kinds.h), FileFlags u32, Attributes u32, contents (as many bytes as the size table
// says),
//     Checksum u32 (Checksum32 of the contents), Date FileDate, Label text, Icon text (FF_SHORTCUTS), Arguments text,
//     Target text

// FileFlags
inline constexpr uint32_t FF_DESKTOP = 0x1;    ///< desktop shortcut, where the kind may have it
inline constexpr uint32_t FF_START_MENU = 0x2; ///< start menu shortcut, likewise
inline constexpr uint32_t FF_SHORTCUTS = 0x3;  ///< either: the record has an Icon field
inline constexpr uint32_t FF_CONDITION = 0xC;  ///< two-bit field: when the file is placed
inline constexpr uint32_t FF_PLACE_ALWAYS = 0x0;
inline constexpr uint32_t FF_PLACE_NEVER = 0x4;
inline constexpr uint32_t FF_PLACE_OVER = 0x8;     ///< only over an existing file
inline constexpr uint32_t FF_PLACE_NEW = 0xC;      ///< only where no file exists
inline constexpr uint32_t FF_KEEP = 0x20;          ///< left alone at uninstall
inline constexpr uint32_t FF_UNINSTALL_DIR = 0x40; ///< without a Target, goes to UninstallDir

// ---- Volume files ---------------------------------------------------------------------------------------------------

inline constexpr int32_t kVolumeHeaderSize = 4; ///< i32 serial; the payload's bytes follow, at least one
inline constexpr int32_t kFirstVolumeNumber = 2;
inline constexpr const char *kVolumeNameFormat = "%s%d.KRB"; ///< VolumeBaseName, volume number

// ---- InstallFlags ---------------------------------------------------------------------------------------------------

// The option word of an archive. It travels to the uninstaller through the registry, so a bit keeps its place for ever.
// Bits without a name are carried along and not read. IF_REBOOT_NEEDED alone is set by a run.
inline constexpr uint64_t IF_REFUSE_REINSTALL = 1ull << 0;      ///< an installed product is not installed over
inline constexpr uint64_t IF_UNINSTALL_START_MENU = 1ull << 1;  ///< start menu shortcut to the uninstaller
inline constexpr uint64_t IF_UNINSTALL = 1ull << 2;             ///< the product gets an uninstaller and a record
inline constexpr uint64_t IF_NOTICE = 1ull << 3;                ///< show the notice before the pages
inline constexpr uint64_t IF_ASK_FONT_REMOVAL = 1ull << 4;      ///< uninstall: ask before removing a font
inline constexpr uint64_t IF_PACKED_PAYLOAD = 1ull << 5;        ///< the payload is one packed block
inline constexpr uint64_t IF_ALWAYS_LOG = 1ull << 6;            ///< write Install.LOG also when all went well
inline constexpr uint64_t IF_ASK_DIRECTORY = 1ull << 7;         ///< show the directory dialog
inline constexpr uint64_t IF_AUTOMATIC = 1ull << 8;             ///< install silently, as by /a
inline constexpr uint64_t IF_AUTOMATIC_UNINSTALL = 1ull << 9;   ///< uninstall silently
inline constexpr uint64_t IF_NO_UNINSTALL_RECORDS = 1ull << 10; ///< no record of single files: the directory goes whole
inline constexpr uint64_t IF_REPLACE_IN_USE = 1ull << 11;       ///< a file in use is replaced at the next start
inline constexpr uint64_t IF_EDIT_PATH = 1ull << 12;            ///< the search path is edited
inline constexpr uint64_t IF_CUSTOM_COLORS = 1ull << 13;        ///< fields 20 to 22 are the archive's colours
inline constexpr uint64_t IF_REBOOT_NEEDED = 1ull << 14;        ///< something waits for the next start; set by the run
inline constexpr uint64_t IF_BACKGROUND_BITMAP = 1ull << 15;    ///< the uninstaller shows the bitmap too
inline constexpr uint64_t IF_MASTER_PRODUCT = 1ull << 16;       ///< another product must be there; field 26 names it
inline constexpr uint64_t IF_ASK_SHARED_REMOVAL = 1ull << 17;   ///< uninstall: ask before removing a shared file
inline constexpr uint64_t IF_VERIFY_WRITES = 1ull << 18;        ///< each written file is read back and compared
inline constexpr uint64_t IF_CLEAR_ATTRIBUTES = 1ull << 19;     ///< a target that can't be opened loses its attributes
inline constexpr uint64_t IF_VERBOSE_LOG = 1ull << 20;          ///< a log line for each file and shortcut
inline constexpr uint64_t IF_NO_CANCEL = 1ull << 21;            ///< the progress dialog can't be cancelled
inline constexpr uint64_t IF_NO_DONE_MESSAGE = 1ull << 22;      ///< no closing message after a clean run
inline constexpr uint64_t IF_HIDE_PRE_BATCH = 1ull << 23;       ///< PreInstallBatch runs hidden
inline constexpr uint64_t IF_HIDE_POST_BATCH = 1ull << 24;      ///< PostInstallBatch runs hidden
inline constexpr uint64_t IF_HIDE_FINAL_BATCH = 1ull << 25;     ///< FinalBatch runs hidden
inline constexpr uint64_t IF_HIDE_UNINSTALL_BATCH1 = 1ull << 26;
inline constexpr uint64_t IF_HIDE_UNINSTALL_BATCH2 = 1ull << 27;
inline constexpr uint64_t IF_NO_REINSTALL_QUESTION = 1ull << 28; ///< an earlier installation is installed over unasked
inline constexpr uint64_t IF_NO_WINDOW = 1ull << 29;             ///< no background window, in both runs
inline constexpr uint64_t IF_CONFIRM_DIRECTORY = 1ull << 31;     ///< the chosen directory is confirmed by a question
inline constexpr uint64_t IF_VERIFY_STUB = 1ull << 32;           ///< stubChecksum is compared
inline constexpr uint64_t IF_UNINSTALL_DESKTOP = 1ull << 33;     ///< desktop shortcut to the uninstaller
inline constexpr uint64_t IF_SHOW_ERRORS = 1ull << 35;           ///< error boxes appear in a silent run too
inline constexpr uint64_t IF_COMPARE_VERSIONS = 1ull << 36;      ///< the reinstall question compares versions
inline constexpr uint64_t IF_NO_UNC_PATHS = 1ull << 37;          ///< no installation to a network path
inline constexpr uint64_t IF_UNINSTALL_IN_FOLDER = 1ull << 38;   ///< shortcut to the uninstaller in its own folder

} // namespace korb
