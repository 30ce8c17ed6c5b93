// Any bytes as a payload, in the image or in the file, spread over volumes or not, packed or not: gathering it and
// reading its records ends with a whole block, in a damage report, or when the user gives up.
#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "archive/Payload.h"
#include "archive/PayloadRecord.h"
#include "core/Checksum.h"
#include "core/RunValues.h"
#include "format/Block.h"
#include "tests/support/ArchiveDoubles.h"
#include "tests/support/FailureTrap.h"

using namespace korb;
using namespace korb::test;

namespace {

/// What the first bytes of the input decide; the rest is the payload.
struct Shape {
  uint8_t options;       ///< kInFile and its like
  uint8_t size_less;     ///< bytes that the header leaves out of what is there, or asks for beyond it
  uint8_t in_executable; ///< bytes of the payload that stand in the program
  uint8_t volume;        ///< bytes of each volume's file
  uint8_t contents[4];   ///< sizes of the files
};
enum : uint8_t { kInFile = 1, kPacked = 2, kAsksForMore = 4, kAnyChecksum = 8, kUnreadable = 16 };

struct UserWhoGivesUp {};

void Gather(const Shape &shape, const Bytes &payload) {
  InstallFlags = shape.options & kPacked ? IF_PACKED_PAYLOAD : 0;
  ArchiveHeader header;
  header.config_size = 1;
  for (const uint8_t size : shape.contents)
    header.sizes.append(size);
  const auto offset = static_cast<size_t>(header.payload_offset());
  const size_t first = std::min(payload.size(), size_t{shape.in_executable});
  Bytes executable(offset);
  executable.insert(executable.end(), payload.begin(), payload.begin() + static_cast<ptrdiff_t>(first));
  header.archive_length = static_cast<int32_t>(executable.size());
  header.payload_size = static_cast<int32_t>(payload.size()) +
                        (shape.options & kAsksForMore ? shape.size_less : -static_cast<int32_t>(shape.size_less));
  if (header.payload_size < 0)
    return;
  if (shape.options & kPacked && payload.size() >= kPackedHeaderSize && (payload[6] > 0xF || payload[7] != 0))
    return; // a block of a megabyte or more, which only costs time
  if ((shape.options & kAnyChecksum) == 0)
    header.payload_checksum =
        Checksum32(payload.data(), std::min(header.payload_size, static_cast<int32_t>(payload.size())));

  VolumeUser user;
  user.unreadable = (shape.options & kUnreadable) != 0;
  user.answer = []() -> bool { throw UserWhoGivesUp(); };
  int32_t number = kFirstVolumeNumber;
  for (size_t at = first; at < payload.size() && shape.volume > 0; at += shape.volume) {
    std::string volume(kVolumeHeaderSize, '\0');
    volume[0] = static_cast<char>(number - kFirstVolumeNumber);
    volume.append(reinterpret_cast<const char *>(payload.data()) + at,
                  std::min(payload.size() - at, size_t{shape.volume}));
    user.files["A:\\" + std::to_string(number++) + ".KRB"] = volume;
  }

  InstallConfig config;
  config.payload_in_file = shape.options & kInFile;
  ArchiveLocation location;
  location.file_size = header.archive_length;
  MemoryFile file(executable);
  ArchiveCursor cursor(executable.data(), header.archive_length);
  String buffer;
  AssemblePayload(file, location, header, config, "A:\\", user, buffer, cursor);
  const Bytes block(cursor.base(), cursor.base() + cursor.length()); // exactly as long, which a sanitizer watches
  if (shape.options & kPacked && header.payload_size != 0)
    free(const_cast<uint8_t *>(cursor.base()));
  else if (cursor.length() != header.payload_size)
    abort();
  ArchiveCursor records(block.data(), static_cast<int32_t>(block.size()));
  for (int32_t i = 0; i < header.sizes.count; ++i) {
    PayloadRecord record;
    ReadPayloadRecord(records, header.sizes.at(i), record);
    if (record.contents < block.data() || record.contents + record.size > block.data() + block.size())
      abort();
  }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  Shape shape;
  if (size < sizeof shape)
    return -1;
  memcpy(&shape, data, sizeof shape);
  ResetRun();
  try {
    Gather(shape, Bytes(data + sizeof shape, data + size));
  } catch (const TrappedFailure &) {
  } catch (const UserWhoGivesUp &) {
  }
  return 0;
}
