// Questions about texts that the checks of a product share.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "packer/Product.h"

namespace korb::packer {

/// What a message about a backslash that TOML has taken for the beginning of an escape sequence ends in.
inline constexpr char kSingleQuotes[] = "write a path in single quotes, in which a backslash is nothing but itself";

/// The control character that `text` holds, as TOML writes it in double quotes: "\\t". Empty when there is none.
std::string ControlCharacterIn(std::string_view text);

std::string LowerCase(std::string_view text);

bool ContainsNoCase(std::string_view text, std::string_view part);

/// Whether the text holds a marker that divides the uninstaller's record.
bool HoldsRecordMarker(std::string_view text);

/// Characters that Windows has in no file name, and control characters.
bool HoldsIllegalCharacter(std::string_view name);

/// The same in a path whose variables are replaced (WithSampleFolders), and which may begin with a drive.
bool HoldsIllegalCharacterInPath(std::string path);

/// Whether Windows takes one part of a path for a device, with any extension, in any folder.
bool IsDeviceName(std::string_view part);

/// Whether a part of `path` has more bytes than the name of a file. Where a character has several, the system has
/// longer names, but the program is not told of them.
bool HasLongPart(std::string_view path);

/// Whether a part of `path` is none that a file or folder can have: a device, or a
/// name that ends in a dot or a space, which Windows drops. ".." is one.
bool HasUnusablePart(std::string_view path);

/// The Windows directory and the Program Files folder of a machine as most are.
inline constexpr char kSampleWindows[] = "C:\\Windows", kSamplePrograms[] = "C:\\Program Files";

/// `text` with each path variable replaced by a value as it is on such a machine.
std::string WithSampleFolders(std::string text);

/// A path on the target system below `folder`, which ends in a backslash, unless it is full. A variable at its front is
/// a folder that isn't known here.
std::string PathBelow(std::string_view path, const std::string &folder);

/// `text` with `name` in place of each "<product>", in any case.
std::string WithProductName(std::string text, const std::string &name);

/// Whether one of the runs of digits in `text` is above `most`.
bool HoldsHugeNumber(std::string_view text, int64_t most = INT32_MAX);

/// Whether the calendar has that day. `month` 0 is no day.
bool IsCalendarDay(int32_t year, int32_t month, int32_t day);

} // namespace korb::packer
