#include "packer/write/RecordWriter.h"

#include <algorithm>
#include <cstring>

#include "format/Block.h"
#include "packer/write/PackEstimate.h"

namespace korb::packer {

namespace {

constexpr size_t kUsualRecord = 200; // bytes of a record beside the contents

void PutRecord(Bytes &out, const FileEntry &file) {
  const std::string what = "file '" + file.name + "'";
  PutText(out, file.name, what);
  PutU32(out, file.kind);
  PutU32(out, file.flags);
  PutU32(out, file.attributes);
  PutBytes(out, file.contents);
  PutU32(out, ChecksumOf(file.contents));
  PutFileTime(out, file.date);
  PutText(out, file.label, what);
  if (file.flags & FF_SHORTCUTS)
    PutText(out, file.icon, what);
  PutText(out, file.arguments, what);
  PutText(out, file.target, what);
}

// Whether a long packing would only show that the block is too large. A little above the limit it is tried all the
// same.
bool IsHopeless(const Bytes &plain) {
  constexpr uint64_t most = uint64_t{kMaxPackedBlock} / 4 * 5;
  return plain.size() > most && EstimatePackedSize(plain) > most;
}

void Pack(Payload &payload, CompressionLevel level, const ProgressCallback &progress) {
  // Less than that isn't worth what unpacking costs at each installation. Media have the records alone to save.
  const size_t helpful = payload.plain_size - std::max<size_t>(payload.plain_size / 200, 1);
  const size_t limit = std::min<size_t>(helpful, kMaxPackedBlock);
  std::optional<Bytes> packed;
  if (!IsHopeless(payload.stored))
    packed = PackBlockWithin(limit, payload.stored, level, progress);
  if (packed)
    payload.stored = std::move(*packed);
  else
    payload.storing = limit < kMaxPackedBlock ? Storing::kNotSmaller : Storing::kNotUnpackable;
}

} // namespace

void PutText(Bytes &out, std::string_view text, std::string_view what) {
  if (text.find('\0') != text.npos)
    throw PackError("a text must not hold a 0 byte: " + std::string(what));
  out.insert(out.end(), text.begin(), text.end());
  out.push_back(0);
}

void PutFileTime(Bytes &out, const FileTime &time) {
  for (int32_t value : {time.year, time.month, time.day, time.hour, time.minute, time.second})
    PutI32(out, value);
}

Payload WritePayload(const Product &product, const ProgressCallback &progress) {
  Payload payload;
  size_t expected = 0; // a block that grows as it is filled takes three times its size
  for (const FileEntry &file : product.files)
    expected += file.contents.size() + kUsualRecord;
  payload.stored.reserve(std::min<size_t>(expected, INT32_MAX));
  for (const FileEntry &file : product.files) {
    if (file.contents.size() > kMaxFileSize)
      throw PackError("file '" + FromCodePage(file.name, product.code_page) + "' is larger than 1 GiB");
    payload.sizes.push_back(static_cast<int32_t>(file.contents.size()));
    PutRecord(payload.stored, file);
    if (payload.stored.size() > INT32_MAX)
      throw PackError("the files add up to more than 2 GiB");
  }
  payload.plain_size = payload.stored.size();
  if (product.Has(IF_PACKED_PAYLOAD) && payload.plain_size > 0)
    Pack(payload, product.compression, progress);
  return payload;
}

} // namespace korb::packer
