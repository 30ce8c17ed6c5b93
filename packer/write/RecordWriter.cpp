#include "packer/write/RecordWriter.h"

#include <algorithm>
#include <cstring>

#include "format/Block.h"

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
      throw PackError("file '" + file.name + "' is larger than 1 GiB");
    payload.sizes.push_back(static_cast<int32_t>(file.contents.size()));
    PutRecord(payload.stored, file);
    if (payload.stored.size() > INT32_MAX)
      throw PackError("the files add up to more than 2 GiB");
  }
  payload.plain_size = payload.stored.size();
  if (product.Has(IF_PACKED_PAYLOAD) && payload.plain_size > 0) {
    payload.stored = PackBlock(payload.stored, product.compression, progress);
    if (payload.stored.size() > size_t{kMaxPackedBlock})
      throw PackError("the packed payload has " + std::to_string(payload.stored.size()) +
                      " bytes, but at most 268,435,455 can be unpacked: store it unpacked");
  }
  return payload;
}

} // namespace korb::packer
